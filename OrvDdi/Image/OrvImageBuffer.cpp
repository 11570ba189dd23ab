#include "OrvDdi/Image/OrvImageBuffer.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineRects.h"
#include "OrvDdi/Engine/OrvPixelBabl.h"
#include "OrvDdi/Image/OrvBufferContent.h"
#include "OrvDdi/Image/OrvColor.h"

#include <algorithm>
#include <cstring>

struct OrvImageBuffer::Pixels {
    GeglBuffer* pBuffer;
    OrvPixelFormat Format;
    QRect Extent;
    OrvBufferContent& Content;

    /// Takes over the caller's reference.
    Pixels(GeglBuffer* pOwned, const OrvPixelFormat& PixelFormat, const QRect& Rect)
        : pBuffer(pOwned)
        , Format(PixelFormat)
        , Extent(Rect)
        , Content(OrvBufferContent::attachTo(pOwned))
    {
    }
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;
    ~Pixels()
    {
        const OrvEngine::Lock Lock;
        if (OrvEngine::isStarted())
            g_object_unref(pBuffer);
    }
};

namespace {

/// Worth a thread of its own.
constexpr double PixelsPerThread = 64 * 1024;
/// Pixels that are converted at once, small enough for the nearest cache.
constexpr int RunLength = 512;

const Babl* bablFormat(const OrvPixelFormat& Format)
{
    return OrvPixelBabl::format(orvPixelLayout(Format));
}

/// Converts pixels between stored formats; straight alpha on both sides, so that transparent pixels keep
/// their colour.
class Converter {
public:
    Converter(const OrvPixelFormat& From, const OrvPixelFormat& To)
        : m_From(orvPixelLayout(From))
        , m_To(orvPixelLayout(To))
        , m_FromBytes(From.bytesPerPixel())
        , m_ToBytes(To.bytesPerPixel())
    {
    }

    void run(const void* pFrom, void* pTo, int Count) const
    {
        float Straight[RunLength * 4];
        for (int First = 0; First < Count; First += RunLength) {
            const int Length = std::min(RunLength, Count - First);
            const char* pSource = static_cast<const char*>(pFrom) + qsizetype(First) * m_FromBytes;
            char* pTarget = static_cast<char*>(pTo) + qsizetype(First) * m_ToBytes;
            m_Kernels.widenStraight(m_From, pSource, Length, Straight);
            m_Kernels.narrowStraight(m_To, Straight, Length, pTarget);
        }
    }

private:
    const OrvPixelKernels& m_Kernels = OrvPixelKernels::best();
    const OrvPixelLayout m_From, m_To;
    const int m_FromBytes, m_ToBytes;
};

/// Calls Block(its rectangle, its pixels) for all blocks of a region that lies within the buffer, on all
/// threads.
template <class Function>
void forBlocks(GeglBuffer* pBuffer, const QRect& Region, GeglAccessMode Access, const Function& Block)
{
    const GeglRectangle Whole = OrvEngineRects::toEngine(Region);
    gegl_parallel_distribute_area(&Whole, PixelsPerThread, [&](const GeglRectangle* pArea) {
        GeglBufferIterator* pIterator
            = gegl_buffer_iterator_new(pBuffer, pArea, 0, nullptr, Access, GEGL_ABYSS_NONE, 1);
        while (gegl_buffer_iterator_next(pIterator))
            Block(pIterator->items[0].roi, static_cast<char*>(pIterator->items[0].data));
    });
}

} // namespace

OrvImageBuffer::OrvImageBuffer() = default;

OrvImageBuffer::OrvImageBuffer(const QRect& Extent, const OrvPixelFormat& Format)
{
    if (Extent.isEmpty())
        return;
    const OrvEngine::Lock Lock;
    const GeglRectangle Rect = OrvEngineRects::toEngine(Extent);
    m_Pixels = std::make_shared<Pixels>(gegl_buffer_new(&Rect, bablFormat(Format)), Format, Extent);
}

