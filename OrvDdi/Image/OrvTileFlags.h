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
        const QRect Inside = Region & m_Extent;
        if (Inside.isEmpty())
            return;
        for (int Row = column(Inside.top()); Row <= column(Inside.bottom()); ++Row) {
            for (int Column = column(Inside.left()); Column <= column(Inside.right()); ++Column) {
                const QRect Whole(Column * m_Edge, Row * m_Edge, m_Edge, m_Edge);
                Tile(Whole & m_Extent, m_Marks[index(Column, Row)]);
            }
        }
    }
    bool any(const QRect& Region) const
    {
        bool Found = false;
        const_cast<OrvTileFlags*>(this)->forTiles(
            Region, [&Found](const QRect&, const char& Mark) { Found |= Mark; });
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
        const_cast<OrvTileFlags*>(this)->forTiles(m_Extent, [&Bounds](const QRect& Tile, const char& Mark) {
            if (Mark)
                Bounds |= Tile;
        });
        return Bounds;
    }

private:
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
