#include "Orvi/OrvCanvasTiles.h"

#include "Orvi/OrvCanvasView.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int Edge = OrvCanvasRenderer::TileEdge;
constexpr int CoarseStep = 3; // levels between a tile and the coarse one shown meanwhile
constexpr int MuchMissing = 6; // tiles; from there on a coarse view comes first
constexpr int MostTiles = 1024; // kept: 256 MB

/// The smallest rectangle of the next levels that covers one of this level.
QRect shrunk(const QRect& Rect, int Levels)
{
    const int Scale = 1 << Levels;
    const auto down = [Scale](int Value) { return int(std::floor(double(Value) / Scale)); };
    return QRect(
        QPoint(down(Rect.left()), down(Rect.top())), QPoint(down(Rect.right()), down(Rect.bottom())));
}

/// Edges on whole device pixels: neighbours then meet without gap or overlap.
QRectF rounded(const QRectF& Rect)
{
    const QPointF TopLeft(std::round(Rect.left()), std::round(Rect.top()));
    return QRectF(TopLeft, QPointF(std::round(Rect.right()), std::round(Rect.bottom())));
}

} // namespace

void OrvCanvasTiles::reset(const QRect& Extent)
{
    m_Extent = Extent;
    m_Tiles.clear();
}

QRect OrvCanvasTiles::levelExtent(int Level) const
{
    return m_Extent.isEmpty() ? QRect() : shrunk(m_Extent, Level);
}

QRect OrvCanvasTiles::tileRect(const Key& Which) const
{
    return QRect(Which.Column * Edge, Which.Row * Edge, Edge, Edge).intersected(levelExtent(Which.Level));
}

QVector<OrvCanvasTiles::Key> OrvCanvasTiles::tilesOf(int Level, const QRect& PictureRect) const
{
    const QRect Part = PictureRect.intersected(m_Extent);
    if (Part.isEmpty())
        return {};
    const QRect Pixels = shrunk(Part, Level);
    QVector<Key> Keys;
    for (int Row = Pixels.top() / Edge; Row <= Pixels.bottom() / Edge; ++Row) {
        for (int Column = Pixels.left() / Edge; Column <= Pixels.right() / Edge; ++Column)
            Keys.append({Level, Column, Row});
    }
    return Keys;
}

QRegion OrvCanvasTiles::missingPart(const Key& Which) const
{
    const auto Found = m_Tiles.constFind(Which);
    return Found == m_Tiles.constEnd() ? QRegion(tileRect(Which)) : Found->Outdated;
}

void OrvCanvasTiles::invalidate(const QRegion& Region)
{
    const QRegion Inside = Region.intersected(m_Extent);
    if (Inside.isEmpty())
        return;
    for (auto Entry = m_Tiles.begin(); Entry != m_Tiles.end(); ++Entry) {
        const QRect Tile = tileRect(Entry.key());
        for (const QRect& Rect : Inside) {
            // A pixel of a coarser level averages a few around it, and relief is lit by what its neighbours
            // are.
            const int Reach = Entry.key().Level == 0 ? 0 : 1;
            const QRect Part = shrunk(Rect, Entry.key().Level).adjusted(-Reach, -Reach, Reach, Reach) & Tile;
            if (!Part.isEmpty())
                Entry->Outdated += Part;
        }
    }
}

void OrvCanvasTiles::put(const OrvCanvasRenderer::Piece& Finished, const QImage& Pixels)
{
    const Key Which{Finished.Level, Finished.Tile.x(), Finished.Tile.y()};
    const QRect Rect = tileRect(Which);
    Tile& Target = m_Tiles[Which];
    if (Finished.Region == Rect) {
        Target.Pixels = Pixels;
        Target.Outdated = QRegion();
    } else if (!Target.Pixels.isNull()) {
        QPainter Painter(&Target.Pixels);
        Painter.setCompositionMode(QPainter::CompositionMode_Source);
        Painter.drawImage(Finished.Region.topLeft() - Rect.topLeft(), Pixels);
        Target.Outdated -= Finished.Region;
    } else {
        m_Tiles.remove(Which);
        return;
    }
    Target.LastDrawn = m_Drawings;
}

