// Body of the pixel kernels, compiled once for every instruction set.

#include "OrvDdi/Engine/OrvBlendModes.inl"
#include "OrvDdi/Engine/OrvPixelVectors.inl"

namespace {

/// Calls Step(Index) with one and two pixels at a time; Step is a class with a template operator.
template <class Step>
ORV_INLINE void forPixels(int Count, const Step& Do)
{
    int Index = 0;
    for (; Index + 1 < Count; Index += 2)
        Do.template at<2>(Index);
    if (Index < Count)
        Do.template at<1>(Index);
}

/// Calls Call<Layout>::run for a layout known only now.
template <template <OrvPixelLayout> class Call, class... Arguments>
void withLayout(OrvPixelLayout Layout, Arguments... Values)
{
    switch (Layout) {
#define ORV_LAYOUT(Name)                                                                                     \
    case OrvPixelLayout::Name:                                                                               \
        return Call<OrvPixelLayout::Name>::run(Values...);
        ORV_LAYOUT(ByteRgba)
        ORV_LAYOUT(ByteRgbaSrgb)
        ORV_LAYOUT(ByteScalar)
        ORV_LAYOUT(ByteScalarSrgb)
        ORV_LAYOUT(HalfRgba)
        ORV_LAYOUT(HalfRgbaSrgb)
        ORV_LAYOUT(HalfScalar)
        ORV_LAYOUT(HalfScalarSrgb)
        ORV_LAYOUT(FloatRgba)
        ORV_LAYOUT(FloatRgbaSrgb)
        ORV_LAYOUT(FloatScalar)
        ORV_LAYOUT(FloatScalarSrgb)
        ORV_LAYOUT(Premultiplied)
        ORV_LAYOUT(OnePremultiplied)
#undef ORV_LAYOUT
    }
}

// ---- conversions

template <OrvPixelLayout Layout>
struct WidenStraight {
    Reader<Layout> From;
    float* pTo;
    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        const Floats Pixels = From.template read<PixelCount>(Index);
        storeFloats<PixelCount>(
            pTo + Index * 4, Layout >= OrvPixelLayout::Premultiplied ? straight(Pixels) : Pixels);
    }
    static void run(const void* pPixels, int Count, float* pStraight)
    {
        forPixels(Count, WidenStraight{Reader<Layout>(pPixels), pStraight});
    }
};

template <OrvPixelLayout Layout>
struct WidenPremultiplied {
    Reader<Layout> From;
    float* pTo;
    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        storeFloats<PixelCount>(pTo + Index * 4, From.template readPremultiplied<PixelCount>(Index));
    }
    static void run(const void* pPixels, int Count, float* pPremultiplied)
    {
        forPixels(Count, WidenPremultiplied{Reader<Layout>(pPixels), pPremultiplied});
    }
};

template <OrvPixelLayout Layout, bool FromPremultiplied>
struct Narrow {
    const float* pFrom;
    Writer<Layout> To;
    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        const Floats Pixels = loadFloats<PixelCount>(pFrom + Index * 4);
        To.template write<PixelCount>(Index, FromPremultiplied ? straight(Pixels) : Pixels);
    }
    static void run(const float* pPixels, int Count, void* pTarget)
    {
        // The layouts of the engine itself are no targets of narrowing.
        if constexpr (Layout < OrvPixelLayout::Premultiplied)
            forPixels(Count, Narrow{pPixels, Writer<Layout>(pTarget)});
        else
            std::memcpy(pTarget, pPixels, size_t(Count) * 16);
    }
};

template <OrvPixelLayout Layout>
using NarrowStraight = Narrow<Layout, false>;
template <OrvPixelLayout Layout>
using NarrowPremultiplied = Narrow<Layout, true>;

// ---- factors

template <OrvPixelLayout Layout>
struct MaskFactors {
    Reader<Layout> Mask;
    float Amount;
    float* pFactors;
    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        const Floats Pixels = Mask.template readPremultiplied<PixelCount>(Index);
        const Floats Factors = (isScalar(Layout) ? Pixels : luminance(Pixels)) * Amount;
        pFactors[Index] = Factors[0];
        pFactors[Index + PixelCount - 1] = Factors[(PixelCount - 1) * 4];
    }
    static void run(const void* pMask, int Count, float Amount, float* pFactors)
    {
        if constexpr (Layout == OrvPixelLayout::ByteScalar) {
            // The usual mask; this loop needs no lanes of four.
            const auto* pValues = static_cast<const unsigned char*>(pMask);
            const float Unit = Amount / 255;
            for (int Index = 0; Index < Count; ++Index)
                pFactors[Index] = pValues[Index] * Unit;
        } else {
            forPixels(Count, MaskFactors{Reader<Layout>(pMask), Amount, pFactors});
        }
    }
};

