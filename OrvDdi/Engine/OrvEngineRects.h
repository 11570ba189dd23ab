#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

#include <QtCore/QRect>

/// Rectangles of the engine and of the rest of the program.
namespace OrvEngineRects {

/// Stands for the whole plane; the engine's own infinite rectangle overflows when operations widen it.
constexpr int PlaneEdge = 1 << 20;
constexpr GeglRectangle Plane = {-PlaneEdge, -PlaneEdge, 2 * PlaneEdge, 2 * PlaneEdge};

inline GeglRectangle toEngine(const QRect& Rect)
{
    return {Rect.x(), Rect.y(), Rect.width(), Rect.height()};
}

/// The part within the plane.
inline QRect toQt(const GeglRectangle& Rect)
{
    GeglRectangle Inside;
    if (!gegl_rectangle_intersect(&Inside, &Rect, &Plane))
        return QRect();
    return QRect(Inside.x, Inside.y, Inside.width, Inside.height);
}

} // namespace OrvEngineRects
