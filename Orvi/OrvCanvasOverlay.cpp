#include "Orvi/OrvCanvasOverlay.h"

#include "Orvi/OrvBrush.h"
#include "Orvi/OrvCanvasSource.h"
#include "Orvi/OrvCanvasView.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cmath>

namespace {

const QColor BackgroundColor(0x1d, 0x1d, 0x1d);
const QColor CheckerDark(0x5a, 0x5a, 0x5a), CheckerLight(0x6e, 0x6e, 0x6e);
constexpr int CheckerEdge = 8; // device pixels
constexpr double LeastLabelledTile = 44.0; // pixels of the screen
constexpr double ChipPadding = 8.0; // pixels of the screen

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvCanvas", pText);
}

const QPixmap& checkerPattern()
{
    static const QPixmap Pattern = [] {
        QPixmap Square(2 * CheckerEdge, 2 * CheckerEdge);
        Square.fill(CheckerDark);
        QPainter Painter(&Square);
        Painter.fillRect(0, 0, CheckerEdge, CheckerEdge, CheckerLight);
        Painter.fillRect(CheckerEdge, CheckerEdge, CheckerEdge, CheckerEdge, CheckerLight);
        return Square;
    }();
    return Pattern;
}

QRect deviceRect(const OrvCanvasView& View, const QRect& PictureRect)
{
    const QRectF Shown = View.toViewport(QRectF(PictureRect));
    const QPointF TopLeft(std::round(Shown.left()), std::round(Shown.top()));
    return QRectF(TopLeft, QPointF(std::round(Shown.right()), std::round(Shown.bottom()))).toRect();
}

QFont overlayFont(double PixelRatio, double Scale = 1.0)
{
    QFont Font = QApplication::font();
    const int Usual = QFontInfo(Font).pixelSize();
    Font.setPixelSize(std::max(1, int(std::lround(Usual * Scale * PixelRatio))));
    return Font;
}

QString zoomText(double Zoom)
{
    const double Percent = Zoom * 100.0;
    return QStringLiteral("%1 %").arg(Percent, 0, 'f', Percent < 10.0 ? 1 : 0);
}

} // namespace

void OrvCanvasOverlay::drawBackground(QPainter& Painter, const QRect& Viewport)
{
    Painter.fillRect(Viewport, BackgroundColor);
}

void OrvCanvasOverlay::drawChecker(
    QPainter& Painter, const OrvCanvasSource& Source, const OrvCanvasView& View)
{
    QRegion Tiles;
    for (const int Tile : Source.layout().tiles())
        Tiles += deviceRect(View, Source.layout().tileRect(Tile));
    Painter.setClipRegion(Tiles);
    Painter.setBrushOrigin(View.toViewport(QPointF(0.0, 0.0)));
    Painter.fillRect(Tiles.boundingRect(), QBrush(checkerPattern()));
}

void OrvCanvasOverlay::drawTileBorders(
    QPainter& Painter, const OrvCanvasSource& Source, const OrvCanvasView& View, double PixelRatio)
{
    const OrvUdimLayout& Layout = Source.layout();
    Painter.save();
    Painter.setBrush(Qt::NoBrush);
    Painter.setFont(overlayFont(PixelRatio, 0.85));
    const bool Several = Layout.tiles().size() > 1;
    for (const int Tile : Layout.tiles()) {
        const QRect Shown = deviceRect(View, Layout.tileRect(Tile));
        Painter.setPen(QPen(Several ? QColor(255, 255, 255, 60) : QColor(0, 0, 0, 140), 1.0));
        Painter.drawRect(
            Shown.adjusted(Several ? 0 : -1, Several ? 0 : -1, Several ? -1 : 0, Several ? -1 : 0));
        if (!Several || Shown.width() < LeastLabelledTile * PixelRatio)
            continue;
        const QString Number = QString::number(Tile);
        const int Margin = int(4 * PixelRatio);
        const QSize TextSize = Painter.fontMetrics().size(0, Number) + QSize(2 * Margin, Margin);
        const QRect Label(
            Shown.left(), Shown.bottom() - TextSize.height() + 1, TextSize.width(), TextSize.height());
        Painter.fillRect(Label, QColor(0, 0, 0, 150));
        Painter.setPen(QColor(255, 255, 255, 210));
        Painter.drawText(Label, Qt::AlignCenter, Number);
    }
    Painter.restore();
}

QFont OrvCanvasOverlay::chipFont(double PixelRatio)
{
    return overlayFont(PixelRatio, 0.92);
}

QRect OrvCanvasOverlay::chip(int Line, int WidthOfWords, double PixelRatio)
{
    const int Padding = int(ChipPadding * PixelRatio);
    const int Height = QFontMetrics(chipFont(PixelRatio)).height() + Padding;
    return QRect(Padding, Padding + Line * (Height + Padding / 2), WidthOfWords + 2 * Padding, Height);
}

