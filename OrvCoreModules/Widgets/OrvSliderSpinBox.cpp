#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"

#include "OrvCoreModules/Widgets/OrvInPlaceEdit.h"
#include "OrvCoreModules/Widgets/OrvPainting.h"
#include "OrvCoreModules/Window/OrvAppearance.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <cmath>

namespace {

constexpr int RowHeight = 22;
constexpr int Margin = 5;
constexpr int DragThreshold = 3; // px
constexpr int BurstPause = 400; // ms
constexpr int TypedDigits = 9;
constexpr double FineFactor = 0.1;

double stepsOf(const QKeyEvent* pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        return 1.0;
    case Qt::Key_Down:
    case Qt::Key_Left:
        return -1.0;
    case Qt::Key_PageUp:
        return 10.0;
    case Qt::Key_PageDown:
        return -10.0;
    default:
        return 0.0;
    }
}

bool startsNumber(const QString& Text)
{
    return Text.size() == 1 && (Text[0].isDigit() || QStringLiteral("-+.,").contains(Text[0]));
}

} // namespace

OrvSliderSpinBox::OrvSliderSpinBox(QWidget* pParent)
    : QWidget(pParent)
    , m_Decimals(OrvAppearance::instance().sliderPrecision())
{
    setFocusPolicy(Qt::StrongFocus);
    setFixedHeight(RowHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::SizeHorCursor);
    m_BurstEnd.setSingleShot(true);
    m_BurstEnd.setInterval(BurstPause);
    connect(&m_BurstEnd, &QTimer::timeout, this, [this] { finish(); });
}

OrvSliderSpinBox::~OrvSliderSpinBox()
{
    delete m_pEditor;
}

void OrvSliderSpinBox::setRange(double Minimum, double Maximum)
{
    m_Minimum = Minimum;
    m_Maximum = qMax(Minimum, Maximum);
    setValue(m_Value);
}

void OrvSliderSpinBox::setUiRange(double Minimum, double Maximum)
{
    m_UiMinimum = Minimum;
    m_UiMaximum = Maximum;
    update();
}

void OrvSliderSpinBox::setUiGamma(double Gamma)
{
    m_UiGamma = Gamma > 0.0 ? Gamma : 1.0;
    update();
}

/// Values beyond the range to drag in have shares beyond 0 and 1.
double OrvSliderSpinBox::shareFromValue(double Value) const
{
    const double Linear = (Value - m_UiMinimum) / (m_UiMaximum - m_UiMinimum);
    return std::copysign(std::pow(std::abs(Linear), 1.0 / m_UiGamma), Linear);
}

double OrvSliderSpinBox::valueFromShare(double Share) const
{
    const double Linear = std::copysign(std::pow(std::abs(Share), m_UiGamma), Share);
    return m_UiMinimum + Linear * (m_UiMaximum - m_UiMinimum);
}

void OrvSliderSpinBox::setDecimals(int Decimals)
{
    m_Decimals = qBound(0, Decimals, 10);
    update();
}

void OrvSliderSpinBox::setSuffix(const QString& Suffix)
{
    m_Suffix = Suffix;
    update();
}

void OrvSliderSpinBox::setPrefix(const QString& Prefix)
{
    m_Prefix = Prefix;
    update();
}

void OrvSliderSpinBox::setDisplayFactor(double Factor)
{
    m_Factor = Factor;
    update();
}

double OrvSliderSpinBox::bounded(double Value) const
{
    if (m_Wrapping && m_Maximum > m_Minimum && (Value < m_Minimum || Value > m_Maximum))
        Value -= std::floor((Value - m_Minimum) / (m_Maximum - m_Minimum)) * (m_Maximum - m_Minimum);
    return qBound(m_Minimum, Value, m_Maximum);
}

void OrvSliderSpinBox::setValue(double Value)
{
    Value = bounded(Value);
    if (m_Value == Value)
        return;
    m_Value = Value;
    update();
}

QString OrvSliderSpinBox::numberText() const
{
    const QString Text = QString::number(m_Value * m_Factor, 'f', m_Decimals);
    // A tiny negative number would read "-0.000".
    return Text.toDouble() == 0.0 && Text.startsWith(QLatin1Char('-')) ? Text.mid(1) : Text;
}

