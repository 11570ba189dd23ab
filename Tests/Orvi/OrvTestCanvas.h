#pragma once

#include "Orvi/OrvCanvas.h"

#include <QtTest/QtTest>
#include <QtGui/QWheelEvent>

#include <cmath>

/// What tests of the canvas do again and again: wait for its picture, look at it, turn the wheel.
namespace OrvTestCanvas {

constexpr int SettleTime = 20000; // ms

inline bool isNear(const QColor& One, const QColor& Other, int Tolerance = 2)
{
    return std::abs(One.red() - Other.red()) <= Tolerance
        && std::abs(One.green() - Other.green()) <= Tolerance
        && std::abs(One.blue() - Other.blue()) <= Tolerance;
}

inline void wheel(
    QWidget& Widget, const QPoint& Position, int Units, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
{
    QWheelEvent Event(Position, Widget.mapToGlobal(Position), QPoint(), QPoint(0, Units), Qt::NoButton,
        Modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Widget, &Event);
}

inline void movePressed(QWidget& Widget, const QPoint& Position, Qt::MouseButton Button)
{
    QMouseEvent Move(QEvent::MouseMove, Position, Qt::NoButton, Button, Qt::NoModifier);
    QApplication::sendEvent(&Widget, &Move);
}

inline std::unique_ptr<OrvCanvas> newCanvas(OrvCanvasTools* pTools)
{
    auto pCanvas = std::make_unique<OrvCanvas>(pTools);
    pCanvas->resize(400, 400);
    pCanvas->show();
    return pCanvas;
}

inline bool isSettled(OrvCanvas* pCanvas)
{
    QApplication::processEvents();
    return QTest::qWaitFor([pCanvas] { return pCanvas->isSettled(); }, SettleTime);
}

inline void applyZoom(OrvCanvas* pCanvas, double Zoom)
{
    isSettled(pCanvas);
    if (Zoom > 0.0) {
        pCanvas->showActualSize();
        wheel(*pCanvas, QPoint(200, 200), int(std::lround(480.0 * std::log2(Zoom))));
    }
}

inline QColor shownAt(OrvCanvas* pCanvas, const QPointF& PicturePoint)
{
    isSettled(pCanvas);
    const double Ratio = pCanvas->devicePixelRatioF();
    return pCanvas->grab().toImage().pixelColor((pCanvas->toWidget(PicturePoint) * Ratio).toPoint());
}

inline bool areAlike(const QImage& One, const QImage& Other)
{
    if (One.size() != Other.size())
        return false;
    for (int Row = 0; Row < One.height(); ++Row) {
        for (int Column = 0; Column < One.width(); ++Column) {
            if (!isNear(One.pixelColor(Column, Row), Other.pixelColor(Column, Row)))
                return false;
        }
    }
    return true;
}

} // namespace OrvTestCanvas
