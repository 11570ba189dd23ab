#pragma once

#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"

/// Ties pixel formats to the names that the image engine knows them by.
namespace OrvPixelBabl {

const Babl* format(OrvPixelLayout Layout);
/// False for a format that the pixel kernels do not read.
bool layoutOf(const Babl* pFormat, OrvPixelLayout& Layout);

} // namespace OrvPixelBabl
