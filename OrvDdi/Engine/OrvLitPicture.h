#pragma once

#include "OrvDdi/Engine/OrvPicture.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"
#include "OrvDdi/Engine/OrvShadingParameters.h"

#include <array>

/// The lit picture of a flat texture before anything is computed: how it is lit, and the pictures that come
/// in. Block by block the inputs are computed, as large as the nearest caches hold, and lit, on all threads
/// of the engine. Made for one evaluation; immutable.
class OrvLitPicture {
public:
    /// By slot; null for one that is not read.
    using Pictures = std::array<OrvPicture::Pointer, OrvShadingParameters::SlotCount>;

    OrvLitPicture(const OrvShadingParameters& Given, Pictures Inputs);

    /// For the output of an operation, premultiplied float: the region is in pixels of the whole picture.
    void renderOutput(GeglOperationContext* pContext, const GeglRectangle& Region, int Level) const;
    /// The region is in pixels of the mipmap level. Transparent beyond the tiles' plane.
    void renderTo(
        void* pPixels, int Stride, OrvPixelLayout Layout, const GeglRectangle& Region, int Level) const;

private:
    struct Output;
    class Share;

    /// Pixels that are worth waking a thread for.
    double pixelsPerThread() const;
    void prepareInputs(const GeglRectangle& Region, int Level) const;

    const OrvShadingParameters m_Given;
    const Pictures m_Inputs;
};
