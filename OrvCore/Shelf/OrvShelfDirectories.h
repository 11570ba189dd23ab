#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

/// Where the files of the shelf lie.
namespace OrvShelfDirectories {

/// The user's own; it need not exist.
ORVCORE_EXPORT QString user();
/// Those that come with the program.
ORVCORE_EXPORT QString shipped();
/// In the order in which they are searched: a file of the user hides a shipped one of the same name.
ORVCORE_EXPORT QStringList all();

} // namespace OrvShelfDirectories
