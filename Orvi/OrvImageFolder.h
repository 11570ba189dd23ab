#pragma once

#include "OrvCore/Object/OrvSettings.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

/// Where dialogs for images begin: in the folder that was used last, as the settings keep it under a key.
namespace OrvImageFolder {

inline QString lastUsed(const QString& Key)
{
    const QString Last = OrvSettings()
                             .value(Key, QStandardPaths::writableLocation(QStandardPaths::PicturesLocation))
                             .toString();
    return QFileInfo(Last).isDir() ? Last : QDir::homePath();
}

} // namespace OrvImageFolder
