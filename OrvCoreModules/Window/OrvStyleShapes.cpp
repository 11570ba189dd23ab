#include "OrvCoreModules/Window/OrvStyleShapes.h"

#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOption>

using Style = OrvCustomFusionStyle;

namespace {

constexpr int GrooveWidth = 4;
constexpr qreal HandleRadius = 6;

/// Saves the painter and gives back what the shape has changed.
class PainterState {
public:
    explicit PainterState(QPainter* pPainter)
        : m_pPainter(pPainter)
    {
        m_pPainter->save();
        m_pPainter->setRenderHint(QPainter::Antialiasing);
    }
    ~PainterState() { m_pPainter->restore(); }
    PainterState(const PainterState&) = delete;
    PainterState& operator=(const PainterState&) = delete;

private:
    QPainter* m_pPainter;
};

/// A hairline lies on half pixels.
QRectF hairline(const QRect& Rect)
{
    return QRectF(Rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

QColor withAlpha(QColor Color, int Alpha)
{
    Color.setAlpha(Alpha);
    return Color;
}

bool isEnabled(const QStyleOption* pOption)
{
    return pOption->state & QStyle::State_Enabled;
}

bool isHovered(const QStyleOption* pOption)
{
    return isEnabled(pOption) && (pOption->state & QStyle::State_MouseOver);
}

QColor accent(const QStyleOption* pOption)
{
    return isEnabled(pOption) ? Style::accentColor() : withAlpha(Style::accentColor(), 90);
}

/// Of check boxes and radio buttons, which must be seen on the ground of lists as well.
QColor indicatorBorder(const QStyleOption* pOption)
{
    if (!isEnabled(pOption))
        return Style::windowColor().lighter(130);
    return Style::windowColor().lighter(isHovered(pOption) ? 260 : 190);
}

void drawBox(QPainter* pPainter, const QRectF& Rect, qreal Radius, const QColor& Fill, const QColor& Border)
{
    pPainter->setPen(Border.isValid() ? QPen(Border, 1) : QPen(Qt::NoPen));
    pPainter->setBrush(Fill.isValid() ? QBrush(Fill) : QBrush(Qt::NoBrush));
    pPainter->drawRoundedRect(Rect, Radius, Radius);
}

} // namespace

void OrvStyleShapes::drawButtonPanel(QPainter* pPainter, const QStyleOption* pOption, bool IsDefault)
{
    const PainterState State(pPainter);
    const bool Down = pOption->state & QStyle::State_Sunken;
    QColor Fill = pOption->palette.color(QPalette::Button);
    if (pOption->state & QStyle::State_On)
        Fill = Style::accentColor().darker(150);
    if (Down)
        Fill = Fill.darker(130);
    else if (isHovered(pOption))
        Fill = Fill.lighter(118);
    const bool Focused
        = (pOption->state & QStyle::State_HasFocus) && (pOption->state & QStyle::State_KeyboardFocusChange);
    const QColor Border
        = (IsDefault || Focused) && isEnabled(pOption) ? Style::accentColor() : Style::borderColor();
    drawBox(pPainter, hairline(pOption->rect), FrameRadius, isEnabled(pOption) ? Fill : withAlpha(Fill, 120),
        Border);
}

void OrvStyleShapes::drawToolButtonPanel(QPainter* pPainter, const QStyleOption* pOption)
{
    const bool On = pOption->state & QStyle::State_On;
    const bool Down = pOption->state & QStyle::State_Sunken;
    if ((pOption->state & QStyle::State_AutoRaise) && !On && !Down && !isHovered(pOption))
        return;
    const PainterState State(pPainter);
    QColor Fill = Style::windowColor().lighter(145);
    if (Down)
        Fill = Style::baseColor();
    else if (On)
        Fill = Style::accentColor().darker(isHovered(pOption) ? 130 : 160);
    drawBox(pPainter, hairline(pOption->rect), FrameRadius, Fill, withAlpha(Style::borderColor(), 160));
}

void OrvStyleShapes::drawToolButtonFocus(QPainter* pPainter, const QRect& Rect)
{
    const PainterState State(pPainter);
    drawBox(pPainter, hairline(Rect), FrameRadius, QColor(), Style::accentColor());
}

void OrvStyleShapes::drawFieldFrame(QPainter* pPainter, const QStyleOption* pOption, bool Filled)
{
    const PainterState State(pPainter);
    const bool Focused = (pOption->state & QStyle::State_HasFocus) && isEnabled(pOption);
    QColor Border = Focused ? Style::accentColor() : Style::borderColor();
    if (!Focused && isHovered(pOption))
        Border = Style::windowColor().lighter(170);
    const QColor Fill = pOption->palette.color(isEnabled(pOption) ? QPalette::Base : QPalette::Window);
    drawBox(pPainter, hairline(pOption->rect), FrameRadius, Filled ? Fill : QColor(), Border);
}

void OrvStyleShapes::drawCheckBox(QPainter* pPainter, const QStyleOption* pOption)
{
    const PainterState State(pPainter);
    const int Side = qMin(pOption->rect.width(), pOption->rect.height()) - 1;
    QRect Box(0, 0, Side, Side);
    Box.moveCenter(pOption->rect.center());
    const bool Set = pOption->state & (QStyle::State_On | QStyle::State_NoChange);
    const QColor Border = indicatorBorder(pOption);
    drawBox(pPainter, hairline(Box), 2.5, Set ? accent(pOption) : Style::baseColor(), Border);
    pPainter->translate(Box.topLeft());
    pPainter->scale(Side, Side);
    const QColor MarkColor = withAlpha(Qt::white, isEnabled(pOption) ? 255 : 120);
    pPainter->setPen(QPen(MarkColor, 0.14, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (pOption->state & QStyle::State_NoChange)
        pPainter->drawLine(QPointF(0.27, 0.5), QPointF(0.73, 0.5));
    else if (pOption->state & QStyle::State_On)
        pPainter->drawPolyline(QPolygonF({QPointF(0.25, 0.52), QPointF(0.43, 0.70), QPointF(0.76, 0.31)}));
}

void OrvStyleShapes::drawRadioButton(QPainter* pPainter, const QStyleOption* pOption)
{
    const PainterState State(pPainter);
    const qreal Side = qMin(pOption->rect.width(), pOption->rect.height()) - 1;
    const QPointF Center = QRectF(pOption->rect).center();
    const bool On = pOption->state & QStyle::State_On;
    const QColor Border = indicatorBorder(pOption);
    pPainter->setPen(QPen(Border, 1));
    pPainter->setBrush(On ? accent(pOption) : Style::baseColor());
    pPainter->drawEllipse(Center, Side / 2 - 0.5, Side / 2 - 0.5);
    if (!On)
        return;
    pPainter->setPen(Qt::NoPen);
    pPainter->setBrush(withAlpha(Qt::white, isEnabled(pOption) ? 255 : 120));
    pPainter->drawEllipse(Center, Side / 5, Side / 5);
}

void OrvStyleShapes::drawArrow(
    QPainter* pPainter, const QRect& Rect, Qt::ArrowType Direction, const QColor& Color)
{
    const PainterState State(pPainter);
    const qreal Reach = qMin(4.0, qMin(Rect.width(), Rect.height()) / 2.5);
    pPainter->translate(QRectF(Rect).center());
    switch (Direction) {
    case Qt::UpArrow:
        pPainter->rotate(180);
        break;
    case Qt::LeftArrow:
        pPainter->rotate(90);
        break;
    case Qt::RightArrow:
        pPainter->rotate(-90);
        break;
    default:
        break;
    }
    pPainter->setPen(QPen(Color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    pPainter->drawPolyline(
        QPolygonF({QPointF(-Reach, -Reach / 2), QPointF(0, Reach / 2), QPointF(Reach, -Reach / 2)}));
}

void OrvStyleShapes::drawBranch(QPainter* pPainter, const QStyleOption* pOption)
{
    if (!(pOption->state & QStyle::State_Children))
        return;
    const PainterState State(pPainter);
    pPainter->translate(QRectF(pOption->rect).center());
    if (pOption->state & QStyle::State_Open)
        pPainter->rotate(90);
    pPainter->setPen(Qt::NoPen);
    pPainter->setBrush(isHovered(pOption) ? Style::textColor() : withAlpha(Style::textColor(), 170));
    pPainter->drawPolygon(QPolygonF({QPointF(-2, -4), QPointF(3, 0), QPointF(-2, 4)}));
}

void OrvStyleShapes::drawTab(QPainter* pPainter, const QStyleOptionTab* pOption)
{
    const PainterState State(pPainter);
    const bool Selected = pOption->state & QStyle::State_Selected;
    QRect Rect = pOption->rect;
    QColor Fill = Style::windowColor().darker(115);
    if (Selected)
        Fill = Style::windowColor().lighter(118);
    else if (isHovered(pOption))
        Fill = Style::windowColor();
    pPainter->setRenderHint(QPainter::Antialiasing, false);
    pPainter->fillRect(Rect, Fill);
    // A line of the accent on the side away from the page; a dark one towards the next tab.
    QRect Edge = Rect;
    const bool Vertical = pOption->shape == QTabBar::RoundedWest || pOption->shape == QTabBar::RoundedEast
        || pOption->shape == QTabBar::TriangularWest || pOption->shape == QTabBar::TriangularEast;
    if (Vertical) {
        Edge.setWidth(2);
        pPainter->fillRect(QRect(Rect.left(), Rect.bottom(), Rect.width(), 1), Style::borderColor());
    } else {
        Edge.setHeight(2);
        pPainter->fillRect(QRect(Rect.right(), Rect.top(), 1, Rect.height()), Style::borderColor());
    }
    if (Selected)
        pPainter->fillRect(Edge, accent(pOption));
}

void OrvStyleShapes::drawHeaderSection(QPainter* pPainter, const QStyleOptionHeader* pOption)
{
    const QColor Fill = Style::windowColor().lighter(isHovered(pOption) ? 130 : 115);
    pPainter->fillRect(pOption->rect, Fill);
    const QRect& Rect = pOption->rect;
    pPainter->fillRect(QRect(Rect.left(), Rect.bottom(), Rect.width(), 1), Style::borderColor());
    const bool Last = pOption->position == QStyleOptionHeader::End
        || pOption->position == QStyleOptionHeader::OnlyOneSection;
    if (!Last)
        pPainter->fillRect(QRect(Rect.right(), Rect.top() + 3, 1, Rect.height() - 7), Style::borderColor());
}

void OrvStyleShapes::drawProgress(QPainter* pPainter, const QStyleOptionProgressBar* pOption)
{
    const PainterState State(pPainter);
    const qreal Radius = qMin(qreal(FrameRadius), pOption->rect.height() / 2.0);
    drawBox(pPainter, hairline(pOption->rect), Radius, Style::baseColor(), Style::borderColor());
    QRectF Bar = QRectF(pOption->rect).adjusted(1, 1, -1, -1);
    const bool Unknown = pOption->maximum <= pOption->minimum;
    const qreal Range = qMax(1, pOption->maximum - pOption->minimum);
    const qreal Part = Unknown ? 1 : qBound(0.0, (pOption->progress - pOption->minimum) / Range, 1.0);
    if (Part <= 0)
        return;
    const bool Vertical = pOption->orientation == Qt::Vertical;
    if (Vertical)
        Bar.setTop(Bar.bottom() - Bar.height() * Part);
    else if (pOption->invertedAppearance != (pOption->direction == Qt::RightToLeft))
        Bar.setLeft(Bar.right() - Bar.width() * Part);
    else
        Bar.setWidth(Bar.width() * Part);
    QColor Fill = accent(pOption);
    if (Unknown)
        Fill.setAlpha(Fill.alpha() / 2);
    drawBox(pPainter, Bar, qMax(0.0, Radius - 1), Fill, QColor());
}

void OrvStyleShapes::drawScrollBar(QPainter* pPainter, const QStyleOptionSlider* pOption, const QRect& Slider)
{
    const PainterState State(pPainter);
    pPainter->fillRect(pOption->rect, Style::baseColor());
    if (Slider.isEmpty() || pOption->maximum == pOption->minimum)
        return;
    const bool Dragged = (pOption->state & QStyle::State_Sunken)
        && (pOption->activeSubControls & QStyle::SC_ScrollBarSlider);
    QColor Fill = Style::windowColor().lighter(180);
    if (Dragged)
        Fill = Style::accentColor();
    else if (isHovered(pOption) && (pOption->activeSubControls & QStyle::SC_ScrollBarSlider))
        Fill = Fill.lighter(130);
    const QRectF Bar = QRectF(Slider).adjusted(2.5, 2.5, -2.5, -2.5);
    drawBox(pPainter, Bar, qMin(Bar.width(), Bar.height()) / 2, Fill, QColor());
}

void OrvStyleShapes::drawSlider(
    QPainter* pPainter, const QStyleOptionSlider* pOption, const QRect& Groove, const QRect& Handle)
{
    const PainterState State(pPainter);
    const bool Horizontal = pOption->orientation == Qt::Horizontal;
    QRectF Line = Groove;
    const QPointF Center = QRectF(Handle).center();
    if (Horizontal) {
        Line.setHeight(GrooveWidth);
        Line.moveCenter(QPointF(Line.center().x(), Center.y()));
    } else {
        Line.setWidth(GrooveWidth);
        Line.moveCenter(QPointF(Center.x(), Line.center().y()));
    }
    drawBox(pPainter, Line, GrooveWidth / 2.0, Style::baseColor().darker(120), QColor());
    QRectF Passed = Line;
    if (Horizontal && !pOption->upsideDown)
        Passed.setRight(Center.x());
    else if (Horizontal)
        Passed.setLeft(Center.x());
    else if (pOption->upsideDown)
        Passed.setTop(Center.y());
    else
        Passed.setBottom(Center.y());
    drawBox(pPainter, Passed, GrooveWidth / 2.0, accent(pOption), QColor());

    const bool Held = pOption->state & QStyle::State_Sunken;
    const bool Focused = pOption->state & QStyle::State_HasFocus;
    QColor Fill = isEnabled(pOption) ? QColor(0xc8, 0xc8, 0xc8) : QColor(0x70, 0x70, 0x70);
    if (isHovered(pOption) || Held)
        Fill = Qt::white;
    pPainter->setPen(QPen(Focused ? Style::accentColor() : Style::borderColor(), 1));
    pPainter->setBrush(Fill);
    pPainter->drawEllipse(Center, HandleRadius, HandleRadius);
}

void OrvStyleShapes::drawSplitterHandle(QPainter* pPainter, const QStyleOption* pOption)
{
    const PainterState State(pPainter);
    const QRect& Rect = pOption->rect;
    if (isHovered(pOption) || (pOption->state & QStyle::State_Sunken)) {
        pPainter->fillRect(Rect, withAlpha(Style::accentColor(), 160));
        return;
    }
    // Three dots where the hand takes hold.
    const bool SideBySide = Rect.height() > Rect.width();
    pPainter->setPen(Qt::NoPen);
    pPainter->setBrush(withAlpha(Style::textColor(), 110));
    for (int Dot = -1; Dot <= 1; ++Dot) {
        const QPointF Offset = SideBySide ? QPointF(0, Dot * 5) : QPointF(Dot * 5, 0);
        pPainter->drawEllipse(QRectF(Rect).center() + Offset, 1, 1);
    }
}
