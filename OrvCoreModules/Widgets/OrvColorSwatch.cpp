#include "OrvCoreModules/Widgets/OrvColorSwatch.h"

#include "OrvCoreModules/Widgets/OrvColorPicker.h"
#include "OrvCoreModules/Widgets/OrvPainting.h"

#include "OrvDdi/Color/OrvColorManager.h"

#include <QtCore/QDataStream>
#include <QtCore/QMimeData>
#include <QtGui/QDrag>
#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QToolTip>

namespace {

const QString ColorFormat = QStringLiteral("application/x-orvi-color");

OrvColor converted(const OrvColor& Color, OrvColorSpaceDefaults::ColorSpaceTarget From,
    OrvColorSpaceDefaults::ColorSpaceTarget To)
{
    OrvColor Result = Color;
    if (From != To)
        OrvColorManager::transform(Color, Result, From, To);
    return Result;
}

} // namespace

OrvColorSwatch::OrvColorSwatch(QWidget* pParent)
    : QWidget(pParent)
{
    setAcceptDrops(true);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

OrvColorSwatch::~OrvColorSwatch() = default;

void OrvColorSwatch::setColor(const OrvColor& Color)
{
    if (m_Color == Color)
        return;
    m_Color = Color;
    if (m_pPicker)
        m_pPicker->setColor(pickerColor());
    update();
}

void OrvColorSwatch::setColor(const OrvColor& Color, OrvColorSpaceDefaults::ColorSpaceTarget Target)
{
    m_Target = Target;
    setColor(Color);
    update();
}

void OrvColorSwatch::setDrawBorder(bool DrawBorder)
{
    m_DrawBorder = DrawBorder;
    update();
}

void OrvColorSwatch::setCheckerOnly(bool CheckerOnly)
{
    m_CheckerOnly = CheckerOnly;
    update();
}

QSize OrvColorSwatch::sizeHint() const
{
    return {48, 22};
}

OrvColor OrvColorSwatch::pickerColor() const
{
    return converted(m_Color, m_Target, OrvColorSpaceDefaults::Picker);
}

OrvColorPicker* OrvColorSwatch::picker() const
{
    return m_pPicker;
}

void OrvColorSwatch::openPicker()
{
    if (m_pPicker)
        return;
    m_pPicker = new OrvColorPicker(this, Qt::Popup);
    m_pPicker->setAttribute(Qt::WA_DeleteOnClose);
    m_pPicker->setAlphaShown(m_AlphaShown);
    m_pPicker->setOriginalColor(pickerColor());
    m_pPicker->setColor(pickerColor());
    connect(m_pPicker, &OrvColorPicker::editBegun, this, &OrvColorSwatch::editBegun);
    connect(m_pPicker, &OrvColorPicker::colorEdited, this, &OrvColorSwatch::takeFromPicker);
    connect(m_pPicker, &OrvColorPicker::editFinished, this, [this] {
        Q_EMIT editFinished();
        Q_EMIT colorChanged(m_Color, m_Target);
    });
    m_pPicker->popupAt(this);
}

void OrvColorSwatch::takeFromPicker(const OrvColor& Color)
{
    m_Color = converted(Color, OrvColorSpaceDefaults::Picker, m_Target);
    update();
    Q_EMIT colorEdited(m_Color);
}

QString OrvColorSwatch::description() const
{
    if (!m_ToolTipOverride.isEmpty())
        return m_ToolTipOverride;
    const auto number = [](float Component) { return QString::number(double(Component), 'g', 4); };
    const QString Numbers
        = tr("R %1  G %2  B %3").arg(number(m_Color.red()), number(m_Color.green()), number(m_Color.blue()));
    return m_AlphaShown ? tr("%1  A %2").arg(Numbers, number(m_Color.alpha())) : Numbers;
}

bool OrvColorSwatch::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip) {
        QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(), description(), this);
        return true;
    }
    return QWidget::event(pEvent);
}

