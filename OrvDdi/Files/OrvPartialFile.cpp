#include "OrvDdi/Files/OrvPartialFile.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <atomic>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Names begin with a dot and the file's own, and differ by the writer.
const QString NamePattern = QStringLiteral(".%1.%2.part");

/// A link is to lead to the new file, not to be replaced by it.
QFileInfo behindLinks(const QString& Target)
{
    const QFileInfo Info(Target);
    const QString Canonical = Info.canonicalFilePath();
    return Info.isSymLink() && !Canonical.isEmpty() ? QFileInfo(Canonical) : Info;
}

} // namespace

OrvPartialFile::OrvPartialFile(const QString& Target)
{
    static std::atomic<unsigned> Counter{0};
    const QFileInfo Info = behindLinks(Target);
    const QString Writer = QStringLiteral("%1-%2").arg(QCoreApplication::applicationPid()).arg(++Counter);
    m_Target = Info.filePath();
    m_Path = Info.absolutePath() + QLatin1Char('/') + NamePattern.arg(Info.fileName(), Writer);
}

OrvPartialFile::~OrvPartialFile()
{
    QFile::remove(m_Path);
}

bool OrvPartialFile::takePlace(QString& Reason) const
{
    if (QFileInfo::exists(m_Target))
        QFile::setPermissions(m_Path, QFile::permissions(m_Target));
    const QByteArray Path = QFile::encodeName(m_Path);
    const int Descriptor = ::open(Path.constData(), O_RDONLY | O_CLOEXEC);
    const bool Synced = Descriptor >= 0 && ::fsync(Descriptor) == 0;
    std::error_code Trouble(errno, std::generic_category());
    if (Descriptor >= 0)
        ::close(Descriptor);
    if (Synced)
        std::filesystem::rename(Path.constData(), QFile::encodeName(m_Target).constData(), Trouble);
    if (Synced && !Trouble)
        return true;
    Reason = QString::fromStdString(Trouble.message());
    return false;
}

void OrvPartialFile::removeLeftovers(const QString& Target)
{
    const QFileInfo Info = behindLinks(Target);
    QDir Folder(Info.absolutePath());
    const QString Pattern = NamePattern.arg(Info.fileName(), QStringLiteral("*"));
    for (const QString& Name : Folder.entryList({Pattern}, QDir::Files | QDir::Hidden))
        Folder.remove(Name);
}
