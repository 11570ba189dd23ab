#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QAction>

/// An action that can hand itself to the slot it triggers, so that one slot serves many actions that differ
/// in their data.
class ORVCOREMODULES_EXPORT OrvAction : public QAction {
    Q_OBJECT

public:
    explicit OrvAction(QObject* pParent = nullptr);
    OrvAction(const QString& Text, QObject* pParent = nullptr);
    OrvAction(const QIcon& Icon, const QString& Text, QObject* pParent = nullptr);

Q_SIGNALS:
    void triggered(QAction* pAction);

private:
    void construct();
};
