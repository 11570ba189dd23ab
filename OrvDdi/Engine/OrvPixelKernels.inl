// Body of the pixel kernels, compiled once for every instruction set. Vectors hold two pixels of four floats;
// where the machine has shorter ones the compiler splits them. An odd last pixel runs through the same code
// with the upper half empty.

#include <cstring>

#if defined(__AVX2__) || defined(__F16C__)
#include <immintrin.h>
#endif

#pragma GCC diagnostic ignored "-Wpsabi"

namespace {

using Floats = float __attribute__((vector_size(32)));
using Ints = int __attribute__((vector_size(32)));
using Bytes = unsigned char __attribute__((vector_size(8)));
using Halves = unsigned short __attribute__((vector_size(16)));

#define ORV_INLINE inline __attribute__((always_inline))

constexpr Ints AlphaLanes = {0, 0, 0, -1, 0, 0, 0, -1};
constexpr Floats Zero = {};

ORV_INLINE Floats all(float Value)
{
    return Zero + Value;
}

ORV_INLINE Floats select(Ints Condition, Floats Yes, Floats No)
{
    return Condition ? Yes : No;
}

ORV_INLINE Floats smaller(Floats A, Floats B)
{
    return A < B ? A : B;
}

ORV_INLINE Floats larger(Floats A, Floats B)
{
    return A > B ? A : B;
}

ORV_INLINE Floats magnitude(Floats A)
{
    return (Floats)((Ints)A & 0x7fffffff);
}

ORV_INLINE Floats alphaOf(Floats Pixels)
{
    return __builtin_shuffle(Pixels, (Ints){3, 3, 3, 3, 7, 7, 7, 7});
}

/// Takes the alpha lanes from another vector.
ORV_INLINE Floats withAlpha(Floats Color, Floats Alpha)
{
    return __builtin_shuffle(Color, Alpha, (Ints){0, 1, 2, 11, 4, 5, 6, 15});
}

ORV_INLINE Floats premultiplied(Floats Straight)
{
    return Straight * withAlpha(alphaOf(Straight), all(1.0f));
}

/// Colour without alpha's share in the colour lanes; colourless where alpha is zero.
ORV_INLINE Floats straight(Floats Premultiplied)
{
    const Floats Alpha = alphaOf(Premultiplied);
    const Floats Color = select(Alpha != Zero, Premultiplied / Alpha, Zero);
    return withAlpha(Color, Premultiplied);
}

/// The same sum of the colour lanes in all lanes of a pixel.
ORV_INLINE Floats weightedSum(Floats Pixels, float Red, float Green, float Blue)
{
    const Floats Parts = Pixels * (Floats){Red, Green, Blue, 0.0f, Red, Green, Blue, 0.0f};
    const Floats Pairs = Parts + __builtin_shuffle(Parts, (Ints){1, 0, 3, 2, 5, 4, 7, 6});
    return Pairs + __builtin_shuffle(Pairs, (Ints){2, 3, 0, 1, 6, 7, 4, 5});
}

/// Rec.709 luminance.
ORV_INLINE Floats luminance(Floats Pixels)
{
    return weightedSum(Pixels, 0.2126f, 0.7152f, 0.0722f);
}

// ---- the sRGB curve on floats

/// Powers of positive numbers to about one part in a million, from the series of the logarithm around one and
/// of the exponential around zero.
ORV_INLINE Floats power(Floats Base, float Exponent)
{
    // Split into exponent and a mantissa between the root of one half and the root of two.
    const Ints Bits = (Ints)Base;
    const Ints Whole = (Bits - 0x3f3504f3) >> 23;
    const Floats Mantissa = (Floats)(Bits - (Whole << 23));
    const Floats S = (Mantissa - 1.0f) / (Mantissa + 1.0f);
    const Floats S2 = S * S;
    const Floats Series = S * (1.0f + S2 * (1.0f / 3 + S2 * (1.0f / 5 + S2 * (1.0f / 7 + S2 * (1.0f / 9)))));
    const Floats Log2 = __builtin_convertvector(Whole, Floats) + Series * 2.88539008f;

    Floats X = smaller(larger(Log2 * Exponent, all(-126.0f)), all(127.0f));
    const Floats Biased
        = X + 12582912.0f; // adds one and a half times 2 to the 23rd: rounds to a whole number
    const Ints Integer = (Ints)Biased - 0x4b400000;
    const Floats R = (X - (Biased - 12582912.0f)) * 0.693147181f;
    const Floats Exp = 1.0f
        + R * (1.0f + R * (0.5f + R * (1.0f / 6 + R * (1.0f / 24 + R * (1.0f / 120 + R * (1.0f / 720))))));
    return (Floats)((Ints)Exp + (Integer << 23));
}

/// The straight piece goes on below zero.
ORV_INLINE Floats linearOfSrgb(Floats V)
{
    const Floats Curve = power(larger(V, all(0.04f)) * (1.0f / 1.055f) + 0.055f / 1.055f, 2.4f);
    return withAlpha(select(V <= 0.04045f, V * (1.0f / 12.92f), Curve), V);
}

ORV_INLINE Floats srgbOfLinear(Floats V)
{
    const Floats Curve = power(larger(V, all(0.003f)), 1.0f / 2.4f) * 1.055f - 0.055f;
    return withAlpha(select(V <= 0.0031308f, V * 12.92f, Curve), V);
}

// ---- bytes and half floats

ORV_INLINE Floats floatsOfBytes(Bytes Values)
{
#if defined(__AVX2__)
    // The compiler does not find this one by itself.
    return (Floats)_mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_cvtsi64_si128((long long)Values)));
