#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

struct OrvOperationParameter;

/// Reads the small JSON files of the shelf strictly: what is missing, misspelt or of another kind than it
/// should be is told in a sentence that names it. Every function is false, with that sentence, on failure.
namespace OrvShelfJson {

constexpr int LargestFile = 1 << 20;

bool readFile(const QString& Path, QJsonObject& Object, QString& Error);
bool parse(const QByteArray& Text, QJsonObject& Object, QString& Error);
/// The entry of that name says which version of the format the object is written in.
bool checkVersion(const QJsonObject& Object, const QString& Format, int NewestVersion, QString& Error);
/// No entry but these and "comment". The owner is how the object is called in the sentence.
bool checkEntries(const QJsonObject& Object, const QStringList& Known, const QString& Owner, QString& Error);

enum Presence { Required, Optional };
bool string(const QJsonObject& Object, const QString& Entry, Presence Wanted, const QString& Owner,
    QString& Value, QString& Error);
bool strings(const QJsonObject& Object, const QString& Entry, Presence Wanted, const QString& Owner,
    QStringList& Values, QString& Error);
/// The entry as an array of objects or, with texts, whatever else; false for anything but an array.
bool array(const QJsonObject& Object, const QString& Entry, Presence Wanted, const QString& Owner,
    QJsonArray& Values, QString& Error);

/// A colour as "#rrggbb" or "#rrggbbaa" in sRGB, or as three or four numbers of linear light.
bool color(const QJsonValue& Json, QVariant& Value);
/// A value for the parameter, of its type and within its limits.
bool value(const QJsonValue& Json, const OrvOperationParameter& Parameter, const QString& Owner,
    QVariant& Value, QString& Error);

} // namespace OrvShelfJson
