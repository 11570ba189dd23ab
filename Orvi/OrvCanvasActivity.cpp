#include "Orvi/OrvCanvasActivity.h"

#include "Orvi/OrvCanvasOverlay.h"

#include <QtCore/QRect>
#include <QtGui/QPainter>

#include <utility>

namespace {

constexpr int Delay = 400; // ms
constexpr int TurnInterval = 80; // ms
constexpr int Turns = 12; // a round
constexpr int FullCircle = 360 * 16; // as QPainter counts
constexpr double ArcShare = 0.3;

QString text()
{
    return OrvCanvasActivity::tr("Computing...");
}

} // namespace

OrvCanvasActivity::OrvCanvasActivity(QObject* pParent)
    : QObject(pParent)
{
    connect(&m_Timer, &QTimer::timeout, this, &OrvCanvasActivity::turn);
}

void OrvCanvasActivity::setBusy(bool Busy)
{
    if (Busy && !m_Timer.isActive())
        m_Timer.start(Delay);
    if (Busy)
        return;
    m_Timer.stop();
    if (std::exchange(m_IsShown, false))
        Q_EMIT changed();
}

void OrvCanvasActivity::turn()
{
    m_IsShown = true;
    m_Turn = (m_Turn + 1) % Turns;
    m_Timer.setInterval(TurnInterval);
    Q_EMIT changed();
}

QRect OrvCanvasActivity::rect(double PixelRatio)
{
    const int Words = QFontMetrics(OrvCanvasOverlay::chipFont(PixelRatio)).horizontalAdvance(text());
    return OrvCanvasOverlay::chip(1, Words + OrvCanvasOverlay::chip(1, 0, PixelRatio).height(), PixelRatio);
}

void OrvCanvasActivity::draw(QPainter& Painter, double PixelRatio) const
{
    if (!m_IsShown)
        return;
    const QRect Chip = rect(PixelRatio);
    OrvCanvasOverlay::drawChip(Painter, Chip, PixelRatio);
    const double Edge = Chip.height() / 2.0;
    const QRectF Ring(Chip.left() + Edge / 2.0, Chip.top() + Edge / 2.0, Edge, Edge);
    Painter.save();
    Painter.setRenderHint(QPainter::Antialiasing);
    Painter.setPen(QPen(QColor(255, 255, 255, 60), 2.0 * PixelRatio));
    Painter.drawEllipse(Ring);
    Painter.setPen(QPen(QColor(240, 240, 240), 2.0 * PixelRatio, Qt::SolidLine, Qt::FlatCap));
    Painter.drawArc(Ring, -m_Turn * FullCircle / Turns, -int(FullCircle * ArcShare));
    Painter.setFont(OrvCanvasOverlay::chipFont(PixelRatio));
    Painter.drawText(
        QRectF(Chip).adjusted(2.0 * Edge, 0.0, 0.0, 0.0), Qt::AlignLeft | Qt::AlignVCenter, text());
    Painter.restore();
}

#include "moc_OrvCanvasActivity.cpp"
