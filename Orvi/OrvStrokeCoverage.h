#pragma once

#include "Orvi/OrvSelectionCoverage.h"

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QVector>

#include <vector>

class OrvBrush;

/// How much each pixel is covered by one stroke: the most that any of its dabs covers, so that a stroke that
/// crosses itself grows no darker and soft edges stay soft however close the dabs lie. Dabs may differ in
/// size and opacity. A selection lets through what it covers. Sparse, in squares; owned by the stroke.
class OrvStrokeCoverage {
public:
    static constexpr int SquareEdge = 128;

    explicit OrvStrokeCoverage(const OrvSelectionCoverage& Selection)
        : m_Selection(Selection)
    {
    }

    /// Adds one dab; pixels outside the bounds are left out. Returns what may have changed.
    QRect addDab(const OrvBrush& Brush, const QPointF& Centre, const QRect& Bounds);

    /// The squares that a rectangle meets, each cut to the rectangle.
    static QVector<QRect> cutToSquares(const QRect& Rect);
    /// Coverage of pixels that lie in one square; null where no dab came or nothing is selected.
    const float* at(const QPoint& Pixel) const;
    /// Every square that was touched and holds anything selected.
    QVector<QRect> touchedSquares() const;

private:
    using Place = QPair<int, int>; ///< column and row of a square
    struct Square {
        std::vector<float> Covered; ///< empty: nothing is selected
        QImage Selected; ///< null: everything is
    };
    static Place placeOf(const QPoint& Pixel);
    static QRect rectOf(const Place& Where);
    Square makeSquare(const Place& Where) const;

    OrvSelectionCoverage m_Selection;
    QHash<Place, Square> m_Squares;
};
