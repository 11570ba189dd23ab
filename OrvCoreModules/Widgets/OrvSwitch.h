#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QWidget>

/// An on/off switch for what takes effect at once, such as a filter. It decides nothing itself.
class ORVCOREMODULES_EXPORT OrvSwitch : public QWidget {
    Q_OBJECT

public:
    explicit OrvSwitch(QWidget* pParent = nullptr);

    bool checked() const { return m_Checked; }
    QSize sizeHint() const override;

public Q_SLOTS:
    void setChecked(bool Checked);
    void toggle() { setChecked(!m_Checked); }

Q_SIGNALS:
    /// On every change, by the user or by setChecked().
    void stateChanged(bool Checked);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    bool m_Checked = false;
};
