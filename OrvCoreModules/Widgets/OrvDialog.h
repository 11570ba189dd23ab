#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QDialog>

/// A dialog in the program's look: no help button in its title bar, placed above the window it belongs to.
class ORVCOREMODULES_EXPORT OrvDialog : public QDialog {
    Q_OBJECT

public:
    explicit OrvDialog(QWidget* pParent = nullptr, Qt::WindowFlags Flags = {});
};
