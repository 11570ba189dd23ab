#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QList>
#include <QtWidgets/QFormLayout>

/// The form that all editors of the program use: compact rows, fields that grow, labels to the left.
class ORVCOREMODULES_EXPORT OrvFormLayout : public QFormLayout {
    Q_OBJECT

public:
    explicit OrvFormLayout(QWidget* pParent = nullptr);

    /// Gives the labels of all forms inside the widgets one width, so that editors shown together line up.
    static void alignLabels(const QList<QWidget*>& Widgets);
};
