#include "Orvi/OrvSamplePainting.h"

#include "Orvi/OrvSampleNoise.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <future>
#include <thread>
#include <vector>

using OrvSampleNoise::clouds;
using OrvSampleNoise::Sequence;
using OrvSampleNoise::step;

namespace {

constexpr double Unit = 2048.0; // edge of the painting in its own units
constexpr double CornerRadius = 26.0;
constexpr double RivetRadius = 11.0;
constexpr double RivetInset = 34.0; // from the edge of a plate
constexpr double RivetSpacing = 92.0;

const QColor Petrol(0x2e, 0x5f, 0x6b), DeepPetrol(0x24, 0x4b, 0x57), Cream(0xe2, 0xd8, 0xc2),
    Orange(0xcf, 0x5b, 0x2a), Graphite(0x3a, 0x40, 0x44);
const QRectF StripeBand(650.0, 1618.0, 620.0, 312.0);

QColor mixed(const QColor& One, const QColor& Other, double Share)
{
    const auto mix = [Share](int From, int To) { return int(std::lround(From + (To - From) * Share)); };
    return QColor(
        mix(One.red(), Other.red()), mix(One.green(), Other.green()), mix(One.blue(), Other.blue()));
}

/// On all cores: the first start waits for the painting.
void forRows(int Rows, const std::function<void(int)>& Paint)
{
    std::atomic<int> Next{0};
    const auto paintRows = [&] {
        for (int Row = Next++; Row < Rows; Row = Next++)
            Paint(Row);
    };
    std::vector<std::future<void>> Others;
    for (unsigned Core = 1; Core < std::thread::hardware_concurrency(); ++Core)
        Others.push_back(std::async(std::launch::async, paintRows));
    paintRows();
}

uchar gray(double Value)
{
    return uchar(std::lround(std::clamp(Value, 0.0, 1.0) * 255.0));
}

QFont letters(double Height, int Weight = QFont::Black)
{
    QFont Font(QStringLiteral("DejaVu Sans Condensed"));
    Font.setStyleHint(QFont::SansSerif);
    Font.setPixelSize(int(Height));
    Font.setWeight(Weight);
    return Font;
}

/// Text that fills a rectangle, as a stencil: with bridges cut out of each letter.
void drawStencil(QPainter& Painter, const QRectF& Target, const QString& Text, const QColor& Color)
{
    constexpr double FontSize = 200.0;
    const QFont Font = letters(FontSize);
    QPainterPath Letters;
    double X = 0.0;
    for (const QChar& Letter : Text) {
        QPainterPath Path;
        Path.addText(QPointF(X, 0.0), Font, QString(Letter));
        const QRectF Bounds = Path.boundingRect();
        QPainterPath Bridge;
        Bridge.addRect(Bounds.center().x() - 4.5, Bounds.top() - 2.0, 9.0, Bounds.height() + 4.0);
        Letters.addPath(Bounds.width() > FontSize / 3.0 ? Path.subtracted(Bridge) : Path);
        X += QFontMetricsF(Font).horizontalAdvance(Letter) + FontSize * 0.04;
    }
    const QRectF Bounds = Letters.boundingRect();
    QTransform Fit;
    Fit.translate(Target.left(), Target.top());
    Fit.scale(Target.width() / Bounds.width(), Target.height() / Bounds.height());
    Fit.translate(-Bounds.left(), -Bounds.top());
    Painter.fillPath(Fit.map(Letters), Color);
}

} // namespace

OrvSamplePainting::OrvSamplePainting(int Edge)
    : m_Edge(Edge)
    , m_Plates{{QRectF(48, 48, 1252, 868), Petrol}, {QRectF(1332, 48, 668, 420), Cream},
          {QRectF(1332, 500, 668, 416), DeepPetrol}, {QRectF(48, 948, 540, 1052), Orange},
          {QRectF(620, 948, 680, 600), Cream}, {QRectF(620, 1580, 680, 420), Graphite},
          {QRectF(1332, 948, 668, 1052), Petrol}}
{
    shadeMasks();
    paintRust();
}

QImage OrvSamplePainting::transparent() const
{
    QImage Image(m_Edge, m_Edge, QImage::Format_ARGB32_Premultiplied);
    Image.fill(Qt::transparent);
    return Image;
}

void OrvSamplePainting::begin(QPainter& Painter) const
{
    Painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    Painter.scale(m_Edge / Unit, m_Edge / Unit);
    Painter.setPen(Qt::NoPen);
}