void OrvCanvasOverlay::drawChip(QPainter& Painter, const QRect& Chip, double PixelRatio)
{
    Painter.save();
    Painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath Shape;
    Shape.addRoundedRect(QRectF(Chip), 4 * PixelRatio, 4 * PixelRatio);
    Painter.fillPath(Shape, QColor(20, 20, 20, 190));
    Painter.restore();
}

void OrvCanvasOverlay::drawTitle(
    QPainter& Painter, const OrvCanvasSource& Source, const OrvCanvasView& View, double PixelRatio)
{
    const OrvShaderInput* pChannel = Source.channel();
    if (!pChannel)
        return;
    const QSize Size = Source.layout().tileSize();
    QString Facts = QStringLiteral("%1 \u00d7 %2").arg(Size.width()).arg(Size.height());
    if (!Source.isLit())
        Facts += QStringLiteral("   ") + pChannel->imageSetDepthAsString();
    if (Source.layout().tiles().size() > 1)
        Facts += tr("   %n tiles")
                     .replace(QLatin1String("%n"), QString::number(Source.layout().tiles().size()));
    if (!Source.partName().isEmpty())
        Facts.prepend(Source.partName() + QStringLiteral("   "));
    Facts += QStringLiteral("   ") + zoomText(View.zoom());

    const QFont FactsFont = chipFont(PixelRatio);
    QFont NameFont = FactsFont;
    NameFont.setWeight(QFont::DemiBold);
    const QString Name = Source.title();
    const int Padding = int(ChipPadding * PixelRatio);
    const int NameWidth = QFontMetrics(NameFont).horizontalAdvance(Name);
    const QRect Chip
        = chip(0, NameWidth + Padding + QFontMetrics(FactsFont).horizontalAdvance(Facts), PixelRatio);
    Painter.save();
    drawChip(Painter, Chip, PixelRatio);
    Painter.setFont(NameFont);
    Painter.setPen(QColor(240, 240, 240));
    Painter.drawText(Chip.adjusted(Padding, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, Name);
    Painter.setFont(FactsFont);
    Painter.setPen(QColor(170, 170, 170));
    Painter.drawText(
        Chip.adjusted(NameWidth + 2 * Padding, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, Facts);
    Painter.restore();
}

void OrvCanvasOverlay::drawHint(QPainter& Painter, const QRect& Viewport, double PixelRatio)
{
    const bool Open = OrvProjectManager::instance().currentProject() != nullptr;
    Painter.save();
    Painter.setPen(QColor(150, 150, 150));
    Painter.setFont(overlayFont(PixelRatio, 1.5));
    const int Line = Painter.fontMetrics().height();
    const QRect Above = Viewport.adjusted(0, 0, 0, -Line);
    Painter.drawText(Above, Qt::AlignCenter,
        Open ? tr("This object has no channel yet") : tr("Drop images or a project here"));
    Painter.setPen(QColor(110, 110, 110));
    Painter.setFont(overlayFont(PixelRatio));
    Painter.drawText(Viewport.adjusted(0, Line, 0, 0), Qt::AlignCenter,
        Open ? tr("Add one in the Channels palette, or drop images here")
             : tr("Each image becomes a channel; or start with File > New Project"));
    Painter.restore();
}

void OrvCanvasOverlay::drawDropFrame(QPainter& Painter, const QRect& Viewport, double PixelRatio)
{
    const double Width = 3.0 * PixelRatio;
    Painter.save();
    Painter.setPen(QPen(OrvCustomFusionStyle::accentColor(), Width));
    Painter.setBrush(Qt::NoBrush);
    const double Inset = Width / 2.0;
    Painter.drawRect(QRectF(Viewport).adjusted(Inset, Inset, -Inset, -Inset));
    Painter.restore();
}

void OrvCanvasOverlay::drawBrush(
    QPainter& Painter, const OrvBrush& Brush, const QPointF& Centre, double Zoom, double PixelRatio)
{
    // Dark around light shows on every ground.
    const double Radius = std::max(1.5 * PixelRatio, Brush.size() / 2.0 * Zoom);
    Painter.save();
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setBrush(Qt::NoBrush);
    Painter.setPen(QPen(QColor(0, 0, 0, 160), 3.0 * PixelRatio));
    Painter.drawEllipse(Centre, Radius, Radius);
    QPen Light(QColor(255, 255, 255, 230), 1.2 * PixelRatio);
    if (Brush.erases())
        Light.setStyle(Qt::DashLine);
    Painter.setPen(Light);
    Painter.drawEllipse(Centre, Radius, Radius);
    const double Inner = Radius * Brush.hardness();
    if (Radius - Inner > 6.0 * PixelRatio && Inner > 4.0 * PixelRatio) {
        Painter.setPen(QPen(QColor(255, 255, 255, 70), PixelRatio));
        Painter.drawEllipse(Centre, Inner, Inner);
    }
    Painter.restore();
}
