#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QWidget>

#include <array>

/// Four handles on a grey ramp: full between the two inner ones, fading out towards the outer ones. A pair
/// that lies together is split by dragging with Alt. The handles never pass each other.
class ORVCOREMODULES_EXPORT OrvRangeSlider : public QWidget {
    Q_OBJECT

public:
    using Range = std::array<double, 4>; ///< ascending, 0 to 1

    explicit OrvRangeSlider(QWidget* pParent = nullptr);

    const Range& range() const { return m_Range; }
    /// Sends no signal. What is out of order or out of bounds is put right.
    void setRange(const Range& Values);
    QPoint handlePosition(int Index) const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void editBegun();
    void rangeEdited();
    void editFinished();

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    QRect ramp() const;
    int handleAt(const QPoint& Position) const;
    void moveHandle(int Index, double Value, bool Split);
    void edit(const Range& Values);

    Range m_Range{0.0, 0.0, 1.0, 1.0};
    int m_Dragged = -1;
    int m_Current = 0; ///< of the keyboard
};
