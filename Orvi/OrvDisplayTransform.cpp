#include "Orvi/OrvDisplayTransform.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Color/OrvColorSpaceManager.h"

#include <array>
#include <cmath>

namespace {

constexpr int CurveSteps = 1 << 16;

/// 8-bit values of the sRGB curve (IEC 61966-2-1). Even where it is steepest, one step of the table is a
/// twentieth of an 8-bit value.
const std::array<uchar, CurveSteps>& srgbCurve()
{
    static const std::array<uchar, CurveSteps> Curve = [] {
        std::array<uchar, CurveSteps> Values;
        for (int Step = 0; Step < CurveSteps; ++Step) {
            const double Linear = double(Step) / (CurveSteps - 1);
            const double Encoded
                = Linear <= 0.0031308 ? 12.92 * Linear : 1.055 * std::pow(Linear, 1.0 / 2.4) - 0.055;
            Values[std::size_t(Step)] = uchar(std::lround(Encoded * 255.0));
        }
        return Values;
    }();
    return Curve;
}

/// Not-a-number shows as black.
float clamped(float Value)
{
    return Value > 0.0f ? (Value < 1.0f ? Value : 1.0f) : 0.0f;
}

template <class Quantize>
void convert(const float* pPixels, QImage& Image, Quantize quantized)
{
    for (int Row = 0; Row < Image.height(); ++Row) {
        auto* pOut = reinterpret_cast<QRgb*>(Image.scanLine(Row));
        for (int Column = 0; Column < Image.width(); ++Column, pPixels += 4) {
            const int Alpha = int(clamped(pPixels[3]) * 255.0f + 0.5f);
            const QRgb Straight
                = qRgba(quantized(pPixels[0]), quantized(pPixels[1]), quantized(pPixels[2]), Alpha);
            pOut[Column] = Alpha == 255 ? Straight : qPremultiply(Straight);
        }
    }
}

} // namespace

QImage OrvDisplayTransform::toImage(float* pPixels, const QSize& Size, Meaning Values, const QString& Space)
{
    QImage Image(Size, QImage::Format_ARGB32_Premultiplied);
    const auto plain = [](float Value) { return int(clamped(Value) * 255.0f + 0.5f); };
    if (Values == Numbers) {
        convert(pPixels, Image, plain);
        return Image;
    }
    const QString Display = OrvColorSpaceManager::instance().colorSpace(OrvColorSpaceDefaults::Display);
    QString Error;
    if (Display != OrvColorManager::srgb()
        && OrvColorManager::transformPixels(
            pPixels, Size.width(), Size.height(), 0, Space, Display, Error)) {
        convert(pPixels, Image, plain);
        return Image;
    }
    // Costs nothing for light that is linear already.
    OrvColorManager::transformPixels(
        pPixels, Size.width(), Size.height(), 0, Space, OrvColorManager::linear(), Error);
    const std::array<uchar, CurveSteps>& Curve = srgbCurve();
    convert(pPixels, Image,
        [&Curve](float Value) { return Curve[std::size_t(clamped(Value) * (CurveSteps - 1) + 0.5f)]; });
    return Image;
}