#else
    return __builtin_convertvector(__builtin_convertvector(Values, Ints), Floats);
#endif
}

#if defined(__F16C__)

ORV_INLINE Floats floatsOfHalves(Halves Bits)
{
    return (Floats)_mm256_cvtph_ps((__m128i)Bits);
}

ORV_INLINE Halves halvesOfFloats(Floats Values)
{
    return (Halves)_mm256_cvtps_ph((__m256)Values, _MM_FROUND_TO_NEAREST_INT);
}

#else

ORV_INLINE Floats floatsOfHalves(Halves Bits)
{
    const Ints Wide = __builtin_convertvector(Bits, Ints);
    // Exponent and mantissa in place, then the exponent's bias put right by a multiplication, which is right
    // for denormal halves too.
    const Floats Scaled = (Floats)((Wide & 0x7fff) << 13) * 0x1p112f;
    const Ints Special = ((Wide & 0x7c00) == 0x7c00) & 0x7f800000;
    return (Floats)((Ints)Scaled | Special | ((Wide & 0x8000) << 16));
}

ORV_INLINE Halves halvesOfFloats(Floats Values)
{
    const Ints Bits = (Ints)Values;
    const Ints Positive = Bits & 0x7fffffff;
    // To nearest, ties to even.
    const Ints Normal = (Positive - (112 << 23) + 0xfff + ((Positive >> 13) & 1)) >> 13;
    // One half's lowest bit is worth that of a denormal half.
    const Ints Denormal = (Ints)((Floats)Positive + 0.5f) - 0x3f000000;
    Ints Result = Positive < 0x38800000 ? Denormal : Normal;
    Result = Positive >= 0x477ff000 ? (Ints)(Zero == Zero) & 0x7c00 : Result;
    Result = Positive > 0x7f800000 ? (Ints)(Zero == Zero) & 0x7e00 : Result;
    Result |= (Bits >> 16) & 0x8000;
    return __builtin_convertvector(Result, Halves);
}

#endif

// ---- one or two pixels from and to memory

template <int PixelCount>
ORV_INLINE Floats loadFloats(const float* pPixels)
{
    Floats Pixels = {};
    std::memcpy(&Pixels, pPixels, PixelCount * 16);
    return Pixels;
}

