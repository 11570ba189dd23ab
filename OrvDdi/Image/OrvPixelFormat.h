#pragma once

#include "OrvDdi/OrvDdiExport.h"

#include <qopengl.h>

#include <QtCore/qhashfunctions.h>

#ifndef GL_HALF_FLOAT
#define GL_HALF_FLOAT 0x140B
#endif

/// Says how the pixels of a buffer are stored: which components, in which depth, and whether colour values carry
/// the sRGB transfer curve. A small value; it never describes pixels that are only computed.
struct OrvPixelFormat {
    enum Components {
        Rgba, ///< four components, straight (not premultiplied) alpha
        Scalar ///< one component: masks and other data
    };
    enum Encoding {
        Linear, ///< values proportional to light, or data that means no light at all
        Srgb ///< the sRGB transfer curve (IEC 61966-2-1); colour components only, alpha is always linear
    };

    GLenum Depth = GL_UNSIGNED_BYTE; ///< GL_UNSIGNED_BYTE, GL_HALF_FLOAT or GL_FLOAT
    Components Kind = Rgba;
    Encoding Curve = Linear;

    int bytesPerComponent() const { return Depth == GL_FLOAT ? 4 : Depth == GL_HALF_FLOAT ? 2 : 1; }
    int componentCount() const { return Kind == Rgba ? 4 : 1; }
    int bytesPerPixel() const { return bytesPerComponent() * componentCount(); }

    bool operator==(const OrvPixelFormat& Other) const
    {
        return Depth == Other.Depth && Kind == Other.Kind && Curve == Other.Curve;
    }
    bool operator!=(const OrvPixelFormat& Other) const { return !(*this == Other); }
};
