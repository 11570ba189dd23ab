#pragma once

#include "OrvDdi/Engine/OrvBlendParameters.h"

#include <algorithm>
#include <array>
#include <cmath>

/// Blending as the definitions state it: one pixel of straight colour in double precision, component by
/// component, without any of the rearrangements that make the engine fast.
class OrvReferenceBlend {
public:
    using Pixel = std::array<double, 4>; ///< straight alpha

    static Pixel blend(
        const OrvBlendParameters& Parameters, const Pixel& Base, const Pixel& Over, double Mask)
    {
        if (!Parameters.Enabled)
            return Base;
        double Factor = Parameters.Amount * Mask;
        if (Parameters.AdvancedEnabled)
            Factor
                *= ramp(luminance(Base), Parameters.BaseRange) * ramp(luminance(Over), Parameters.OverRange);
        Pixel Result = Parameters.PassThrough ? mixed(Base, Over, Factor)
                                              : composited(Parameters.Mode, Base, Over, Over[3] * Factor);
        if (Parameters.AdvancedEnabled) {
            const bool Written[]
                = {Parameters.WriteRed, Parameters.WriteGreen, Parameters.WriteBlue, Parameters.WriteAlpha};
            for (size_t Index = 0; Index < 4; ++Index)
                Result[Index] = Written[Index]    ? Result[Index]
                    : Base[3] == 0.0 && Index < 3 ? 0.0
                                                  : Base[Index];
        }
        return Result;
    }

private:
    using Color = std::array<double, 3>;

    static double luminance(const Pixel& P)
    {
        return P[3] == 0.0 ? 0.0 : 0.2126 * P[0] + 0.7152 * P[1] + 0.0722 * P[2];
    }

    static double ramp(double Value, const float (&Range)[4])
    {
        double Share = 1.0;
        if (Range[1] > 0.0f && Value < Range[1])
            Share *= Value <= Range[0] ? 0.0 : (Value - Range[0]) / (Range[1] - Range[0]);
        if (Range[2] < 1.0f && Value > Range[2])
            Share *= Value >= Range[3] ? 0.0 : (Range[3] - Value) / (Range[3] - Range[2]);
        return Share;
    }

    static Pixel mixed(const Pixel& Base, const Pixel& Over, double Factor)
    {
        const double Alpha = Base[3] + (Over[3] - Base[3]) * Factor;
        Pixel Result{0, 0, 0, Alpha};
        for (size_t Index = 0; Index < 3 && Alpha != 0.0; ++Index)
            Result[Index] = (Base[Index] * Base[3] * (1 - Factor) + Over[Index] * Over[3] * Factor) / Alpha;
        return Result;
    }

    static Pixel composited(OrvBlendMode Mode, const Pixel& Base, const Pixel& Over, double OverAlpha)
    {
        const Color Cb{Base[0], Base[1], Base[2]}, Cs{Over[0], Over[1], Over[2]};
        const Color Blended = function(Mode, Cb, Cs);
        const double Alpha = OverAlpha + Base[3] - OverAlpha * Base[3];
        Pixel Result{0, 0, 0, Alpha};
        for (size_t Index = 0; Index < 3 && Alpha != 0.0; ++Index) {
            // The over image's colour, mixed with the blend where the base covers; then laid over the base.
            const double Mixed = (1 - Base[3]) * Cs[Index] + Base[3] * Blended[Index];
            Result[Index] = (OverAlpha * Mixed + (1 - OverAlpha) * Base[3] * Cb[Index]) / Alpha;
        }
        return Result;
    }

    static Color function(OrvBlendMode Mode, const Color& Cb, const Color& Cs)
    {
        switch (Mode) {
        case OrvBlendMode::Hue:
            return setLum(setSat(Cs, sat(Cb)), lum(Cb));
        case OrvBlendMode::Saturation:
            return setLum(setSat(Cb, sat(Cs)), lum(Cb));
        case OrvBlendMode::Color:
            return setLum(Cs, lum(Cb));
        case OrvBlendMode::Luminosity:
            return setLum(Cb, lum(Cs));
        default:
            Color Result;
            for (size_t Index = 0; Index < 3; ++Index)
                Result[Index] = separable(Mode, Cb[Index], Cs[Index]);
            return Result;
        }
    }

    static double separable(OrvBlendMode Mode, double Cb, double Cs)
    {
        switch (Mode) {
        case OrvBlendMode::Multiply:
            return Cb * Cs;
        case OrvBlendMode::Screen:
            return 1 - (1 - Cb) * (1 - Cs);
        case OrvBlendMode::Overlay:
            return separable(OrvBlendMode::HardLight, Cs, Cb);
        case OrvBlendMode::Darken:
            return std::min(Cb, Cs);
        case OrvBlendMode::Lighten:
            return std::max(Cb, Cs);
        case OrvBlendMode::ColorDodge:
            return Cb == 0 ? 0 : Cs == 1 ? 1 : std::min(1.0, Cb / (1 - Cs));
        case OrvBlendMode::ColorBurn:
            return Cb == 1 ? 1 : Cs == 0 ? 0 : 1 - std::min(1.0, (1 - Cb) / Cs);
        case OrvBlendMode::HardLight:
            return Cs <= 0.5 ? Cb * 2 * Cs : separable(OrvBlendMode::Screen, Cb, 2 * Cs - 1);
        case OrvBlendMode::SoftLight: {
            const double D = Cb <= 0.25 ? ((16 * Cb - 12) * Cb + 4) * Cb : std::sqrt(Cb);
            return Cs <= 0.5 ? Cb - (1 - 2 * Cs) * Cb * (1 - Cb) : Cb + (2 * Cs - 1) * (D - Cb);
        }
        case OrvBlendMode::Difference:
            return std::abs(Cb - Cs);
        case OrvBlendMode::Exclusion:
            return Cb + Cs - 2 * Cb * Cs;
        case OrvBlendMode::Add:
            return Cb + Cs;
        case OrvBlendMode::Subtract:
            return Cb - Cs;
        case OrvBlendMode::Divide:
            return Cs == 0 ? (Cb > 0 ? 1 : 0) : Cb / Cs;
        case OrvBlendMode::Average:
            return (Cb + Cs) / 2;
        default:
            return Cs;
        }
    }

    static double lum(const Color& C) { return 0.3 * C[0] + 0.59 * C[1] + 0.11 * C[2]; }
    static double sat(const Color& C)
    {
        return *std::max_element(C.begin(), C.end()) - *std::min_element(C.begin(), C.end());
    }

    static Color setLum(Color C, double L)
    {
        const double Difference = L - lum(C);
        for (double& Component : C)
            Component += Difference;
        const double Low = *std::min_element(C.begin(), C.end()),
                     High = *std::max_element(C.begin(), C.end());
        for (double& Component : C) {
            if (Low < 0)
                Component = L + (Component - L) * L / (L - Low);
            if (High > 1)
                Component = L + (Component - L) * (1 - L) / (High - L);
        }
        return C;
    }

    static Color setSat(const Color& C, double S)
    {
        std::array<size_t, 3> Order{0, 1, 2};
        std::sort(Order.begin(), Order.end(), [&C](size_t A, size_t B) { return C[A] < C[B]; });
        Color Result{0, 0, 0};
        const double Low = C[Order[0]], Middle = C[Order[1]], High = C[Order[2]];
        if (High > Low) {
            Result[Order[1]] = (Middle - Low) * S / (High - Low);
            Result[Order[2]] = S;
        }
        return Result;
    }
};
