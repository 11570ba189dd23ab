#pragma once

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QVector>

#include <vector>

class OrvBrush;

/// How much each pixel is covered by one stroke: the most that any of its dabs covers, so that a stroke that
/// crosses itself grows no darker and soft edges stay soft however close the dabs lie. Sparse, in squares;
/// owned by the stroke.
class OrvStrokeCoverage {
public:
    static constexpr int SquareEdge = 128;

    /// Adds one dab; pixels outside the bounds are left out. Returns what may have changed.
    QRect addDab(const OrvBrush& Brush, const QPointF& Centre, const QRect& Bounds);

    /// The squares that a rectangle meets, each cut to the rectangle.
    static QVector<QRect> cutToSquares(const QRect& Rect);
    /// Coverage of pixels that lie in one square; null where no dab came.
    const float* at(const QPoint& Pixel) const;
    /// Every square that was touched.
    QVector<QRect> touchedSquares() const;

private:
    using Place = QPair<int, int>; ///< column and row of a square
    static Place placeOf(const QPoint& Pixel);

    QHash<Place, std::vector<float>> m_Squares;
};
