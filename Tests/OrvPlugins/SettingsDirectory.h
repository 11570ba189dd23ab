#pragma once

#include <QtCore/QTemporaryDir>

/// A folder of the test's own, gone with it, where the program finds and leaves the user's settings for as
/// long as the test runs.
class SettingsDirectory : public QTemporaryDir {
public:
    SettingsDirectory() { qputenv("ORV_SETTINGS", filePath(QStringLiteral("settings.ini")).toLocal8Bit()); }
};
