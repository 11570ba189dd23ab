#pragma once

#include "OrvCore/Project/OrvGeoEntity.h"

#include <QtCore/QStringList>

class QIcon;

/// The selections that the user has kept with the current object, by name. Each change is one undo step.
/// Stateless: the object has them.
namespace OrvSelectionGroups {

QStringList names();
/// Empty for an unknown name.
OrvSelectionArea area(const QString& Name);
/// A name that no group has yet.
QString unusedName();

/// Replaces a group of that name; refuses empty names and empty areas.
bool store(const QString& Name, const OrvSelectionArea& Area);
/// Refuses a name that is empty or taken.
bool rename(const QString& Name, const QString& NewName);
void remove(const QStringList& Names);

/// The group's shape on the object's tiles.
QIcon icon(const QString& Name);

} // namespace OrvSelectionGroups
