#pragma once

#include <QtCore/QRectF>
#include <QtCore/QVector>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <vector>

class QPainter;

/// Paints the pictures of the sample project: a weathered, riveted hull, plate by plate. The same pictures
/// each time, at any size; it knows nothing of documents. Colours are straight RGBA, masks and heights gray.
class OrvSamplePainting {
public:
    explicit OrvSamplePainting(int Edge);

    // Colour, in the order in which they lie upon each other.
    QImage bareMetal() const;
    QImage plates() const;
    QImage vents() const;
    QImage rivets() const;
    QImage stripes() const;
    QImage lettering() const;
    const QImage& rust() const { return m_Rust; }
    QImage scratches() const;
    QImage splashes() const;
    QImage sketch() const;

    // Masks, 8-bit gray.
    const QImage& wornPaint() const { return m_WornPaint; }
    const QImage& dirtyCorners() const { return m_DirtyCorners; }
    QImage stripeArea() const;
    const QImage& rustCover() const { return m_RustCover; }

    // Numbers from 0 to 1.
    QImage metallic() const;
    QImage roughness() const;
    std::vector<float> heights() const;

private:
    struct Plate {
        QRectF Rect;
        QColor Paint;
    };

    QImage transparent() const;
    void begin(QPainter& Painter) const;
    QVector<QPointF> rivetPlaces() const;
    void paintDrips(QPainter& Painter) const;
    /// Negative inside of a plate, in the painting's own units.
    double distanceToPlates(double X, double Y) const;
    void shadeMasks();
    void paintRust();
    /// Shades what is coarse at a part of the resolution.
    template <class Pixel, class Shade>
    QImage shaded(QImage::Format Format, int Divisor, Shade shade) const;

    int m_Edge;
    QVector<Plate> m_Plates;
    QImage m_WornPaint, m_DirtyCorners, m_Rust, m_RustCover;
};
