#pragma once

#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QRectF>
#include <QtCore/QSize>

/// Where the picture lies in the canvas: zoom and place. The canvas owns it; it knows nothing of pixels or
/// widgets. Coordinates of the viewport are device pixels, so that a zoom of 1 shows each pixel of the
/// picture as one.
class OrvCanvasView {
public:
    static constexpr double SmallestZoom = 1.0 / 128.0;
    static constexpr double LargestZoom = 64.0;

    void setViewport(const QSize& Size);
    const QSizeF& viewport() const { return m_Viewport; }
    void setContent(const QRectF& Content);
    const QRectF& content() const { return m_Content; }

    double zoom() const { return m_Zoom; }
    /// Scales about a point of the viewport, which stays where it is in the picture.
    void zoomAt(const QPointF& ViewportPoint, double NewZoom);
    void panBy(const QPointF& Distance);
    /// Shows all of the content, centred, and keeps doing so when the viewport changes, until zoomed or
    /// panned.
    void fit();

    QPointF toPicture(const QPointF& ViewportPoint) const { return (ViewportPoint - m_Origin) / m_Zoom; }
    QPointF toViewport(const QPointF& PicturePoint) const { return PicturePoint * m_Zoom + m_Origin; }
    QRectF toViewport(const QRectF& PictureRect) const
    {
        return QRectF(toViewport(PictureRect.topLeft()), PictureRect.size() * m_Zoom);
    }
    /// The part of the picture that the viewport shows.
    QRect visiblePart() const;
    /// How often the picture is halved before it is drawn; what is left to shrink is less than a half.
    int mipLevel() const;

private:
    void keepInReach();

    QSizeF m_Viewport;
    QRectF m_Content;
    QPointF m_Origin; ///< of the picture, in the viewport
    double m_Zoom = 1.0;
    bool m_Fitted = true;
};
