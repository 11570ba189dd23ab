#pragma once

#include "OrvCoreModules/Graph/OrvNodeLook.h"
#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QGraphicsItem>

class OrvSnBaseNode;
class OrvWireItem;

/// One node on the node graph's canvas. The scene makes it, tells it when its node has changed, and deletes
/// it once the node has left; until then it paints what it last knew. It edits nothing.
class ORVCOREMODULES_EXPORT OrvNodeItem : public QGraphicsItem {
public:
    enum { Type = UserType + 1 };

    explicit OrvNodeItem(OrvSnBaseNode* pNode);
    ~OrvNodeItem() override;

    int type() const override { return Type; }
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* pPainter, const QStyleOptionGraphicsItem* pOption, QWidget* pWidget) override;

    /// Null once the node has left its network.
    OrvSnBaseNode* node() const { return m_pNode; }
    void forgetNode() { m_pNode = nullptr; }
    /// Reads the node anew.
    void refresh();
    const OrvNodeLook& look() const { return m_Look; }
    QRectF body() const { return {QPointF(), m_Look.size()}; }
    QRectF titleBar() const { return {0.0, 0.0, OrvNodeLook::Width, OrvNodeLook::TitleHeight}; }

    /// In scene coordinates; an unknown name gets the first row.
    QPointF inputPoint(const QString& InputName) const;
    QPointF outputPoint(const QString& OutputName) const;
    /// The row of the connector at a place in item coordinates, -1 beside all of them.
    int inputAt(const QPointF& Place) const;
    int outputAt(const QPointF& Place) const;

    void addWire(OrvWireItem* pWire) { m_Wires.append(pWire); }
    void removeWire(OrvWireItem* pWire) { m_Wires.removeOne(pWire); }
    const QVector<OrvWireItem*>& wires() const { return m_Wires; }
    /// The wire into an input, or null.
    OrvWireItem* wireInto(const QString& InputName) const;

    /// Where a dragged wire would end: an input's row, an output's behind those, or nothing.
    enum class DropMark { None, Possible, Refused };
    void setDropMark(DropMark Mark);

protected:
    QVariant itemChange(GraphicsItemChange Change, const QVariant& Value) override;

private:
    void paintFar(QPainter* pPainter, qreal Scale) const;
    void paintNear(QPainter* pPainter) const;
    void paintTitle(QPainter* pPainter) const;
    void paintRows(QPainter* pPainter) const;
    void paintConnectors(QPainter* pPainter) const;
    QVector<QIcon> markIcons() const;
    QPen outline() const;

    OrvSnBaseNode* m_pNode;
    OrvNodeLook m_Look;
    QVector<OrvWireItem*> m_Wires;
    DropMark m_DropMark = DropMark::None;
};
