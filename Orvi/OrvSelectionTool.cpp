#include "Orvi/OrvSelectionTool.h"

#include "Orvi/OrvCanvasSelection.h"

#include <cmath>

namespace {

QPointF nearestCorner(const QPointF& Point)
{
    return QPointF(std::round(Point.x()), std::round(Point.y()));
}

} // namespace

OrvSelectionTool::OrvSelectionTool(OrvCanvasSelection* pSelection, QObject* pParent)
    : QObject(pParent)
    , m_pSelection(pSelection)
{
}

void OrvSelectionTool::setShape(Shape NewShape)
{
    cancel();
    m_Shape = NewShape;
}

void OrvSelectionTool::setMode(OrvSelectionArea::Combination Mode)
{
    if (m_Mode == Mode)
        return;
    m_Mode = Mode;
    Q_EMIT modeChanged();
}

OrvSelectionArea::Combination OrvSelectionTool::combination(
    Qt::KeyboardModifiers Modifiers, OrvSelectionArea::Combination Mode)
{
    const bool Shift = Modifiers & Qt::ShiftModifier;
    const bool Alt = Modifiers & Qt::AltModifier;
    return Shift && Alt ? OrvSelectionArea::Intersect
        : Shift         ? OrvSelectionArea::Add
        : Alt           ? OrvSelectionArea::Subtract
                        : Mode;
}

void OrvSelectionTool::begin(
    const QPointF& Point, const OrvUdimLayout& Layout, Qt::KeyboardModifiers Modifiers)
{
    m_Layout = Layout;
    m_Combination = combination(Modifiers, m_Mode);
    m_Points = QPolygonF(QVector<QPointF>{Point});
    Q_EMIT draftChanged();
}

void OrvSelectionTool::moveTo(const QPointF& Point)
{
    if (!isSelecting() || m_Points.last() == Point)
        return;
    if (m_Shape == Rectangle)
        m_Points.resize(1);
    m_Points.append(Point);
    Q_EMIT draftChanged();
}

QPainterPath OrvSelectionTool::draft() const
{
    QPainterPath Path;
    if (m_Points.size() < 2)
        return Path;
    if (m_Shape == Rectangle) {
        Path.addRect(QRectF(nearestCorner(m_Points.first()), nearestCorner(m_Points.last())).normalized());
    } else {
        Path.addPolygon(m_Points);
        Path.closeSubpath();
    }
    return Path;
}

void OrvSelectionTool::end()
{
    if (!isSelecting())
        return;
    const OrvSelectionArea Drawn = OrvSelectionArea::fromPlane(draft(), m_Layout);
    cancel();
    if (!Drawn.isEmpty() || m_Combination == OrvSelectionArea::Replace)
        m_pSelection->setArea(m_pSelection->area().combinedWith(Drawn, m_Combination));
}

void OrvSelectionTool::cancel()
{
    if (!isSelecting())
        return;
    m_Points.clear();
    Q_EMIT draftChanged();
}

#include "moc_OrvSelectionTool.cpp"
