#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QString>

class QKeySequence;

/// Key combinations as this platform's users know them.
class ORVCOREMODULES_EXPORT OrvShortcutSequence {
public:
    /// Of a combination written as in "Ctrl+Shift"; modifiers alone are welcome.
    static QString toUserFriendlyString(const QString& Combination);
    static QString toUserFriendlyString(const QKeySequence& Sequence);
};