struct RangeFactors {
    const OrvBlendParameters& Parameters;
    const float *pBase, *pOver;
    float* pFactors;

    /// A ramp that begins at the bottom or ends at the top is open there: brighter than white is no reason to
    /// hide.
    static ORV_INLINE Floats ramp(Floats Value, const float (&Range)[4])
    {
        const float UpWidth = larger(all(Range[1] - Range[0]), all(1e-6f))[0];
        const float DownWidth = larger(all(Range[3] - Range[2]), all(1e-6f))[0];
        const Floats Up = smaller(larger((Value - Range[0]) / UpWidth, Zero), all(1.0f));
        const Floats Down = smaller(larger((Range[3] - Value) / DownWidth, Zero), all(1.0f));
        const Floats FromBottom = Range[1] <= 0.0f ? all(1.0f) : select(Value >= Range[1], all(1.0f), Up);
        const Floats ToTop = Range[2] >= 1.0f ? all(1.0f) : select(Value <= Range[2], all(1.0f), Down);
        return FromBottom * ToTop;
    }
    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        const Floats Base = luminance(straight(loadFloats<PixelCount>(pBase + Index * 4)));
        const Floats Over = luminance(straight(loadFloats<PixelCount>(pOver + Index * 4)));
        const Floats Factors = ramp(Base, Parameters.BaseRange) * ramp(Over, Parameters.OverRange);
        pFactors[Index] *= Factors[0];
        if constexpr (PixelCount == 2)
            pFactors[Index + 1] *= Factors[4];
    }
    static void run(const OrvBlendParameters& Parameters, const float* pBase, const float* pOver, int Count,
        float* pFactors)
    {
        forPixels(Count, RangeFactors{Parameters, pBase, pOver, pFactors});
    }
};

// ---- blending

template <class Mode, OrvPixelLayout Layout, bool HasFactors>
struct Blend {
    Reader<Layout> Over;
    const float* pFactors;
    float Amount;
    float* pBase;

    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        const Floats Factor = HasFactors ? loadFactors<PixelCount>(pFactors + Index) : all(Amount);
        Inputs I;
        I.S = Over.template readPremultiplied<PixelCount>(Index) * Factor;
        I.B = loadFloats<PixelCount>(pBase + Index * 4);
        I.Sa = alphaOf(I.S);
        I.Ba = alphaOf(I.B);
        storeFloats<PixelCount>(pBase + Index * 4, Mode::blend(I));
    }
};

template <class Mode, OrvPixelLayout Layout>
void blendRun(const void* pOver, const float* pFactors, float Amount, int Count, float* pBase)
{
    const Reader<Layout> Over(pOver);
    if (pFactors)
        forPixels(Count, Blend<Mode, Layout, true>{Over, pFactors, Amount, pBase});
    else
        forPixels(Count, Blend<Mode, Layout, false>{Over, pFactors, Amount, pBase});
}

/// The other modes are so much arithmetic that widening first costs little; it happens in pieces that stay in
/// the nearest cache.
template <class Mode>
void blendWidened(
    OrvPixelLayout Layout, const void* pOver, const float* pFactors, float Amount, int Count, float* pBase)
{
    if (Layout == OrvPixelLayout::Premultiplied)
        return blendRun<Mode, OrvPixelLayout::Premultiplied>(pOver, pFactors, Amount, Count, pBase);
    if (Layout == OrvPixelLayout::OnePremultiplied)
        return blendRun<Mode, OrvPixelLayout::OnePremultiplied>(pOver, pFactors, Amount, Count, pBase);
    constexpr int Piece = 256;
    float Widened[Piece * 4];
    for (int First = 0; First < Count; First += Piece) {
        const int Length = Count - First < Piece ? Count - First : Piece;
        const char* pPixels
            = static_cast<const char*>(pOver) + size_t(First) * size_t(orvBytesPerPixel(Layout));
        withLayout<WidenPremultiplied>(Layout, static_cast<const void*>(pPixels), Length, Widened);
        blendRun<Mode, OrvPixelLayout::Premultiplied>(
            Widened, pFactors ? pFactors + First : nullptr, Amount, Length, pBase + First * 4);
    }
}

