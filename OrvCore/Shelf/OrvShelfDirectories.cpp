#include "OrvCore/Shelf/OrvShelfDirectories.h"

#include "OrvCore/Object/OrvResourceDirectory.h"

#include <QtCore/QStandardPaths>

QString OrvShelfDirectories::user()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/orvi/shelf");
}

QString OrvShelfDirectories::shipped()
{
    return OrvResourceDirectory::path() + QStringLiteral("/shelf");
}

QStringList OrvShelfDirectories::all()
{
    return {user(), shipped()};
}
