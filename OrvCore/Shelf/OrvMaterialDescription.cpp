#include "OrvCore/Shelf/OrvMaterialDescription.h"

#include "OrvCore/Shelf/OrvProceduralDescription.h"
#include "OrvCore/Shelf/OrvProceduralFile.h"
#include "OrvCore/Shelf/OrvShelfJson.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

using namespace OrvShelfJson;
using Stream = OrvMaterialDescription::Stream;

const QString OrvMaterialDescription::FormatName = QStringLiteral("orvmat");
const QString OrvMaterialDescription::Suffix = QStringLiteral(".orvmat");

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvMaterialDescription", pText);
}

bool fail(QString& Error, const QString& Text)
{
    Error = Text;
    return false;
}

bool readProcedural(
    const QJsonObject& Json, const QString& Path, const QString& Owner, Stream& Read, QString& Error)
{
    OrvProceduralDescription Procedural;
    if (!OrvProceduralFile::read(Path, Read.ProceduralText, Error)
        || !OrvProceduralDescription::fromText(Read.ProceduralText, Procedural, Error))
        return fail(Error, tr("%1: %2").arg(Owner, Error));
    const QJsonObject Values = Json.value(QStringLiteral("values")).toObject();
    for (auto Given = Values.begin(); Given != Values.end(); ++Given) {
        const OrvOperationParameter* pParameter = nullptr;
        for (const OrvProceduralDescription::Parameter& Shown : qAsConst(Procedural.Parameters)) {
            if (Shown.Editor.Name == Given.key())
                pParameter = &Shown.Editor;
        }
        QVariant Value;
        if (!pParameter)
            return fail(Error, tr("%1: the procedural has no parameter \"%2\"").arg(Owner, Given.key()));
        if (!value(Given.value(), *pParameter, tr("\"%1\" of %2").arg(Given.key(), Owner), Value, Error))
            return false;
        Read.ProceduralValues.insert(Given.key(), Value);
    }
    return true;
}

bool readStream(const QJsonObject& Json, const QString& Directory, Stream& Read, QString& Error)
{
    static const QStringList Kinds{QStringLiteral("color"), QStringLiteral("value"), QStringLiteral("image"),
        QStringLiteral("procedural")};
    const QString Owner = tr("Stream \"%1\"").arg(Read.InputName);
    QStringList Given;
    for (const QString& Kind : Kinds) {
        if (Json.contains(Kind))
            Given.append(Kind);
    }
    if (Given.size() != 1)
        return fail(Error, tr("%1 is to have one of %2").arg(Owner, Kinds.join(QStringLiteral(", "))));
    if (!checkEntries(Json, QStringList(Given) << QStringLiteral("values"), Owner, Error))
        return false;
    Read.What = Stream::Kind(Kinds.indexOf(Given.first()));
    const QJsonValue Content = Json.value(Given.first());
    QVariant Color;
    switch (Read.What) {
    case Stream::Color:
        if (!color(Content, Color))
            return fail(Error, tr("\"color\" of %1 is no color").arg(Owner));
        Read.Fill = Color.value<OrvColor>();
        return true;
    case Stream::Value: {
        const float Value = float(Content.toDouble());
        Read.Fill = OrvColor(Value, Value, Value);
        return Content.isDouble() || fail(Error, tr("\"value\" of %1 is no number").arg(Owner));
    }
    case Stream::Image:
        Read.ImagePath = QFileInfo(Directory, Content.toString()).absoluteFilePath();
        return QFileInfo(Read.ImagePath).isFile()
            || fail(Error, tr("%1: the image \"%2\" was not found").arg(Owner, Content.toString()));
    case Stream::Procedural:
        return readProcedural(
            Json, QFileInfo(Directory, Content.toString()).absoluteFilePath(), Owner, Read, Error);
    }
    return false;
}

} // namespace

bool OrvMaterialDescription::read(const QString& Path, OrvMaterialDescription& Material, QString& Error)
{
    static const QStringList Known{
        FormatName, QStringLiteral("name"), QStringLiteral("description"), QStringLiteral("streams")};
    const QString Owner = tr("The material");
    const QFileInfo File(Path);
    OrvMaterialDescription Whole;
    QJsonObject Json;
    const auto readAll = [&] {
        if (!readFile(Path, Json, Error) || !checkVersion(Json, FormatName, FormatVersion, Error)
            || !checkEntries(Json, Known, Owner, Error)
            || !string(Json, QStringLiteral("name"), Required, Owner, Whole.Name, Error)
            || !string(Json, QStringLiteral("description"), Optional, Owner, Whole.Description, Error))
            return false;
        const QJsonObject Streams = Json.value(QStringLiteral("streams")).toObject();
        if (Streams.isEmpty())
            return fail(Error, tr("%1 has no streams").arg(Owner));
        for (auto Given = Streams.begin(); Given != Streams.end(); ++Given) {
            Stream One;
            One.InputName = Given.key();
            if (!readStream(Given.value().toObject(), File.absolutePath(), One, Error))
                return false;
            Whole.Streams.append(One);
        }
        return true;
    };
    if (!readAll()) {
        Error = QStringLiteral("%1: %2").arg(File.fileName(), Error);
        return false;
    }
    Material = Whole;
    return true;
}

QStringList OrvMaterialDescription::geoChannels() const
{
    QStringList Channels;
    for (const Stream& One : Streams) {
        OrvProceduralDescription Procedural;
        QString Error;
        if (One.What == Stream::Procedural
            && OrvProceduralDescription::fromText(One.ProceduralText, Procedural, Error))
            Channels.append(Procedural.GeoChannels);
    }
    Channels.removeDuplicates();
    return Channels;
}
