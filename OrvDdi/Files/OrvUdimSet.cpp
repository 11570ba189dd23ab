#include "OrvDdi/Files/OrvUdimSet.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QRegularExpression>

namespace {

const QString UdimToken = QStringLiteral("<UDIM>");

/// A file name cut at its tile number.
struct NameParts {
    QString Before; ///< with separator
    int Tile = 0;
    QString After; ///< with the suffix's dot
};

NameParts partsOf(const QString& FileName)
{
    static const QRegularExpression Udim(QStringLiteral("^(.*[._-])(1\\d{3})(\\.[^.]+)$"));
    const QRegularExpressionMatch Match = Udim.match(FileName);
    if (!Match.hasMatch() || Match.capturedRef(2).toInt() < OrvUdimSet::FirstTile)
        return {FileName, 0, {}};
    return {Match.captured(1), Match.captured(2).toInt(), Match.captured(3)};
}

QString inDirectoryOf(const QString& Path, const QString& FileName)
{
    const int Slash = Path.lastIndexOf(QLatin1Char('/'));
    return Path.left(Slash + 1) + FileName;
}

} // namespace

int OrvUdimSet::tileOf(const QString& Path)
{
    return partsOf(QFileInfo(Path).fileName()).Tile;
}

QList<OrvUdimSet> OrvUdimSet::fromPaths(const QStringList& Paths)
{
    QList<OrvUdimSet> Sets;
    QHash<QString, int> SetByPattern;
    for (const QString& Path : Paths) {
        const QFileInfo File(Path);
        const NameParts Parts = partsOf(File.fileName());
        const bool Udim = Parts.Tile != 0;
        const QString Pattern = Udim ? inDirectoryOf(Path, Parts.Before + UdimToken + Parts.After) : Path;
        int& Index = SetByPattern.insert(Pattern, SetByPattern.value(Pattern, Sets.size())).value();
        if (Index == Sets.size()) {
            Sets.append({Udim ? Parts.Before.chopped(1) : File.completeBaseName(), File.suffix().toLower(),
                Pattern, {}});
        }
        Sets[Index].Paths.insert(Parts.Tile, Path);
    }
    return Sets;
}

QString OrvUdimSet::pathForTile(const QString& Pattern, int Tile)
{
    const QString Number = QString::number(Tile);
    const int FileName = Pattern.lastIndexOf(QLatin1Char('/')) + 1;
    const int Token = Pattern.lastIndexOf(UdimToken, -1, Qt::CaseInsensitive);
    if (Token >= FileName)
        return Pattern.left(Token) + Number + Pattern.mid(Token + UdimToken.size());
    const int Dot = Pattern.lastIndexOf(QLatin1Char('.'));
    const int End = Dot > FileName ? Dot : Pattern.size();
    return Pattern.left(End) + QLatin1Char('.') + Number + Pattern.mid(End);
}

QStringList OrvUdimSet::brothersOf(const QString& Path)
{
    const QFileInfo File(Path);
    const NameParts Parts = partsOf(File.fileName());
    if (Parts.Tile == 0)
        return {Path};
    QStringList Brothers;
    for (const QString& Name : File.dir().entryList(QDir::Files, QDir::Name)) {
        const NameParts Other = partsOf(Name);
        if (Other.Tile != 0 && Other.Before == Parts.Before && Other.After == Parts.After)
            Brothers.append(inDirectoryOf(Path, Name));
    }
    return Brothers.isEmpty() ? QStringList{Path} : Brothers;
}
