#include "OrvDdi/Engine/OrvPictureProgram.h"

#include "OrvDdi/Engine/OrvPixelBabl.h"

#include <algorithm>
#include <cstring>

namespace {

/// Pixels that pass through all steps at once; they and what the steps need besides stay in the nearest
/// cache.
constexpr int RunLength = 512;

GeglRectangle atLevel(const GeglRectangle& Rectangle, int Level)
{
    return {Rectangle.x >> Level, Rectangle.y >> Level, Rectangle.width >> Level, Rectangle.height >> Level};
}

bool covers(const GeglRectangle& Extent, const GeglRectangle& Region)
{
    return gegl_rectangle_contains(&Extent, &Region) || gegl_rectangle_is_infinite_plane(&Extent);
}

bool isFullRange(const float (&Range)[4])
{
    return Range[1] <= 0.0f && Range[2] >= 1.0f;
}

} // namespace

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
        gegl_buffer_iterator_add(pIterator, One.pBuffer, &Area, m_Level, OrvPixelBabl::format(One.Layout),
            GEGL_ACCESS_READ, GEGL_ABYSS_NONE);
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
        const OrvPicture* pMask = (*Blend)->mask().get();
        const bool ShowsNothing = pMask && pMask->kind() == OrvPicture::Nothing;
        const bool AddsNothing
            = (*Blend)->over()->kind() == OrvPicture::Nothing && !(*Blend)->parameters().PassThrough;
        if (ShowsNothing || AddsNothing)
            continue;
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
    m_Sources.push_back({pBuffer, Layout});
    return int(m_Sources.size()) - 1;
}

void OrvPictureProgram::cropColors(const GeglRectangle& Region, int Level)
{
    for (size_t Index = 0; Index < m_Colors.size(); ++Index) {
        const ColorSource& Color = m_Colors[Index];
        if (covers(atLevel(Color.Extent, Level), Region))
            continue;
        // The region reaches over the edge of the colour: real pixels for the part inside.
        const GeglRectangle FullRegion{Region.x * (1 << Level), Region.y * (1 << Level),
            (Region.width + 1) << Level, (Region.height + 1) << Level};
        GeglRectangle Inside;
        Operand Replaced;
        if (gegl_rectangle_intersect(&Inside, &FullRegion, &Color.Extent)) {
            const Babl* pFormat = OrvPixelBabl::format(OrvPixelLayout::Premultiplied);
            GeglBuffer* pBuffer = gegl_buffer_new(&Inside, pFormat);
            gegl_buffer_set_color_from_pixel(pBuffer, &Inside, Color.Color, pFormat);
            m_CroppedColors.push_back(OrvPicture::pixels(pBuffer));
            g_object_unref(pBuffer);
            Replaced = {Operand::Source, sourceIndex(pBuffer)};
        } else {
            Replaced = {Operand::Color, int(Index)};
            std::fill(std::begin(m_Colors[Index].Color), std::end(m_Colors[Index].Color), 0.0f);
        }
        for (Step& One : m_Steps) {
            for (Operand* pOperand : {&One.From, &One.Mask}) {
                if (pOperand->Which == Operand::Color && pOperand->Index == int(Index))
                    *pOperand = Replaced;
            }
        }
    }
}

void OrvPictureProgram::render(const Output& Where, const GeglRectangle& Region, int Level)
{
    if (gegl_rectangle_is_empty(&Region))
        return;
    cropColors(Region, Level);
    // Waking a thread is worth it from some ten thousand blended pixels.
    const double PixelsPerThread = 20000.0 / double(m_Steps.size());
    gegl_parallel_distribute_area(&Region, PixelsPerThread, [&](const GeglRectangle* pArea) {
        auto pRun = std::make_unique<Run>(*this, Where, Region, Level);
        pRun->area(*pArea);
    });
}

void OrvPictureProgram::renderTo(GeglBuffer* pTarget, const GeglRectangle& Region, int Level)
{
    Output Where;
    Where.pBuffer = pTarget;
    render(Where, {Region.x >> Level, Region.y >> Level, Region.width >> Level, Region.height >> Level}, Level);
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
