#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QComboBox>

/// A combo box for scrolled property areas: the wheel steps through it only while it has the focus, and
/// scrolls the area otherwise.
class ORVCOREMODULES_EXPORT OrvComboBox : public QComboBox {
    Q_OBJECT

public:
    explicit OrvComboBox(QWidget* pParent = nullptr);

protected:
    void wheelEvent(QWheelEvent* pEvent) override;
};
