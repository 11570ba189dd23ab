#include "OrvCore/Shelf/OrvProceduralFile.h"

#include "OrvCore/Shelf/OrvProceduralDescription.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCore/Shelf/OrvShelfJson.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

const QString OrvProceduralFile::Suffix = QStringLiteral(".orvproc");

namespace {

constexpr int DeepestInclusion = 16;
/// Inclusions multiply; the text is kept in projects and in the undo history.
constexpr int LongestText = 4 << 20;
const QString Procedural = QStringLiteral("procedural");

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvProceduralFile", pText);
}

QString fileName(const QString& Path)
{
    return QFileInfo(Path).fileName();
}

QString includedPath(const QString& Including, const QString& Name)
{
    QStringList Directories = OrvShelfDirectories::all();
    Directories.prepend(QFileInfo(Including).absolutePath());
    for (const QString& Directory : qAsConst(Directories)) {
        const QFileInfo Candidate(Directory + QLatin1Char('/') + Name);
        if (Candidate.isFile())
            return Candidate.canonicalFilePath();
    }
    return {};
}

/// Reads a file with all that it includes. The files that are being read are on the way.
class Inclusion {
public:
    explicit Inclusion(QString& Error)
        : m_Error(Error)
    {
    }

    bool read(const QString& Path, QJsonObject& Json)
    {
        if (!OrvShelfJson::readFile(Path, Json, m_Error))
            return fail(Path, m_Error);
        m_Way.append(Path);
        QJsonArray Nodes = Json.value(QStringLiteral("nodes")).toArray();
        for (QJsonValueRef Item : Nodes) {
            QJsonObject Node = Item.toObject();
            if (!Node.value(Procedural).isString())
                continue;
            QJsonObject Included;
            if (!include(Path, Node.value(Procedural).toString(), Included))
                return false;
            Node.insert(Procedural, Included);
            Item = Node;
        }
        if (!Nodes.isEmpty())
            Json.insert(QStringLiteral("nodes"), Nodes);
        m_Way.removeLast();
        return true;
    }

private:
    bool include(const QString& Path, const QString& Name, QJsonObject& Included)
    {
        const QString Found = includedPath(Path, Name);
        if (Found.isEmpty())
            return fail(Path, tr("the included file \"%1\" was not found").arg(Name));
        if (m_Way.contains(Found)) {
            QStringList Names;
            for (const QString& One : m_Way.mid(m_Way.indexOf(Found)))
                Names.append(fileName(One));
            Names.append(fileName(Found));
            return fail(
                Path, tr("a procedural cannot include itself (%1)").arg(Names.join(QStringLiteral(" > "))));
        }
        if (m_Way.size() >= DeepestInclusion)
            return fail(Path, tr("procedurals include each other more than %1 deep").arg(DeepestInclusion));
        if (!read(Found, Included))
            return false;
        m_Length += QJsonDocument(Included).toJson(QJsonDocument::Compact).size();
        return m_Length <= LongestText
            || fail(Path, tr("with all that it includes the procedural is larger than 4 MiB"));
    }

    bool fail(const QString& Path, const QString& Text)
    {
        m_Error = QStringLiteral("%1: %2").arg(fileName(Path), Text);
        return false;
    }

    QString& m_Error;
    QStringList m_Way;
    int m_Length = 0;
};

} // namespace

bool OrvProceduralFile::read(const QString& Path, QByteArray& Text, QString& Error)
{
    const QFileInfo File(Path);
    if (!File.isFile()) {
        Error = tr("%1 was not found").arg(fileName(Path));
        return false;
    }
    QJsonObject Json;
    if (!Inclusion(Error).read(File.canonicalFilePath(), Json))
        return false;
    const QByteArray Whole = QJsonDocument(Json).toJson(QJsonDocument::Compact);
    OrvProceduralDescription Checked;
    if (!OrvProceduralDescription::fromText(Whole, Checked, Error)) {
        Error = QStringLiteral("%1: %2").arg(fileName(Path), Error);
        return false;
    }
    Text = Whole;
    return true;
}
