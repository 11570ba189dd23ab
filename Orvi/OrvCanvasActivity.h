#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>

class QPainter;
class QRect;

/// The mark on the canvas that what is in view is still being computed. It appears when that takes so long
/// that one would wonder, and turns until all is there. The canvas owns it and tells it what goes on; it
/// computes nothing.
class OrvCanvasActivity : public QObject {
    Q_OBJECT

public:
    explicit OrvCanvasActivity(QObject* pParent = nullptr);

    void setBusy(bool Busy);
    bool isShown() const { return m_IsShown; }

    /// Where the mark is, in pixels of the device.
    static QRect rect(double PixelRatio);
    void draw(QPainter& Painter, double PixelRatio) const;

Q_SIGNALS:
    /// The mark looks different.
    void changed();

private:
    void turn();

    QTimer m_Timer;
    int m_Turn = 0;
    bool m_IsShown = false;
};
