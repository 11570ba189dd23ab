#include "Orvi/OrvSelectionOutline.h"

#include "Orvi/OrvCanvasView.h"

#include <QtCore/QLineF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace {

constexpr double Dash = OrvSelectionOutline::Period / 2.0; // pixels of the screen
constexpr int CellEdge = 64; // device pixels

int cellOf(double Position)
{
    return int(std::floor(Position / CellEdge));
}

/// The part of a line within a rectangle, as parameters from 0 to 1 (Liang and Barsky); false for none.
bool clip(const QLineF& Line, const QRectF& Rect, double& From, double& To)
{
    From = 0.0;
    To = 1.0;
    const double Moves[] = {-Line.dx(), Line.dx(), -Line.dy(), Line.dy()};
    const double Rooms[] = {
        Line.x1() - Rect.left(), Rect.right() - Line.x1(), Line.y1() - Rect.top(), Rect.bottom() - Line.y1()};
    for (int Side = 0; Side < 4; ++Side) {
        if (Moves[Side] == 0.0) {
            if (Rooms[Side] < 0.0)
                return false;
            continue;
        }
        const double Crossing = Rooms[Side] / Moves[Side];
        if (Moves[Side] < 0.0)
            From = std::max(From, Crossing);
        else
            To = std::min(To, Crossing);
    }
    return From <= To;
}

} // namespace

void OrvSelectionOutline::setPaths(const QPainterPath& Selected, const QPainterPath& Draft)
{
    m_Polygons.clear();
    for (const QPainterPath& Path : {Selected, Draft}) {
        for (const QPolygonF& Polygon : Path.toSubpathPolygons())
            m_Polygons.push_back(Polygon);
    }
}

std::vector<OrvSelectionOutline::Stretch> OrvSelectionOutline::stretches(
    const OrvCanvasView& View, const QRectF& Viewport) const
{
    std::vector<Stretch> Found;
    for (const QPolygonF& Polygon : m_Polygons) {
        double Along = 0.0;
        bool Joins = false;
        for (int Index = 1; Index < Polygon.size(); ++Index) {
            const QLineF Line(View.toViewport(Polygon[Index - 1]), View.toViewport(Polygon[Index]));
            const double Length = Line.length();
            double From, To;
            if (Length > 0.0 && clip(Line, Viewport, From, To)) {
                if (!Joins || From > 0.0)
                    Found.push_back({QPolygonF(QVector<QPointF>{Line.pointAt(From)}), Along + From * Length});
                Found.back().Points.append(Line.pointAt(To));
                Joins = To == 1.0;
            } else if (Length > 0.0) {
                Joins = false;
            }
            Along += Length;
        }
    }
    return Found;
}

void OrvSelectionOutline::draw(
    QPainter& Painter, const OrvCanvasView& View, const QRect& Viewport, double PixelRatio, int Step) const
{
    const double Width = std::max(1.0, std::round(PixelRatio));
    QPen Dark(Qt::black, Width);
    Dark.setCosmetic(true);
    Dark.setCapStyle(Qt::FlatCap);
    QPen Light = Dark;
    Light.setColor(Qt::white);
    Light.setDashPattern({Dash, Dash});
    Painter.save();
    Painter.setRenderHint(QPainter::Antialiasing, false);
    Painter.setBrush(Qt::NoBrush);
    const QRectF Reach = QRectF(Viewport).adjusted(-2.0 * Width, -2.0 * Width, 2.0 * Width, 2.0 * Width);
    for (Stretch& One : stretches(View, Reach)) {
        // A line between two pixels belongs to the right one and the lower one, wherever it comes from.
        for (QPointF& Point : One.Points)
            Point = QPointF(std::floor(Point.x() + 1e-6), std::floor(Point.y() + 1e-6));
        Painter.setPen(Dark);
        Painter.drawPolyline(One.Points);
        Light.setDashOffset(std::fmod(One.Begin / Width, double(Period)) - Step);
        Painter.setPen(Light);
        Painter.drawPolyline(One.Points);
    }
    Painter.restore();
}

QRegion OrvSelectionOutline::region(const OrvCanvasView& View, const QRect& Viewport, double PixelRatio) const
{
    // Cells that the line runs through: a region of many small boxes would cost more than it saves.
    std::set<std::pair<int, int>> Cells;
    const double Margin = PixelRatio + 1.0;
    for (const Stretch& One : stretches(View, Viewport)) {
        for (int Index = 1; Index < One.Points.size(); ++Index) {
            const QLineF Line(One.Points[Index - 1], One.Points[Index]);
            const int Pieces = std::max(1, int(std::ceil(Line.length() / CellEdge)));
            for (int Piece = 0; Piece < Pieces; ++Piece) {
                const QRectF Box
                    = QRectF(Line.pointAt(double(Piece) / Pieces), Line.pointAt(double(Piece + 1) / Pieces))
                          .normalized()
                          .adjusted(-Margin, -Margin, Margin, Margin);
                for (int Row = cellOf(Box.top()); Row <= cellOf(Box.bottom()); ++Row) {
                    for (int Column = cellOf(Box.left()); Column <= cellOf(Box.right()); ++Column)
                        Cells.emplace(Row, Column);
                }
            }
        }
    }
    QRegion Region;
    for (const auto& Cell : Cells)
        Region += QRect(Cell.second * CellEdge, Cell.first * CellEdge, CellEdge, CellEdge);
    return Region.intersected(Viewport);
}
