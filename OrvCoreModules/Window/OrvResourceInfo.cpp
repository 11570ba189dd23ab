#include "OrvCoreModules/Window/OrvResourceInfo.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

OrvResourceInfo& OrvResourceInfo::instance()
{
    static OrvResourceInfo Instance;
    return Instance;
}

QString OrvResourceInfo::resourcePath()
{
    const QString Override = qEnvironmentVariable("ORV_RESOURCES");
    if (!Override.isEmpty())
        return QDir::cleanPath(QDir::fromNativeSeparators(Override));
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/orvi"));
}

QString OrvResourceInfo::iconPath()
{
    return resourcePath() + QStringLiteral("/icons");
}

QString OrvResourceInfo::helpPath()
{
    return resourcePath() + QStringLiteral("/help");
}
