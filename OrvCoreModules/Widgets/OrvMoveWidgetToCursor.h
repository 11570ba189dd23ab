#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

class QPoint;
class QWidget;

/// Moves a top-level widget so that its corner lies at the cursor plus the offset, kept inside the cursor's
/// screen.
ORVCOREMODULES_EXPORT void OrvMoveWidgetToCursor(QWidget* pWidget, const QPoint& Offset);
/// The same for any point of the desktop.
ORVCOREMODULES_EXPORT void OrvMoveWidgetToPoint(QWidget* pWidget, const QPoint& GlobalPosition);