double OrvSamplePainting::distanceToPlates(double X, double Y) const
{
    double Nearest = Unit;
    for (const Plate& One : m_Plates) {
        const QPointF Centre = One.Rect.center();
        const double Across = std::abs(X - Centre.x()) - One.Rect.width() / 2.0 + CornerRadius;
        const double Down = std::abs(Y - Centre.y()) - One.Rect.height() / 2.0 + CornerRadius;
        const double Outside = std::hypot(std::max(Across, 0.0), std::max(Down, 0.0));
        Nearest = std::min(Nearest, Outside + std::min(std::max(Across, Down), 0.0) - CornerRadius);
    }
    return Nearest;
}

template <class Pixel, class Shade>
QImage OrvSamplePainting::shaded(QImage::Format Format, int Divisor, Shade shade) const
{
    const int Edge = std::max(1, m_Edge / Divisor);
    QImage Image(Edge, Edge, Format);
    uchar* pBits = Image.bits();
    forRows(Edge, [&, Stride = qsizetype(Image.bytesPerLine())](int Row) {
        auto* pOut = reinterpret_cast<Pixel*>(pBits + Row * Stride);
        for (int Column = 0; Column < Edge; ++Column)
            pOut[Column] = shade((Column + 0.5) * Unit / Edge, (Row + 0.5) * Unit / Edge);
    });
    if (Edge == m_Edge)
        return Image;
    return Image.scaled(m_Edge, m_Edge, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(Format);
}

QVector<QPointF> OrvSamplePainting::rivetPlaces() const
{
    QVector<QPointF> Places;
    for (const Plate& One : m_Plates) {
        const QRectF Line = One.Rect.adjusted(RivetInset, RivetInset, -RivetInset, -RivetInset);
        const int Across = int(std::lround(Line.width() / RivetSpacing));
        const int Down = int(std::lround(Line.height() / RivetSpacing));
        for (int Index = 0; Index <= Across; ++Index) {
            const double X = Line.left() + Line.width() * Index / Across;
            Places << QPointF(X, Line.top()) << QPointF(X, Line.bottom());
        }
        for (int Index = 1; Index < Down; ++Index) {
            const double Y = Line.top() + Line.height() * Index / Down;
            Places << QPointF(Line.left(), Y) << QPointF(Line.right(), Y);
        }
    }
    return Places;
}

QImage OrvSamplePainting::bareMetal() const
{
    const QColor Dark(0x2a, 0x2c, 0x2d), Light(0x62, 0x66, 0x67);
    return shaded<QRgb>(QImage::Format_ARGB32, 1, [&](double X, double Y) {
        const double Brushed = clouds(X / 420.0, Y / 3.0, 11, 3);
        return mixed(Dark, Light, 0.65 * Brushed + 0.35 * clouds(X / 300.0, Y / 300.0, 12, 3)).rgb();
    });
}

QImage OrvSamplePainting::plates() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    for (const Plate& One : m_Plates) {
        // A soft shadow into the gap, then the sheet, its lit upper and shaded lower edge.
        for (int Ring = 6; Ring > 0; --Ring) {
            Painter.setBrush(QColor(0, 0, 0, 22));
            Painter.drawRoundedRect(
                One.Rect.adjusted(-Ring * 2, -Ring, Ring * 2, Ring * 3), CornerRadius, CornerRadius);
        }
        QLinearGradient Sheen(One.Rect.topLeft(), One.Rect.bottomRight());
        Sheen.setColorAt(0.0, One.Paint.lighter(116));
        Sheen.setColorAt(0.45, One.Paint);
        Sheen.setColorAt(1.0, One.Paint.darker(118));
        Painter.setBrush(Sheen);
        Painter.drawRoundedRect(One.Rect, CornerRadius, CornerRadius);
        Painter.setBrush(Qt::NoBrush);
        QLinearGradient Edge(One.Rect.topLeft(), One.Rect.bottomLeft());
        Edge.setColorAt(0.0, QColor(255, 255, 255, 150));
        Edge.setColorAt(0.25, QColor(255, 255, 255, 30));
        Edge.setColorAt(1.0, QColor(0, 0, 0, 150));
        Painter.setPen(QPen(QBrush(Edge), 5.0));
        Painter.drawRoundedRect(One.Rect.adjusted(3, 3, -3, -3), CornerRadius - 3, CornerRadius - 3);
        // A pressed seam a hand's width from the edge.
        Painter.setPen(QPen(QColor(0, 0, 0, 60), 3.0));
        Painter.drawRoundedRect(One.Rect.adjusted(66, 66, -66, -66), 14, 14);
        Painter.setPen(QPen(QColor(255, 255, 255, 46), 2.0));
        Painter.drawRoundedRect(One.Rect.adjusted(68, 69, -64, -63), 14, 14);
        Painter.setPen(Qt::NoPen);
    }
    return Image;
}

