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
    const QRect Touched = QRectF(Centre.x() - Reach, Centre.y() - Reach, 2.0 * Reach, 2.0 * Reach)
                              .toAlignedRect()
                              .intersected(Bounds);
    for (const QRect& Piece : cutToSquares(Touched)) {
        std::vector<float>& Square = m_Squares[placeOf(Piece.topLeft())];
        if (Square.empty())
            Square.resize(std::size_t(Edge) * Edge, 0.0f);
        for (int Y = Piece.top(); Y <= Piece.bottom(); ++Y) {
            float* pCoverage = Square.data() + offsetInSquare(QPoint(Piece.left(), Y));
            const float Down = float(Y + 0.5 - Centre.y());
            for (int X = Piece.left(); X <= Piece.right(); ++X, ++pCoverage) {
                const float Across = float(X + 0.5 - Centre.x());
                *pCoverage = std::max(*pCoverage, Brush.coverage(std::sqrt(Across * Across + Down * Down)));
            }
        }
    }
    return Touched;
}

const float* OrvStrokeCoverage::at(const QPoint& Pixel) const
{
    const auto Found = m_Squares.constFind(placeOf(Pixel));
    return Found == m_Squares.constEnd() ? nullptr : Found->data() + offsetInSquare(Pixel);
}

QVector<QRect> OrvStrokeCoverage::touchedSquares() const
{
    QVector<QRect> Squares;
    Squares.reserve(m_Squares.size());
    for (auto Entry = m_Squares.begin(); Entry != m_Squares.end(); ++Entry)
        Squares.append(QRect(Entry.key().first * Edge, Entry.key().second * Edge, Edge, Edge));
    return Squares;
}
