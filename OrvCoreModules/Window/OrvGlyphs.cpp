#include "OrvCoreModules/Window/OrvGlyphs.h"

#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace {

// Glyphs are drawn on a square of this edge.
constexpr qreal Edge = 16;

/// A needle with its head, upright when it holds, lying when it does not.
void drawPin(QPainter* pPainter, bool Upright)
{
    pPainter->save();
    pPainter->translate(Edge / 2, Edge / 2);
    pPainter->rotate(Upright ? 0 : 90);
    pPainter->drawRoundedRect(QRectF(-2.5, -6, 5, 6), 0.8, 0.8);
    pPainter->drawLine(QPointF(-4.5, 0), QPointF(4.5, 0));
    pPainter->drawLine(QPointF(0, 0), QPointF(0, 6));
    pPainter->restore();
}

void drawHelp(QPainter* pPainter)
{
    QPainterPath Path;
    Path.moveTo(5, 6);
    Path.cubicTo(5, 1.5, 11.5, 1.8, 11, 6);
    Path.cubicTo(10.7, 8, 8, 7.8, 8, 10.5);
    pPainter->drawPath(Path);
    pPainter->drawPoint(QPointF(8, 13.2));
}

class GlyphEngine : public QIconEngine {
public:
    explicit GlyphEngine(OrvGlyphs::Glyph Sign)
        : m_Sign(Sign)
    {
    }

    void paint(QPainter* pPainter, const QRect& Rect, QIcon::Mode Mode, QIcon::State) override
    {
        QColor Color = OrvCustomFusionStyle::textColor();
        if (Mode == QIcon::Disabled)
            Color.setAlphaF(0.35);
        OrvGlyphs::paint(pPainter, Rect, m_Sign, Color);
    }

    QPixmap pixmap(const QSize& Size, QIcon::Mode Mode, QIcon::State State) override
    {
        QPixmap Pixmap(Size);
        Pixmap.fill(Qt::transparent);
        QPainter Painter(&Pixmap);
        paint(&Painter, Pixmap.rect(), Mode, State);
        return Pixmap;
    }

    QIconEngine* clone() const override { return new GlyphEngine(*this); }

private:
    OrvGlyphs::Glyph m_Sign;
};

} // namespace

QIcon OrvGlyphs::icon(Glyph Sign)
{
    return QIcon(new GlyphEngine(Sign));
}

void OrvGlyphs::paint(QPainter* pPainter, const QRectF& Rect, Glyph Sign, const QColor& Color)
{
    const qreal Side = qMin(Rect.width(), Rect.height());
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->translate(Rect.center() - QPointF(Side, Side) / 2);
    pPainter->scale(Side / Edge, Side / Edge);
    pPainter->setPen(QPen(Color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    pPainter->setBrush(Qt::NoBrush);
    switch (Sign) {
    case Close:
        pPainter->drawLine(QPointF(4, 4), QPointF(12, 12));
        pPainter->drawLine(QPointF(12, 4), QPointF(4, 12));
        break;
    case Float:
        pPainter->drawRect(QRectF(3, 6, 7, 7));
        pPainter->drawPolyline(QPolygonF({QPointF(6, 3), QPointF(13, 3), QPointF(13, 10)}));
        break;
    case Dock:
        pPainter->drawRect(QRectF(2.5, 3.5, 11, 9));
        pPainter->fillRect(QRectF(2.5, 3.5, 4, 9), Color);
        break;
    case Pin:
        drawPin(pPainter, true);
        break;
    case Unpin:
        drawPin(pPainter, false);
        break;
    case Help:
        drawHelp(pPainter);
        break;
    case Strip:
        pPainter->drawRect(QRectF(5.5, 3.5, 8, 9));
        pPainter->drawLine(QPointF(2.5, 3.5), QPointF(2.5, 12.5));
        break;
    }
    pPainter->restore();
}