OrvImageBuffer::~OrvImageBuffer() = default;
OrvImageBuffer::OrvImageBuffer(const OrvImageBuffer&) = default;
OrvImageBuffer& OrvImageBuffer::operator=(const OrvImageBuffer&) = default;

bool OrvImageBuffer::isNull() const
{
    return !m_Pixels;
}

QRect OrvImageBuffer::extent() const
{
    return m_Pixels ? m_Pixels->Extent : QRect();
}

OrvPixelFormat OrvImageBuffer::format() const
{
    return m_Pixels ? m_Pixels->Format : OrvPixelFormat();
}

_GeglBuffer* OrvImageBuffer::handle() const
{
    return m_Pixels ? m_Pixels->pBuffer : nullptr;
}

OrvImageBuffer OrvImageBuffer::snapshot() const
{
    OrvImageBuffer Copy;
    if (m_Pixels) {
        const OrvEngine::Lock Lock;
        Copy.m_Pixels = std::make_shared<Pixels>(gegl_buffer_dup(handle()), format(), extent());
        Copy.m_Pixels->Content.willCopy(m_Pixels->Content, extent());
    }
    return Copy;
}

OrvImageBuffer OrvImageBuffer::converted(const OrvPixelFormat& Format) const
{
    if (!m_Pixels || Format == format())
        return snapshot();
    const OrvEngine::Lock Lock;
    OrvImageBuffer Result(extent(), Format);
    // A scalar of zero is an opaque black.
    if (format().Kind == OrvPixelFormat::Scalar && Format.Kind == OrvPixelFormat::Rgba)
        Result.m_Pixels->Content.willFill(extent(), false);
    else if (!Result.m_Pixels->Content.willCopy(m_Pixels->Content, extent()))
        return Result;
    const Converter Convert(format(), Format);
    const GeglRectangle Whole = OrvEngineRects::toEngine(extent());
    gegl_parallel_distribute_area(&Whole, PixelsPerThread, [&](const GeglRectangle* pArea) {
        GeglBufferIterator* pIterator = gegl_buffer_iterator_new(
            Result.handle(), pArea, 0, nullptr, GEGL_ACCESS_WRITE, GEGL_ABYSS_NONE, 2);
        gegl_buffer_iterator_add(pIterator, handle(), pArea, 0, nullptr, GEGL_ACCESS_READ, GEGL_ABYSS_NONE);
        while (gegl_buffer_iterator_next(pIterator))
            Convert.run(pIterator->items[1].data, pIterator->items[0].data, pIterator->length);
    });
    return Result;
}

void OrvImageBuffer::read(const QRect& Region, const OrvPixelFormat& Format, void* pPixels, int Stride) const
{
    if (Region.isEmpty())
        return;
    const qsizetype RowBytes = qsizetype(Region.width()) * Format.bytesPerPixel();
    const qsizetype Step = Stride ? Stride : RowBytes;
    char* pTarget = static_cast<char*>(pPixels);
    if (!extent().contains(Region)) {
        for (int Row = 0; Row < Region.height(); ++Row)
            std::memset(pTarget + Row * Step, 0, size_t(RowBytes));
    }
    const QRect Inside = Region & extent();
    if (Inside.isEmpty())
        return;
    pTarget += (Inside.y() - Region.y()) * Step + qsizetype(Inside.x() - Region.x()) * Format.bytesPerPixel();

    const OrvEngine::Lock Lock;
    if (Format == format()) {
        const GeglRectangle Rect = OrvEngineRects::toEngine(Inside);
        gegl_buffer_get(handle(), &Rect, 1.0, bablFormat(Format), pTarget, int(Step), GEGL_ABYSS_NONE);
        return;
    }
    const Converter Convert(format(), Format);
    const int SourceBytes = format().bytesPerPixel(), TargetBytes = Format.bytesPerPixel();
    forBlocks(handle(), Inside, GEGL_ACCESS_READ, [&](const GeglRectangle& Rect, const char* pBlock) {
        char* pBlockTarget
            = pTarget + (Rect.y - Inside.y()) * Step + qsizetype(Rect.x - Inside.x()) * TargetBytes;
        for (int Row = 0; Row < Rect.height; ++Row)
            Convert.run(
                pBlock + qsizetype(Row) * Rect.width * SourceBytes, pBlockTarget + Row * Step, Rect.width);
    });
}

