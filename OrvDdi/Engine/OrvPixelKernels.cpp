#include "OrvDdi/Engine/OrvPixelKernels.h"

#include <cmath>

#include "OrvDdi/Engine/OrvPixelKernels.inl"

#if defined(ORV_KERNELS_AVX2)
extern const OrvPixelKernels OrvPixelKernelsAvx2;
#endif

namespace {

double linearOfSrgb(double Value)
{
    return Value <= 0.04045 ? Value / 12.92 : std::pow((Value + 0.055) / 1.055, 2.4);
}

double srgbOfLinear(double Value)
{
    return Value <= 0.0031308 ? Value * 12.92 : 1.055 * std::pow(Value, 1.0 / 2.4) - 0.055;
}

/// Positive and not infinite.
double valueOfHalf(int Bits)
{
    const int Exponent = Bits >> 10, Mantissa = Bits & 0x3ff;
    return Exponent ? std::ldexp(1024 + Mantissa, Exponent - 25) : std::ldexp(Mantissa, -24);
}

constexpr OrvPixelKernels Portable = makeKernels();

} // namespace

const OrvPixelKernels& OrvPixelKernels::portable()
{
    return Portable;
}

const OrvPixelKernels& OrvPixelKernels::best()
{
#if defined(ORV_KERNELS_AVX2)
    static const bool HasAvx2
        = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("f16c");
    if (HasAvx2)
        return OrvPixelKernelsAvx2;
#endif
    return Portable;
}

const OrvPixelTables& OrvPixelTables::instance()
{
    static const OrvPixelTables Tables = [] {
        OrvPixelTables Made;
        for (int Byte = 0; Byte < 256; ++Byte)
            Made.LinearOfByte[Byte] = float(linearOfSrgb(Byte / 255.0));
        for (int Bits = 0; Bits <= 0x3c00; ++Bits)
            Made.ByteOfHalf[Bits] = (unsigned char)(std::lround(srgbOfLinear(valueOfHalf(Bits)) * 255.0));
        return Made;
    }();
    return Tables;
}

OrvPixelLayout orvPixelLayout(const OrvPixelFormat& Format)
{
    const int Depth = Format.Depth == GL_FLOAT ? 2 : Format.Depth == GL_HALF_FLOAT ? 1 : 0;
    const int Kind = Format.Kind == OrvPixelFormat::Scalar ? 1 : 0;
    const int Curve = Format.Curve == OrvPixelFormat::Srgb ? 1 : 0;
    return OrvPixelLayout(Depth * 4 + Kind * 2 + Curve);
}

int orvBytesPerPixel(OrvPixelLayout Layout)
{
    if (Layout == OrvPixelLayout::OnePremultiplied)
        return 0;
    if (Layout == OrvPixelLayout::Premultiplied)
        return 16;
    const int Index = int(Layout);
    const int BytesPerComponent = 1 << (Index / 4);
    return BytesPerComponent * (orvIsScalar(Layout) ? 1 : 4);
}

bool orvIsScalar(OrvPixelLayout Layout)
{
    return isScalar(Layout);
}
