// The shading kernels' code, for whatever machine the including source is compiled for. Eight pixels are
// computed at once; each vector holds one component of them, in the order in which transposing finds them
// cheaply.

#pragma once

#include "OrvDdi/Engine/OrvPixelKernels.h"
#include "OrvDdi/Engine/OrvShadingKernels.h"

#include <cstring>

#include "OrvDdi/Engine/OrvPixelVectors.inl"

#include "OrvDdi/Engine/OrvShadingMath.h"

namespace {

using Parameters = OrvShadingParameters;
using OrvShadingMath::Triple;

constexpr Ints PixelOrder = {0, 2, 4, 6, 1, 3, 5, 7};
constexpr Floats PixelNumbers = {0.0f, 2.0f, 4.0f, 6.0f, 1.0f, 3.0f, 5.0f, 7.0f};

struct Pixels {
    Floats Red, Green, Blue, Alpha;
};

ORV_INLINE Floats loadInOrder(const float* pFloats)
{
    return __builtin_shuffle(loadFloats<2>(pFloats), PixelOrder);
}

constexpr Ints LowPairs = {0, 8, 1, 9, 4, 12, 5, 13}, HighPairs = {2, 10, 3, 11, 6, 14, 7, 15};
constexpr Ints LowHalves = {0, 1, 8, 9, 4, 5, 12, 13}, HighHalves = {2, 3, 10, 11, 6, 7, 14, 15};

ORV_INLINE Pixels loadPixels(const float* pRgba)
{
    const Floats A = loadFloats<2>(pRgba), B = loadFloats<2>(pRgba + 8), C = loadFloats<2>(pRgba + 16),
                 D = loadFloats<2>(pRgba + 24);
    const Floats LowAb = __builtin_shuffle(A, B, LowPairs), HighAb = __builtin_shuffle(A, B, HighPairs);
    const Floats LowCd = __builtin_shuffle(C, D, LowPairs), HighCd = __builtin_shuffle(C, D, HighPairs);
    return {__builtin_shuffle(LowAb, LowCd, LowHalves), __builtin_shuffle(LowAb, LowCd, HighHalves),
        __builtin_shuffle(HighAb, HighCd, LowHalves), __builtin_shuffle(HighAb, HighCd, HighHalves)};
}

ORV_INLINE void storePixels(const Pixels& From, float* pRgba)
{
    const Floats LowRg = __builtin_shuffle(From.Red, From.Green, LowPairs),
                 HighRg = __builtin_shuffle(From.Red, From.Green, HighPairs);
    const Floats LowBa = __builtin_shuffle(From.Blue, From.Alpha, LowPairs),
                 HighBa = __builtin_shuffle(From.Blue, From.Alpha, HighPairs);
    const Floats Quads[4]
        = {__builtin_shuffle(LowRg, LowBa, LowHalves), __builtin_shuffle(LowRg, LowBa, HighHalves),
            __builtin_shuffle(HighRg, HighBa, LowHalves), __builtin_shuffle(HighRg, HighBa, HighHalves)};
    std::memcpy(pRgba, Quads, sizeof(Quads));
}

/// The input above the slot's own value.
ORV_INLINE Floats above(const Parameters::SlotValue& Slot, Floats Color, Floats Alpha, float Value)
{
    return (Slot.Inverted ? Alpha - Color : Color) + (1.0f - Alpha) * Value;
}

ORV_INLINE Triple<Floats> colorOf(const Parameters::SlotValue& Slot, const float* pInput)
{
    if (!pInput)
        return {all(Slot.Value[0]), all(Slot.Value[1]), all(Slot.Value[2])};
    const Pixels Read = loadPixels(pInput);
    return {above(Slot, Read.Red, Read.Alpha, Slot.Value[0]),
        above(Slot, Read.Green, Read.Alpha, Slot.Value[1]),
        above(Slot, Read.Blue, Read.Alpha, Slot.Value[2])};
}

ORV_INLINE Floats scalarOf(const Parameters::SlotValue& Slot, const Pixels& Read)
{
    const Floats Luminance = Read.Red * 0.2126f + Read.Green * 0.7152f + Read.Blue * 0.0722f;
    return above(Slot, Luminance, Read.Alpha, Slot.Value[0]);
}

/// Straight colour; transparent where the channel is.
ORV_INLINE Pixels straightColor(const Parameters::SlotValue& Slot, const float* pInput)
{
    if (!pInput)
        return {all(Slot.Value[0]), all(Slot.Value[1]), all(Slot.Value[2]), all(Slot.Value[3])};
    Pixels Read = loadPixels(pInput);
    const Floats Factor = select(Read.Alpha > Zero, 1.0f / Read.Alpha, Zero);
    Read.Red *= Factor;
    Read.Green *= Factor;
    Read.Blue *= Factor;
    if (Slot.Inverted) {
        Read.Red = 1.0f - Read.Red;
        Read.Green = 1.0f - Read.Green;
        Read.Blue = 1.0f - Read.Blue;
    }
    return Read;
}

/// Eight pixels of a row.
struct Group {
    const OrvShadingRow& Row;
    int First;

