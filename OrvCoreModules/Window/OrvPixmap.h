#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtGui/QPixmap>

class QString;

/// Pixmaps from files, for labels that show a mark rather than an icon.
class ORVCOREMODULES_EXPORT OrvPixmap {
public:
    /// Empty when the file is missing. Dense screens get the "@2x" file where there is one.
    static QPixmap createQPixmapFromPath(const QString& Path);
};
