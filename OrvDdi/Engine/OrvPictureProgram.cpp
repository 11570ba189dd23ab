#include "OrvDdi/Engine/OrvPictureProgram.h"

#include "OrvDdi/Engine/OrvEngineRects.h"
#include "OrvDdi/Engine/OrvPixelBabl.h"
#include "OrvDdi/Image/OrvBufferContent.h"

#include <algorithm>
#include <cstring>

namespace {

/// Pixels that pass through all steps at once; they and what the steps need besides stay in the nearest
/// cache.
constexpr int RunLength = 512;

/// A stretch of pixels along an axis that something covers to the same share.
struct Stretch {
    int First, Length;
    float Share;
};

/// What a stretch of the whole picture covers of a stretch of pixels at a level.
std::vector<Stretch> covered(int First, int Length, int Level, qint64 CoveredFirst, qint64 CoveredLength)
{
    const qint64 PixelLength = qint64(1) << Level;
    std::vector<Stretch> Stretches;
    for (int Pixel = First; Pixel < First + Length; ++Pixel) {
        const qint64 From = std::max(Pixel * PixelLength, CoveredFirst);
        const qint64 To = std::min((Pixel + 1) * PixelLength, CoveredFirst + CoveredLength);
        const float Share = float(std::max<qint64>(0, To - From)) / float(PixelLength);
        if (!Stretches.empty() && Stretches.back().Share == Share)
            ++Stretches.back().Length;
        else
            Stretches.push_back({Pixel, 1, Share});
    }
    return Stretches;
}

bool isFullRange(const float (&Range)[4])
{
    return Range[1] <= 0.0f && Range[2] >= 1.0f;
}

} // namespace

GeglRectangle OrvPictureProgram::atLevel(const GeglRectangle& Region, int Level)
{
    const auto last = [Level](int First, int Length) { return (First + Length + (1 << Level) - 1) >> Level; };
    const int X = Region.x >> Level, Y = Region.y >> Level;
    return {X, Y, last(Region.x, Region.width) - X, last(Region.y, Region.height) - Y};
}

/// Where a program's result goes: into a buffer, or into memory in any layout.
struct OrvPictureProgram::Output {
    GeglBuffer* pBuffer = nullptr;
    char* pPixels = nullptr;
    qsizetype Stride = 0;
    OrvPixelLayout Layout = OrvPixelLayout::Premultiplied;
};

/// One thread's share of running a program.
class OrvPictureProgram::Run {
public:
    Run(const OrvPictureProgram& Program, const Output& Where, const GeglRectangle& Whole, int Level);
    void area(const GeglRectangle& Area);

private:
    void steps(int Count);
    void blend(const Step& What, float* pTarget, int Count);
    const void* pixels(const Operand& From, OrvPixelLayout& Layout) const;
    /// Brings the pixels of a block that the iterator stands at, or of a row, where they belong.
    void deliver(const GeglRectangle& Block, int First, int Count) const;
    void rows(const GeglRectangle& Area);
    float* registerAt(int Index)
    {
        return Index == 0 ? m_pResult : m_Registers.data() + Index * RunLength * 4;
    }

    const OrvPictureProgram& m_Program;
    const OrvPixelKernels& m_Kernels = OrvPixelKernels::best();
    const Output& m_Where;
    const GeglRectangle m_Whole;
    const int m_Level;
    std::vector<float> m_Registers;
    std::vector<const char*> m_Sources;
    float* m_pResult;
    float m_Factors[RunLength];
    float m_Widened[RunLength * 4], m_Before[RunLength * 4];
};

OrvPictureProgram::Run::Run(
    const OrvPictureProgram& Program, const Output& Where, const GeglRectangle& Whole, int Level)
    : m_Program(Program)
    , m_Where(Where)
    , m_Whole(Whole)
    , m_Level(Level)
    , m_Registers(size_t(Program.m_RegisterCount) * RunLength * 4)
    , m_Sources(Program.m_Sources.size())
    , m_pResult(m_Registers.data())
{
}

