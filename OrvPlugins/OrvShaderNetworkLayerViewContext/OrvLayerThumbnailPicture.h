#pragma once

#include <QtGui/QImage>

class OrvColor;
class OrvImageBuffer;
class QSize;
struct OrvPixelFormat;

/// What a component's pixels look like at the size of an icon: colours over a checker, masks in grey, the
/// proportions of the plane kept within a square. Any thread; nothing is remembered.
namespace OrvLayerThumbnailPicture {

/// Reads a few rows of each part of the plane and never holds the image engine for longer than one of them.
/// The colours are in the space once the curve of the pixels is undone.
QImage ofPixels(const OrvImageBuffer& Buffer, const QString& Space, int Edge);
/// A plane of one colour.
QImage ofColor(const OrvColor& Color, const OrvPixelFormat& Format, const QString& Space,
    const QSize& PlaneSize, int Edge);

} // namespace OrvLayerThumbnailPicture
