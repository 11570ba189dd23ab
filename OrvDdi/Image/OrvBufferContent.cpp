#include "OrvDdi/Image/OrvBufferContent.h"

#include "OrvDdi/Engine/OrvEngineRects.h"
#include "OrvDdi/Engine/OrvPixelBabl.h"

#include <cstring>
#include <utility>

namespace {

constexpr int TileEdge = 128; // the engine's tiles
constexpr int SquareEdge = 64; // computed at once, in the nearest caches
constexpr double SquaresPerThread = 4.0;

GQuark contentKey()
{
    static const GQuark Key = g_quark_from_static_string("orv-buffer-content");
    return Key;
}

bool isZero(const char* pPixels, size_t RowBytes, int Rows, qsizetype Stride)
{
    for (int Row = 0; Row < Rows; ++Row, pPixels += Stride) {
        if (pPixels[0] != 0 || std::memcmp(pPixels, pPixels + 1, RowBytes - 1) != 0)
            return false;
    }
    return true;
}

QRect doubled(const QRect& Rect)
{
    return QRect(Rect.topLeft() * 2, Rect.size() * 2);
}

/// All that a rectangle touches at half the scale.
QRect halved(const QRect& Rect)
{
    return QRect(QPoint(Rect.left() >> 1, Rect.top() >> 1), QPoint(Rect.right() >> 1, Rect.bottom() >> 1));
}

} // namespace

OrvBufferContent* OrvBufferContent::of(GeglBuffer* pBuffer)
{
    return static_cast<OrvBufferContent*>(g_object_get_qdata(G_OBJECT(pBuffer), contentKey()));
}

OrvBufferContent& OrvBufferContent::attachTo(GeglBuffer* pBuffer)
{
    auto* pContent = new OrvBufferContent(pBuffer);
    const auto letGo = [](gpointer pHeld) { delete static_cast<OrvBufferContent*>(pHeld); };
    g_object_set_qdata_full(G_OBJECT(pBuffer), contentKey(), pContent, letGo);
    return *pContent;
}

OrvBufferContent::OrvBufferContent(GeglBuffer* pBuffer)
    : m_pBuffer(pBuffer)
    , m_Painted(OrvEngineRects::toQt(*gegl_buffer_get_extent(pBuffer)), TileEdge)
{
}

OrvBufferContent::~OrvBufferContent()
{
    for (const Level& One : m_Levels)
        g_object_unref(One.pBuffer);
}

bool OrvBufferContent::willWrite(
    const QRect& Region, const void* pPixels, int BytesPerPixel, qsizetype Stride)
{
    bool Matters = false;
    m_Painted.forTiles(Region, [&](const QRect& Tile, char& IsPainted) {
        const QRect Part = Tile & Region;
        const char* pPart = static_cast<const char*>(pPixels) + (Part.top() - Region.top()) * Stride
            + qsizetype(Part.left() - Region.left()) * BytesPerPixel;
        if (!IsPainted)
            IsPainted = !isZero(pPart, size_t(Part.width()) * size_t(BytesPerPixel), Part.height(), Stride);
        Matters |= IsPainted;
    });
    if (Matters)
        outdate(Region);
    return Matters;
}

bool OrvBufferContent::willFill(const QRect& Region, bool WithZeros)
{
    if (WithZeros && !m_Painted.any(Region))
        return false;
    m_Painted.forTiles(Region, [&](const QRect& Tile, char& IsPainted) {
        IsPainted = WithZeros ? IsPainted && !Region.contains(Tile) : true;
    });
    outdate(Region);
    return true;
}

bool OrvBufferContent::willCopy(const OrvBufferContent& Source, const QRect& Region)
{
    if (!m_Painted.any(Region) && Source.isEmpty(Region))
        return false;
    m_Painted.forTiles(Region, [&](const QRect& Tile, char& IsPainted) {
        const bool IsKept = IsPainted && !Region.contains(Tile);
        IsPainted = IsKept || !Source.isEmpty(Tile & Region);
    });
    outdate(Region);
    return true;
}

const QRect& OrvBufferContent::bounds() const
{
    if (!std::exchange(m_BoundsKnown, true))
        m_Bounds = m_Painted.bounds();
    return m_Bounds;
}

void OrvBufferContent::outdate(const QRect& Region)
{
    m_BoundsKnown = false;
    QRect Below = Region;
    for (Level& One : m_Levels) {
        Below = halved(Below);
        One.Current.setAll(Below, false);
    }
}