void OrvPictureProgram::Run::area(const GeglRectangle& Area)
{
    const int SourceCount = int(m_Program.m_Sources.size());
    if (SourceCount == 0 && !m_Where.pBuffer) {
        rows(Area);
        return;
    }
    GeglBufferIterator* pIterator = gegl_buffer_iterator_empty_new(SourceCount + 1);
    const int FirstSource = m_Where.pBuffer ? 1 : 0;
    if (m_Where.pBuffer) {
        gegl_buffer_iterator_add(pIterator, m_Where.pBuffer, &Area, m_Level,
            OrvPixelBabl::format(OrvPixelLayout::Premultiplied), GEGL_ACCESS_WRITE, GEGL_ABYSS_NONE);
    }
    for (const Source& One : m_Program.m_Sources) {
        gegl_buffer_iterator_add(pIterator, One.pBuffer, &Area, One.IsAtLevel ? 0 : m_Level,
            OrvPixelBabl::format(One.Layout), GEGL_ACCESS_READ, GEGL_ABYSS_NONE);
    }
    while (gegl_buffer_iterator_next(pIterator)) {
        for (int First = 0; First < pIterator->length; First += RunLength) {
            const int Count = std::min(RunLength, pIterator->length - First);
            for (int Index = 0; Index < SourceCount; ++Index) {
                m_Sources[size_t(Index)]
                    = static_cast<const char*>(pIterator->items[FirstSource + Index].data)
                    + qsizetype(First) * orvBytesPerPixel(m_Program.m_Sources[size_t(Index)].Layout);
            }
            if (m_Where.pBuffer)
                m_pResult = static_cast<float*>(pIterator->items[0].data) + qsizetype(First) * 4;
            steps(Count);
            if (!m_Where.pBuffer)
                deliver(pIterator->items[0].roi, First, Count);
        }
    }
}

void OrvPictureProgram::Run::rows(const GeglRectangle& Area)
{
    for (int Y = Area.y; Y < Area.y + Area.height; ++Y) {
        const GeglRectangle Row{Area.x, Y, Area.width, 1};
        for (int First = 0; First < Area.width; First += RunLength) {
            const int Count = std::min(RunLength, Area.width - First);
            steps(Count);
            deliver(Row, First, Count);
        }
    }
}

void OrvPictureProgram::Run::deliver(const GeglRectangle& Block, int First, int Count) const
{
    const float* pFrom = m_pResult;
    while (Count > 0) {
        const int Column = First % Block.width;
        const int Length = std::min(Count, Block.width - Column);
        const int X = Block.x + Column - m_Whole.x, Y = Block.y + First / Block.width - m_Whole.y;
        char* pTo = m_Where.pPixels + Y * m_Where.Stride + qsizetype(X) * orvBytesPerPixel(m_Where.Layout);
        m_Kernels.narrowPremultiplied(m_Where.Layout, pFrom, Length, pTo);
        pFrom += Length * 4;
        First += Length;
        Count -= Length;
    }
}

const void* OrvPictureProgram::Run::pixels(const Operand& From, OrvPixelLayout& Layout) const
{
    switch (From.Which) {
    case Operand::Source:
        Layout = m_Program.m_Sources[size_t(From.Index)].Layout;
        return m_Sources[size_t(From.Index)];
    case Operand::Color:
        Layout = OrvPixelLayout::OnePremultiplied;
        return m_Program.m_Colors[size_t(From.Index)].Color;
    case Operand::Register:
        Layout = OrvPixelLayout::Premultiplied;
        return m_Registers.data() + From.Index * RunLength * 4;
    case Operand::None:
        break;
    }
    return nullptr;
}

void OrvPictureProgram::Run::steps(int Count)
{
    for (const Step& What : m_Program.m_Steps) {
        float* pTarget = registerAt(What.Target);
        if (What.What == Step::Blend) {
            blend(What, pTarget, Count);
            continue;
        }
        OrvPixelLayout Layout = OrvPixelLayout::Premultiplied;
        if (const void* pPixels = pixels(What.From, Layout))
            m_Kernels.widenPremultiplied(Layout, pPixels, Count, pTarget);
        else
            std::memset(pTarget, 0, size_t(Count) * 4 * sizeof(float));
    }
}

