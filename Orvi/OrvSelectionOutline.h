#pragma once

#include <QtGui/QPolygonF>
#include <QtGui/QRegion>

#include <vector>

class OrvCanvasView;
class QPainter;
class QPainterPath;

/// The line of marching ants around a selection, one pixel of the screen wide at any zoom. Only what lies in
/// the viewport is drawn, so that a large selection seen closely costs no more than a small one. The canvas
/// owns it.
class OrvSelectionOutline {
public:
    /// After how many steps the ants stand where they stood at first.
    static constexpr int Period = 8;

    /// Outlines in the picture; all of their polygons are closed.
    void setPaths(const QPainterPath& Selected, const QPainterPath& Draft);
    bool isEmpty() const { return m_Polygons.empty(); }

    /// The painter's unit is a device pixel.
    void draw(QPainter& Painter, const OrvCanvasView& View, const QRect& Viewport, double PixelRatio,
        int Step) const;
    /// Device pixels that draw() may touch.
    QRegion region(const OrvCanvasView& View, const QRect& Viewport, double PixelRatio) const;

private:
    /// A stretch of a polygon within the viewport, and how far along the polygon it begins.
    struct Stretch {
        QPolygonF Points;
        double Begin;
    };
    std::vector<Stretch> stretches(const OrvCanvasView& View, const QRectF& Viewport) const;

    std::vector<QPolygonF> m_Polygons;
};
