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
QImage ofPixels(const OrvImageBuffer& Buffer, int Edge);
/// A plane of one colour of linear light.
QImage ofColor(const OrvColor& Color, const OrvPixelFormat& Format, const QSize& PlaneSize, int Edge);

} // namespace OrvLayerThumbnailPicture
