#pragma once

#include "OrvCoreModules/Graph/OrvNodeGraphCommands.h"
#include "OrvCoreModules/Graph/OrvNodeGraphScene.h"

#include <QtGui/QPainterPath>

class QPainter;

/// What the mouse does between press and release. The view makes one when the mouse has moved far enough,
/// leads it, and deletes it. Nodes that leave meanwhile are looked up anew: it never holds on to an item.
class OrvNodeGraphGesture {
public:
    explicit OrvNodeGraphGesture(OrvNodeGraphScene* pScene)
        : m_pScene(pScene)
    {
    }
    virtual ~OrvNodeGraphGesture();
    OrvNodeGraphGesture(const OrvNodeGraphGesture&) = delete;
    OrvNodeGraphGesture& operator=(const OrvNodeGraphGesture&) = delete;

    virtual void moveTo(const QPointF& Place) = 0;
    virtual void finish() = 0;
    virtual void cancel() = 0;
    /// What is drawn above the items, and how far that reaches.
    virtual void paint(QPainter*) const { }
    virtual QRectF extent() const { return {}; }

protected:
    OrvNodeGraphScene* scene() const { return m_pScene; }

private:
    OrvNodeGraphScene* m_pScene;
};

/// Moves the selected nodes; the document learns of it at the end.
class OrvNodeMoveGesture : public OrvNodeGraphGesture {
public:
    OrvNodeMoveGesture(OrvNodeGraphScene* pScene, const QPointF& Start);
    void moveTo(const QPointF& Place) override;
    void finish() override;
    void cancel() override;

private:
    QPointF m_Start;
    QHash<OrvSnBaseNode*, QPointF> m_Before;
};

/// Selects the nodes that a rectangle touches, besides those given.
class OrvAreaSelectGesture : public OrvNodeGraphGesture {
public:
    OrvAreaSelectGesture(
        OrvNodeGraphScene* pScene, const QPointF& Start, const QVector<OrvSnBaseNode*>& Kept);
    void moveTo(const QPointF& Place) override;
    void finish() override { }
    void cancel() override;
    void paint(QPainter* pPainter) const override;
    QRectF extent() const override { return m_Area; }

private:
    void select(const QRectF& Area);

    QPointF m_Start;
    QSet<const OrvSnBaseNode*> m_Kept;
    QRectF m_Area;
};

/// Draws a wire from a connector: a free input looks for an output, an output for an input, and an input that
/// is fed lets its wire go.
class OrvWireGesture : public OrvNodeGraphGesture {
public:
    OrvWireGesture(OrvNodeGraphScene* pScene, const OrvNodeGraphScene::Spot& From);
    ~OrvWireGesture() override;
    void moveTo(const QPointF& Place) override;
    void finish() override;
    void cancel() override { }
    void paint(QPainter* pPainter) const override;
    QRectF extent() const override;

private:
    OrvNodeItem* fixedItem() const;
    QPainterPath curve() const;
    /// The connection that dropping here would make; without a node where there is none.
    OrvNodeGraphCommands::Link linkTo(const OrvNodeGraphScene::Spot& Spot) const;
    /// Why there is none at a node where one was looked for; empty where nothing was.
    QString whyNoLink(const OrvNodeGraphScene::Spot& Spot) const;
    static QString inputFor(const OrvNodeItem* pItem, int Row);
    bool isDetachedFrom(const OrvNodeGraphCommands::Link& Link) const;
    void clearMark();
    void showDetached(bool Shown);

    OrvNodeGraphCommands::Link m_Fixed; ///< only the end that the wire starts at
    OrvSnBaseNode::Consumer m_Detached;
    OrvNodeGraphCommands::Link m_Wanted;
    QString m_Refusal;
    OrvSnBaseNode* m_pMarked = nullptr; ///< compared and looked up only
    QPointF m_End;
};
