#include "OrvCore/Shelf/OrvShelfJson.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <cmath>

namespace {

const QString Comment = QStringLiteral("comment");

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvShelfJson", pText);
}

/// The parser's texts are the library's own; here it matters where to look.
QString parseError(const QByteArray& Text, const QJsonParseError& Failure)
{
    const int Line = Text.left(Failure.offset).count('\n') + 1;
    return tr("Line %1: %2").arg(Line).arg(Failure.errorString());
}

bool fail(QString& Error, const QString& Text)
{
    Error = Text;
    return false;
}

bool isNumber(const QJsonValue& Json, const OrvOperationParameter& Parameter)
{
    if (!Json.isDouble())
        return false;
    const double Number = Json.toDouble();
    return Parameter.Type != OrvOperationParameter::Integer || Number == std::round(Number);
}

} // namespace

namespace OrvShelfJson {

bool parse(const QByteArray& Text, QJsonObject& Object, QString& Error)
{
    QJsonParseError Failure;
    const QJsonDocument Document = QJsonDocument::fromJson(Text, &Failure);
    if (Failure.error != QJsonParseError::NoError)
        return fail(Error, parseError(Text, Failure));
    if (!Document.isObject())
        return fail(Error, tr("The file holds a list where an object is expected"));
    Object = Document.object();
    return true;
}

bool readFile(const QString& Path, QJsonObject& Object, QString& Error)
{
    QFile File(Path);
    if (!File.open(QIODevice::ReadOnly))
        return fail(Error, File.errorString());
    if (File.size() > LargestFile)
        return fail(Error, tr("The file is larger than 1 MiB"));
    return parse(File.readAll(), Object, Error);
}

bool checkVersion(const QJsonObject& Object, const QString& Format, int NewestVersion, QString& Error)
{
    const QJsonValue Version = Object.value(Format);
    if (Version.isUndefined())
        return fail(Error, tr("The entry \"%1\" with the version of the format is missing").arg(Format));
    if (!Version.isDouble() || Version.toDouble() < 1)
        return fail(Error, tr("\"%1\" is no version of the format").arg(Format));
    if (Version.toDouble() > NewestVersion)
        return fail(Error, tr("The file was made for a newer version of Orvi"));
    return true;
}

bool checkEntries(const QJsonObject& Object, const QStringList& Known, const QString& Owner, QString& Error)
{
    for (auto Entry = Object.begin(); Entry != Object.end(); ++Entry) {
        if (!Known.contains(Entry.key()) && Entry.key() != Comment) {
            return fail(Error,
                tr("%1 has an unknown entry \"%2\"; known ones are %3")
                    .arg(Owner, Entry.key(), Known.join(QStringLiteral(", "))));
        }
    }
    return true;
}

bool string(const QJsonObject& Object, const QString& Entry, Presence Wanted, const QString& Owner,
    QString& Value, QString& Error)
{
    const QJsonValue Json = Object.value(Entry);
    if (Json.isUndefined() && Wanted == Optional)
        return true;
    if (!Json.isString())
        return fail(Error,
            (Json.isUndefined() ? tr("%1 has no \"%2\"") : tr("\"%2\" of %1 is no text")).arg(Owner, Entry));
    Value = Json.toString();
    if (Value.trimmed().isEmpty() && Wanted == Required)
        return fail(Error, tr("\"%2\" of %1 is empty").arg(Owner, Entry));
    return true;
}

bool array(const QJsonObject& Object, const QString& Entry, Presence Wanted, const QString& Owner,
    QJsonArray& Values, QString& Error)
{
    const QJsonValue Json = Object.value(Entry);
    if (Json.isUndefined() && Wanted == Optional)
        return true;
    if (!Json.isArray())
        return fail(Error,
            (Json.isUndefined() ? tr("%1 has no \"%2\"") : tr("\"%2\" of %1 is no list")).arg(Owner, Entry));
    Values = Json.toArray();
    return true;
}

bool strings(const QJsonObject& Object, const QString& Entry, Presence Wanted, const QString& Owner,
    QStringList& Values, QString& Error)
{
    QJsonArray Items;
    if (!array(Object, Entry, Wanted, Owner, Items, Error))
        return false;
    for (const QJsonValue Item : qAsConst(Items)) {
        if (!Item.isString() || Item.toString().isEmpty())
            return fail(Error, tr("\"%2\" of %1 is to be a list of texts").arg(Owner, Entry));
        Values.append(Item.toString());
    }
    return true;
}

bool color(const QJsonValue& Json, QVariant& Value)
{
    float Components[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    if (Json.isArray()) {
        const QJsonArray Numbers = Json.toArray();
        if (Numbers.size() != 3 && Numbers.size() != 4)
            return false;
        for (int Index = 0; Index < Numbers.size(); ++Index) {
            if (!Numbers[Index].isDouble())
                return false;
            Components[Index] = float(Numbers[Index].toDouble());
        }
        Value = QVariant::fromValue(OrvColor(Components[0], Components[1], Components[2], Components[3]));
        return true;
    }
    const QString Text = Json.toString();
    if (!Text.startsWith(QLatin1Char('#')) || (Text.size() != 7 && Text.size() != 9))
        return false;
    for (int Index = 0; 2 * Index + 1 < Text.size(); ++Index) {
        bool IsHexadecimal = false;
        Components[Index] = float(Text.midRef(2 * Index + 1, 2).toInt(&IsHexadecimal, 16)) / 255.0f;
        if (!IsHexadecimal)
            return false;
    }
    OrvColor Color(Components[0], Components[1], Components[2], Components[3]);
    OrvColorManager::transform(Color, Color, OrvColorManager::srgb(), OrvColorManager::linear());
    Value = QVariant::fromValue(Color);
    return true;
}

bool value(const QJsonValue& Json, const OrvOperationParameter& Parameter, const QString& Owner,
    QVariant& Value, QString& Error)
{
    switch (Parameter.Type) {
    case OrvOperationParameter::Real:
    case OrvOperationParameter::Angle:
    case OrvOperationParameter::Integer:
        if (!isNumber(Json, Parameter)) {
            return fail(Error,
                (Parameter.Type == OrvOperationParameter::Integer ? tr("%1 is to be a whole number")
                                                                  : tr("%1 is to be a number"))
                    .arg(Owner));
        }
        if (Json.toDouble() < Parameter.Minimum || Json.toDouble() > Parameter.Maximum) {
            return fail(Error,
                tr("%1 is to lie between %2 and %3")
                    .arg(Owner)
                    .arg(Parameter.Minimum)
                    .arg(Parameter.Maximum));
        }
        Value = Parameter.Type == OrvOperationParameter::Integer ? QVariant(Json.toInt())
                                                                 : QVariant(Json.toDouble());
        return true;
    case OrvOperationParameter::Boolean:
        Value = Json.toBool();
        return Json.isBool() || fail(Error, tr("%1 is to be true or false").arg(Owner));
    case OrvOperationParameter::Enumeration:
        Value = Json.toString();
        return Parameter.Choices.contains(Json.toString())
            || fail(
                Error, tr("%1 is to be one of %2").arg(Owner, Parameter.Choices.join(QStringLiteral(", "))));
    case OrvOperationParameter::Color:
        return color(Json, Value)
            || fail(Error, tr("%1 is to be a color, such as \"#8a6136\" or [0.25, 0.1, 0.04]").arg(Owner));
    case OrvOperationParameter::Text:
    case OrvOperationParameter::FilePath:
        Value = Json.toString();
        return Json.isString() || fail(Error, tr("%1 is to be a text").arg(Owner));
    }
    return false;
}

} // namespace OrvShelfJson