QSize OrvSliderSpinBox::sizeHint() const
{
    return {120, RowHeight};
}

QSize OrvSliderSpinBox::minimumSizeHint() const
{
    return {48, RowHeight};
}

bool OrvSliderSpinBox::isTyping() const
{
    return m_pEditor;
}

void OrvSliderSpinBox::begin()
{
    m_ValueBefore = m_Value;
    Q_EMIT editBegun();
}

void OrvSliderSpinBox::finish()
{
    m_BurstEnd.stop();
    const Gesture Was = std::exchange(m_Gesture, Gesture::None);
    if (Was == Gesture::Dragging || Was == Gesture::Burst)
        Q_EMIT editFinished();
}

void OrvSliderSpinBox::take(double Value)
{
    Value = bounded(Value);
    if (m_Value == Value)
        return;
    m_Value = Value;
    update();
    Q_EMIT valueEdited(Value);
}

void OrvSliderSpinBox::step(double Steps)
{
    if (m_Gesture == Gesture::Dragging)
        return;
    if (m_Gesture != Gesture::Burst) {
        m_Gesture = Gesture::Burst;
        begin();
    }
    m_BurstEnd.start();
    take(m_Value + Steps * m_Step);
}

bool OrvSliderSpinBox::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ShortcutOverride) {
        const auto* pKey = static_cast<QKeyEvent*>(pEvent);
        const bool Plain = !(pKey->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
        if (Plain && (stepsOf(pKey) != 0.0 || startsNumber(pKey->text())))
            pEvent->accept();
        else if (m_Gesture == Gesture::Dragging && pKey->key() == Qt::Key_Escape)
            pEvent->accept();
        else if (m_Gesture == Gesture::Burst)
            finish(); // before a shortcut such as undo looks at the history
    }
    return QWidget::event(pEvent);
}

void OrvSliderSpinBox::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    Painter.setRenderHint(QPainter::Antialiasing);
    const QPalette::ColorGroup Group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QRectF Frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor Ground = palette().color(Group, QPalette::Base);
    if (isEnabled() && underMouse())
        Ground = Ground.lighter(115);
    Painter.setPen(Qt::NoPen);
    Painter.setBrush(Ground);
    Painter.drawRoundedRect(Frame, 3.0, 3.0);

    if (hasUiRange()) {
        const double Share = qBound(0.0, shareFromValue(m_Value), 1.0);
        QColor Bar = palette().color(Group, QPalette::Highlight);
        Bar.setAlpha(isEnabled() ? 150 : 50);
        Painter.save();
        Painter.setClipRect(QRectF(Frame.left(), 0.0, Frame.width() * Share, height()));
        Painter.setBrush(Bar);
        Painter.drawRoundedRect(Frame, 3.0, 3.0);
        Painter.restore();
    }
    Painter.setBrush(Qt::NoBrush);
    Painter.setPen(OrvPainting::frameColor(palette(), hasFocus() && isEnabled()));
    Painter.drawRoundedRect(Frame, 3.0, 3.0);

    const QRect TextArea = rect().adjusted(Margin, 0, -Margin, 0);
    if (!m_Prefix.isEmpty()) {
        Painter.setPen(OrvPainting::dimTextColor(palette()));
        Painter.drawText(TextArea, Qt::AlignLeft | Qt::AlignVCenter, m_Prefix);
    }
    Painter.setPen(palette().color(Group, QPalette::Text));
    Painter.drawText(TextArea, (m_Prefix.isEmpty() ? Qt::AlignHCenter : Qt::AlignRight) | Qt::AlignVCenter,
        numberText() + m_Suffix);
}

void OrvSliderSpinBox::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    finish();
    m_Gesture = Gesture::Pressed;
    m_PressPosition = pEvent->pos();
    m_DragX = pEvent->pos().x();
    m_DragValue = m_Value;
}

