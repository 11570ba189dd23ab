#include "OrvCoreModules/Graph/OrvWireItem.h"

#include "OrvCoreModules/Graph/OrvNodeItem.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

namespace {

constexpr qreal NearScale = 0.3; // below this scale a curve is a line
constexpr qreal HitWidth = 10.0;
constexpr qreal LeastReach = 30.0, GreatestReach = 140.0;

const QColor Plain(0x8a, 0x8a, 0x8a), Attached(0xc8, 0xc8, 0xc8);

} // namespace

OrvWireItem::OrvWireItem(
    OrvNodeItem* pSource, const QString& OutputName, OrvNodeItem* pTarget, const QString& InputName)
    : m_pSource(pSource)
    , m_pTarget(pTarget)
    , m_OutputName(OutputName)
    , m_InputName(InputName)
{
    setFlag(ItemIsSelectable);
    m_pSource->addWire(this);
    m_pTarget->addWire(this);
    follow();
}

OrvWireItem::~OrvWireItem()
{
    m_pSource->removeWire(this);
    m_pTarget->removeWire(this);
}

QPainterPath OrvWireItem::curve(const QPointF& Output, const QPointF& Input)
{
    const qreal Across = Input.x() - Output.x();
    // A wire that leads back swings out, so that it can be told from what it passes.
    const qreal Wanted = Across >= 0.0 ? Across / 2.0 : LeastReach - Across / 2.0;
    const qreal Reach = qBound(LeastReach, Wanted, GreatestReach);
    QPainterPath Path(Output);
    Path.cubicTo(Output + QPointF(Reach, 0.0), Input - QPointF(Reach, 0.0), Input);
    return Path;
}

void OrvWireItem::follow()
{
    const QPointF Output = m_pSource->outputPoint(m_OutputName), Input = m_pTarget->inputPoint(m_InputName);
    if (m_Curve.elementCount() > 0 && QPointF(m_Curve.elementAt(0)) == Output
        && m_Curve.currentPosition() == Input)
        return;
    prepareGeometryChange();
    m_Curve = curve(Output, Input);
    m_Bounds = m_Curve.controlPointRect().adjusted(-HitWidth, -HitWidth, HitWidth, HitWidth);
}

QPainterPath OrvWireItem::shape() const
{
    QPainterPathStroker Stroker;
    Stroker.setWidth(HitWidth);
    return Stroker.createStroke(m_Curve);
}

void OrvWireItem::paint(QPainter* pPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const bool AtSelection = m_pSource->isSelected() || m_pTarget->isSelected();
    QPen Pen(isSelected() ? OrvCustomFusionStyle::accentColor().lighter(130)
            : AtSelection ? Attached
                          : Plain,
        isSelected() ? 2.5 : 1.6);
    if (QStyleOptionGraphicsItem::levelOfDetailFromTransform(pPainter->worldTransform()) < NearScale) {
        Pen.setWidth(0);
        pPainter->setPen(Pen);
        pPainter->drawLine(m_Curve.elementAt(0), m_Curve.currentPosition());
        return;
    }
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(Pen);
    pPainter->setBrush(Qt::NoBrush);
    pPainter->drawPath(m_Curve);
}