template <int PixelCount>
ORV_INLINE void storeFloats(float* pPixels, Floats Pixels)
{
    std::memcpy(pPixels, &Pixels, PixelCount * 16);
}

/// Two factors, each in all lanes of its pixel.
template <int PixelCount>
ORV_INLINE Floats loadFactors(const float* pFactors)
{
    const float First = pFactors[0], Second = pFactors[PixelCount - 1];
    return (Floats){First, First, First, First, Second, Second, Second, Second};
}

template <int PixelCount>
ORV_INLINE Floats greys(float First, float Second)
{
    return (Floats){First, First, First, 1.0f, Second, Second, Second, 1.0f};
}

constexpr bool isSrgb(OrvPixelLayout Layout)
{
    return Layout < OrvPixelLayout::Premultiplied && (int(Layout) & 1);
}

constexpr bool isScalar(OrvPixelLayout Layout)
{
    return Layout < OrvPixelLayout::Premultiplied && (int(Layout) & 2);
}

constexpr int depthOf(OrvPixelLayout Layout)
{
    return int(Layout) / 4;
}

/// Reads pixels of a layout as straight colour (premultiplied layouts as they are), linear.
template <OrvPixelLayout Layout>
struct Reader {
    const void* pPixels;
    const float* pLinearOfByte;

    explicit Reader(const void* pAddress)
        : pPixels(pAddress)
        , pLinearOfByte(
              isSrgb(Layout) && depthOf(Layout) == 0 ? OrvPixelTables::instance().LinearOfByte : nullptr)
    {
    }

    template <int PixelCount>
    ORV_INLINE Floats read(int Index) const
    {
        if constexpr (Layout == OrvPixelLayout::OnePremultiplied) {
            Floats Pixel = loadFloats<1>(static_cast<const float*>(pPixels));
            return __builtin_shuffle(Pixel, (Ints){0, 1, 2, 3, 0, 1, 2, 3});
        } else if constexpr (Layout == OrvPixelLayout::Premultiplied || Layout == OrvPixelLayout::FloatRgba) {
            return loadFloats<PixelCount>(static_cast<const float*>(pPixels) + Index * 4);
        } else if constexpr (Layout == OrvPixelLayout::FloatRgbaSrgb) {
            return linearOfSrgb(loadFloats<PixelCount>(static_cast<const float*>(pPixels) + Index * 4));
        } else if constexpr (depthOf(Layout) == 2) {
            const float* pValues = static_cast<const float*>(pPixels) + Index;
            const Floats Values = greys<PixelCount>(pValues[0], pValues[PixelCount - 1]);
            return isSrgb(Layout) ? linearOfSrgb(Values) : Values;
        } else if constexpr (depthOf(Layout) == 1) {
            const auto* pValues = static_cast<const unsigned short*>(pPixels);
            Halves Bits = {};
            if constexpr (isScalar(Layout)) {
                constexpr unsigned short One = 0x3c00;
                const unsigned short First = pValues[Index], Second = pValues[Index + PixelCount - 1];
                Bits = (Halves){First, First, First, One, Second, Second, Second, One};
            } else {
                std::memcpy(&Bits, pValues + Index * 4, PixelCount * 8);
            }
            return isSrgb(Layout) ? linearOfSrgb(floatsOfHalves(Bits)) : floatsOfHalves(Bits);
        } else {
            constexpr float Unit = 1.0f / 255;
            const auto* pValues = static_cast<const unsigned char*>(pPixels);
            if constexpr (isScalar(Layout)) {
                const unsigned char First = pValues[Index], Second = pValues[Index + PixelCount - 1];
                return isSrgb(Layout) ? greys<PixelCount>(pLinearOfByte[First], pLinearOfByte[Second])
                                      : greys<PixelCount>(First * Unit, Second * Unit);
            } else if constexpr (isSrgb(Layout)) {
                const unsigned char* p = pValues + Index * 4;
                const unsigned char* q = p + (PixelCount - 1) * 4;
                return (Floats){pLinearOfByte[p[0]], pLinearOfByte[p[1]], pLinearOfByte[p[2]], p[3] * Unit,
                    pLinearOfByte[q[0]], pLinearOfByte[q[1]], pLinearOfByte[q[2]], q[3] * Unit};
            } else {
                Bytes Values = {};
                std::memcpy(&Values, pValues + Index * 4, PixelCount * 4);
                return floatsOfBytes(Values) * Unit;
            }
        }
    }

