#include "OrvCore/Object/OrvSettings.h"

#include <QtCore/QFileInfo>
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

QString OrvSettings::trouble()
{
    const OrvSettings Settings;
    if (Settings.isWritable())
        return QString();
    return (QFileInfo(Settings.fileName()).isDir()
            ? tr("Settings are not kept: '%1' is a folder, not a file")
            : tr("Settings are not kept: the file '%1' cannot be written"))
        .arg(Settings.fileName());
}

bool OrvSettings::isDevToolEnabled()
{
    return OrvSettings().value(QStringLiteral("Developer/Tools"), false).toBool();
}

#include "moc_OrvSettings.cpp"
