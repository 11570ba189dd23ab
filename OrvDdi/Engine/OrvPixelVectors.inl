// The vectors that the pixel kernels compute with, and how pixels of every layout get into and out of them.
// Vectors hold two pixels of four floats; where the machine has shorter ones the compiler splits them. An odd
// last pixel runs through the same code with the upper half empty.

#pragma once

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

} // namespace
