#pragma once

#include "OrvDdi/Image/OrvPixelFormat.h"

#include <QtCore/QSize>
#include <QtCore/QString>

/// What an image file holds, found without reading its pixels.
struct ORVDDI_EXPORT OrvImageFileProperties {
    enum Precision { Integer8, Integer16, Half, Float };

    QSize Size;
    Precision Depth = Integer8;
    int ComponentCount = 0; ///< as stored; a fifth and further ones are never read
    bool HasAlpha = false;
    bool Scalar = false; ///< gray, with or without alpha
    QString ColorSpace; ///< as the file says or, when it says nothing, as is usual for its type

    /// A buffer format that takes the pixels: 8-bit as 8-bit, 16-bit integer colour as half, 16-bit integer
    /// scalar values, of which half would lose some, as float.
    OrvPixelFormat pixelFormat() const;
};
