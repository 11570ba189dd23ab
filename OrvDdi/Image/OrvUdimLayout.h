#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QVector>

/// Where the UDIM tiles of an object lie in one pixel plane: tile 1001 + u + 10 v stands in column u, and v grows
/// upwards while rows grow downwards. A value; every image set of a channel has the same one.
class ORVDDI_EXPORT OrvUdimLayout {
public:
    OrvUdimLayout() = default;
    /// Tiles are sorted and made unique; numbers outside 1001 to 9999 are dropped. An empty
    /// list means the one tile 1001.
    explicit OrvUdimLayout(const QSize& TileSize, const QVector<int>& Tiles = {1001});

    bool isValid() const { return !m_TileSize.isEmpty(); }
    QSize tileSize() const { return m_TileSize; }
    const QVector<int>& tiles() const { return m_Tiles; }
    /// The plane that holds all tiles; its top left pixel is (0, 0).
    QRect extent() const;
    /// Empty for a tile that is not in the layout.
    QRect tileRect(int Tile) const;
    OrvUdimLayout resized(const QSize& TileSize) const { return OrvUdimLayout(TileSize, m_Tiles); }

    bool operator==(const OrvUdimLayout& Other) const
    {
        return m_TileSize == Other.m_TileSize && m_Tiles == Other.m_Tiles;
    }
    bool operator!=(const OrvUdimLayout& Other) const { return !(*this == Other); }

private:
    QSize m_TileSize;
    QVector<int> m_Tiles;
};