/// Reads the over image in its own layout while blending: for the modes that most layers have.
template <class Mode>
void blendAnyLayout(
    OrvPixelLayout Layout, const void* pOver, const float* pFactors, float Amount, int Count, float* pBase)
{
    switch (Layout) {
    case OrvPixelLayout::ByteRgba:
        return blendRun<Mode, OrvPixelLayout::ByteRgba>(pOver, pFactors, Amount, Count, pBase);
    case OrvPixelLayout::ByteRgbaSrgb:
        return blendRun<Mode, OrvPixelLayout::ByteRgbaSrgb>(pOver, pFactors, Amount, Count, pBase);
    case OrvPixelLayout::HalfRgba:
        return blendRun<Mode, OrvPixelLayout::HalfRgba>(pOver, pFactors, Amount, Count, pBase);
    case OrvPixelLayout::FloatRgba:
        return blendRun<Mode, OrvPixelLayout::FloatRgba>(pOver, pFactors, Amount, Count, pBase);
    default:
        return blendWidened<Mode>(Layout, pOver, pFactors, Amount, Count, pBase);
    }
}

void blendMode(OrvBlendMode Mode, OrvPixelLayout Layout, const void* pOver, const float* pFactors,
    float Amount, int Count, float* pBase)
{
    switch (Mode) {
#define ORV_MODE(Name, Function)                                                                             \
    case OrvBlendMode::Name:                                                                                 \
        return Function<Name>(Layout, pOver, pFactors, Amount, Count, pBase);
        ORV_MODE(Normal, blendAnyLayout)
        ORV_MODE(Multiply, blendAnyLayout)
        ORV_MODE(Screen, blendAnyLayout)
        ORV_MODE(Overlay, blendAnyLayout)
        ORV_MODE(Darken, blendWidened)
        ORV_MODE(Lighten, blendWidened)
        ORV_MODE(ColorDodge, blendWidened)
        ORV_MODE(ColorBurn, blendWidened)
        ORV_MODE(HardLight, blendWidened)
        ORV_MODE(SoftLight, blendWidened)
        ORV_MODE(Difference, blendWidened)
        ORV_MODE(Exclusion, blendWidened)
        ORV_MODE(Hue, blendWidened)
        ORV_MODE(Saturation, blendWidened)
        ORV_MODE(Color, blendWidened)
        ORV_MODE(Luminosity, blendWidened)
        ORV_MODE(Add, blendAnyLayout)
        ORV_MODE(Subtract, blendWidened)
        ORV_MODE(Divide, blendWidened)
        ORV_MODE(Average, blendWidened)
#undef ORV_MODE
    case OrvBlendMode::Count:
        return;
    }
}

struct Mix {
    const float *pOver, *pFactors;
    float Amount;
    float* pBase;
    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        const Floats Factor = pFactors ? loadFactors<PixelCount>(pFactors + Index) : all(Amount);
        const Floats Base = loadFloats<PixelCount>(pBase + Index * 4);
        const Floats Over = loadFloats<PixelCount>(pOver + Index * 4);
        storeFloats<PixelCount>(pBase + Index * 4, Base + (Over - Base) * Factor);
    }
    static void run(const float* pOver, const float* pFactors, float Amount, int Count, float* pBase)
    {
        forPixels(Count, Mix{pOver, pFactors, Amount, pBase});
    }
};

struct KeepComponents {
    Ints Written;
    const float* pBefore;
    float* pResult;
    template <int PixelCount>
    ORV_INLINE void at(int Index) const
    {
        const Floats Before = straight(loadFloats<PixelCount>(pBefore + Index * 4));
        const Floats After = straight(loadFloats<PixelCount>(pResult + Index * 4));
        storeFloats<PixelCount>(pResult + Index * 4, premultiplied(select(Written, After, Before)));
    }
    static void run(const OrvBlendParameters& Parameters, const float* pBefore, int Count, float* pResult)
    {
        const int R = -int(Parameters.WriteRed), G = -int(Parameters.WriteGreen),
                  B = -int(Parameters.WriteBlue), A = -int(Parameters.WriteAlpha);
        forPixels(Count, KeepComponents{(Ints){R, G, B, A, R, G, B, A}, pBefore, pResult});
    }
};

constexpr OrvPixelKernels makeKernels()
{
    return {withLayout<WidenStraight, const void*, int, float*>,
        withLayout<WidenPremultiplied, const void*, int, float*>,
        withLayout<NarrowStraight, const float*, int, void*>,
        withLayout<NarrowPremultiplied, const float*, int, void*>,
        withLayout<MaskFactors, const void*, int, float, float*>, RangeFactors::run, blendMode, Mix::run,
        KeepComponents::run};
}

} // namespace