QImage OrvSamplePainting::vents() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    for (int Slot = 0; Slot < 7; ++Slot) {
        const QRectF Opening(1440, 1100 + Slot * 66, 452, 34);
        Painter.setBrush(QColor(255, 255, 255, 60));
        Painter.drawRoundedRect(Opening.adjusted(-5, -2, 5, 7), 20, 20);
        QLinearGradient Depth(Opening.topLeft(), Opening.bottomLeft());
        Depth.setColorAt(0.0, QColor(6, 8, 9));
        Depth.setColorAt(1.0, QColor(38, 46, 50));
        Painter.setBrush(Depth);
        Painter.drawRoundedRect(Opening, 17, 17);
    }
    // A round port with glass.
    const QPointF Port(1666, 260);
    for (const auto& Ring : {std::pair<double, QColor>(118, QColor(96, 88, 74)), {104, QColor(40, 42, 43)}}) {
        Painter.setBrush(Ring.second);
        Painter.drawEllipse(Port, Ring.first, Ring.first);
    }
    QRadialGradient Glass(Port + QPointF(-26, -30), 130);
    Glass.setColorAt(0.0, QColor(0x9f, 0xd6, 0xd8));
    Glass.setColorAt(0.35, QColor(0x2f, 0x78, 0x86));
    Glass.setColorAt(1.0, QColor(0x08, 0x1e, 0x28));
    Painter.setBrush(Glass);
    Painter.drawEllipse(Port, 92, 92);
    Painter.setBrush(QColor(255, 255, 255, 70));
    QPainterPath Glint;
    Glint.addEllipse(Port, 78, 78);
    QPainterPath Cut;
    Cut.addEllipse(Port + QPointF(22, 26), 88, 88);
    Painter.drawPath(Glint.subtracted(Cut));
    return Image;
}

QImage OrvSamplePainting::rivets() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    for (const QPointF& Place : rivetPlaces()) {
        QRadialGradient Shadow(Place + QPointF(3, 6), RivetRadius * 2.0);
        Shadow.setColorAt(0.3, QColor(0, 0, 0, 150));
        Shadow.setColorAt(1.0, QColor(0, 0, 0, 0));
        Painter.setBrush(Shadow);
        Painter.drawEllipse(Place + QPointF(3, 6), RivetRadius * 2.0, RivetRadius * 2.0);
        QRadialGradient Dome(Place + QPointF(-3.5, -4.5), RivetRadius * 1.7);
        Dome.setColorAt(0.0, QColor(0xf2, 0xf0, 0xe8));
        Dome.setColorAt(0.4, QColor(0x9a, 0x9c, 0x99));
        Dome.setColorAt(1.0, QColor(0x3a, 0x3d, 0x3e));
        Painter.setBrush(Dome);
        Painter.drawEllipse(Place, RivetRadius, RivetRadius);
    }
    return Image;
}

QImage OrvSamplePainting::stripes() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    Painter.fillRect(QRectF(0, 0, Unit, Unit), QColor(0xf2, 0xb4, 0x1c));
    Painter.setBrush(QColor(0x1b, 0x1b, 0x1c));
    constexpr double Width = 92.0;
    for (double X = -Unit; X < 2.0 * Unit; X += 2.0 * Width) {
        const QPointF Corners[] = {{X, Unit}, {X + Width, Unit}, {X + Width + Unit, 0}, {X + Unit, 0}};
        Painter.drawPolygon(Corners, 4);
    }
    return Image;
}

QImage OrvSamplePainting::stripeArea() const
{
    QImage Image(m_Edge, m_Edge, QImage::Format_Grayscale8);
    Image.fill(0);
    QPainter Painter(&Image);
    begin(Painter);
    Painter.setBrush(Qt::white);
    Painter.drawRoundedRect(StripeBand, 10, 10);
    Painter.drawRect(QRectF(48, 1840, 540, 74));
    return Image;
}

