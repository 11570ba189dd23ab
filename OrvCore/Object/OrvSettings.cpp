#include "OrvCore/Object/OrvSettings.h"

#include <QtCore/QStandardPaths>

namespace {

QString applicationSettingsFile()
{
    const QString Override = qEnvironmentVariable("ORV_SETTINGS");
    if (!Override.isEmpty())
        return Override;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/orvi/orvi.ini");
}

} // namespace

OrvSettings::OrvSettings()
    : QSettings(applicationSettingsFile(), QSettings::IniFormat)
{
}

OrvSettings::OrvSettings(const QString& FileName, QSettings::Format Format)
    : QSettings(FileName, Format)
{
}

QString OrvSettings::separator()
{
    return QStringLiteral("/");
}

bool OrvSettings::isDevToolEnabled()
{
    return OrvSettings().value(QStringLiteral("Developer/Tools"), false).toBool();
}

#include "moc_OrvSettings.cpp"
