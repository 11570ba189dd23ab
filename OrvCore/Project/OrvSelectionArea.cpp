#include "OrvCore/Project/OrvSelectionArea.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QJsonArray>
#include <QtGui/QRegion>
#include <QtGui/QTransform>

#include <cmath>

namespace {

/// Far less than a hundredth of a pixel of the largest images: what is left between edges that were meant to
/// meet.
constexpr double Sliver = 1e-11;

QTransform toPixels(const OrvUdimLayout& Layout)
{
    const QSize Tile = Layout.tileSize();
    return QTransform(Tile.width(), 0.0, 0.0, -Tile.height(), 0.0, Layout.extent().height());
}

QRegion regionOfTiles(const OrvUdimLayout& Layout)
{
    QRegion Tiles;
    for (const int Tile : Layout.tiles())
        Tiles += Layout.tileRect(Tile);
    return Tiles;
}

/// All tiles as one outline without the lines between them.
QPainterPath outlineOfTiles(const OrvUdimLayout& Layout)
{
    QPainterPath Tiles;
    Tiles.addRegion(regionOfTiles(Layout));
    return Tiles.simplified();
}

double enclosed(const QPolygonF& Polygon)
{
    double Twice = 0.0;
    for (int Index = 1; Index < Polygon.size(); ++Index)
        Twice += Polygon[Index - 1].x() * Polygon[Index].y() - Polygon[Index].x() * Polygon[Index - 1].y();
    return std::abs(Twice) / 2.0;
}

} // namespace

OrvSelectionArea::OrvSelectionArea(const QPainterPath& Outline)
{
    for (const QPolygonF& Polygon : Outline.toSubpathPolygons()) {
        if (enclosed(Polygon) < Sliver)
            continue;
        m_Outline.addPolygon(Polygon);
        m_Outline.closeSubpath();
    }
}

OrvSelectionArea OrvSelectionArea::fromPlane(const QPainterPath& Shape, const OrvUdimLayout& Layout)
{
    if (!Layout.isValid() || Shape.isEmpty())
        return OrvSelectionArea();
    QPainterPath Outline = Shape;
    Outline.setFillRule(Qt::WindingFill);
    Outline = Outline.simplified();
    if (!QRegion(Outline.boundingRect().toAlignedRect()).subtracted(regionOfTiles(Layout)).isEmpty())
        Outline = Outline.intersected(outlineOfTiles(Layout));
    return OrvSelectionArea(toPixels(Layout).inverted().map(Outline));
}

OrvSelectionArea OrvSelectionArea::ofAllTiles(const OrvUdimLayout& Layout)
{
    return Layout.isValid() ? OrvSelectionArea(toPixels(Layout).inverted().map(outlineOfTiles(Layout)))
                            : OrvSelectionArea();
}

OrvSelectionArea OrvSelectionArea::combinedWith(const OrvSelectionArea& Other, Combination How) const
{
    switch (How) {
    case Add:
        return OrvSelectionArea(m_Outline.united(Other.m_Outline));
    case Subtract:
        return OrvSelectionArea(m_Outline.subtracted(Other.m_Outline));
    case Intersect:
        return OrvSelectionArea(m_Outline.intersected(Other.m_Outline));
    case Replace:
        break;
    }
    return Other;
}

QPainterPath OrvSelectionArea::toPlane(const OrvUdimLayout& Layout) const
{
    return Layout.isValid() ? toPixels(Layout).map(m_Outline) : QPainterPath();
}

QJsonArray OrvSelectionArea::toJson() const
{
    QJsonArray Polygons;
    for (const QPolygonF& Polygon : m_Outline.toSubpathPolygons()) {
        QJsonArray Numbers;
        for (const QPointF& Point : Polygon) {
            Numbers.append(Point.x());
            Numbers.append(Point.y());
        }
        Polygons.append(Numbers);
    }
    return Polygons;
}

bool OrvSelectionArea::fromJson(const QJsonArray& Json, OrvSelectionArea& Area)
{
    QPainterPath Outline;
    for (const QJsonValue Value : Json) {
        const QJsonArray Numbers = Value.toArray();
        if (Numbers.isEmpty() || Numbers.size() % 2 != 0)
            return false;
        QPolygonF Polygon;
        for (int Index = 0; Index < Numbers.size(); Index += 2) {
            if (!Numbers[Index].isDouble() || !Numbers[Index + 1].isDouble())
                return false;
            Polygon.append(QPointF(Numbers[Index].toDouble(), Numbers[Index + 1].toDouble()));
        }
        Outline.addPolygon(Polygon);
        Outline.closeSubpath();
    }
    Area = OrvSelectionArea(Outline);
    return true;
}
