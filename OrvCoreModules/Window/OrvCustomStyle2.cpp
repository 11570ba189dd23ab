#include "OrvCoreModules/Window/OrvCustomStyle2.h"

#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOption>

namespace {

constexpr qreal DropLineWidth = 2;

/// Between two rows a line with an end stop, on a row a frame.
void drawDropIndicator(QPainter* pPainter, const QRect& Rect)
{
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setPen(QPen(OrvCustomFusionStyle::accentColor().lighter(120), DropLineWidth));
    const qreal Half = DropLineWidth / 2;
    if (Rect.height() <= 1) {
        const qreal Y = Rect.top() + Half;
        pPainter->drawEllipse(QPointF(Rect.left() + 3, Y), 2, 2);
        pPainter->drawLine(QPointF(Rect.left() + 6, Y), QPointF(Rect.right(), Y));
    } else {
        pPainter->setBrush(Qt::NoBrush);
        pPainter->drawRoundedRect(QRectF(Rect).adjusted(Half, Half, -Half, -Half), 2, 2);
    }
    pPainter->restore();
}

} // namespace

OrvCustomStyle2::OrvCustomStyle2()
    : QProxyStyle(new OrvCustomFusionStyle)
{
}

void OrvCustomStyle2::drawPrimitive(
    PrimitiveElement Element, const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const
{
    if (Element == PE_IndicatorItemViewItemDrop) {
        if (!pOption->rect.isNull())
            drawDropIndicator(pPainter, pOption->rect);
        return;
    }
    // The part of a row before its first item: selected as the rest, in a view without focus as well.
    if (Element == PE_PanelItemViewRow && (pOption->state & State_Selected)) {
        pPainter->fillRect(pOption->rect, pOption->palette.brush(QPalette::Highlight));
        return;
    }
    QProxyStyle::drawPrimitive(Element, pOption, pPainter, pWidget);
}

#include "moc_OrvCustomStyle2.cpp"