    ORV_INLINE const Parameters::SlotValue& slot(Parameters::Slot Which) const
    {
        return Row.pParameters->Slots[Which];
    }
    ORV_INLINE const float* input(Parameters::Slot Which) const
    {
        const float* pRow = Row.pInputs[Which];
        return pRow ? pRow + First * 4 : nullptr;
    }
    ORV_INLINE Triple<Floats> color(Parameters::Slot Which) const
    {
        return colorOf(slot(Which), input(Which));
    }
    ORV_INLINE Floats scalar(Parameters::Slot Which) const
    {
        const float* pInput = input(Which);
        return pInput ? scalarOf(slot(Which), loadPixels(pInput)) : all(slot(Which).Value[0]);
    }
    ORV_INLINE Floats slopeU() const { return Row.pSlopesU ? loadInOrder(Row.pSlopesU + First) : Zero; }
    ORV_INLINE Floats slopeV() const { return Row.pSlopesV ? loadInOrder(Row.pSlopesV + First) : Zero; }
    ORV_INLINE OrvShadingMath::Illumination<Floats> illumination() const
    {
        const Parameters::Light& Lamp = Row.pParameters->Lamp;
        const Floats U = (PixelNumbers + float(First)) * Row.StepU + Row.U;
        return OrvShadingMath::illumination(Lamp.U - U, all(Lamp.V - Row.V), Lamp.Height);
    }
};

ORV_INLINE Pixels premultiplied(const Pixels& Straight)
{
    return {Straight.Red * Straight.Alpha, Straight.Green * Straight.Alpha, Straight.Blue * Straight.Alpha,
        Straight.Alpha};
}

ORV_INLINE Pixels litSurface(const Group& At)
{
    const Parameters& Given = *At.Row.pParameters;
    const bool IsMetallic = Given.WhichModel == Parameters::MetallicRoughness;
    const Pixels Color = straightColor(At.slot(Parameters::Color), At.input(Parameters::Color));
    OrvShadingMath::Surface<Floats> Surface;
    if (IsMetallic) {
        OrvShadingMath::setMetallic(Surface, Triple<Floats>{Color.Red, Color.Green, Color.Blue},
            OrvShadingMath::unitRange(At.scalar(Parameters::Metallic)));
    } else {
        Surface.Diffuse = {Color.Red, Color.Green, Color.Blue};
        Surface.Reflectance = At.color(Parameters::Specular);
    }
    Surface.Roughness = At.scalar(Parameters::Roughness);
    const Triple<Floats> Flat = {Zero, Zero, all(1.0f)};
    Surface.Normal = OrvShadingMath::tilted(
        IsMetallic ? OrvShadingMath::mappedNormal(At.color(Parameters::Normal)) : Flat, At.slopeU(),
        At.slopeV());
    Surface.Occlusion = OrvShadingMath::unitRange(At.scalar(Parameters::Occlusion));
    Surface.Emission = At.color(Parameters::Emissive);

    const auto Arriving = At.illumination();
    const Triple<Floats> Reflected = OrvShadingMath::scaled(
        OrvShadingMath::reflected(Surface, Arriving.Direction), Arriving.Strength * Given.Lamp.Intensity);
    const Triple<Floats> Ambient
        = OrvShadingMath::scaled(OrvShadingMath::reflectedAmbient(Surface), all(Given.Lamp.Ambient));
    const Triple<Floats> LampColor
        = {all(Given.Lamp.Color[0]), all(Given.Lamp.Color[1]), all(Given.Lamp.Color[2])};
    const Triple<Floats> Seen = OrvShadingMath::sum(
        OrvShadingMath::product(OrvShadingMath::sum(Reflected, Ambient), LampColor), Surface.Emission);
    return premultiplied({Seen.X, Seen.Y, Seen.Z, Color.Alpha});
}

/// What was lit already, each above those before; only what the relief changes in their light is added.
ORV_INLINE Pixels litLayers(const Group& At)
{
    constexpr Parameters::Slot Materials[]
        = {Parameters::Color, Parameters::Metallic, Parameters::Roughness, Parameters::Specular};
    Pixels Result = {Zero, Zero, Zero, Zero};
    for (const Parameters::Slot Which : Materials) {
        if (!At.slot(Which).Used)
            continue;
        const Pixels Read = premultiplied(straightColor(At.slot(Which), At.input(Which)));
        const Floats Rest = 1.0f - Read.Alpha;
        Result = {Read.Red + Result.Red * Rest, Read.Green + Result.Green * Rest,
            Read.Blue + Result.Blue * Rest, Read.Alpha + Result.Alpha * Rest};
    }
    if (!At.Row.pSlopesU)
        return Result;
    const Parameters::Light& Lamp = At.Row.pParameters->Lamp;
    const auto Arriving = At.illumination();
    const Triple<Floats> Normal
        = OrvShadingMath::tilted(Triple<Floats>{Zero, Zero, all(1.0f)}, At.slopeU(), At.slopeV());
    const Floats Strength = Arriving.Strength * Lamp.Intensity;
    const Floats Risen = Strength * OrvShadingMath::unitRange(OrvShadingMath::dot(Normal, Arriving.Direction))
        + Lamp.Ambient;
    const Floats Factor = Risen / larger(Strength * Arriving.Direction.Z + Lamp.Ambient, all(1e-6f));
    return {Result.Red * Factor, Result.Green * Factor, Result.Blue * Factor, Result.Alpha};
}

template <class Function>
ORV_INLINE void forGroups(const OrvShadingRow& Row, Function pixelsOf)
{
    constexpr int Width = OrvShadingKernels::Width;
    int First = 0;
    for (; First + Width <= Row.Count; First += Width)
        storePixels(pixelsOf(Group{Row, First}), Row.pResult + First * 4);
    if (First < Row.Count) {
        float Last[Width * 4];
        storePixels(pixelsOf(Group{Row, First}), Last);
        std::memcpy(Row.pResult + First * 4, Last, size_t(Row.Count - First) * 4 * sizeof(float));
    }
}

void light(const OrvShadingRow& Row)
{
    switch (Row.pParameters->WhichModel) {
    case Parameters::Unlit:
        forGroups(
            Row, [](const Group& At) __attribute__((always_inline)) {
                return premultiplied(straightColor(At.slot(Parameters::Color), At.input(Parameters::Color)));
            });
        break;
    case Parameters::MetallicRoughness:
    case Parameters::SpecularGloss:
        forGroups(
            Row, [](const Group& At) __attribute__((always_inline)) { return litSurface(At); });
        break;
    case Parameters::Layered:
        forGroups(
            Row, [](const Group& At) __attribute__((always_inline)) { return litLayers(At); });
        break;
    }
}

void scalars(const OrvShadingParameters::SlotValue& Slot, const float* pInput, int Count, float* pScalars)
{
    for (int First = 0; First < Count; First += OrvShadingKernels::Width) {
        const Floats InOrder = __builtin_shuffle(
            scalarOf(Slot, loadPixels(pInput + First * 4)), (Ints){0, 4, 1, 5, 2, 6, 3, 7});
        std::memcpy(pScalars + First, &InOrder, sizeof(InOrder));
    }
}

constexpr OrvShadingKernels makeShadingKernels()
{
    return {light, scalars};
}

} // namespace
