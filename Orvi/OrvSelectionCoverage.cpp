#include "Orvi/OrvSelectionCoverage.h"

#include "OrvCore/Project/OrvSelectionArea.h"

#include "OrvDdi/Image/OrvImageBuffer.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtGui/QPainter>

namespace {

constexpr int BufferPiece = 512; // pixels
const OrvPixelFormat ByteFormat{GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};

} // namespace

OrvSelectionCoverage::OrvSelectionCoverage(const OrvSelectionArea& Area, const OrvUdimLayout& Layout)
    : m_Everything(false)
    , m_Outline(Area.toPlane(Layout))
{
}

QImage OrvSelectionCoverage::raster(const QRect& Region) const
{
    QImage Coverage(Region.size(), QImage::Format_Grayscale8);
    Coverage.fill(m_Everything ? Qt::white : Qt::black);
    if (m_Everything || !m_Outline.boundingRect().intersects(QRectF(Region)))
        return Coverage;
    QPainter Painter(&Coverage);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.translate(-Region.topLeft());
    Painter.fillPath(m_Outline, Qt::white);
    return Coverage;
}

OrvImageBuffer OrvSelectionCoverage::toBuffer(const QRect& Extent) const
{
    OrvImageBuffer Buffer(Extent, ByteFormat);
    const QRect Covered
        = m_Everything ? Extent : m_Outline.boundingRect().toAlignedRect().intersected(Extent);
    // What is left out stays zero and takes no memory.
    for (int Top = Covered.top(); Top <= Covered.bottom(); Top += BufferPiece) {
        for (int Left = Covered.left(); Left <= Covered.right(); Left += BufferPiece) {
            const QRect Piece = QRect(Left, Top, BufferPiece, BufferPiece).intersected(Covered);
            const QImage Coverage = raster(Piece);
            Buffer.write(Piece, ByteFormat, Coverage.constBits(), Coverage.bytesPerLine());
        }
    }
    return Buffer;
}
