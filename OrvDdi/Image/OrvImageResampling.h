#pragma once

#include "OrvDdi/Image/OrvImageBuffer.h"

class OrvUdimLayout;

/// Brings pixels to another resolution. Free of state; it never changes what it reads.
class ORVDDI_EXPORT OrvImageResampling {
public:
    /// The pixels of one layout, tile by tile, in another: averaged when they shrink, interpolated linearly
    /// when they grow, in linear light and weighted by alpha. Tiles that the source lacks are empty. The
    /// format stays.
    static OrvImageBuffer fitted(
        const OrvImageBuffer& Source, const OrvUdimLayout& From, const OrvUdimLayout& To);
};