void OrvImageBuffer::write(const QRect& Region, const OrvPixelFormat& Format, const void* pPixels, int Stride)
{
    const QRect Inside = Region & extent();
    if (Inside.isEmpty())
        return;
    const qsizetype Step = Stride ? Stride : qsizetype(Region.width()) * Format.bytesPerPixel();
    const char* pSource = static_cast<const char*>(pPixels) + (Inside.y() - Region.y()) * Step
        + qsizetype(Inside.x() - Region.x()) * Format.bytesPerPixel();

    const OrvEngine::Lock Lock;
    const bool BecomesOpaque = Format.Kind == OrvPixelFormat::Scalar && format().Kind == OrvPixelFormat::Rgba;
    if (BecomesOpaque)
        m_Pixels->Content.willFill(Inside, false);
    else if (!m_Pixels->Content.willWrite(Inside, pSource, Format.bytesPerPixel(), Step))
        return;
    if (Format == format()) {
        const GeglRectangle Rect = OrvEngineRects::toEngine(Inside);
        gegl_buffer_set(handle(), &Rect, 0, bablFormat(Format), pSource, int(Step));
        return;
    }
    const Converter Convert(Format, format());
    const int SourceBytes = Format.bytesPerPixel(), TargetBytes = format().bytesPerPixel();
    forBlocks(handle(), Inside, GEGL_ACCESS_WRITE, [&](const GeglRectangle& Rect, char* pBlock) {
        const char* pBlockSource
            = pSource + (Rect.y - Inside.y()) * Step + qsizetype(Rect.x - Inside.x()) * SourceBytes;
        for (int Row = 0; Row < Rect.height; ++Row)
            Convert.run(
                pBlockSource + Row * Step, pBlock + qsizetype(Row) * Rect.width * TargetBytes, Rect.width);
    });
}

void OrvImageBuffer::fill(const OrvColor& Color, const QRect& Region)
{
    const QRect Inside = Region.isNull() ? extent() : Region & extent();
    if (Inside.isEmpty())
        return;
    const OrvColor Stored
        = format().Kind == OrvPixelFormat::Scalar ? OrvColor(Color.red(), Color.red(), Color.red()) : Color;
    char Pixel[16];
    OrvPixelKernels::best().narrowStraight(orvPixelLayout(format()), Stored.components(), 1, Pixel);
    const OrvEngine::Lock Lock;
    const char* pEnd = Pixel + format().bytesPerPixel();
    const bool WithZeros
        = std::all_of(static_cast<const char*>(Pixel), pEnd, [](char Byte) { return Byte == 0; });
    if (!m_Pixels->Content.willFill(Inside, WithZeros))
        return;
    const GeglRectangle Rect = OrvEngineRects::toEngine(Inside);
    gegl_buffer_set_color_from_pixel(handle(), &Rect, Pixel, bablFormat(format()));
}

void OrvImageBuffer::copyFrom(const OrvImageBuffer& Source, const QRect& Region)
{
    const QRect Inside = Region & extent() & Source.extent();
    if (Inside.isEmpty())
        return;
    const OrvEngine::Lock Lock;
    if (!m_Pixels->Content.willCopy(Source.m_Pixels->Content, Inside))
        return;
    const GeglRectangle Rect = OrvEngineRects::toEngine(Inside);
    gegl_buffer_copy(Source.handle(), &Rect, GEGL_ABYSS_NONE, handle(), &Rect);
}
