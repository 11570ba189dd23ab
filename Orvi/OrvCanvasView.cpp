#include "Orvi/OrvCanvasView.h"

#include <QtCore/QtMath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double FitMargin = 0.04; // of the viewport, around a fitted picture
constexpr double LeastVisible = 48.0; // device pixels of the picture that no panning hides

} // namespace

void OrvCanvasView::setViewport(const QSize& Size)
{
    const QPointF Moved(
        (Size.width() - m_Viewport.width()) / 2.0, (Size.height() - m_Viewport.height()) / 2.0);
    m_Viewport = Size;
    if (m_Fitted)
        fit();
    else
        panBy(Moved);
}

void OrvCanvasView::setContent(const QRectF& Content)
{
    if (m_Content == Content)
        return;
    m_Content = Content;
    fit();
}

void OrvCanvasView::fit()
{
    m_Fitted = true;
    if (m_Content.isEmpty() || m_Viewport.isEmpty())
        return;
    const QSizeF Room = m_Viewport * (1.0 - 2.0 * FitMargin);
    const double Zoom = std::min(Room.width() / m_Content.width(), Room.height() / m_Content.height());
    m_Zoom = std::clamp(Zoom, SmallestZoom, LargestZoom);
    const QPointF Centre(m_Viewport.width() / 2.0, m_Viewport.height() / 2.0);
    const QPointF Origin = Centre - m_Content.center() * m_Zoom;
    m_Origin = QPointF(std::round(Origin.x()), std::round(Origin.y()));
}

void OrvCanvasView::zoomAt(const QPointF& ViewportPoint, double NewZoom)
{
    const QPointF Anchor = toPicture(ViewportPoint);
    m_Zoom = std::clamp(NewZoom, SmallestZoom, LargestZoom);
    m_Origin = ViewportPoint - Anchor * m_Zoom;
    m_Fitted = false;
    keepInReach();
}

void OrvCanvasView::panBy(const QPointF& Distance)
{
    m_Origin += Distance;
    m_Fitted = false;
    keepInReach();
}

void OrvCanvasView::keepInReach()
{
    const QRectF Shown = toViewport(m_Content);
    if (Shown.isEmpty() || m_Viewport.isEmpty())
        return;
    const double Left
        = std::clamp(Shown.left(), LeastVisible - Shown.width(), m_Viewport.width() - LeastVisible);
    const double Top
        = std::clamp(Shown.top(), LeastVisible - Shown.height(), m_Viewport.height() - LeastVisible);
    m_Origin += QPointF(Left - Shown.left(), Top - Shown.top());
    // Whole device pixels keep a picture at 100 % crisp.
    m_Origin = QPointF(std::round(m_Origin.x()), std::round(m_Origin.y()));
}

QRect OrvCanvasView::visiblePart() const
{
    const QRectF Part(toPicture(QPointF(0.0, 0.0)), m_Viewport / m_Zoom);
    return Part.intersected(m_Content).toAlignedRect();
}

int OrvCanvasView::mipLevel() const
{
    constexpr double Tolerance = 1e-6;
    return std::max(0, int(std::floor(-std::log2(m_Zoom) + Tolerance)));
}
