#pragma once

#include "OrvDdi/Files/OrvImageFileProperties.h"
#include "OrvDdi/Files/OrvProgress.h"
#include "OrvDdi/OrvDdiExport.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QStringList>

class OrvImageBuffer;

/// Colour spaces by name (see OrvColorManager) on the two sides of reading.
struct OrvImageReadOptions {
    QString FileSpace; ///< empty: what the file says or what is usual for its type
    QString BufferSpace; ///< empty: sRGB or linear, by the buffer's curve
};

/// How a file is written.
struct OrvImageWriteOptions {
    OrvImageFileProperties::Precision Depth
        = OrvImageFileProperties::Integer8; ///< see OrvImageFiles::usablePrecision()
    bool Scalar = false; ///< one component; of colour pixels, their Rec.709 luma
    QString
        FileSpace; ///< empty: sRGB for integers, linear for half and float, no conversion for scalar values
    QString BufferSpace; ///< empty: sRGB or linear, by the buffer's curve
};

/// The door to image files. The library behind it is loaded with the first call that needs it. Errors are one
/// sentence that names the file. Safe from any thread, for different buffers.
class ORVDDI_EXPORT OrvImageFiles {
public:
    /// The largest width and height that is read or written; checked before anything is allocated.
    static constexpr int MaximumEdge = 32768;

    /// The size is that of the upright picture.
    static bool probe(const QString& Path, OrvImageFileProperties& Properties, QString& Error);
    /// Puts the top left pixel of the picture, turned upright as the file says, at Offset; what lies outside
    /// the buffer is dropped. Scalar values go into all three colour components and colour into a scalar
    /// buffer as its Rec.709 luma; without alpha pixels are opaque. Scalar buffers take the values
    /// unconverted. After failure or cancelling the region holds what was read so far.
    static bool read(const QString& Path, OrvImageBuffer& Buffer, const QPoint& Offset,
        const OrvProgress& Progress, QString& Error, const OrvImageReadOptions& Options = {});
    /// Writes PNG, TIFF or EXR, by the path's suffix. A failure or cancelling leaves an older file as it was.
    static bool write(const QString& Path, const OrvImageBuffer& Buffer, const QRect& Region,
        const OrvImageWriteOptions& Options, const OrvProgress& Progress, QString& Error);

    /// Lower case, without dot.
    static QStringList readableSuffixes();
    static QStringList writableSuffixes();
    /// For file dialogs: "Images (*.exr *.png …);;EXR (*.exr);;…;;All files (*)".
    static QString readFilter();
    static QString writeFilter();

    /// The precision of a file type that loses least of the wanted one: PNG has 8 and 16 bits, TIFF 8, 16 and
    /// float, EXR half and float.
    static OrvImageFileProperties::Precision usablePrecision(
        const QString& Suffix, OrvImageFileProperties::Precision Wanted);
    /// The precision for pixels of a buffer depth in a file type.
    static OrvImageFileProperties::Precision precisionForDepth(const QString& Suffix, GLenum Depth);
};
