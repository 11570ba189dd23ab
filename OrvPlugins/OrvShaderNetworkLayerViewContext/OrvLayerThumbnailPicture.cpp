#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerThumbnailPicture.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageBuffer.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <vector>

namespace {

/// What the thinnest stroke that surely shows measures: a quarter of what one row of the picture stands for.
constexpr int RowsPerCell = 4;
const QColor CheckerDark(0x5a, 0x5a, 0x5a), CheckerLight(0x6e, 0x6e, 0x6e);

/// As a screen shows it; eight bits suffice.
OrvPixelFormat displayFormat(const OrvPixelFormat& Format)
{
    const bool IsScalar = Format.Kind == OrvPixelFormat::Scalar;
    return {GL_UNSIGNED_BYTE, Format.Kind, IsScalar ? OrvPixelFormat::Linear : OrvPixelFormat::Srgb};
}

QSize pictureSize(const QSize& PlaneSize, int Edge)
{
    return PlaneSize.scaled(Edge, Edge, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QImage::Format imageFormat(const OrvPixelFormat& Format)
{
    return Format.Kind == OrvPixelFormat::Scalar ? QImage::Format_Grayscale8 : QImage::Format_RGBA8888;
}

/// Reads rows of a buffer as a screen shows them.
class RowReader {
public:
    RowReader(const OrvImageBuffer& Buffer, const QString& Space)
        : m_Buffer(Buffer)
        , m_Format(displayFormat(Buffer.format()))
        , m_Space(Space)
        , m_Converts(m_Format.Kind == OrvPixelFormat::Rgba
              && !OrvColorManager::isIdentity(Space, OrvColorManager::linear()))
    {
    }

    void read(const QRect& Row, uchar* pPixels)
    {
        if (!m_Converts) {
            m_Buffer.read(Row, m_Format, pPixels);
            return;
        }
        m_Colors.resize(size_t(Row.width()) * 4);
        m_Buffer.read(Row, {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear}, m_Colors.data());
        QString Error; // the space is a usable one
        OrvColorManager::transformPixels(
            m_Colors.data(), Row.width(), 1, 0, m_Space, OrvColorManager::linear(), Error);
        OrvPixelKernels::best().narrowStraight(
            orvPixelLayout(m_Format), m_Colors.data(), Row.width(), pPixels);
    }

private:
    const OrvImageBuffer& m_Buffer;
    const OrvPixelFormat m_Format;
    const QString m_Space;
    const bool m_Converts;
    std::vector<float> m_Colors;
};

/// The part of a plane that one pixel of a picture stands for.
struct Cell {
    Cell(int Index, int Count, int Length)
        : First(int(qint64(Index) * Length / Count))
        , End(std::max(First + 1, int(qint64(Index + 1) * Length / Count)))
    {
    }
    int First, End;
};

/// Colours of pixels, weighted with their alpha, so that transparent ones leave no trace.
class Mean {
public:
    void add(const uchar* pPixel, int Components)
    {
        const quint64 Alpha = Components == 4 ? pPixel[3] : 255;
        for (int i = 0; i < std::min(Components, 3); ++i)
            m_Sums[i] += pPixel[i] * Alpha;
        m_Alpha += Alpha;
        m_Strongest = std::max(m_Strongest, Alpha);
        ++m_Count;
    }
    void write(uchar* pPixel, int Components) const
    {
        for (int i = 0; i < std::min(Components, 3); ++i)
            pPixel[i] = m_Alpha ? uchar((m_Sums[i] + m_Alpha / 2) / m_Alpha) : 0;
        // A thin stroke is to be found in the picture: it counts for more than the little that it covers.
        if (Components == 4 && m_Count)
            pPixel[3] = uchar((m_Alpha / m_Count + 3 * m_Strongest) / 4);
    }

private:
    quint64 m_Sums[3] = {0, 0, 0};
    quint64 m_Alpha = 0, m_Strongest = 0, m_Count = 0;
};

QImage framed(const QImage& Pixels, int Edge)
{
    QImage Picture(Edge, Edge, QImage::Format_ARGB32_Premultiplied);
    Picture.fill(Qt::transparent);
    QPainter Painter(&Picture);
    const QRect Place(QPoint((Edge - Pixels.width()) / 2, (Edge - Pixels.height()) / 2), Pixels.size());
    if (Pixels.hasAlphaChannel()) {
        const int Square = std::max(1, Edge / 4);
        Painter.setClipRect(Place);
        for (int Y = 0; Y < Edge; Y += Square) {
            for (int X = 0; X < Edge; X += Square)
                Painter.fillRect(X, Y, Square, Square, (X + Y) / Square % 2 ? CheckerLight : CheckerDark);
        }
    }
    Painter.drawImage(Place, Pixels);
    return Picture;
}

} // namespace

QImage OrvLayerThumbnailPicture::ofPixels(const OrvImageBuffer& Buffer, const QString& Space, int Edge)
{
    const QRect Plane = Buffer.extent();
    if (Plane.isEmpty())
        return {};
    const OrvPixelFormat Format = displayFormat(Buffer.format());
    const int Components = Format.componentCount();
    QImage Pixels(pictureSize(Plane.size(), Edge), imageFormat(Format));
    RowReader Reader(Buffer, Space);
    std::vector<uchar> Row(size_t(Plane.width()) * size_t(Components));
    for (int Y = 0; Y < Pixels.height(); ++Y) {
        std::vector<Mean> Means(size_t(Pixels.width()));
        const Cell Rows(Y, Pixels.height(), Plane.height());
        const int Count = std::min(RowsPerCell, Rows.End - Rows.First);
        for (int i = 0; i < Count; ++i) {
            const int Line = Rows.First + (2 * i + 1) * (Rows.End - Rows.First) / (2 * Count);
            Reader.read({Plane.x(), Plane.y() + Line, Plane.width(), 1}, Row.data());
            for (int X = 0; X < Pixels.width(); ++X) {
                const Cell Columns(X, Pixels.width(), Plane.width());
                for (int Column = Columns.First; Column < Columns.End; ++Column)
                    Means[size_t(X)].add(&Row[size_t(Column) * size_t(Components)], Components);
            }
        }
        uchar* pLine = Pixels.scanLine(Y);
        for (int X = 0; X < Pixels.width(); ++X)
            Means[size_t(X)].write(pLine + X * Components, Components);
    }
    return framed(Pixels, Edge);
}

QImage OrvLayerThumbnailPicture::ofColor(const OrvColor& Color, const OrvPixelFormat& Format,
    const QString& Space, const QSize& PlaneSize, int Edge)
{
    if (PlaneSize.isEmpty())
        return {};
    const OrvPixelFormat Display = displayFormat(Format);
    const bool IsScalar = Display.Kind == OrvPixelFormat::Scalar;
    OrvColor Stored = IsScalar ? OrvColor(Color.red(), Color.red(), Color.red()) : Color;
    if (!IsScalar)
        OrvColorManager::transform(Stored, Stored, Space, OrvColorManager::linear());
    uchar Pixel[4] = {0, 0, 0, 0};
    OrvPixelKernels::best().narrowStraight(orvPixelLayout(Display), Stored.components(), 1, Pixel);
    QImage Pixels(pictureSize(PlaneSize, Edge), imageFormat(Display));
    Pixels.fill(
        IsScalar ? QColor(Pixel[0], Pixel[0], Pixel[0]) : QColor(Pixel[0], Pixel[1], Pixel[2], Pixel[3]));
    return framed(Pixels, Edge);
}
