#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

class QPoint;
class QString;
class QWidget;

/// Lets the user find a layer type by typing. Each place that asks has a group of settings of its own, in
/// which it is remembered what was chosen there last and what is a favourite; how many are remembered is the
/// same everywhere.
namespace OrvNodeQuickFind {

/// Empty when nothing was chosen, and when the widget went while the user was choosing. The position is in
/// the widget's coordinates.
ORVCOREMODULES_EXPORT QString choose(const QString& SettingsGroup, const QPoint& Position, QWidget* pWidget);

} // namespace OrvNodeQuickFind
