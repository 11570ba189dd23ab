#pragma once

#include "Orvi/OrvCanvasRenderer.h"

#include <QtCore/QHash>
#include <QtGui/QImage>
#include <QtGui/QRegion>

class OrvCanvasView;
class QPainter;

/// The pieces of the picture that have been computed, by level and tile, and which parts of them are out of
/// date. The canvas owns it. Outdated pixels are kept and shown until new ones come, so that nothing
/// flickers.
class OrvCanvasTiles {
public:
    /// Another picture: nothing is known of it.
    void reset(const QRect& Extent);
    const QRect& extent() const { return m_Extent; }
    void invalidate(const QRegion& Region);
    void put(const OrvCanvasRenderer::Piece& Finished, const QImage& Pixels);

    /// What is missing to show a part of the picture on a level: first a coarse view of all where there are
    /// no pixels yet for much of it, then tile by tile, those near the focus first.
    QVector<OrvCanvasRenderer::Piece> wishes(int Level, const QRect& VisiblePart, const QPointF& Focus) const;
    /// Tiles of the level; where they are outdated, finer ones, and where they are missing, coarser ones,
    /// too. The painter's unit is a device pixel.
    void draw(QPainter& Painter, const OrvCanvasView& View);
    /// Forgets tiles that were not drawn for the longest time.
    void trim();

private:
    struct Key {
        int Level;
        int Column, Row;
        bool operator==(const Key& Other) const
        {
            return Level == Other.Level && Column == Other.Column && Row == Other.Row;
        }
    };
    friend uint qHash(const Key& One, uint Seed = 0)
    {
        return ::qHash(
            quint64(One.Level) << 48 ^ quint64(uint(One.Row)) << 24 ^ quint64(uint(One.Column)), Seed);
    }
    struct Tile {
        QImage Pixels;
        QRegion Outdated; ///< in pixels of the level
        quint64 LastDrawn = 0;
    };

    QRect levelExtent(int Level) const;
    /// The tile's pixels that lie in the picture, in pixels of the level.
    QRect tileRect(const Key& Which) const;
    QVector<Key> tilesOf(int Level, const QRect& PictureRect) const;
    QRegion missingPart(const Key& Which) const;
    void drawTile(QPainter& Painter, const OrvCanvasView& View, const Key& Which);

    QRect m_Extent;
    QHash<Key, Tile> m_Tiles;
    quint64 m_Drawings = 0;
};