void OrvPictureProgram::Run::blend(const Step& What, float* pTarget, int Count)
{
    const OrvBlendParameters& Parameters = *What.pParameters;
    OrvPixelLayout OverLayout = OrvPixelLayout::Premultiplied, MaskLayout = OrvPixelLayout::Premultiplied;
    const void* pOver = pixels(What.From, OverLayout);
    const float* pFactors = nullptr;
    if (const void* pMask = pixels(What.Mask, MaskLayout)) {
        m_Kernels.maskFactors(MaskLayout, pMask, Count, Parameters.Amount, m_Factors);
        pFactors = m_Factors;
    }
    const bool HasRanges = Parameters.AdvancedEnabled
        && !(isFullRange(Parameters.OverRange) && isFullRange(Parameters.BaseRange));
    if ((HasRanges || Parameters.PassThrough) && OverLayout != OrvPixelLayout::Premultiplied) {
        m_Kernels.widenPremultiplied(OverLayout, pOver, Count, m_Widened);
        pOver = m_Widened;
        OverLayout = OrvPixelLayout::Premultiplied;
    }
    if (HasRanges) {
        if (!pFactors)
            std::fill(m_Factors, m_Factors + Count, Parameters.Amount);
        m_Kernels.rangeFactors(Parameters, pTarget, static_cast<const float*>(pOver), Count, m_Factors);
        pFactors = m_Factors;
    }
    const bool KeepsComponents = Parameters.AdvancedEnabled
        && !(Parameters.WriteRed && Parameters.WriteGreen && Parameters.WriteBlue && Parameters.WriteAlpha);
    if (KeepsComponents)
        std::copy(pTarget, pTarget + Count * 4, m_Before);
    if (Parameters.PassThrough)
        m_Kernels.mix(static_cast<const float*>(pOver), pFactors, Parameters.Amount, Count, pTarget);
    else
        m_Kernels.blend(Parameters.Mode, OverLayout, pOver, pFactors, Parameters.Amount, Count, pTarget);
    if (KeepsComponents)
        m_Kernels.keepComponents(Parameters, m_Before, Count, pTarget);
}

OrvPictureProgram::OrvPictureProgram(const OrvPicture::Pointer& pPicture)
    : m_pPicture(pPicture)
{
}

bool OrvPictureProgram::holdsNothing(GeglBuffer* pBuffer) const
{
    const OrvBufferContent* pContent = OrvBufferContent::of(pBuffer);
    return pContent && pContent->isEmpty(OrvEngineRects::toQt(m_Region));
}

bool OrvPictureProgram::isTransparent(const OrvPicture* pPicture) const
{
    for (; pPicture->kind() == OrvPicture::Blend; pPicture = pPicture->base().get()) {
        if (!leavesBase(pPicture) && !isTransparent(pPicture->over().get()))
            return false;
    }
    OrvPixelLayout Layout = OrvPixelLayout::Premultiplied;
    switch (pPicture->kind()) {
    case OrvPicture::Nothing:
        return true;
    case OrvPicture::Pixels:
        // A scalar of zero is an opaque black.
        return OrvPixelBabl::layoutOf(gegl_buffer_get_format(pPicture->buffer()), Layout)
            && !orvIsScalar(Layout) && holdsNothing(pPicture->buffer());
    case OrvPicture::Uniform:
        return !gegl_rectangle_intersect(nullptr, &pPicture->extent(), &m_Region)
            || std::all_of(
                pPicture->color(), pPicture->color() + 4, [](float Value) { return Value == 0.0f; });
    default:
        return false;
    }
}

bool OrvPictureProgram::isBlack(const OrvPicture* pMask) const
{
    if (pMask->kind() == OrvPicture::Uniform
        && std::all_of(pMask->color(), pMask->color() + 3, [](float Value) { return Value == 0.0f; }))
        return true;
    return isTransparent(pMask) || (pMask->kind() == OrvPicture::Pixels && holdsNothing(pMask->buffer()));
}

bool OrvPictureProgram::leavesBase(const OrvPicture* pBlend) const
{
    // All blend modes leave the base as it is where the over image is transparent.
    return (pBlend->mask() && isBlack(pBlend->mask().get()))
        || (!pBlend->parameters().PassThrough && isTransparent(pBlend->over().get()));
}

void OrvPictureProgram::compile(const GeglRectangle& Region, int Level)
{
    m_Region
        = {Region.x * (1 << Level), Region.y * (1 << Level), Region.width << Level, Region.height << Level};
    compile(m_pPicture.get(), 0);
}