QImage OrvSamplePainting::lettering() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    drawStencil(Painter, QRectF(156, 190, 1036, 322), QStringLiteral("ORVI"), Cream);
    drawStencil(Painter, QRectF(736, 1070, 448, 356), QStringLiteral("07"), Orange);
    drawStencil(Painter, QRectF(156, 726, 1036, 66), QStringLiteral("DEEP FIELD STATION"), Orange);
    Painter.fillRect(QRectF(156, 566, 1036, 16), Orange);
    Painter.fillRect(QRectF(156, 600, 1036, 60), Cream);

    Painter.setPen(Cream);
    Painter.setFont(letters(50, QFont::Bold));
    Painter.drawText(QPointF(1420, 640), QStringLiteral("CAUTION"));
    Painter.setFont(letters(30, QFont::DemiBold));
    Painter.drawText(QPointF(1420, 694), QStringLiteral("PRESSURISED VESSEL"));
    Painter.drawText(QPointF(1420, 738), QStringLiteral("OPEN VALVE B BEFORE A"));
    Painter.drawText(QPointF(1420, 782), QStringLiteral("MAX 4.2 BAR / 60 \u00b0C"));
    Painter.setPen(Qt::NoPen);
    const QPointF Arrow[]
        = {{1420, 824}, {1800, 824}, {1800, 800}, {1850, 834}, {1800, 868}, {1800, 844}, {1420, 844}};
    Painter.setBrush(Orange);
    Painter.drawPolygon(Arrow, 7);

    // A roundel: rings, cross and a wedge.
    const QPointF Centre(318, 1330);
    for (const auto& Ring :
        {std::pair<double, QColor>(190, Cream), {160, Orange}, {128, Cream}, {64, Petrol}}) {
        Painter.setBrush(Ring.second);
        Painter.drawEllipse(Centre, Ring.first, Ring.first);
    }
    Painter.setBrush(Petrol);
    Painter.drawPie(QRectF(Centre.x() - 128, Centre.y() - 128, 256, 256), 30 * 16, 60 * 16);
    Painter.drawPie(QRectF(Centre.x() - 128, Centre.y() - 128, 256, 256), 210 * 16, 60 * 16);
    Painter.setPen(Graphite.darker(130));
    Painter.setFont(letters(36, QFont::Bold));
    Painter.drawText(QRectF(48, 1580, 540, 60), Qt::AlignCenter, QStringLiteral("LIFT HERE"));
    Painter.setPen(Cream);
    Painter.setFont(letters(38, QFont::Bold));
    Painter.drawText(QRectF(1332, 1700, 668, 60), Qt::AlignCenter, QStringLiteral("KEEP AIR INLET CLEAR"));
    return Image;
}

void OrvSamplePainting::paintDrips(QPainter& Painter) const
{
    Sequence Random(77);
    for (const QPointF& Place : rivetPlaces()) {
        if (Random.next() > 0.42)
            continue;
        const double Length = Random.next(50.0, 260.0), Width = Random.next(5.0, 16.0);
        QLinearGradient Fade(Place, Place + QPointF(0, Length));
        const int Strength = int(Random.next(110.0, 215.0));
        Fade.setColorAt(0.0, QColor(0x6e, 0x33, 0x14, Strength));
        Fade.setColorAt(0.25, QColor(0x8d, 0x46, 0x1c, Strength * 2 / 3));
        Fade.setColorAt(1.0, QColor(0x8d, 0x46, 0x1c, 0));
        Painter.setBrush(Fade);
        QPainterPath Run(Place + QPointF(-Width / 2, 2));
        Run.cubicTo(Place + QPointF(-Width / 2, Length / 3), Place + QPointF(-Width / 5, Length * 0.7),
            Place + QPointF(0, Length));
        Run.cubicTo(Place + QPointF(Width / 5, Length * 0.7), Place + QPointF(Width / 2, Length / 3),
            Place + QPointF(Width / 2, 2));
        Painter.drawPath(Run);
    }
}

void OrvSamplePainting::paintRust()
{
    const QColor Deep(0x3b, 0x1c, 0x0e), Fresh(0xb4, 0x5f, 0x27);
    const QImage Stains = shaded<QRgb>(QImage::Format_ARGB32, 2, [&](double X, double Y) {
        // It begins at the edges of the plates and eats inwards where the clouds are dense.
        const double Rim = std::exp(-std::abs(distanceToPlates(X, Y)) / 34.0);
        const double Cloud = clouds(X / 210.0, Y / 210.0, 21, 6);
        const double Grain = clouds(X / 14.0, Y / 14.0, 22, 3);
        const double Amount = step(0.60, 0.74, Cloud * 0.78 + Rim * 0.24 + (Grain - 0.5) * 0.20);
        const double Age = std::clamp(Amount * 0.55 + (Grain - 0.35) * 0.9, 0.0, 1.0);
        QColor Color = mixed(Fresh, Deep, Age);
        Color.setAlpha(int(std::lround(Amount * 245.0)));
        return Color.rgba();
    });
    m_Rust = Stains.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter Painter(&m_Rust);
    begin(Painter);
    paintDrips(Painter);
    m_RustCover = m_Rust.convertToFormat(QImage::Format_Alpha8);
    m_RustCover.reinterpretAsFormat(QImage::Format_Grayscale8);
}

