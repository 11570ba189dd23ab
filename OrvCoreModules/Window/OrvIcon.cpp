#include "OrvCoreModules/Window/OrvIcon.h"

#include "OrvCoreModules/Window/OrvFileIconEngine.h"

QIcon OrvIcon::createIconFromFilename(const QString& FileName)
{
    return createIconFromPath(FileName);
}

QIcon OrvIcon::createIconFromPath(const QString& Path)
{
    return Path.isEmpty() ? QIcon() : QIcon(new OrvFileIconEngine(Path));
}
