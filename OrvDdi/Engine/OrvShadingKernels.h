#pragma once

#include "OrvDdi/Engine/OrvShadingParameters.h"

/// One row of pixels to be lit.
struct OrvShadingRow {
    const OrvShadingParameters* pParameters;
    /// By slot: four premultiplied floats a pixel; null for what is not connected. Readable up to a multiple
    /// of OrvShadingKernels::Width pixels, as the slopes are.
    const float* pInputs[OrvShadingParameters::SlotCount];
    /// How much the surface rises along u and v, in tiles for a tile; null where it is flat.
    const float *pSlopesU, *pSlopesV;
    float U, V; ///< centre of the first pixel, in tiles
    float StepU; ///< to the next
    int Count;
    float* pResult; ///< premultiplied
};

/// The inner loop of shading, compiled as OrvPixelKernels are: for any machine and for machines with AVX2 and
/// FMA.
struct ORVDDI_EXPORT OrvShadingKernels {
    static constexpr int Width = 8; ///< pixels that are computed at once

    void (*light)(const OrvShadingRow& Row);
    /// Luminance of an input's pixels, inverted and above the slot's own value as the slot says.
    void (*scalars)(
        const OrvShadingParameters::SlotValue& Slot, const float* pInput, int Count, float* pScalars);

    static const OrvShadingKernels& best();
    static const OrvShadingKernels& portable();
};