    /// The same, premultiplied.
    template <int PixelCount>
    ORV_INLINE Floats readPremultiplied(int Index) const
    {
        const Floats Pixels = read<PixelCount>(Index);
        constexpr bool AsItIs = Layout >= OrvPixelLayout::Premultiplied || isScalar(Layout);
        return AsItIs ? Pixels : premultiplied(Pixels);
    }
};

/// Writes straight linear pixels in a layout.
template <OrvPixelLayout Layout>
struct Writer {
    void* pPixels;
    const unsigned char* pByteOfHalf;

    explicit Writer(void* pAddress)
        : pPixels(pAddress)
        , pByteOfHalf(
              isSrgb(Layout) && depthOf(Layout) == 0 ? OrvPixelTables::instance().ByteOfHalf : nullptr)
    {
    }

    template <int PixelCount>
    ORV_INLINE void write(int Index, Floats Pixels) const
    {
        if constexpr (isScalar(Layout))
            Pixels = luminance(Pixels) * alphaOf(Pixels);
        constexpr bool CurveByTable = isSrgb(Layout) && depthOf(Layout) == 0;
        if constexpr (isSrgb(Layout) && !CurveByTable)
            Pixels = srgbOfLinear(Pixels);
        if constexpr (depthOf(Layout) == 2) {
            auto* pValues = static_cast<float*>(pPixels);
            if constexpr (isScalar(Layout)) {
                pValues[Index] = Pixels[0];
                pValues[Index + PixelCount - 1] = Pixels[(PixelCount - 1) * 4];
            } else {
                storeFloats<PixelCount>(pValues + Index * 4, Pixels);
            }
        } else if constexpr (depthOf(Layout) == 1) {
            auto* pValues = static_cast<unsigned short*>(pPixels);
            const Halves Bits = halvesOfFloats(Pixels);
            if constexpr (isScalar(Layout)) {
                pValues[Index] = Bits[0];
                pValues[Index + PixelCount - 1] = Bits[(PixelCount - 1) * 4];
            } else {
                std::memcpy(pValues + Index * 4, &Bits, PixelCount * 8);
            }
        } else {
            auto* pValues = static_cast<unsigned char*>(pPixels);
            // Comparisons in this order turn values that are not numbers into zero.
            const Floats Clamped = smaller(larger(Pixels, Zero), all(1.0f));
            Ints Rounded = __builtin_convertvector(Clamped * 255.0f + 0.5f, Ints);
            if constexpr (CurveByTable) {
                const Halves Bits = halvesOfFloats(Clamped);
                for (int Lane = 0; Lane < 8; ++Lane)
                    Rounded[Lane]
                        = (isScalar(Layout) || (Lane & 3) != 3) ? pByteOfHalf[Bits[Lane]] : Rounded[Lane];
            }
            if constexpr (isScalar(Layout)) {
                pValues[Index] = (unsigned char)Rounded[0];
                pValues[Index + PixelCount - 1] = (unsigned char)Rounded[(PixelCount - 1) * 4];
            } else {
                const Bytes Narrow = __builtin_convertvector(Rounded, Bytes);
                std::memcpy(pValues + Index * 4, &Narrow, PixelCount * 4);
            }
        }
    }
};

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

// ---- blend modes
//
// S and B are over and base, premultiplied, with the alpha lanes holding alpha; Sa and Ba hold alpha in all
// lanes. All are the compositing formula  as ab f(cb, cs) + (1 - ab) S + (1 - as) B, simplified where f
// allows it.