void OrvPictureProgram::compile(const OrvPicture* pPicture, int Register)
{
    m_RegisterCount = std::max(m_RegisterCount, Register + 1);
    // Downwards without recursion, then the steps upwards; only groups and mask stacks nest.
    std::vector<const OrvPicture*> Blends;
    const OrvPicture* pBottom = pPicture;
    for (; pBottom->kind() == OrvPicture::Blend; pBottom = pBottom->base().get())
        Blends.push_back(pBottom);
    m_Steps.push_back({Step::Load, Register, operand(pBottom, Register), {}, nullptr});
    for (auto Blend = Blends.rbegin(); Blend != Blends.rend(); ++Blend) {
        if (leavesBase(*Blend))
            continue;
        const OrvPicture* pMask = (*Blend)->mask().get();
        Operand Over = operand((*Blend)->over().get(), Register + 1);
        if (Over.Which == Operand::None) {
            // A group in pass-through mode without content: mixed with transparency.
            Over = {Operand::Register, Register + 1};
            m_RegisterCount = std::max(m_RegisterCount, Register + 2);
            m_Steps.push_back({Step::Load, Register + 1, {}, {}, nullptr});
        }
        const Operand Mask = pMask ? operand(pMask, Register + 2) : Operand();
        m_Steps.push_back({Step::Blend, Register, Over, Mask, &(*Blend)->parameters()});
    }
}

OrvPictureProgram::Operand OrvPictureProgram::operand(const OrvPicture* pPicture, int FreeRegister)
{
    if (isTransparent(pPicture))
        return {};
    switch (pPicture->kind()) {
    case OrvPicture::Nothing:
    case OrvPicture::Lit:
        break;
    case OrvPicture::Pixels:
        return {Operand::Source, sourceIndex(pPicture->buffer())};
    case OrvPicture::Uniform: {
        ColorSource Color;
        std::copy(pPicture->color(), pPicture->color() + 4, Color.Color);
        Color.Extent = pPicture->extent();
        m_Colors.push_back(Color);
        return {Operand::Color, int(m_Colors.size()) - 1};
    }
    case OrvPicture::Blend:
        compile(pPicture, FreeRegister);
        return {Operand::Register, FreeRegister};
    }
    return {};
}

int OrvPictureProgram::sourceIndex(GeglBuffer* pBuffer)
{
    const auto Found = std::find_if(
        m_Sources.begin(), m_Sources.end(), [pBuffer](const Source& One) { return One.pBuffer == pBuffer; });
    if (Found != m_Sources.end())
        return int(Found - m_Sources.begin());
    OrvPixelLayout Layout = OrvPixelLayout::Premultiplied;
    if (!OrvPixelBabl::layoutOf(gegl_buffer_get_format(pBuffer), Layout))
        Layout = OrvPixelLayout::Premultiplied; // converted by the engine while it is read
    m_Sources.push_back({pBuffer, Layout, false});
    return int(m_Sources.size()) - 1;
}

void OrvPictureProgram::cropColors(const GeglRectangle& Region, int Level)
{
    for (size_t Index = 0; Index < m_Colors.size(); ++Index) {
        const ColorSource Color = m_Colors[Index];
        if (gegl_rectangle_contains(&Color.Extent, &m_Region)
            || gegl_rectangle_is_infinite_plane(&Color.Extent))
            continue;
        const std::vector<Stretch> Columns
            = covered(Region.x, Region.width, Level, Color.Extent.x, Color.Extent.width);
        const std::vector<Stretch> Rows
            = covered(Region.y, Region.height, Level, Color.Extent.y, Color.Extent.height);
        if (Columns.size() == 1 && Rows.size() == 1) {
            for (float& Component : m_Colors[Index].Color)
                Component *= Columns.front().Share * Rows.front().Share;
            continue;
        }
        // The region reaches over the edge of the colour: real pixels, those at the edge as far as they are
        // covered.
        const Babl* pFormat = OrvPixelBabl::format(OrvPixelLayout::Premultiplied);
        GeglBuffer* pBuffer = gegl_buffer_new(&Region, pFormat);
        for (const Stretch& Row : Rows) {
            for (const Stretch& Column : Columns) {
                const GeglRectangle Part{Column.First, Row.First, Column.Length, Row.Length};
                float Shown[4];
                for (int Component = 0; Component < 4; ++Component)
                    Shown[Component] = Color.Color[Component] * Column.Share * Row.Share;
                if (Shown[3] != 0.0f)
                    gegl_buffer_set_color_from_pixel(pBuffer, &Part, Shown, pFormat);
            }
        }
        m_Cropped.push_back(OrvPicture::pixels(pBuffer));
        g_object_unref(pBuffer);
        m_Sources.push_back({pBuffer, OrvPixelLayout::Premultiplied, true});
        const Operand Replaced{Operand::Source, int(m_Sources.size()) - 1};
        for (Step& One : m_Steps) {
            for (Operand* pOperand : {&One.From, &One.Mask}) {
                if (pOperand->Which == Operand::Color && pOperand->Index == int(Index))
                    *pOperand = Replaced;
            }
        }
    }
}

