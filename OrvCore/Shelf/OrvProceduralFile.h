#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Files of custom procedurals (".orvproc"). Reading puts what a file includes into the text that it hands
/// out, so that the text means the same wherever it is kept; it is checked before anybody gets it.
namespace OrvProceduralFile {

extern ORVCORE_EXPORT const QString Suffix; ///< with its dot

/// Included files are looked for beside the including one, then on the shelf. False, with the names of the
/// files and of what is wrong in them, also when files include each other in a circle.
ORVCORE_EXPORT bool read(const QString& Path, QByteArray& Text, QString& Error);

} // namespace OrvProceduralFile
