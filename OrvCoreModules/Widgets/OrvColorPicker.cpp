#include "OrvCoreModules/Widgets/OrvColorPicker.h"

#include "OrvCoreModules/Widgets/OrvColorField.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"
#include "OrvCoreModules/Widgets/OrvPainting.h"
#include "OrvCoreModules/Widgets/OrvSliderSpinBox.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Unbounded = 65504.0; // the largest half float

struct Hsv {
    qreal Hue, Saturation, Value;
};

/// Values above 1 stay; a hue or saturation that the colour does not have is taken from what was before.
Hsv hsvFromColor(const OrvColor& Color, const Hsv& Before)
{
    const qreal Red = qreal(Color.red()), Green = qreal(Color.green()), Blue = qreal(Color.blue());
    const qreal Most = std::max({Red, Green, Blue}), Least = std::min({Red, Green, Blue});
    const qreal Span = Most - Least;
    if (Most <= 0.0)
        return {Before.Hue, Before.Saturation, 0.0};
    if (Span <= 0.0)
        return {Before.Hue, 0.0, Most};
    qreal Sector = 0.0;
    if (Most == Red)
        Sector = (Green - Blue) / Span;
    else if (Most == Green)
        Sector = 2.0 + (Blue - Red) / Span;
    else
        Sector = 4.0 + (Red - Green) / Span;
    const qreal Hue = Sector < 0.0 ? Sector / 6.0 + 1.0 : Sector / 6.0;
    // Red stands at both ends of the strip.
    return {Hue == 0.0 && Before.Hue == 1.0 ? 1.0 : Hue, qMin(1.0, Span / Most), Most};
}

OrvColor colorFromHsv(const Hsv& Numbers, float Alpha)
{
    const auto component = [&Numbers](qreal Offset) {
        const qreal Sector = std::fmod(Offset + Numbers.Hue * 6.0, 6.0);
        const qreal Share = qBound(0.0, qMin(Sector, 4.0 - Sector), 1.0);
        return float(Numbers.Value * (1.0 - Numbers.Saturation * Share));
    };
    return {component(5.0), component(3.0), component(1.0), Alpha};
}

QString hexFromColor(const OrvColor& Color, bool WithAlpha)
{
    const QColor Clamped = Color.toQColor();
    const QString Hex = Clamped.name(QColor::HexRgb);
    return WithAlpha && Clamped.alpha() < 255
        ? Hex + QStringLiteral("%1").arg(Clamped.alpha(), 2, 16, QLatin1Char('0'))
        : Hex;
}

/// Three, six or eight digits, alpha last, with or without the hash mark.
bool colorFromHex(QString Text, OrvColor& Color)
{
    static const QRegularExpression Pattern(
        QStringLiteral("^#?([0-9a-fA-F]{3}|[0-9a-fA-F]{6}|[0-9a-fA-F]{8})$"));
    const QRegularExpressionMatch Match = Pattern.match(Text.trimmed());
    if (!Match.hasMatch())
        return false;
    Text = Match.captured(1);
    if (Text.size() == 3)
        Text = QString(2, Text[0]) + QString(2, Text[1]) + QString(2, Text[2]);
    const auto component
        = [&Text](int Position) { return float(Text.mid(Position, 2).toInt(nullptr, 16)) / 255.0f; };
    Color
        = OrvColor(component(0), component(2), component(4), Text.size() == 8 ? component(6) : Color.alpha());
    return true;
}

} // namespace

