#pragma once

#include <QtCore/QRect>

#include <vector>

/// One mark for each square that a rectangle is cut into along a grid from the plane's origin. A value of
/// whoever keeps count of pixels by squares; it knows nothing of what the marks mean.
class OrvTileFlags {
public:
    OrvTileFlags(const QRect& Extent, int Edge)
        : m_Extent(Extent)
        , m_Edge(Edge)
        , m_Columns(column(Extent.right()) - column(Extent.left()) + 1)
        , m_Marks(size_t(m_Columns) * size_t(column(Extent.bottom()) - column(Extent.top()) + 1))
    {
    }

    /// Calls Tile(its part of the extent, its mark) for the squares that a region touches; the mark can be
    /// set.
    template <class Function>
    void forTiles(const QRect& Region, const Function& Tile)
    {
        forIndices(Region, [&](const QRect& Part, size_t Index) { Tile(Part, m_Marks[Index]); });
    }
    bool any(const QRect& Region) const
    {
        bool Found = false;
        forIndices(Region, [&](const QRect&, size_t Index) { Found |= m_Marks[Index]; });
        return Found;
    }
    void setAll(const QRect& Region, bool Marked)
    {
        forTiles(Region, [Marked](const QRect&, char& Mark) { Mark = Marked; });
    }
    /// Around all that is marked.
    QRect bounds() const
    {
        QRect Bounds;
        forIndices(m_Extent, [&](const QRect& Part, size_t Index) {
            if (m_Marks[Index])
                Bounds |= Part;
        });
        return Bounds;
    }

private:
    template <class Function>
    void forIndices(const QRect& Region, const Function& Square) const
    {
        const QRect Inside = Region & m_Extent;
        if (Inside.isEmpty())
            return;
        for (int Row = column(Inside.top()); Row <= column(Inside.bottom()); ++Row) {
            for (int Column = column(Inside.left()); Column <= column(Inside.right()); ++Column) {
                const QRect Whole(Column * m_Edge, Row * m_Edge, m_Edge, m_Edge);
                Square(Whole & m_Extent, index(Column, Row));
            }
        }
    }
    /// Of rows too; rounds down to the left of the origin.
    int column(int Position) const
    {
        return Position >= 0 ? Position / m_Edge : -((m_Edge - 1 - Position) / m_Edge);
    }
    size_t index(int Column, int Row) const
    {
        return size_t(Row - column(m_Extent.top())) * size_t(m_Columns)
            + size_t(Column - column(m_Extent.left()));
    }

    QRect m_Extent;
    int m_Edge, m_Columns;
    std::vector<char> m_Marks;
};
