#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtGui/QIcon>

class QString;

/// Icons from files. An icon can be made at any time, before the application object included: its file is
/// opened when it is first asked for, and a missing file makes an empty icon.
class ORVCOREMODULES_EXPORT OrvIcon {
public:
    /// A file of the icon directory.
    static QIcon createIconFromFilename(const QString& FileName);
    static QIcon createIconFromPath(const QString& Path);
};
