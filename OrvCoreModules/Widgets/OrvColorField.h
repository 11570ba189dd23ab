#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtGui/QImage>
#include <QtWidgets/QWidget>

/// The surface of a colour picker: saturation by value at one hue, or the strip of all hues. Numbers are 0
/// to 1.
class ORVCOREMODULES_EXPORT OrvColorField : public QWidget {
    Q_OBJECT

public:
    enum Kind { SaturationValue, Hue };
    explicit OrvColorField(Kind Which, QWidget* pParent = nullptr);

    void setHsv(qreal Hue, qreal Saturation, qreal Value);
    qreal hue() const { return m_Hue; }
    qreal saturation() const { return m_Saturation; }
    qreal value() const { return m_Value; }

    QSize sizeHint() const override;

Q_SIGNALS:
    void editBegun();
    void edited();
    void editFinished();

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    QRect surface() const;
    void take(const QPoint& Position);
    void nudge(int Right, int Up);
    QImage render(const QSize& Size) const;

    Kind m_Kind;
    qreal m_Hue = 0.0, m_Saturation = 0.0, m_Value = 0.0;
    QImage m_Surface;
    qreal m_SurfaceHue = -1.0;
};