QImage OrvSamplePainting::scratches() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    Painter.setBrush(Qt::NoBrush);
    Sequence Random(5);
    for (int Scratch = 0; Scratch < 260; ++Scratch) {
        const QPointF Start(Random.next(0.0, Unit), Random.next(0.0, Unit));
        const double Angle = Random.next(-0.5, 0.5) + (Random.next() < 0.3 ? 1.4 : 0.1);
        const double Length = std::pow(Random.next(), 3.0) * 520.0 + 18.0;
        const QPointF End = Start + QPointF(std::cos(Angle), std::sin(Angle)) * Length;
        QPainterPath Path(Start);
        Path.quadTo((Start + End) / 2.0 + QPointF(Random.next(-26.0, 26.0), Random.next(-26.0, 26.0)), End);
        const int Alpha = int(Random.next(50.0, 190.0));
        Painter.setPen(QPen(QColor(0, 0, 0, Alpha / 2), 2.4));
        Painter.drawPath(Path.translated(1.2, 1.6));
        Painter.setPen(QPen(QColor(0xd8, 0xd6, 0xcc, Alpha), Random.next(0.8, 2.2)));
        Painter.drawPath(Path);
    }
    return Image;
}

QImage OrvSamplePainting::splashes() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    Sequence Random(41);
    struct Splash {
        QPointF Centre;
        double Size;
        QColor Color;
    };
    for (const Splash& One :
        {Splash{{1010, 262}, 92, QColor(0x37, 0xb6, 0xa4)}, Splash{{1760, 1560}, 74, Cream},
            Splash{{470, 1080}, 54, QColor(0x37, 0xb6, 0xa4)}, Splash{{1186, 1058}, 40, Petrol}}) {
        Painter.setBrush(One.Color);
        QPainterPath Blob;
        Blob.setFillRule(Qt::WindingFill);
        Blob.addEllipse(One.Centre, One.Size, One.Size * 0.86);
        for (int Lobe = 0; Lobe < 22; ++Lobe) {
            const double Angle = Random.next(0.0, 6.2832), Away = One.Size * Random.next(0.6, 1.15);
            const QPointF Place = One.Centre + QPointF(std::cos(Angle), std::sin(Angle)) * Away;
            const double Radius = One.Size * Random.next(0.08, 0.34);
            Blob.addEllipse(Place, Radius, Radius);
        }
        for (int Drop = 0; Drop < 46; ++Drop) {
            const double Angle = Random.next(0.0, 6.2832);
            const double Away = One.Size * (1.2 + 2.4 * std::pow(Random.next(), 2.0));
            const QPointF Direction(std::cos(Angle), std::sin(Angle));
            const double Radius = One.Size * 0.14 * std::pow(Random.next(), 2.0) + 1.5;
            Blob.addEllipse(One.Centre + Direction * Away, Radius, Radius);
        }
        for (int Run = 0; Run < 4; ++Run) {
            const double X = One.Centre.x() + One.Size * Random.next(-0.7, 0.7);
            const double Length = One.Size * Random.next(0.9, 2.6),
                         Width = One.Size * Random.next(0.07, 0.13);
            Blob.addRoundedRect(QRectF(X - Width, One.Centre.y(), 2 * Width, Length), Width, Width);
            Blob.addEllipse(QPointF(X, One.Centre.y() + Length - Width), Width * 1.35, Width * 1.35);
        }
        const QPainterPath Outline = Blob.simplified();
        Painter.setBrush(QColor(0, 0, 0, 70));
        Painter.drawPath(Outline.translated(4, 6));
        Painter.setBrush(One.Color);
        Painter.drawPath(Outline);
    }
    return Image;
}

