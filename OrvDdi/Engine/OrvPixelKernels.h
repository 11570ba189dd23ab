#pragma once

#include "OrvDdi/Engine/OrvBlendParameters.h"
#include "OrvDdi/Image/OrvPixelFormat.h"

/// How pixels lie in memory: OrvPixelFormat as one number, and what the engine computes with.
enum class OrvPixelLayout : unsigned char {
    ByteRgba,
    ByteRgbaSrgb,
    ByteScalar,
    ByteScalarSrgb,
    HalfRgba,
    HalfRgbaSrgb,
    HalfScalar,
    HalfScalarSrgb,
    FloatRgba,
    FloatRgbaSrgb,
    FloatScalar,
    FloatScalarSrgb,
    Premultiplied, ///< four floats, linear, colour multiplied by alpha
    OnePremultiplied ///< a single pixel of the kind above that stands for all
};

ORVDDI_EXPORT OrvPixelLayout orvPixelLayout(const OrvPixelFormat& Format);
ORVDDI_EXPORT int orvBytesPerPixel(OrvPixelLayout Layout);
ORVDDI_EXPORT bool orvIsScalar(OrvPixelLayout Layout);

/// The inner loops over pixels: conversions and blending, for runs of pixels that lie in a row. Blending and
/// buffers share them. One set is compiled for any machine, one for machines with AVX2, FMA and F16C; best()
/// tells them apart while the program runs. Scalar pixels widen to grey of full opacity; colour narrows to a
/// scalar as its Rec.709 luminance over black.
struct ORVDDI_EXPORT OrvPixelKernels {
    /// To four floats, linear. The target has the alignment of floats only.
    void (*widenStraight)(OrvPixelLayout Layout, const void* pPixels, int Count, float* pStraight);
    void (*widenPremultiplied)(OrvPixelLayout Layout, const void* pPixels, int Count, float* pPremultiplied);
    /// From four floats, linear. Never to Premultiplied from straight or to OnePremultiplied.
    void (*narrowStraight)(OrvPixelLayout Layout, const float* pStraight, int Count, void* pPixels);
    void (*narrowPremultiplied)(OrvPixelLayout Layout, const float* pPremultiplied, int Count, void* pPixels);

    /// How strongly each pixel is blended: the mask's luminance over black, times the amount.
    void (*maskFactors)(OrvPixelLayout Layout, const void* pMask, int Count, float Amount, float* pFactors);
    /// Multiplies factors by the luminance ramps of the blend.
    void (*rangeFactors)(const OrvBlendParameters& Parameters, const float* pBase, const float* pOver,
        int Count, float* pFactors);
    /// Blends above what pBase holds. Without factors every pixel counts by Amount.
    void (*blend)(OrvBlendMode Mode, OrvPixelLayout OverLayout, const void* pOver, const float* pFactors,
        float Amount, int Count, float* pBase);
    /// base + (over - base) * factor
    void (*mix)(const float* pOver, const float* pFactors, float Amount, int Count, float* pBase);
    /// Puts back the components that the blend does not write, seen as straight colour.
    void (*keepComponents)(
        const OrvBlendParameters& Parameters, const float* pBefore, int Count, float* pResult);

    static const OrvPixelKernels& best();
    static const OrvPixelKernels& portable();
};

/// Tables that the kernels look into, made on first use.
struct OrvPixelTables {
    /// Linear values of 8-bit sRGB values.
    float LinearOfByte[256];
    /// 8-bit sRGB values of linear half values from 0 to 1, by their bits.
    unsigned char ByteOfHalf[0x3c01];

    static const OrvPixelTables& instance();
};
