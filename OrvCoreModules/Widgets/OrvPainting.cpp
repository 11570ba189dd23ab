#include "OrvCoreModules/Widgets/OrvPainting.h"

#include "OrvDdi/Color/OrvColorManager.h"

#include <QtGui/QPainter>
#include <QtGui/QPalette>

namespace {

constexpr int CheckerEdge = 5;
const QColor CheckerDark(102, 102, 102), CheckerLight(153, 153, 153);

QColor mixed(const QColor& First, const QColor& Second, qreal Share)
{
    const auto mix = [Share](qreal From, qreal To) { return From + (To - From) * Share; };
    return QColor::fromRgbF(mix(First.redF(), Second.redF()), mix(First.greenF(), Second.greenF()),
        mix(First.blueF(), Second.blueF()));
}

} // namespace

void OrvPainting::drawChecker(QPainter& Painter, const QRectF& Area)
{
    Painter.save();
    Painter.setClipRect(Area, Qt::IntersectClip);
    Painter.fillRect(Area, CheckerLight);
    const int Columns = int(Area.width()) / CheckerEdge + 1, Rows = int(Area.height()) / CheckerEdge + 1;
    for (int Row = 0; Row < Rows; ++Row) {
        for (int Column = Row % 2; Column < Columns; Column += 2) {
            const QPointF Corner = Area.topLeft() + QPointF(Column, Row) * CheckerEdge;
            Painter.fillRect(QRectF(Corner, QSizeF(CheckerEdge, CheckerEdge)), CheckerDark);
        }
    }
    Painter.restore();
}

void OrvPainting::drawColor(QPainter& Painter, const QRectF& Area, const QColor& Color)
{
    if (Color.alpha() < 255)
        drawChecker(Painter, Area);
    Painter.fillRect(Area, Color);
}

QColor OrvPainting::frameColor(const QPalette& Palette, bool Focused)
{
    return Focused ? Palette.color(QPalette::Highlight)
                   : mixed(Palette.color(QPalette::Window), Palette.color(QPalette::WindowText), 0.2);
}

QColor OrvPainting::dimTextColor(const QPalette& Palette)
{
    return mixed(Palette.color(QPalette::Text), Palette.color(QPalette::Base), 0.45);
}

QColor OrvPainting::screenColor(const OrvColor& PickerColor)
{
    OrvColor Shown;
    OrvColorManager::transform(
        PickerColor, Shown, OrvColorSpaceDefaults::Picker, OrvColorSpaceDefaults::Display);
    return Shown.toQColor();
}