GeglBuffer* OrvBufferContent::atLevel(int Level, const QRect& Region)
{
    const std::lock_guard<std::mutex> Guard(m_Mutex);
    while (int(m_Levels.size()) < Level)
        addLevel();
    update(Level, Region);
    return bufferAt(Level);
}

void OrvBufferContent::addLevel()
{
    GeglBuffer* pLarger = bufferAt(int(m_Levels.size()));
    const QRect Extent = halved(OrvEngineRects::toQt(*gegl_buffer_get_extent(pLarger)));
    const GeglRectangle Rect = OrvEngineRects::toEngine(Extent);
    m_Levels.push_back({gegl_buffer_new(&Rect, gegl_buffer_get_format(m_pBuffer)),
        OrvTileFlags(Extent, SquareEdge), OrvTileFlags(Extent, SquareEdge)});
}

void OrvBufferContent::update(int Number, const QRect& Region)
{
    Level& Reduced = m_Levels[size_t(Number) - 1];
    QRect Stale;
    Reduced.Current.forTiles(Region, [&Stale](const QRect& Square, const char& IsCurrent) {
        if (!IsCurrent)
            Stale |= Square;
    });
    if (Stale.isEmpty())
        return;
    if (Number > 1)
        update(Number - 1, doubled(Stale));
    const OrvTileFlags& Larger = Number == 1 ? m_Painted : m_Levels[size_t(Number) - 2].Painted;
    std::vector<QRect> Squares;
    Reduced.Current.forTiles(Stale, [&](const QRect& Square, char& IsCurrent) {
        const bool IsPainted = Larger.any(doubled(Square));
        if (!IsCurrent && (IsPainted || Reduced.Painted.any(Square)))
            Squares.push_back(Square);
        IsCurrent = true;
    });
    for (const QRect& Square : Squares)
        Reduced.Painted.setAll(Square, true);
    gegl_parallel_distribute_range(Squares.size(), SquaresPerThread, [&](size_t First, size_t Count) {
        for (size_t Index = First; Index < First + Count; ++Index)
            reduce(Number, Squares[Index]);
    });
}

void OrvBufferContent::reduce(int Number, const QRect& Square) const
{
    const OrvPixelKernels& Kernels = OrvPixelKernels::best();
    const Babl* pFormat = gegl_buffer_get_format(m_pBuffer);
    OrvPixelLayout Layout = OrvPixelLayout::Premultiplied;
    OrvPixelBabl::layoutOf(pFormat, Layout);
    const QRect From = doubled(Square);
    const size_t Bytes = size_t(orvBytesPerPixel(Layout));
    // What lies beyond the edge of the larger level counts as nothing.
    std::vector<char> Larger(size_t(From.width()) * size_t(From.height()) * Bytes);
    const GeglRectangle FromRect = OrvEngineRects::toEngine(From), Rect = OrvEngineRects::toEngine(Square);
    gegl_buffer_get(
        bufferAt(Number - 1), &FromRect, 1.0, pFormat, Larger.data(), GEGL_AUTO_ROWSTRIDE, GEGL_ABYSS_NONE);
    std::vector<char> Smaller(size_t(Square.width()) * size_t(Square.height()) * Bytes);
    float Wide[2 * 2 * SquareEdge * 4], Averages[SquareEdge * 4];
    for (int Row = 0; Row < Square.height(); ++Row) {
        // Two rows are one run of pixels.
        const size_t First = size_t(Row) * 2 * size_t(From.width());
        Kernels.widenPremultiplied(Layout, Larger.data() + First * Bytes, 2 * From.width(), Wide);
        const float *pUpper = Wide, *pLower = Wide + From.width() * 4;
        for (int X = 0; X < Square.width(); ++X, pUpper += 8, pLower += 8) {
            for (int Component = 0; Component < 4; ++Component) {
                Averages[X * 4 + Component] = 0.25f
                    * (pUpper[Component] + pUpper[Component + 4] + pLower[Component] + pLower[Component + 4]);
            }
        }
        Kernels.narrowPremultiplied(
            Layout, Averages, Square.width(), Smaller.data() + size_t(Row) * size_t(Square.width()) * Bytes);
    }
    gegl_buffer_set(bufferAt(Number), &Rect, 0, pFormat, Smaller.data(), GEGL_AUTO_ROWSTRIDE);
}