void OrvColorSwatch::paintEvent(QPaintEvent*)
{
    QPainter Painter(this);
    const QRect Area = m_DrawBorder ? rect().adjusted(1, 1, -1, -1) : rect();
    if (m_CheckerOnly) {
        OrvPainting::drawChecker(Painter, Area);
    } else {
        QColor Shown = OrvPainting::screenColor(pickerColor());
        QColor Opaque = Shown;
        Opaque.setAlpha(255);
        // Half of it without transparency, so that colours of low alpha can be told apart.
        Painter.fillRect(Area, Opaque);
        if (m_AlphaShown && Shown.alpha() < 255)
            OrvPainting::drawColor(Painter, Area.adjusted(Area.width() / 2, 0, 0, 0), Shown);
    }
    if (!isEnabled()) {
        QColor Veil = palette().color(QPalette::Window);
        Veil.setAlpha(150);
        Painter.fillRect(Area, Veil);
    }
    if (m_DrawBorder) {
        // The frame of other controls would not show where a dark colour ends.
        Painter.setPen(
            hasFocus() ? OrvPainting::frameColor(palette(), true) : OrvPainting::dimTextColor(palette()));
        Painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void OrvColorSwatch::click()
{
    if (m_EmitOnClick)
        Q_EMIT colorChanged(m_Color, m_Target);
    else if (m_PickingEnabled)
        openPicker();
}

void OrvColorSwatch::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    m_Pressed = true;
    m_PressPosition = pEvent->pos();
}

void OrvColorSwatch::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (!m_Pressed || (pEvent->pos() - m_PressPosition).manhattanLength() < QApplication::startDragDistance())
        return;
    m_Pressed = false;
    startDrag();
}

void OrvColorSwatch::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton && std::exchange(m_Pressed, false)
        && rect().contains(pEvent->pos()))
        click();
}

void OrvColorSwatch::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Space || pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter)
        click();
    else
        QWidget::keyPressEvent(pEvent);
}

void OrvColorSwatch::startDrag()
{
    QByteArray Bytes;
    QDataStream Stream(&Bytes, QIODevice::WriteOnly);
    Stream << qint32(m_Target) << m_Color.red() << m_Color.green() << m_Color.blue() << m_Color.alpha();
    QMimeData* pData = new QMimeData;
    pData->setData(ColorFormat, Bytes);
    pData->setColorData(OrvPainting::screenColor(pickerColor()));
    QDrag* pDrag = new QDrag(this);
    pDrag->setMimeData(pData);
    QPixmap Mark(QSize(20, 20) * devicePixelRatio());
    Mark.setDevicePixelRatio(devicePixelRatio());
    Mark.fill(OrvPainting::screenColor(pickerColor()));
    pDrag->setPixmap(Mark);
    pDrag->exec(Qt::CopyAction);
}

void OrvColorSwatch::dragEnterEvent(QDragEnterEvent* pEvent)
{
    if (pEvent->source() != this
        && (pEvent->mimeData()->hasFormat(ColorFormat) || pEvent->mimeData()->hasColor()))
        pEvent->acceptProposedAction();
}

void OrvColorSwatch::dropEvent(QDropEvent* pEvent)
{
    OrvColor Dropped = OrvColor::fromQColor(qvariant_cast<QColor>(pEvent->mimeData()->colorData()));
    OrvColorSpaceDefaults::ColorSpaceTarget Target = OrvColorSpaceDefaults::Display;
    if (pEvent->mimeData()->hasFormat(ColorFormat)) {
        QDataStream Stream(pEvent->mimeData()->data(ColorFormat));
        qint32 Number = 0;
        float Red = 0.0f, Green = 0.0f, Blue = 0.0f, Alpha = 0.0f;
        Stream >> Number >> Red >> Green >> Blue >> Alpha;
        if (Stream.status() != QDataStream::Ok)
            return;
        Target = OrvColorSpaceDefaults::ColorSpaceTarget(
            qBound(int(OrvColorSpaceDefaults::None), int(Number), int(OrvColorSpaceDefaults::Working)));
        Dropped = OrvColor(Red, Green, Blue, Alpha);
    }
    pEvent->acceptProposedAction();
    Q_EMIT editBegun();
    setColor(converted(Dropped, Target, m_Target));
    Q_EMIT colorEdited(m_Color);
    Q_EMIT editFinished();
    Q_EMIT colorChanged(m_Color, m_Target);
}

#include "moc_OrvColorSwatch.cpp"
