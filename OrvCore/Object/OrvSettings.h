#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QSettings>

/// The application's settings, or a settings file of its own. Plain QSettings otherwise; instances are cheap and
/// live where they are used.
class ORVCORE_EXPORT OrvSettings : public QSettings {
    Q_OBJECT

public:
    /// The user's settings of the program; the environment variable ORV_SETTINGS names another INI file.
    OrvSettings();
    OrvSettings(const QString& FileName, QSettings::Format Format);

    /// Between the parts of a path.
    static QString separator();
    /// Why nothing of the program's settings would be kept, for people; empty when it will.
    static QString trouble();
    /// Developer tools show commands that help to debug the palettes.
    static bool isDevToolEnabled();
};
