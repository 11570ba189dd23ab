#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QGraphicsItem>

class OrvNodeItem;

/// One connection on the node graph's canvas, from an output to an input. It belongs to the two node items
/// that it joins: either of them takes it along when it goes.
class ORVCOREMODULES_EXPORT OrvWireItem : public QGraphicsItem {
public:
    enum { Type = UserType + 2 };

    OrvWireItem(
        OrvNodeItem* pSource, const QString& OutputName, OrvNodeItem* pTarget, const QString& InputName);
    ~OrvWireItem() override;

    int type() const override { return Type; }
    QRectF boundingRect() const override { return m_Bounds; }
    /// Wider than the line: a wire is to be hit without aiming.
    QPainterPath shape() const override;
    void paint(QPainter* pPainter, const QStyleOptionGraphicsItem* pOption, QWidget* pWidget) override;

    OrvNodeItem* source() const { return m_pSource; }
    OrvNodeItem* target() const { return m_pTarget; }
    const QString& outputName() const { return m_OutputName; }
    const QString& inputName() const { return m_InputName; }

    /// Takes the line along to where its ends are now.
    void follow();
    /// The way from an output to an input, for wires that are being dragged too.
    static QPainterPath curve(const QPointF& Output, const QPointF& Input);

private:
    OrvNodeItem* m_pSource;
    OrvNodeItem* m_pTarget;
    QString m_OutputName, m_InputName;
    QPainterPath m_Curve;
    QRectF m_Bounds;
};
