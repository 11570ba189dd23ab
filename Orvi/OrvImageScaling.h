#pragma once

#include "OrvDdi/Files/OrvProgress.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

/// Fits images to sizes that they were not made for: averages where they shrink, interpolates where they
/// grow, in linear light and weighted by alpha. Stateless; a few rows at a time, whatever the size.
namespace OrvImageScaling {

/// Fills a rectangle of the target with all of the source. False when cancelled.
bool fill(OrvImageBuffer& Target, const QRect& Rect, const OrvImageBuffer& Source,
    const OrvProgress& Progress = {});

} // namespace OrvImageScaling