QVector<OrvCanvasRenderer::Piece> OrvCanvasTiles::wishes(
    int Level, const QRect& VisiblePart, const QPointF& Focus) const
{
    struct Wish {
        OrvCanvasRenderer::Piece Piece;
        double Distance;
    };
    const auto toPiece = [](const Key& Which, const QRegion& Missing) {
        return OrvCanvasRenderer::Piece{Which.Level, QPoint(Which.Column, Which.Row), Missing.boundingRect()};
    };
    std::vector<Wish> Wishes;
    int AbsentTiles = 0;
    for (const Key& Which : tilesOf(Level, VisiblePart)) {
        const QRegion Missing = missingPart(Which);
        if (Missing.isEmpty())
            continue;
        const QPointF Centre = QPointF(QRectF(tileRect(Which)).center()) * (1 << Level);
        const QPointF Way = Centre - Focus;
        Wishes.push_back({toPiece(Which, Missing), Way.x() * Way.x() + Way.y() * Way.y()});
        AbsentTiles += !m_Tiles.contains(Which);
    }
    std::stable_sort(Wishes.begin(), Wishes.end(),
        [](const Wish& One, const Wish& Other) { return One.Distance < Other.Distance; });

    QVector<OrvCanvasRenderer::Piece> Pieces;
    if (AbsentTiles >= MuchMissing) {
        for (const Key& Which : tilesOf(Level + CoarseStep, VisiblePart)) {
            const QRegion Missing = missingPart(Which);
            if (!Missing.isEmpty())
                Pieces.append(toPiece(Which, Missing));
        }
    }
    for (const Wish& One : Wishes)
        Pieces.append(One.Piece);
    return Pieces;
}

void OrvCanvasTiles::drawTile(QPainter& Painter, const OrvCanvasView& View, const Key& Which)
{
    const auto Found = m_Tiles.find(Which);
    if (Found == m_Tiles.end())
        return;
    Found->LastDrawn = m_Drawings;
    const double Scale = 1 << Which.Level;
    const QRect Rect = tileRect(Which);
    // The last column and row of a level may reach beyond the picture.
    const QRectF Shown(QPointF(Rect.topLeft()) * Scale, QSizeF(Rect.size()) * Scale);
    Painter.drawImage(rounded(View.toViewport(Shown)), Found->Pixels);
}

void OrvCanvasTiles::draw(QPainter& Painter, const OrvCanvasView& View)
{
    ++m_Drawings;
    const int Level = View.mipLevel();
    const QRect Visible = View.visiblePart();
    const auto toDevice = [&View](const QRect& LevelRect, int OfLevel) {
        const double Scale = 1 << OfLevel;
        const QRectF Picture(QPointF(LevelRect.topLeft()) * Scale, QSizeF(LevelRect.size()) * Scale);
        return rounded(View.toViewport(Picture)).toRect();
    };

    const QVector<Key> Tiles = tilesOf(Level, Visible);
    QRegion Missing, Absent; // in device pixels
    for (const Key& Which : Tiles) {
        QRegion& Part = m_Tiles.contains(Which) ? Missing : Absent;
        for (const QRect& Rect : missingPart(Which))
            Part += toDevice(Rect, Level);
    }
    Missing += Absent;
    // A finer tile that is up to date shows what was just done; a coarser one would blur what is sharp, so it
    // serves only where there is nothing else.
    struct Patch {
        Key Which;
        QRegion Shown;
    };
    std::vector<Patch> Patches;
    QRegion Patched;
    for (const int Offset : {-1, -2, 1, 2, 3, 4, 5}) {
        if (Missing.isEmpty() || Level + Offset < 0)
            continue;
        for (const Key& Which : tilesOf(Level + Offset, Visible)) {
            const auto Found = m_Tiles.constFind(Which);
            if (Found == m_Tiles.constEnd())
                continue;
            const QRegion& Wanted = Offset > 0 ? Absent : Missing;
            QRegion Fresh = Wanted.intersected(toDevice(tileRect(Which), Which.Level));
            for (const QRect& Rect : Found->Outdated)
                Fresh -= toDevice(Rect, Which.Level);
            if (Fresh.isEmpty())
                continue;
            Patches.push_back({Which, Fresh});
            Patched += Fresh;
            Missing -= Fresh;
            Absent -= Fresh;
        }
    }

    Painter.save();
    Painter.setRenderHint(QPainter::SmoothPixmapTransform, View.zoom() < 2.0);
    if (!Patched.isEmpty())
        Painter.setClipRegion(QRegion(toDevice(Visible, 0)) - Patched, Qt::IntersectClip);
    for (const Key& Which : Tiles)
        drawTile(Painter, View, Which);
    Painter.restore();
    for (const Patch& One : Patches) {
        Painter.save();
        Painter.setRenderHint(QPainter::SmoothPixmapTransform);
        Painter.setClipRegion(One.Shown, Qt::IntersectClip);
        drawTile(Painter, View, One.Which);
        Painter.restore();
    }
}

void OrvCanvasTiles::trim()
{
    if (m_Tiles.size() <= MostTiles)
        return;
    std::vector<quint64> Ages;
    Ages.reserve(std::size_t(m_Tiles.size()));
    for (const Tile& One : qAsConst(m_Tiles))
        Ages.push_back(One.LastDrawn);
    const auto Middle = Ages.begin() + std::ptrdiff_t(Ages.size() / 2);
    std::nth_element(Ages.begin(), Middle, Ages.end());
    for (auto Entry = m_Tiles.begin(); Entry != m_Tiles.end();) {
        // What is on screen stays, however much it is.
        const bool Goes = Entry->LastDrawn <= *Middle && Entry->LastDrawn < m_Drawings;
        Entry = Goes ? m_Tiles.erase(Entry) : std::next(Entry);
    }
}
