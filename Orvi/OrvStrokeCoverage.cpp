#include "Orvi/OrvStrokeCoverage.h"

#include "Orvi/OrvBrush.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int Edge = OrvStrokeCoverage::SquareEdge;

int squareOf(int Pixel)
{
    return int(std::floor(double(Pixel) / Edge));
}

std::size_t offsetInSquare(const QPoint& Pixel)
{
    return std::size_t(Pixel.y() - squareOf(Pixel.y()) * Edge) * Edge
        + std::size_t(Pixel.x() - squareOf(Pixel.x()) * Edge);
}

} // namespace

OrvStrokeCoverage::Place OrvStrokeCoverage::placeOf(const QPoint& Pixel)
{
    return {squareOf(Pixel.x()), squareOf(Pixel.y())};
}

QRect OrvStrokeCoverage::rectOf(const Place& Where)
{
    return QRect(Where.first * Edge, Where.second * Edge, Edge, Edge);
}

QVector<QRect> OrvStrokeCoverage::cutToSquares(const QRect& Rect)
{
    QVector<QRect> Pieces;
    if (Rect.isEmpty())
        return Pieces;
    for (int Row = squareOf(Rect.top()); Row <= squareOf(Rect.bottom()); ++Row) {
        for (int Column = squareOf(Rect.left()); Column <= squareOf(Rect.right()); ++Column)
            Pieces.append(QRect(Column * Edge, Row * Edge, Edge, Edge).intersected(Rect));
    }
    return Pieces;
}

QRect OrvStrokeCoverage::addDab(const OrvBrush& Brush, const QPointF& Centre, const QRect& Bounds)
{
    const double Reach = Brush.reach();
    const float Opacity = float(Brush.opacity());
    const QRect Touched = QRectF(Centre.x() - Reach, Centre.y() - Reach, 2.0 * Reach, 2.0 * Reach)
                              .toAlignedRect()
                              .intersected(Bounds);
    for (const QRect& Piece : cutToSquares(Touched)) {
        const Place Where = placeOf(Piece.topLeft());
        if (!m_Squares.contains(Where))
            m_Squares.insert(Where, makeSquare(Where));
        Square& Painted = m_Squares[Where];
        if (Painted.Covered.empty())
            continue;
        const QPoint Corner = rectOf(Where).topLeft();
        for (int Y = Piece.top(); Y <= Piece.bottom(); ++Y) {
            float* pCovered = Painted.Covered.data() + offsetInSquare(QPoint(Piece.left(), Y));
            const uchar* pSelected = Painted.Selected.isNull()
                ? nullptr
                : Painted.Selected.constScanLine(Y - Corner.y()) + (Piece.left() - Corner.x());
            const float Down = float(Y + 0.5 - Centre.y());
            for (int X = Piece.left(); X <= Piece.right(); ++X, ++pCovered) {
                const float Across = float(X + 0.5 - Centre.x());
                const float Selected = pSelected ? float(*pSelected++) / 255.0f : 1.0f;
                const float Covered = Brush.coverage(std::sqrt(Across * Across + Down * Down));
                *pCovered = std::max(*pCovered, Selected * Opacity * Covered);
            }
        }
    }
    return Touched;
}

OrvStrokeCoverage::Square OrvStrokeCoverage::makeSquare(const Place& Where) const
{
    Square Made;
    Made.Covered.resize(std::size_t(Edge) * Edge, 0.0f);
    if (m_Selection.isEverything())
        return Made;
    Made.Selected = m_Selection.raster(rectOf(Where));
    // Rows of a square lie without gaps.
    const uchar* pFirst = Made.Selected.constBits();
    const uchar* pEnd = pFirst + Made.Selected.sizeInBytes();
    if (std::all_of(pFirst, pEnd, [](uchar Selected) { return Selected == 0; }))
        return Square();
    if (std::all_of(pFirst, pEnd, [](uchar Selected) { return Selected == 255; }))
        Made.Selected = QImage();
    return Made;
}

const float* OrvStrokeCoverage::at(const QPoint& Pixel) const
{
    const auto Found = m_Squares.constFind(placeOf(Pixel));
    return Found == m_Squares.constEnd() || Found->Covered.empty()
        ? nullptr
        : Found->Covered.data() + offsetInSquare(Pixel);
}

QVector<QRect> OrvStrokeCoverage::touchedSquares() const
{
    QVector<QRect> Squares;
    Squares.reserve(m_Squares.size());
    for (auto Entry = m_Squares.begin(); Entry != m_Squares.end(); ++Entry) {
        if (!Entry->Covered.empty())
            Squares.append(rectOf(Entry.key()));
    }
    return Squares;
}
