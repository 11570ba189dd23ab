#include "OrvCoreModules/Window/OrvResourceInfo.h"

#include "OrvCore/Object/OrvResourceDirectory.h"

OrvResourceInfo& OrvResourceInfo::instance()
{
    static OrvResourceInfo Instance;
    return Instance;
}

QString OrvResourceInfo::resourcePath()
{
    return OrvResourceDirectory::path();
}

QString OrvResourceInfo::iconPath()
{
    return resourcePath() + QStringLiteral("/icons");
}

QString OrvResourceInfo::helpPath()
{
    return resourcePath() + QStringLiteral("/help");
}
