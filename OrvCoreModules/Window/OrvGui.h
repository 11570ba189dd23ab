#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

class QWidget;

/// Small manners of the window system that several widgets share.
class ORVCOREMODULES_EXPORT OrvGui {
public:
    /// Gives the widget the keyboard focus, unless the user is typing somewhere, a popup or dialog is open,
    /// or another window is the active one.
    static void stealFocusGently(QWidget* pWidget);

    /// A widget that plain keys belong to: a text or number editor, a combo box.
    static bool isTypedInto(const QWidget* pWidget);
};
