#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>

/// Where the files lie that come with the program: icons, help texts, the shipped shelf. Nothing is cached.
namespace OrvResourceDirectory {

/// The directory named by ORV_RESOURCES, else "../share/orvi" beside the executable.
ORVCORE_EXPORT QString path();

} // namespace OrvResourceDirectory