QImage OrvSamplePainting::sketch() const
{
    QImage Image = transparent();
    QPainter Painter(&Image);
    begin(Painter);
    Painter.setBrush(Qt::NoBrush);
    Painter.setPen(QPen(QColor(0x5a, 0xa9, 0xff, 220), 3.0));
    for (const Plate& One : m_Plates) {
        Painter.drawRect(One.Rect);
        Painter.drawLine(One.Rect.topLeft(), One.Rect.bottomRight());
        Painter.drawLine(One.Rect.topRight(), One.Rect.bottomLeft());
    }
    Painter.setPen(QPen(QColor(0xff, 0x5a, 0x7a, 220), 4.0));
    Painter.drawEllipse(QPointF(318, 1330), 190, 190);
    Painter.drawEllipse(QPointF(1666, 260), 118, 118);
    return Image;
}

void OrvSamplePainting::shadeMasks()
{
    m_WornPaint = shaded<uchar>(QImage::Format_Grayscale8, 2, [](double X, double Y) {
        const double Cloud = clouds(X / 120.0, Y / 120.0, 31, 5);
        const double Grain = clouds(X / 9.0, Y / 9.0, 32, 2);
        return gray(1.0 - step(0.60, 0.68, Cloud * 0.8 + Grain * 0.26));
    });
    m_DirtyCorners = shaded<uchar>(QImage::Format_Grayscale8, 4, [this](double X, double Y) {
        const double Edge = std::exp(-std::abs(distanceToPlates(X, Y)) / 90.0);
        return gray(step(0.25, 1.0, Edge * 0.9 + clouds(X / 260.0, Y / 160.0, 51, 5) * 0.45));
    });
}

QImage OrvSamplePainting::metallic() const
{
    QImage Image = shaded<uchar>(QImage::Format_Grayscale8, 2,
        [this](double X, double Y) { return gray(step(-4.0, 4.0, distanceToPlates(X, Y))); });
    QPainter Painter(&Image);
    begin(Painter);
    Painter.setBrush(Qt::white);
    for (const QPointF& Place : rivetPlaces())
        Painter.drawEllipse(Place, RivetRadius, RivetRadius);
    return Image;
}

QImage OrvSamplePainting::roughness() const
{
    return shaded<uchar>(QImage::Format_Grayscale8, 2, [this](double X, double Y) {
        const double Distance = distanceToPlates(X, Y);
        const double Paint = 0.34 + 0.12 * clouds(X / 180.0, Y / 180.0, 61, 5);
        const double Metal = 0.62 + 0.2 * clouds(X / 300.0, Y / 4.0, 62, 3);
        return gray(Paint + (Metal - Paint) * step(-4.0, 4.0, Distance));
    });
}

std::vector<float> OrvSamplePainting::heights() const
{
    std::vector<float> Heights(std::size_t(m_Edge) * std::size_t(m_Edge));
    forRows(m_Edge, [&](int Row) {
        float* pOut = Heights.data() + std::size_t(Row) * std::size_t(m_Edge);
        for (int Column = 0; Column < m_Edge; ++Column) {
            const double X = (Column + 0.5) * Unit / m_Edge, Y = (Row + 0.5) * Unit / m_Edge;
            const double Sheet = 1.0 - step(-14.0, 2.0, distanceToPlates(X, Y));
            *pOut++ = float(0.18 + 0.32 * Sheet + 0.04 * (clouds(X / 240.0, Y / 240.0, 71, 4) - 0.5));
        }
    });
    // Rivets are domes on top.
    const double Scale = m_Edge / Unit;
    for (const QPointF& Place : rivetPlaces()) {
        const QRect Around
            = QRectF(Place - QPointF(RivetRadius, RivetRadius), QSizeF(2 * RivetRadius, 2 * RivetRadius))
                  .toAlignedRect();
        const int Left = std::max(0, int(Around.left() * Scale)),
                  Top = std::max(0, int(Around.top() * Scale));
        const int Right = std::min(m_Edge - 1, int(std::ceil(Around.right() * Scale)));
        const int Bottom = std::min(m_Edge - 1, int(std::ceil(Around.bottom() * Scale)));
        for (int Row = Top; Row <= Bottom; ++Row) {
            for (int Column = Left; Column <= Right; ++Column) {
                const double Away
                    = std::hypot((Column + 0.5) / Scale - Place.x(), (Row + 0.5) / Scale - Place.y());
                const double Dome = 1.0 - Away * Away / (RivetRadius * RivetRadius);
                if (Dome > 0.0)
                    Heights[std::size_t(Row) * std::size_t(m_Edge) + std::size_t(Column)]
                        += float(0.3 * std::sqrt(Dome));
            }
        }
    }
    return Heights;
}
