#pragma once

// The primitive edits of a node, each one step of the undo history. Nodes alone make them, and apply them
// themselves, so that a step tells the world the same whichever way it is gone.

#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtWidgets/QUndoCommand>

/// One field of a node changes.
class OrvNodeFieldEdit : public QUndoCommand {
public:
    OrvNodeFieldEdit(
        OrvSnBaseNode* pNode, OrvSnBaseNode::Field Field, const QVariant& Value, const QString& Text)
        : QUndoCommand(Text)
        , m_pNode(pNode)
        , m_Field(Field)
        , m_Before(pNode->field(Field))
        , m_After(Value)
    {
    }
    void undo() override { m_pNode->applyField(m_Field, m_Before); }
    void redo() override { m_pNode->applyField(m_Field, m_After); }

private:
    OrvSnBaseNode* m_pNode;
    OrvSnBaseNode::Field m_Field;
    QVariant m_Before, m_After;
};

/// A tag comes or goes. Of the tags it touches that one alone, so that others may change without undo.
class OrvNodeTagEdit : public QUndoCommand {
public:
    OrvNodeTagEdit(OrvSnBaseNode* pNode, const QString& Tag, bool Carried, const QString& Text)
        : QUndoCommand(Text)
        , m_pNode(pNode)
        , m_Tag(Tag)
        , m_Index(Carried ? pNode->tags().size() : pNode->tags().indexOf(Tag))
        , m_Carried(Carried)
    {
    }
    void undo() override { put(!m_Carried); }
    void redo() override { put(m_Carried); }

private:
    void put(bool Carried)
    {
        QStringList Tags = m_pNode->tags();
        Tags.removeAll(m_Tag);
        if (Carried)
            Tags.insert(qBound(0, m_Index, Tags.size()), m_Tag);
        m_pNode->applyTags(Tags);
    }

    OrvSnBaseNode* m_pNode;
    QString m_Tag;
    int m_Index;
    bool m_Carried;
};

/// One input of a node is fed by another node.
class OrvNodeConnectionEdit : public QUndoCommand {
public:
    OrvNodeConnectionEdit(
        OrvSnBaseNode* pNode, const QString& InputName, OrvSnBaseNode* pSource, const QString& OutputName)
        : QUndoCommand(OrvSnBaseNode::tr("Connect '%1'").arg(pNode->name()))
        , m_pNode(pNode)
        , m_InputName(InputName)
        , m_pBefore(pNode->inputNode(InputName))
        , m_pAfter(pSource)
        , m_OutputBefore(pNode->inputOutputName(InputName))
        , m_OutputAfter(OutputName)
    {
    }
    void undo() override { m_pNode->applyConnection(m_InputName, m_pBefore, m_OutputBefore); }
    void redo() override { m_pNode->applyConnection(m_InputName, m_pAfter, m_OutputAfter); }

private:
    OrvSnBaseNode* m_pNode;
    QString m_InputName;
    OrvSnBaseNode *m_pBefore, *m_pAfter;
    QString m_OutputBefore, m_OutputAfter;
};

/// One user attribute of a node is created, changed or removed (an attribute without name stands for its
/// absence).
class OrvNodeAttributeEdit : public QUndoCommand {
public:
    OrvNodeAttributeEdit(
        OrvSnBaseNode* pNode, const OrvCustomAttribute& Before, const OrvCustomAttribute& After)
        : QUndoCommand(OrvSnBaseNode::tr("Set %1 of '%2'")
                           .arg(After.name().isEmpty() ? Before.name() : After.name(), pNode->name()))
        , m_pNode(pNode)
        , m_Before(Before)
        , m_After(After)
    {
    }
    void undo() override { put(m_After, m_Before); }
    void redo() override { put(m_Before, m_After); }

private:
    void put(const OrvCustomAttribute& Present, const OrvCustomAttribute& Wanted)
    {
        if (Wanted.name().isEmpty())
            m_pNode->applyUserAttributeRemoval(Present.name());
        else
            m_pNode->applyUserAttribute(Wanted);
    }

    OrvSnBaseNode* m_pNode;
    OrvCustomAttribute m_Before, m_After;
};
