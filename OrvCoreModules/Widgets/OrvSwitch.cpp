#include "OrvCoreModules/Widgets/OrvSwitch.h"

#include "OrvCoreModules/Widgets/OrvPainting.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

OrvSwitch::OrvSwitch(QWidget* pParent)
    : QWidget(pParent)
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize OrvSwitch::sizeHint() const
{
    return {30, 18};
}

void OrvSwitch::setChecked(bool Checked)
{
    if (m_Checked == Checked)
        return;
    m_Checked = Checked;
    update();
    Q_EMIT stateChanged(Checked);
}

void OrvSwitch::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setOpacity(isEnabled() ? 1.0 : 0.4);
    QRectF Track(0.0, 0.0, 28.0, 14.0);
    Track.moveCenter(QRectF(rect()).center());
    Painter.setPen(OrvPainting::frameColor(palette(), hasFocus()));
    Painter.setBrush(palette().color(m_Checked ? QPalette::Highlight : QPalette::Base));
    Painter.drawRoundedRect(Track, 7.0, 7.0);
    QRectF Knob(0.0, 0.0, 10.0, 10.0);
    Knob.moveCenter({m_Checked ? Track.right() - 7.0 : Track.left() + 7.0, Track.center().y()});
    Painter.setPen(Qt::NoPen);
    Painter.setBrush(
        m_Checked ? palette().color(QPalette::HighlightedText) : OrvPainting::dimTextColor(palette()));
    Painter.drawEllipse(Knob);
}

void OrvSwitch::mousePressEvent(QMouseEvent* pEvent)
{
    // Accepted, so that the release comes here.
    pEvent->setAccepted(pEvent->button() == Qt::LeftButton);
}

void OrvSwitch::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton && rect().contains(pEvent->pos()))
        toggle();
}

void OrvSwitch::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Space)
        toggle();
    else
        QWidget::keyPressEvent(pEvent);
}

#include "moc_OrvSwitch.cpp"