struct Inputs {
    Floats S, B, Sa, Ba;
    /// The shares of both where the other is transparent.
    ORV_INLINE Floats alone() const { return S * (1.0f - Ba) + B * (1.0f - Sa); }
    ORV_INLINE Floats alpha() const { return Sa + Ba - Sa * Ba; }
    ORV_INLINE Floats straightS() const { return select(Sa != Zero, S / Sa, Zero); }
    ORV_INLINE Floats straightB() const { return select(Ba != Zero, B / Ba, Zero); }
    /// The formula for a function of straight colours.
    ORV_INLINE Floats composite(Floats F) const { return withAlpha(Sa * Ba * F + alone(), alpha()); }
};

struct Normal {
    static ORV_INLINE Floats blend(const Inputs& I) { return I.S + I.B * (1.0f - I.Sa); }
};

struct Multiply {
    static ORV_INLINE Floats blend(const Inputs& I) { return I.S * I.B + I.alone(); }
};

struct Screen {
    static ORV_INLINE Floats blend(const Inputs& I) { return I.S + I.B - I.S * I.B; }
};

struct Overlay {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Product = 2.0f * I.S * I.B;
        const Floats Inverse = I.Sa * I.Ba - 2.0f * (I.Ba - I.B) * (I.Sa - I.S);
        return select(2.0f * I.B <= I.Ba, Product, Inverse) + I.alone();
    }
};

struct HardLight {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Product = 2.0f * I.S * I.B;
        const Floats Inverse = I.Sa * I.Ba - 2.0f * (I.Ba - I.B) * (I.Sa - I.S);
        return select(2.0f * I.S <= I.Sa, Product, Inverse) + I.alone();
    }
};

struct Darken {
    static ORV_INLINE Floats blend(const Inputs& I) { return smaller(I.S * I.Ba, I.B * I.Sa) + I.alone(); }
};

struct Lighten {
    static ORV_INLINE Floats blend(const Inputs& I) { return larger(I.S * I.Ba, I.B * I.Sa) + I.alone(); }
};

struct Difference {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(magnitude(I.S * I.Ba - I.B * I.Sa) + I.alone(), I.alpha());
    }
};

struct Exclusion {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(I.S + I.B - 2.0f * I.S * I.B, I.alpha());
    }
};

/// The published formulas end at one. Brighter bases keep their value where the over image would leave them
/// alone.
struct ColorDodge {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats Limit = larger(Cb, all(1.0f));
        const Floats Ratio = select(Cs >= 1.0f, Limit, smaller(Cb / (1.0f - Cs), Limit));
        return I.composite(select(Cb <= Zero, smaller(Cb, Zero), Ratio));
    }
};

struct ColorBurn {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats Ratio = select(Cs <= Zero, Zero, larger(1.0f - (1.0f - Cb) / Cs, Zero));
        return I.composite(select(Cb >= 1.0f, Cb, Ratio));
    }
};

struct SoftLight {
    static ORV_INLINE Floats root(Floats V)
    {
        Floats Roots = {};
        for (int Lane = 0; Lane < 8; ++Lane)
            Roots[Lane] = __builtin_sqrtf(V[Lane]);
        return Roots;
    }
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats Dark = ((16.0f * Cb - 12.0f) * Cb + 4.0f) * Cb;
        const Floats D = select(Cb <= 0.25f, Dark, root(larger(Cb, Zero)));
        const Floats Weight = 2.0f * Cs - 1.0f;
        const Floats Lighter = Cb + Weight * (D - Cb);
        const Floats Darker = Cb + Weight * Cb * (1.0f - Cb);
        return I.composite(select(Cs <= 0.5f, Darker, Lighter));
    }
};

struct Add {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        // as ab (cs + cb) + (1 - ab) S + (1 - as) B
        return withAlpha(I.S + I.B, I.alpha());
    }
};

