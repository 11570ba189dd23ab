#include "OrvCore/Object/OrvResourceDirectory.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

QString OrvResourceDirectory::path()
{
    const QString Override = qEnvironmentVariable("ORV_RESOURCES");
    if (!Override.isEmpty())
        return QDir::cleanPath(QDir::fromNativeSeparators(Override));
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/orvi"));
}
