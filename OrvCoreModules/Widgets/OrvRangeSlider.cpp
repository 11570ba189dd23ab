#include "OrvCoreModules/Widgets/OrvRangeSlider.h"

#include "OrvCoreModules/Widgets/OrvPainting.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int HandleHalf = 5;
constexpr int RampHeight = 12;
constexpr int HandleHeight = 9;
constexpr double KeyStep = 0.01;
const OrvRangeSlider::Range Whole{0.0, 0.0, 1.0, 1.0};

/// Handles come in pairs: 0 with 1, 2 with 3.
int partner(int Index)
{
    return Index ^ 1;
}

} // namespace

OrvRangeSlider::OrvRangeSlider(QWidget* pParent)
    : QWidget(pParent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(sizeHint().height());
}

QSize OrvRangeSlider::sizeHint() const
{
    return {200, RampHeight + HandleHeight + 4};
}

void OrvRangeSlider::setRange(const Range& Values)
{
    Range Ordered = Values;
    for (double& Value : Ordered)
        Value = qBound(0.0, Value, 1.0);
    std::sort(Ordered.begin(), Ordered.end());
    if (Ordered == m_Range)
        return;
    m_Range = Ordered;
    update();
}

QRect OrvRangeSlider::ramp() const
{
    return {HandleHalf + 1, 1, qMax(1, width() - 2 * (HandleHalf + 1)), RampHeight};
}

QPoint OrvRangeSlider::handlePosition(int Index) const
{
    const QRect Ramp = ramp();
    return {Ramp.left() + qRound(m_Range[std::size_t(Index)] * Ramp.width()),
        Ramp.bottom() + HandleHeight / 2 + 1};
}

int OrvRangeSlider::handleAt(const QPoint& Position) const
{
    int Nearest = 0;
    for (int Index = 1; Index < 4; ++Index) {
        const int Distance = qAbs(handlePosition(Index).x() - Position.x());
        const int Best = qAbs(handlePosition(Nearest).x() - Position.x());
        // Of handles that lie together, the one is taken that has room on the side of the press.
        if (Distance < Best || (Distance == Best && Position.x() >= handlePosition(Index).x()))
            Nearest = Index;
    }
    return Nearest;
}

void OrvRangeSlider::edit(const Range& Values)
{
    if (Values == m_Range)
        return;
    m_Range = Values;
    update();
    Q_EMIT rangeEdited();
}

void OrvRangeSlider::moveHandle(int Index, double Value, bool Split)
{
    Range Moved = m_Range;
    const auto at = [&Moved](int Handle) -> double& { return Moved[std::size_t(Handle)]; };
    const bool Together = at(Index) == at(partner(Index)) && !Split;
    const int First = Together ? qMin(Index, partner(Index)) : Index;
    const int Last = Together ? qMax(Index, partner(Index)) : Index;
    const double Lowest = First > 0 ? at(First - 1) : 0.0;
    const double Highest = Last < 3 ? at(Last + 1) : 1.0;
    for (int Handle = First; Handle <= Last; ++Handle)
        at(Handle) = qBound(Lowest, Value, Highest);
    edit(Moved);
}

bool OrvRangeSlider::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip && toolTip().isEmpty())
        return true;
    if (pEvent->type() == QEvent::ShortcutOverride) {
        const int Key = static_cast<QKeyEvent*>(pEvent)->key();
        if (Key == Qt::Key_Left || Key == Qt::Key_Right)
            pEvent->accept();
    }
    return QWidget::event(pEvent);
}

void OrvRangeSlider::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setOpacity(isEnabled() ? 1.0 : 0.4);
    const QRectF Ramp = QRectF(ramp());
    QLinearGradient Greys(Ramp.topLeft(), Ramp.topRight());
    Greys.setColorAt(0.0, Qt::black);
    Greys.setColorAt(1.0, Qt::white);
    Painter.setPen(OrvPainting::frameColor(palette(), hasFocus()));
    Painter.setBrush(Greys);
    Painter.drawRect(Ramp.adjusted(-0.5, -0.5, 0.5, 0.5));

    // What shows fully, and its slopes, along the ramp's lower edge.
    const auto x = [&Ramp, this](std::size_t Index) { return Ramp.left() + m_Range[Index] * Ramp.width(); };
    QColor Mark = palette().color(QPalette::Highlight).lighter(150);
    Mark.setAlpha(200);
    Painter.setPen(Qt::NoPen);
    Painter.setBrush(Mark);
    const QPointF Slopes[] = {{x(0), Ramp.bottom()}, {x(1), Ramp.bottom() - 5.0}, {x(2), Ramp.bottom() - 5.0},
        {x(3), Ramp.bottom()}};
    Painter.drawPolygon(Slopes, 4);

    for (int Index = 0; Index < 4; ++Index) {
        const qreal X = x(std::size_t(Index)), Top = Ramp.bottom() + 1.0;
        // Halves, so that a pair lying together reads as one triangle.
        const bool Left = Index % 2 == 0;
        QPainterPath Handle;
        Handle.moveTo(X, Top);
        Handle.lineTo(X, Top + HandleHeight);
        Handle.lineTo(X + (Left ? -HandleHalf : HandleHalf), Top + HandleHeight);
        Handle.closeSubpath();
        const bool Current = hasFocus() && Index == m_Current;
        Painter.setBrush(palette().color(Current ? QPalette::Highlight : QPalette::ButtonText));
        Painter.setPen(QPen(palette().color(QPalette::Window), 0.75));
        Painter.drawPath(Handle);
    }
}

void OrvRangeSlider::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    m_Dragged = m_Current = handleAt(pEvent->pos());
    update();
    Q_EMIT editBegun();
}

void OrvRangeSlider::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (m_Dragged < 0)
        return;
    const QRect Ramp = ramp();
    const double Value = double(pEvent->pos().x() - Ramp.left()) / Ramp.width();
    // Levels of 8-bit pictures: numbers that can be met again.
    moveHandle(m_Dragged, std::round(Value * 255.0) / 255.0, pEvent->modifiers() & Qt::AltModifier);
}

void OrvRangeSlider::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton && std::exchange(m_Dragged, -1) >= 0)
        Q_EMIT editFinished();
}

void OrvRangeSlider::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    Q_EMIT editBegun();
    edit(Whole);
    Q_EMIT editFinished();
}

void OrvRangeSlider::keyPressEvent(QKeyEvent* pEvent)
{
    const int Key = pEvent->key();
    if (Key == Qt::Key_Up || Key == Qt::Key_Down) {
        m_Current = (m_Current + (Key == Qt::Key_Up ? 1 : 3)) % 4;
        update();
    } else if (Key == Qt::Key_Left || Key == Qt::Key_Right) {
        const double Step = Key == Qt::Key_Right ? KeyStep : -KeyStep;
        Q_EMIT editBegun();
        moveHandle(m_Current, m_Range[std::size_t(m_Current)] + Step, pEvent->modifiers() & Qt::AltModifier);
        Q_EMIT editFinished();
    } else {
        QWidget::keyPressEvent(pEvent);
    }
}

#include "moc_OrvRangeSlider.cpp"