OrvColorPicker::OrvColorPicker(QWidget* pParent, Qt::WindowFlags Flags)
    : QWidget(pParent, Flags)
{
    setWindowTitle(tr("Color"));
    m_pSquare = new OrvColorField(OrvColorField::SaturationValue, this);
    m_pStrip = new OrvColorField(OrvColorField::Hue, this);
    for (OrvColorField* pField : {m_pSquare, m_pStrip}) {
        connect(pField, &OrvColorField::editBegun, this, &OrvColorPicker::begin);
        connect(pField, &OrvColorField::editFinished, this, &OrvColorPicker::finish);
        connect(pField, &OrvColorField::edited, this, [this, pField] {
            if (pField == m_pStrip)
                m_Hue = m_pStrip->hue();
            else {
                m_Saturation = m_pSquare->saturation();
                m_Value = m_pSquare->value();
            }
            takeFromFields();
        });
    }
    QHBoxLayout* pFields = new QHBoxLayout;
    pFields->setSpacing(6);
    pFields->addWidget(m_pSquare, 1);
    pFields->addWidget(m_pStrip);

    m_pComparison = new QWidget(this);
    m_pComparison->setFixedHeight(22);
    m_pComparison->setToolTip(tr("The color before, and now. Click to go back."));
    m_pHex = new QLineEdit(this);
    m_pHex->setFixedSize(84, 22);
    m_pHex->setToolTip(tr("Hexadecimal red, green and blue, and alpha if there is more"));
    connect(m_pHex, &QLineEdit::editingFinished, this, &OrvColorPicker::takeFromHex);
    QHBoxLayout* pCompared = new QHBoxLayout;
    pCompared->setSpacing(6);
    pCompared->addWidget(m_pComparison, 1);
    pCompared->addWidget(m_pHex);

    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(8, 8, 8, 8);
    pLayout->setSpacing(6);
    pLayout->addLayout(pFields, 1);
    pLayout->addLayout(pCompared);
    createSliders(pLayout);
    setColor(OrvColor::black());
}

OrvColorPicker::~OrvColorPicker() = default;

void OrvColorPicker::createSliders(QVBoxLayout* pLayout)
{
    const QString Prefixes[ComponentCount] = {tr("R"), tr("G"), tr("B"), tr("H"), tr("S"), tr("V"), tr("A")};
    for (int Index = 0; Index < ComponentCount; ++Index) {
        OrvSliderSpinBox* pSlider = new OrvSliderSpinBox(this);
        const Component Which = Component(Index);
        pSlider->setPrefix(Prefixes[Index]);
        pSlider->setUiRange(0.0, 1.0);
        if (Which == Hue) {
            pSlider->setDisplayFactor(360.0);
            pSlider->setDecimals(0);
            pSlider->setSuffix(QStringLiteral("°"));
            pSlider->setStep(1.0 / 360.0);
            pSlider->setWrapping(true);
        } else if (Which == Red || Which == Green || Which == Blue) {
            pSlider->setRange(-Unbounded, Unbounded);
        } else if (Which == Value) {
            pSlider->setRange(0.0, Unbounded);
        }
        connect(pSlider, &OrvSliderSpinBox::editBegun, this, &OrvColorPicker::begin);
        connect(pSlider, &OrvSliderSpinBox::editFinished, this, &OrvColorPicker::finish);
        connect(pSlider, &OrvSliderSpinBox::valueEdited, this,
            [this, Which](double Number) { takeFromSlider(Which, Number); });
        m_Sliders[std::size_t(Index)] = pSlider;
    }
    for (const int First : {int(Red), int(Hue)}) {
        QHBoxLayout* pRow = new QHBoxLayout;
        pRow->setSpacing(4);
        for (int Index = First; Index < First + 3; ++Index)
            pRow->addWidget(m_Sliders[std::size_t(Index)]);
        pLayout->addLayout(pRow);
    }
    pLayout->addWidget(m_Sliders[Alpha]);
}

void OrvColorPicker::setAlphaShown(bool Shown)
{
    m_AlphaShown = Shown;
    m_Sliders[Alpha]->setVisible(Shown);
    showColor();
}

void OrvColorPicker::popupAt(const QWidget* pAnchor)
{
    if (pAnchor)
        OrvMoveWidgetToPoint(this, pAnchor->mapToGlobal(QPoint(0, pAnchor->height() + 2)));
    show();
    m_pSquare->setFocus(Qt::PopupFocusReason);
}

void OrvColorPicker::followHsv(const OrvColor& Color)
{
    const Hsv Numbers = hsvFromColor(Color, {m_Hue, m_Saturation, m_Value});
    m_Hue = Numbers.Hue;
    m_Saturation = Numbers.Saturation;
    m_Value = Numbers.Value;
}

