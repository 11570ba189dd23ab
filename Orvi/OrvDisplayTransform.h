#pragma once

#include <QtGui/QImage>

/// Turns computed pixels into what the screen is sent. Stateless and safe from any thread; it changes
/// pictures on their way to the screen only, never the document.
namespace OrvDisplayTransform {

enum Meaning {
    Light, ///< colour, in a space that is named beside
    Numbers ///< scalar or vector values, shown as they are
};

/// Straight RGBA rows of floats, one after the other, as premultiplied 32-bit pixels; alpha is clamped to 0
/// to 1. Light goes from its colour space to the display's; the pixels may be changed on the way.
QImage toImage(float* pPixels, const QSize& Size, Meaning Values, const QString& Space);

} // namespace OrvDisplayTransform