void OrvPictureProgram::reduceSources(const GeglRectangle& Region, int Level)
{
    for (Source& One : m_Sources) {
        OrvBufferContent* pContent
            = Level > 0 && !One.IsAtLevel ? OrvBufferContent::of(One.pBuffer) : nullptr;
        if (!pContent)
            continue;
        One.pBuffer = pContent->atLevel(Level, OrvEngineRects::toQt(Region));
        One.IsAtLevel = true;
    }
}

void OrvPictureProgram::prepare(const OrvPicture::Pointer& pPicture, const GeglRectangle& Region, int Level)
{
    OrvPictureProgram Program(pPicture);
    Program.compile(Region, Level);
    Program.reduceSources(Region, Level);
}

void OrvPictureProgram::cropSources(const GeglRectangle& Region, int Level)
{
    if (Level == 0)
        return;
    for (Source& One : m_Sources) {
        if (One.IsAtLevel || gegl_rectangle_is_infinite_plane(gegl_buffer_get_extent(One.pBuffer)))
            continue;
        const GeglRectangle There = atLevel(*gegl_buffer_get_extent(One.pBuffer), Level);
        GeglRectangle Inside;
        if (gegl_rectangle_contains(&There, &Region) || !gegl_rectangle_intersect(&Inside, &There, &Region))
            continue;
        const Babl* pFormat = OrvPixelBabl::format(One.Layout);
        std::vector<char> Pixels(size_t(Inside.width) * size_t(Inside.height) * orvBytesPerPixel(One.Layout));
        gegl_buffer_get(One.pBuffer, &Inside, 1.0 / (1 << Level), pFormat, Pixels.data(), GEGL_AUTO_ROWSTRIDE,
            GEGL_ABYSS_NONE);
        GeglBuffer* pBuffer = gegl_buffer_new(&Region, pFormat);
        gegl_buffer_set(pBuffer, &Inside, 0, pFormat, Pixels.data(), GEGL_AUTO_ROWSTRIDE);
        m_Cropped.push_back(OrvPicture::pixels(pBuffer));
        g_object_unref(pBuffer);
        One.pBuffer = pBuffer;
        One.IsAtLevel = true;
    }
}

void OrvPictureProgram::render(const Output& Where, const GeglRectangle& Region, int Level)
{
    if (gegl_rectangle_is_empty(&Region))
        return;
    compile(Region, Level);
    cropColors(Region, Level);
    reduceSources(Region, Level);
    cropSources(Region, Level);
    // Waking a thread is worth it from some ten thousand blended pixels.
    const double PixelsPerThread = 20000.0 / double(m_Steps.size());
    gegl_parallel_distribute_area(&Region, PixelsPerThread, [&](const GeglRectangle* pArea) {
        auto pRun = std::make_unique<Run>(*this, Where, Region, Level);
        pRun->area(*pArea);
    });
}

GeglBuffer* OrvPictureProgram::target(GeglOperationContext* pContext, const GeglRectangle& Region, int Level)
{
    const GeglRectangle Touched = atLevel(Region, Level);
    const GeglRectangle Whole{
        Touched.x * (1 << Level), Touched.y * (1 << Level), Touched.width << Level, Touched.height << Level};
    if (gegl_rectangle_equal(&Whole, &Region))
        return gegl_operation_context_get_target(pContext, "output");
    // The engine keeps no pixels that lie partly outside a buffer.
    GeglBuffer* pTarget = gegl_buffer_new(&Whole, OrvPixelBabl::format(OrvPixelLayout::Premultiplied));
    gegl_operation_context_take_object(pContext, "output", G_OBJECT(pTarget));
    return pTarget;
}

void OrvPictureProgram::renderOutput(GeglOperationContext* pContext, const GeglRectangle& Region, int Level)
{
    Output Where;
    Where.pBuffer = target(pContext, Region, Level);
    render(Where, atLevel(Region, Level), Level);
}

void OrvPictureProgram::renderTo(
    void* pPixels, int Stride, OrvPixelLayout Layout, const GeglRectangle& Region, int Level)
{
    Output Where;
    Where.pPixels = static_cast<char*>(pPixels);
    Where.Stride = Stride;
    Where.Layout = Layout;
    render(Where, Region, Level);
}
