#pragma once

#include "OrvCore/Network/OrvSnBaseNodeCacheActiveState.h"
#include "OrvCore/Object/OrvSerializableObject.h"

#include <QtCore/QPointF>
#include <QtCore/QStringList>

#include <memory>
#include <vector>

class OrvEngineNode;
class OrvImageSet;
class OrvInputStep;
class OrvShaderNetwork;
struct OrvNodeDescription;

/// A node of the document's graph: identity, name, tags, user attributes, flags and named, ordered inputs, and nothing
/// else holds structure. It belongs to a network, or to the undo history while it is removed. Every public operation
/// that changes something is one undoable primitive edit; the apply step alone emits signals, so undo and redo tell
/// the world exactly what the edit told it.
class ORVCORE_EXPORT OrvSnBaseNode : public OrvSerializableObject {
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

public:
    struct Input {
        QString Name;
        OrvSnBaseNode* pNode = nullptr;
        QString OutputName; ///< empty for the one output that most nodes have
    };
    struct Consumer {
        OrvSnBaseNode* pNode = nullptr;
        QString InputName;
        bool operator==(const Consumer& Other) const
        {
            return pNode == Other.pNode && InputName == Other.InputName;
        }
    };

    ~OrvSnBaseNode() override;

    /// Key of the node's type in the node registry, stored in projects.
    virtual QString typeName() const = 0;
    /// What the user calls this kind of node.
    virtual QString typeLabel() const;

    OrvShaderNetwork* network() const { return m_pNetwork; }
    const QString& name() const { return m_Name; }
    const QStringList& tags() const { return m_Tags; }
    bool hasTag(const QString& Tag) const { return !Tag.isEmpty() && m_Tags.contains(Tag); }
    bool locked() const { return m_Locked; }
    bool blocked() const { return m_Blocked; }
    bool enabledAsBool() const { return m_Enabled; }
    OrvSnBaseNodeCacheActiveState cacheActive() const { return m_CacheActive; }
    QPointF position() const { return m_Position; }

    const QVector<Input>& inputs() const { return m_Inputs; }
    bool hasInput(const QString& InputName) const;
    /// Null when the input is free or unknown.
    OrvSnBaseNode* inputNode(const QString& InputName) const;
    QString inputOutputName(const QString& InputName) const;
    /// Every input that this node feeds.
    const QVector<Consumer>& consumers() const { return m_Consumers; }
    /// The input that carries the stream from below, or the content; empty for a node without inputs.
    virtual QString preferredInput() const;
    OrvSnBaseNode* preferredInputNode() const { return inputNode(preferredInput()); }
    /// Nodes held by this one (a graph layer's), or null.
    virtual OrvShaderNetwork* nestedNetwork() const { return nullptr; }
    /// The images that the node stores, or null.
    virtual OrvImageSet* imageSet() const { return nullptr; }

    // Undoable edits. None of them does anything, or leaves a history entry, when nothing changes.
    void setName(const QString& Name);
    void addTag(const QString& Tag, bool Undoable = true);
    void removeTag(const QString& Tag, bool Undoable = true);
    void setLocked(bool Locked);
    void setBlocked(bool Blocked);
    void setEnabledAsBool(bool Enabled);
    void setCacheActive(OrvSnBaseNodeCacheActiveState State);
    void setPosition(const QPointF& Position);
    /// Null disconnects. False, with nothing changed, for an unknown input, a node of another network or a cycle.
    bool connectInput(const QString& InputName, OrvSnBaseNode* pNode, const QString& OutputName = QString());
    void disconnectInput(const QString& InputName) { connectInput(InputName, nullptr); }
    /// Frees every input that this node feeds.
    void disconnectOutputs();
    /// Places the node in the node graph: type 9, one column to the right of the reference node.
    void setLayout(int LayoutType, OrvSnBaseNode* pReference, bool WholeSubGraph, bool Undoable);
    /// Removes the caches of every node downstream that holds this one.
    void propagateDeleteCache(bool Undoable);

    void setUserAttributeValue(const QString& Name, const QVariant& Value) override;
    void setUserAttributeEnabled(const QString& Name, bool Enabled) override;
    void createUserAttribute(const OrvCustomAttribute& Attribute) override;
    void removeUserAttribute(const QString& Name) override;

    /// What a description of the node holds besides the common parts (pixels); see OrvNodeDescription.
    virtual void describe(OrvNodeDescription& Description) const;
    virtual void adopt(const OrvNodeDescription& Description);

Q_SIGNALS:
    void nameChanged(const QString& Name);
    void inputNodeChanged(QString InputName, OrvSnBaseNode* pNode, QString OutputName);

protected:
    explicit OrvSnBaseNode(const QStringList& InputNames = {}, const QStringList& Tags = {});

    /// A free input at that place; false when it has one of that name. No edit: nothing can have changed by it.
    bool addInput(const QString& InputName, int Index);
    void applyUserAttribute(const OrvCustomAttribute& Attribute) override;
    void applyUserAttributeRemoval(const QString& Name) override;

    /// Evaluation (see OrvNodeEvaluation): a node either stands for another one, or has an engine node of its own.
    virtual bool isEvaluationAlias() const { return false; }
    virtual OrvSnBaseNode* evaluationAlias() const { return nullptr; }
    virtual std::unique_ptr<OrvEngineNode> createEngineNode() const;
    /// Names of the inputs behind the engine's pads, Base first; empty where there is none.
    virtual QStringList enginePadInputs() const;
    /// What is to stand between the engine node and what it reads at an input: neither layout (nothing is to be
    /// scaled) and not kept means nothing.
    virtual void describeInputStep(const QString& InputName, OrvInputStep& Step) const;
    /// Writes name, flags and attributes that matter to the engine node.
    virtual void updateEngineNode(OrvEngineNode&) const { }

private:
    friend class OrvNodeEvaluation;
    friend class OrvShaderNetwork;
    friend class OrvNodeFieldEdit;
    friend class OrvNodeTagEdit;
    friend class OrvNodeConnectionEdit;
    friend class OrvNodeAttributeEdit;

    enum class Field { Name, Locked, Blocked, Enabled, CacheActive, Position };
    QVariant field(Field Which) const;
    void editField(Field Which, const QVariant& Value, const QString& Text, bool Undoable = true);
    void applyField(Field Which, const QVariant& Value);
    void editTag(const QString& Tag, bool Carried, const QString& Text, bool Undoable);
    void applyTags(const QStringList& Tags);
    void applyEnabled(bool Enabled);
    void editAttribute(const OrvCustomAttribute& Before, const OrvCustomAttribute& After);
    void applyConnection(const QString& InputName, OrvSnBaseNode* pNode, const QString& OutputName);
    /// The network calls this when the node comes (null: goes).
    void enterNetwork(OrvShaderNetwork* pNetwork);
    /// Without telling anybody: the network goes as a whole.
    void dropInputs();
    void setReferenced(bool Referenced);

    OrvShaderNetwork* m_pNetwork = nullptr;
    QString m_Name;
    QStringList m_Tags;
    QVector<Input> m_Inputs;
    QVector<Consumer> m_Consumers;
    QPointF m_Position;
    std::unique_ptr<OrvEngineNode> m_pEngineNode;
    std::vector<OrvInputStep> m_InputSteps; ///< hardly any node has some
    OrvSnBaseNodeCacheActiveState m_CacheActive = OrvSnCacheInactive;
    bool m_Locked = false;
    bool m_Blocked = false;
    bool m_Enabled = true;
};

Q_DECLARE_METATYPE(OrvSnBaseNode*)