struct Subtract {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(I.B * I.Sa - I.S * I.Ba + I.alone(), I.alpha());
    }
};

struct Divide {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const Floats Cs = I.straightS(), Cb = I.straightB();
        const Floats ByNothing = select(Cb > Zero, all(1.0f), Zero);
        return I.composite(select(Cs != Zero, Cb / Cs, ByNothing));
    }
};

struct Average {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        return withAlpha(0.5f * (I.S * I.Ba + I.B * I.Sa) + I.alone(), I.alpha());
    }
};

// Hue, Saturation, Color and Luminosity; the weights are those of their published definition.

ORV_INLINE Floats lum(Floats Color)
{
    return weightedSum(Color, 0.3f, 0.59f, 0.11f);
}

ORV_INLINE Floats lowest(Floats Color)
{
    const Floats Rotated = __builtin_shuffle(Color, (Ints){1, 2, 0, 3, 5, 6, 4, 7});
    const Floats Again = __builtin_shuffle(Color, (Ints){2, 0, 1, 3, 6, 4, 5, 7});
    return __builtin_shuffle(smaller(smaller(Color, Rotated), Again), (Ints){0, 0, 0, 0, 4, 4, 4, 4});
}

ORV_INLINE Floats highest(Floats Color)
{
    const Floats Rotated = __builtin_shuffle(Color, (Ints){1, 2, 0, 3, 5, 6, 4, 7});
    const Floats Again = __builtin_shuffle(Color, (Ints){2, 0, 1, 3, 6, 4, 5, 7});
    return __builtin_shuffle(larger(larger(Color, Rotated), Again), (Ints){0, 0, 0, 0, 4, 4, 4, 4});
}

ORV_INLINE Floats sat(Floats Color)
{
    return highest(Color) - lowest(Color);
}

/// A colour of the given luminosity; pulled towards grey where it would leave the range from zero to Limit.
ORV_INLINE Floats setLum(Floats Color, Floats Luminosity, Floats Limit)
{
    const Floats Moved = Color + (Luminosity - lum(Color));
    const Floats Low = lowest(Moved), High = highest(Moved);
    const Floats Lifted = Luminosity + (Moved - Luminosity) * larger(Luminosity, Zero) / (Luminosity - Low);
    const Floats AboveZero = select(Low < Zero, Lifted, Moved);
    const Floats Pulled = Luminosity + (AboveZero - Luminosity) * (Limit - Luminosity) / (High - Luminosity);
    return select(High > Limit, Pulled, AboveZero);
}

ORV_INLINE Floats setSat(Floats Color, Floats Saturation)
{
    const Floats Low = lowest(Color);
    const Floats Spread = highest(Color) - Low;
    return select(Spread > Zero, (Color - Low) * Saturation / Spread, Zero);
}

struct NonSeparable {
    Floats Cs, Cb, Limit;
    explicit ORV_INLINE NonSeparable(const Inputs& I)
        : Cs(I.straightS())
        , Cb(I.straightB())
        , Limit(larger(all(1.0f), larger(highest(Cs), highest(Cb))))
    {
    }
};

struct Hue {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(setSat(C.Cs, sat(C.Cb)), lum(C.Cb), C.Limit));
    }
};

struct Saturation {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(setSat(C.Cb, sat(C.Cs)), lum(C.Cb), C.Limit));
    }
};

struct Color {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(C.Cs, lum(C.Cb), C.Limit));
    }
};

struct Luminosity {
    static ORV_INLINE Floats blend(const Inputs& I)
    {
        const NonSeparable C(I);
        return I.composite(setLum(C.Cb, lum(C.Cs), C.Limit));
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

/// Reads the over image in its own layout while blending: the modes that most layers have.
template <class Mode>
void blendAnyLayout(
    OrvPixelLayout Layout, const void* pOver, const float* pFactors, float Amount, int Count, float* pBase);

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
