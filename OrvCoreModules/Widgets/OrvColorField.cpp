#include "OrvCoreModules/Widgets/OrvColorField.h"

#include "OrvCoreModules/Widgets/OrvPainting.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Color/OrvColorSpaceManager.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

#include <vector>

namespace {

constexpr qreal KeyStep = 0.01;

} // namespace

OrvColorField::OrvColorField(Kind Which, QWidget* pParent)
    : QWidget(pParent)
    , m_Kind(Which)
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setMinimumSize(sizeHint());
    setSizePolicy(Which == Hue ? QSizePolicy::Fixed : QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize OrvColorField::sizeHint() const
{
    return m_Kind == Hue ? QSize(18, 170) : QSize(200, 170);
}

void OrvColorField::setHsv(qreal Hue, qreal Saturation, qreal Value)
{
    m_Hue = Hue;
    m_Saturation = qBound(0.0, Saturation, 1.0);
    m_Value = qBound(0.0, Value, 1.0);
    update();
}

QRect OrvColorField::surface() const
{
    return rect().adjusted(1, 1, -1, -1);
}

/// In the picker's colour space first, then as the screen shows it.
QImage OrvColorField::render(const QSize& Size) const
{
    const int Width = Size.width(), Height = Size.height();
    std::vector<float> Pixels(std::size_t(Width) * std::size_t(Height) * 4, 1.0f);
    float* pPixel = Pixels.data();
    for (int Row = 0; Row < Height; ++Row) {
        const qreal Up = 1.0 - Row / qreal(qMax(1, Height - 1));
        for (int Column = 0; Column < Width; ++Column, pPixel += 4) {
            const qreal Right = Column / qreal(qMax(1, Width - 1));
            const QColor Color
                = m_Kind == Hue ? QColor::fromHsvF(Up, 1.0, 1.0) : QColor::fromHsvF(m_Hue, Right, Up);
            pPixel[0] = float(Color.redF());
            pPixel[1] = float(Color.greenF());
            pPixel[2] = float(Color.blueF());
        }
    }
    const OrvColorSpaceManager& Spaces = OrvColorSpaceManager::instance();
    const QString Picker = Spaces.colorSpace(OrvColorSpaceDefaults::Picker);
    const QString Display = Spaces.colorSpace(OrvColorSpaceDefaults::Display);
    QString Error;
    if (!OrvColorManager::isIdentity(Picker, Display))
        OrvColorManager::transformPixels(Pixels.data(), Width, Height, 0, Picker, Display, Error);

    QImage Image(Size, QImage::Format_RGB32);
    const float* pShown = Pixels.data();
    const auto byte = [](float Component) { return qBound(0, int(Component * 255.0f + 0.5f), 255); };
    for (int Row = 0; Row < Height; ++Row) {
        QRgb* pLine = reinterpret_cast<QRgb*>(Image.scanLine(Row));
        for (int Column = 0; Column < Width; ++Column, pShown += 4)
            pLine[Column] = qRgb(byte(pShown[0]), byte(pShown[1]), byte(pShown[2]));
    }
    return Image;
}

void OrvColorField::paintEvent(QPaintEvent*)
{
    const QRect Area = surface();
    const QSize Size = Area.size() * devicePixelRatioF();
    if (m_Surface.size() != Size || (m_Kind == SaturationValue && m_SurfaceHue != m_Hue)) {
        m_Surface = render(Size);
        m_SurfaceHue = m_Hue;
    }
    QPainter Painter(this);
    Painter.drawImage(Area, m_Surface);
    Painter.setPen(OrvPainting::frameColor(palette(), hasFocus()));
    Painter.drawRect(rect().adjusted(0, 0, -1, -1));

    Painter.setRenderHint(QPainter::Antialiasing);
    const qreal Right = m_Saturation, Up = m_Kind == Hue ? m_Hue : m_Value;
    const QPointF Mark(
        Area.left() + Right * (Area.width() - 1) + 0.5, Area.bottom() - Up * (Area.height() - 1) + 0.5);
    Painter.setBrush(Qt::NoBrush);
    for (const auto& Ring : {qMakePair(Qt::black, 3.0), qMakePair(Qt::white, 1.4)}) {
        Painter.setPen(QPen(Ring.first, Ring.second));
        if (m_Kind == Hue)
            Painter.drawRect(QRectF(Area.left(), Mark.y() - 2.5, Area.width(), 5.0));
        else
            Painter.drawEllipse(Mark, 5.0, 5.0);
    }
}

void OrvColorField::take(const QPoint& Position)
{
    const QRect Area = surface();
    const qreal Right = qBound(0.0, (Position.x() - Area.left()) / qreal(qMax(1, Area.width() - 1)), 1.0);
    const qreal Up = qBound(0.0, (Area.bottom() - Position.y()) / qreal(qMax(1, Area.height() - 1)), 1.0);
    if (m_Kind == Hue) {
        m_Hue = Up;
    } else {
        m_Saturation = Right;
        m_Value = Up;
    }
    update();
    Q_EMIT edited();
}

void OrvColorField::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    Q_EMIT editBegun();
    take(pEvent->pos());
}

void OrvColorField::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (pEvent->buttons() & Qt::LeftButton)
        take(pEvent->pos());
}

void OrvColorField::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        Q_EMIT editFinished();
}

void OrvColorField::nudge(int Right, int Up)
{
    Q_EMIT editBegun();
    if (m_Kind == Hue)
        setHsv(qBound(0.0, m_Hue + Up * KeyStep, 1.0), m_Saturation, m_Value);
    else
        setHsv(m_Hue, m_Saturation + Right * KeyStep, m_Value + Up * KeyStep);
    Q_EMIT edited();
    Q_EMIT editFinished();
}

void OrvColorField::keyPressEvent(QKeyEvent* pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Left:
        nudge(-1, 0);
        break;
    case Qt::Key_Right:
        nudge(1, 0);
        break;
    case Qt::Key_Up:
        nudge(0, 1);
        break;
    case Qt::Key_Down:
        nudge(0, -1);
        break;
    default:
        QWidget::keyPressEvent(pEvent);
    }
}

#include "moc_OrvColorField.cpp"