void OrvSliderSpinBox::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (m_Gesture == Gesture::Pressed && qAbs(pEvent->pos().x() - m_PressPosition.x()) >= DragThreshold) {
        m_Gesture = Gesture::Dragging;
        begin();
    }
    if (m_Gesture != Gesture::Dragging)
        return;
    const double Fine = pEvent->modifiers() & Qt::ShiftModifier ? FineFactor : 1.0;
    const double Pixels = (pEvent->pos().x() - std::exchange(m_DragX, pEvent->pos().x())) * Fine;
    m_DragValue = hasUiRange() ? valueFromShare(shareFromValue(m_DragValue) + Pixels / qMax(1, width()))
                               : m_DragValue + Pixels * m_Step;

    double Value = m_DragValue;
    if (hasUiRange() && !m_Wrapping)
        // A value that was typed beyond the range to drag in may stay there, but goes no further.
        Value = qBound(qMin(m_UiMinimum, m_ValueBefore), Value, qMax(m_UiMaximum, m_ValueBefore));
    if ((pEvent->modifiers() & Qt::ControlModifier) && m_Step > 0.0)
        Value = std::round(Value / m_Step) * m_Step;
    const double Scale = std::pow(10.0, m_Decimals) * m_Factor;
    take(std::round(Value * Scale) / Scale);
}

void OrvSliderSpinBox::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    const bool Clicked = m_Gesture == Gesture::Pressed;
    finish();
    if (Clicked && rect().contains(pEvent->pos()))
        type();
}

void OrvSliderSpinBox::wheelEvent(QWheelEvent* pEvent)
{
    if (!hasFocus() || m_pEditor) {
        pEvent->ignore();
        return;
    }
    pEvent->accept();
    const double Fine = pEvent->modifiers() & Qt::ShiftModifier ? FineFactor : 1.0;
    step(
        pEvent->angleDelta().y() / double(QWheelEvent::DefaultDeltasPerStep) * (m_Decimals > 0 ? Fine : 1.0));
}

void OrvSliderSpinBox::keyPressEvent(QKeyEvent* pEvent)
{
    const double Steps = stepsOf(pEvent);
    if (m_Gesture == Gesture::Dragging) {
        if (pEvent->key() == Qt::Key_Escape) {
            take(m_ValueBefore);
            finish();
        }
    } else if (Steps != 0.0 && !(pEvent->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
        step(Steps);
    } else if (pEvent->key() == Qt::Key_F2 || pEvent->key() == Qt::Key_Return
        || pEvent->key() == Qt::Key_Enter) {
        type();
    } else if (startsNumber(pEvent->text())) {
        type();
        m_pEditor->setText(pEvent->text());
    } else {
        QWidget::keyPressEvent(pEvent);
    }
}

void OrvSliderSpinBox::focusOutEvent(QFocusEvent* pEvent)
{
    if (m_Gesture == Gesture::Burst)
        finish();
    QWidget::focusOutEvent(pEvent);
}

void OrvSliderSpinBox::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::EnabledChange && !isEnabled()) {
        finish();
        if (m_pEditor)
            m_pEditor->end(false);
    }
    QWidget::changeEvent(pEvent);
}

void OrvSliderSpinBox::type()
{
    if (m_pEditor || !isEnabled())
        return;
    finish();
    // All digits that the value has, not only those shown.
    const QString Shown = numberText();
    const double Number = m_Value * m_Factor;
    const bool Exact = std::abs(Shown.toDouble() - Number) <= std::abs(Number) * 1e-9;
    m_TextBefore = Exact ? Shown : QString::number(Number, 'g', TypedDigits);
    m_pEditor = new OrvInPlaceEdit(m_TextBefore, this);
    m_pEditor->setAlignment(m_Prefix.isEmpty() ? Qt::AlignCenter : Qt::AlignRight | Qt::AlignVCenter);
    connect(m_pEditor, &OrvInPlaceEdit::ended, this, &OrvSliderSpinBox::onTypingEnded);
}

void OrvSliderSpinBox::onTypingEnded(QString Text, bool Committed)
{
    m_pEditor = nullptr;
    update();
    if (!Committed || Text == m_TextBefore)
        return;
    Text = Text.trimmed();
    if (!m_Suffix.isEmpty() && Text.endsWith(m_Suffix.trimmed()))
        Text.chop(m_Suffix.trimmed().size());
    bool Valid = false;
    double Number = Text.trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&Valid) / m_Factor;
    if (!Valid || !std::isfinite(Number))
        return;
    if (m_Decimals == 0)
        Number = std::round(Number);
    if (bounded(Number) == m_Value)
        return;
    begin();
    take(Number);
    Q_EMIT editFinished();
}

#include "moc_OrvSliderSpinBox.cpp"
