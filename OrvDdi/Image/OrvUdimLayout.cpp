#include "OrvDdi/Image/OrvUdimLayout.h"

#include <algorithm>

namespace {

constexpr int FirstTile = 1001;
constexpr int LastTile = 9999;
constexpr int Columns = 10;

int columnOf(int Tile)
{
    return (Tile - FirstTile) % Columns;
}

int rowOf(int Tile)
{
    return (Tile - FirstTile) / Columns;
}

} // namespace

OrvUdimLayout::OrvUdimLayout(const QSize& TileSize, const QVector<int>& Tiles)
    : m_TileSize(TileSize)
    , m_Tiles(Tiles)
{
    const auto isNoTile = [](int Tile) { return Tile < FirstTile || Tile > LastTile; };
    m_Tiles.erase(std::remove_if(m_Tiles.begin(), m_Tiles.end(), isNoTile), m_Tiles.end());
    std::sort(m_Tiles.begin(), m_Tiles.end());
    m_Tiles.erase(std::unique(m_Tiles.begin(), m_Tiles.end()), m_Tiles.end());
    if (m_Tiles.isEmpty())
        m_Tiles.append(FirstTile);
}

QRect OrvUdimLayout::extent() const
{
    if (!isValid() || m_Tiles.isEmpty())
        return QRect();
    int Widest = 0;
    for (const int Tile : m_Tiles)
        Widest = qMax(Widest, columnOf(Tile));
    const int Highest = rowOf(m_Tiles.last());
    return QRect(0, 0, (Widest + 1) * m_TileSize.width(), (Highest + 1) * m_TileSize.height());
}

QRect OrvUdimLayout::tileRect(int Tile) const
{
    if (!isValid() || !std::binary_search(m_Tiles.begin(), m_Tiles.end(), Tile))
        return QRect();
    const int FromTop = rowOf(m_Tiles.last()) - rowOf(Tile);
    return QRect(QPoint(columnOf(Tile) * m_TileSize.width(), FromTop * m_TileSize.height()), m_TileSize);
}