void OrvColorPicker::setColor(const OrvColor& Color)
{
    m_Color = Color;
    followHsv(Color);
    showColor();
}

void OrvColorPicker::setOriginalColor(const OrvColor& Color)
{
    m_Original = Color;
    update();
}

void OrvColorPicker::begin()
{
    if (m_OpenEdits++ == 0)
        Q_EMIT editBegun();
}

void OrvColorPicker::finish()
{
    if (m_OpenEdits > 0 && --m_OpenEdits == 0)
        Q_EMIT editFinished();
}

void OrvColorPicker::take(const OrvColor& Color)
{
    if (Color == m_Color) {
        showColor();
        return;
    }
    begin();
    m_Color = Color;
    showColor();
    Q_EMIT colorEdited(Color);
    finish();
}

void OrvColorPicker::takeFromFields()
{
    take(colorFromHsv({m_Hue, m_Saturation, m_Value}, m_Color.alpha()));
}

void OrvColorPicker::takeFromSlider(Component Which, double Number)
{
    if (Which == Hue)
        m_Hue = Number;
    else if (Which == Saturation)
        m_Saturation = Number;
    else if (Which == Value)
        m_Value = Number;
    if (Which == Hue || Which == Saturation || Which == Value) {
        takeFromFields();
        return;
    }
    std::array<float, 4> Components{m_Color.red(), m_Color.green(), m_Color.blue(), m_Color.alpha()};
    Components[Which == Alpha ? 3 : std::size_t(Which)] = float(Number);
    const OrvColor Color(Components[0], Components[1], Components[2], Components[3]);
    followHsv(Color);
    take(Color);
}

void OrvColorPicker::takeFromHex()
{
    OrvColor Color = m_Color;
    // Numbers that the hexadecimal name rounds are not lost by leaving it.
    if (m_pHex->text() == hexFromColor(m_Color, m_AlphaShown) || !colorFromHex(m_pHex->text(), Color)) {
        showColor();
        return;
    }
    followHsv(Color);
    take(Color);
}

void OrvColorPicker::showColor()
{
    m_pSquare->setHsv(m_Hue, m_Saturation, m_Value);
    m_pStrip->setHsv(m_Hue, m_Saturation, m_Value);
    const double Numbers[ComponentCount] = {double(m_Color.red()), double(m_Color.green()),
        double(m_Color.blue()), m_Hue, m_Saturation, m_Value, double(m_Color.alpha())};
    for (int Index = 0; Index < ComponentCount; ++Index)
        m_Sliders[std::size_t(Index)]->setValue(Numbers[Index]);
    m_pHex->setText(hexFromColor(m_Color, m_AlphaShown));
    update();
}

QRect OrvColorPicker::comparison() const
{
    return m_pComparison->geometry();
}

void OrvColorPicker::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    if (isWindow()) {
        Painter.fillRect(rect(), palette().window());
        Painter.setPen(OrvPainting::frameColor(palette()));
        Painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    const QRect Area = comparison();
    const int Half = Area.width() / 2;
    OrvPainting::drawColor(Painter, Area.adjusted(0, 0, -Half, 0), OrvPainting::screenColor(m_Original));
    OrvPainting::drawColor(
        Painter, Area.adjusted(Area.width() - Half, 0, 0, 0), OrvPainting::screenColor(m_Color));
    Painter.setPen(OrvPainting::frameColor(palette()));
    Painter.drawRect(Area.adjusted(0, 0, -1, -1));
}

void OrvColorPicker::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const QRect Area = comparison();
    const bool OnOriginal = Area.contains(pEvent->pos()) && pEvent->pos().x() < Area.center().x();
    if (pEvent->button() != Qt::LeftButton || !OnOriginal) {
        QWidget::mouseReleaseEvent(pEvent);
        return;
    }
    followHsv(m_Original);
    take(m_Original);
}

void OrvColorPicker::closeEvent(QCloseEvent* pEvent)
{
    // Whatever is still being edited ends here: a burst of steps, a number half typed.
    m_pSquare->setFocus(Qt::OtherFocusReason);
    QWidget::closeEvent(pEvent);
}

#include "moc_OrvColorPicker.cpp"
