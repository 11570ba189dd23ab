#include "Orvi/OrvExportNames.h"

#include "Orvi/OrvChannelExport.h"

#include "OrvDdi/Files/OrvImageFiles.h"

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <algorithm>

OrvExportNames::OrvExportNames(const QString& Directory)
    : m_Directory(Directory)
{
}

QString OrvExportNames::take(const OrvShaderInput* pChannel, const QString& Name, const QString& Suffix)
{
    QString Path;
    QStringList Files;
    const auto isTaken = [this](const QString& File) { return m_Taken.contains(File.toLower()); };
    for (int Number = 1; Number == 1 || std::any_of(Files.begin(), Files.end(), isTaken); ++Number) {
        const QString Unique = Number == 1 ? Name : Name + QLatin1Char(' ') + QString::number(Number);
        Path = OrvChannelExport::suggestedPath(pChannel, m_Directory, Unique, Suffix);
        Files = OrvChannelExport::filesOf(pChannel, Path);
    }
    for (const QString& File : Files)
        m_Taken.insert(File.toLower());
    return Path;
}

QString OrvExportNames::typedPath(const QString& Path, const QString& Filter, const QString& UsualSuffix)
{
    if (OrvImageFiles::readableSuffixes().contains(QFileInfo(Path).suffix(), Qt::CaseInsensitive))
        return Path;
    QStringList Chosen;
    static const QRegularExpression Pattern(QStringLiteral("\\*\\.(\\w+)"));
    for (auto Match = Pattern.globalMatch(Filter); Match.hasNext();)
        Chosen.append(Match.next().captured(1));
    const bool Open = Chosen.isEmpty() || Chosen.size() == OrvImageFiles::writableSuffixes().size();
    return Path + QLatin1Char('.') + (Open ? UsualSuffix : Chosen.first());
}
