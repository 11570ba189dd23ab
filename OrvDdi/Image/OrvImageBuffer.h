#pragma once

#include "OrvDdi/Image/OrvPixelFormat.h"

#include <QtCore/QRect>

#include <memory>

class OrvColor;
struct _GeglBuffer;

/// A handle on a tiled pixel buffer of the image engine; copies of the handle name the same pixels, snapshot() makes
/// an independent copy whose tiles are shared until written. It never tells anybody about writes: who owns the
/// pixels for the document (OrvImageSet) does. Every call takes the engine's lock by itself.
class ORVDDI_EXPORT OrvImageBuffer {
public:
    /// A null buffer.
    OrvImageBuffer();
    /// Transparent (or zero) pixels.
    OrvImageBuffer(const QRect& Extent, const OrvPixelFormat& Format);
    ~OrvImageBuffer();
    OrvImageBuffer(const OrvImageBuffer&);
    OrvImageBuffer& operator=(const OrvImageBuffer&);

    bool isNull() const;
    QRect extent() const;
    OrvPixelFormat format() const;

    /// Copy on write: costs next to nothing until one of the two is written.
    OrvImageBuffer snapshot() const;
    /// The same pixels in another format, converted once.
    OrvImageBuffer converted(const OrvPixelFormat& Format) const;

    /// Pixels outside the extent read as zero. The stride is in bytes, 0 for tightly packed rows.
    void read(const QRect& Region, const OrvPixelFormat& Format, void* pPixels, int Stride = 0) const;
    void write(const QRect& Region, const OrvPixelFormat& Format, const void* pPixels, int Stride = 0);
    /// The colour is taken as linear light, straight alpha; scalar buffers take its red component.
    void fill(const OrvColor& Color, const QRect& Region = QRect());
    /// Region by region copy from a buffer of the same format; tiles are shared where they can be.
    void copyFrom(const OrvImageBuffer& Source, const QRect& Region);

    _GeglBuffer* handle() const;
    bool sameAs(const OrvImageBuffer& Other) const { return m_Pixels == Other.m_Pixels; }

private:
    struct Pixels;
    std::shared_ptr<Pixels> m_Pixels;
};
