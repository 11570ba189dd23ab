#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QString>

/// Where the program's own files lie: in the directory named by the environment variable ORV_RESOURCES, else
/// in "share/orvi" beside the directory of the executable.
class ORVCOREMODULES_EXPORT OrvResourceInfo {
public:
    static OrvResourceInfo& instance();

    // None ends in a separator; all have forward slashes, as style sheets want them.
    static QString resourcePath();
    static QString iconPath();
    static QString helpPath();
};
