#include "OrvCore/Shelf/OrvMaterialPaintManager.h"

#include "OrvCore/Object/OrvResourceDirectory.h"
#include "OrvCore/Shelf/OrvMaterialDescription.h"
#include "OrvCore/Shelf/OrvProceduralDescription.h"
#include "OrvCore/Shelf/OrvProceduralFile.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QMimeData>
#include <QtCore/QUrl>

namespace {

constexpr int ReloadDelay = 200;

bool namesFile(const QMimeData* pData, const QString& Suffix)
{
    if (!pData || !pData->hasUrls())
        return false;
    const QList<QUrl> Urls = pData->urls();
    return !Urls.isEmpty() && Urls.first().isLocalFile()
        && Urls.first().path().endsWith(Suffix, Qt::CaseInsensitive);
}

bool isShelfFile(const QString& Path)
{
    return Path.endsWith(OrvProceduralFile::Suffix, Qt::CaseInsensitive)
        || Path.endsWith(OrvMaterialDescription::Suffix, Qt::CaseInsensitive);
}

} // namespace

OrvMaterialPaintManager& OrvMaterialPaintManager::instance()
{
    static OrvMaterialPaintManager Manager;
    return Manager;
}

OrvMaterialPaintManager::OrvMaterialPaintManager()
{
    m_ReloadTimer.setSingleShot(true);
    m_ReloadTimer.setInterval(ReloadDelay);
    connect(&m_ReloadTimer, &QTimer::timeout, this, &OrvMaterialPaintManager::reload);
}

bool OrvMaterialPaintManager::isMimeDataMaterialFile(const QMimeData* pData)
{
    return namesFile(pData, OrvMaterialDescription::Suffix);
}

bool OrvMaterialPaintManager::isMimeDataCustomProceduralFile(const QMimeData* pData)
{
    return namesFile(pData, OrvProceduralFile::Suffix);
}

QStringList OrvMaterialPaintManager::pathListFromMimeData(const QMimeData* pData)
{
    QStringList Paths;
    const QList<QUrl> Urls = pData ? pData->urls() : QList<QUrl>();
    for (const QUrl& Url : Urls) {
        if (Url.isLocalFile())
            Paths.append(Url.toLocalFile());
    }
    return Paths;
}

const QVector<OrvShelfEntry>& OrvMaterialPaintManager::entries()
{
    if (!m_WasRead)
        readEntries();
    return m_Entries;
}

const OrvShelfEntry* OrvMaterialPaintManager::entry(const QString& Key)
{
    for (const OrvShelfEntry& Candidate : entries()) {
        if (Candidate.Key == Key)
            return &Candidate;
    }
    return nullptr;
}

bool OrvMaterialPaintManager::readEntries()
{
    m_WasRead = true;
    // Sorted by key; what is searched later gives way.
    QMap<QString, OrvShelfEntry> Found;
    const QStringList Directories = OrvShelfDirectories::all();
    for (const QString& Directory : Directories) {
        QDirIterator Files(Directory, QDir::Files, QDirIterator::Subdirectories);
        while (Files.hasNext()) {
            const QString Path = Files.next();
            const QString Relative = Path.mid(Directory.size() + 1);
            const QString Key = Relative.left(Relative.lastIndexOf(QLatin1Char('.')));
            if (!isShelfFile(Path) || Found.contains(Relative))
                continue;
            OrvShelfEntry Entry = OrvShelfEntry::read(Path, Key);
            Entry.IsUsers = Directory == OrvShelfDirectories::user();
            Found.insert(Relative, Entry);
        }
    }
    watch();
    const QVector<OrvShelfEntry> Before = std::exchange(m_Entries, Found.values().toVector());
    for (const OrvShelfEntry& Old : Before) {
        if (!m_Entries.contains(Old))
            m_Thumbnails.remove(Old.Key);
    }
    return Before != m_Entries;
}

void OrvMaterialPaintManager::watch()
{
    if (!QCoreApplication::instance())
        return;
    if (!m_pWatcher) {
        // The application's: without its event loop there is nothing to watch with.
        m_pWatcher = new QFileSystemWatcher(QCoreApplication::instance());
        const auto startTimer = QOverload<>::of(&QTimer::start);
        connect(m_pWatcher, &QFileSystemWatcher::fileChanged, &m_ReloadTimer, startTimer);
        connect(m_pWatcher, &QFileSystemWatcher::directoryChanged, &m_ReloadTimer, startTimer);
        // Pixmaps must not outlive the application.
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [this] { m_Thumbnails.clear(); });
    }
    QStringList Paths;
    for (const QString& Directory : OrvShelfDirectories::all()) {
        // Of a directory that does not exist yet, the next one above it that does tells when it comes.
        QString Watched = Directory;
        while (!QFileInfo::exists(Watched) && Watched != QFileInfo(Watched).path())
            Watched = QFileInfo(Watched).path();
        Paths.append(Watched);
        QDirIterator Inside(Directory, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (Inside.hasNext())
            Paths.append(Inside.next());
    }
    const QStringList Watched = m_pWatcher->files() + m_pWatcher->directories();
    for (const QString& Path : Watched) {
        if (!Paths.removeOne(Path))
            m_pWatcher->removePath(Path);
    }
    if (!Paths.isEmpty())
        m_pWatcher->addPaths(Paths);
}

void OrvMaterialPaintManager::reload()
{
    m_ReloadTimer.stop();
    if (readEntries())
        Q_EMIT shelfChanged();
}

QMap<QString, QPair<QString, QIcon>> OrvMaterialPaintManager::customProceduralsFromShelf()
{
    QMap<QString, QPair<QString, QIcon>> Procedurals;
    for (const OrvShelfEntry& Entry : entries()) {
        if (Entry.What == OrvShelfEntry::CustomProcedural && Entry.Error.isEmpty())
            Procedurals.insert(Entry.Key, {Entry.Name, icon(Entry)});
    }
    return Procedurals;
}

QVector<OrvShelfMaterial> OrvMaterialPaintManager::materialsFromShelf()
{
    QVector<OrvShelfMaterial> Materials;
    for (const OrvShelfEntry& Entry : entries()) {
        if (Entry.What == OrvShelfEntry::Material && Entry.Error.isEmpty())
            Materials.append({Entry.Name, icon(Entry), Entry.Path});
    }
    return Materials;
}

bool OrvMaterialPaintManager::readCustomProcedural(const QString& PathOrKey, QByteArray& Text, QString& Error)
{
    if (PathOrKey.endsWith(OrvProceduralFile::Suffix, Qt::CaseInsensitive))
        return OrvProceduralFile::read(PathOrKey, Text, Error);
    for (const OrvShelfEntry& Entry : entries()) {
        if (Entry.Key == PathOrKey && Entry.What == OrvShelfEntry::CustomProcedural)
            return OrvProceduralFile::read(Entry.Path, Text, Error);
    }
    Error = tr("There is no custom procedural '%1' on the shelf").arg(PathOrKey);
    return false;
}

QString OrvMaterialPaintManager::iconFileOfKind(const OrvShelfEntry& Entry)
{
    static const char* const Procedurals[]
        = {"CustomProceduralColor", "CustomProceduralScalar", "CustomProceduralMask"};
    const bool Warns = Entry.MissesGeoChannels || !Entry.Error.isEmpty();
    QString Name;
    if (Entry.What == OrvShelfEntry::Material) {
        Name = Warns ? QStringLiteral("MaterialWithMissingGeoChannel.png") : QStringLiteral("Material.png");
    } else {
        Name = QLatin1String(Procedurals[Entry.ProceduralType])
            + (Warns ? QStringLiteral("_MissingGeoChannel.svg") : QStringLiteral(".16x16.svg"));
    }
    return Name;
}

QIcon OrvMaterialPaintManager::icon(const OrvShelfEntry& Entry) const
{
    const auto Thumbnail = m_Thumbnails.constFind(Entry.Key);
    if (Thumbnail != m_Thumbnails.constEnd())
        return Thumbnail.value();
    return QIcon(OrvResourceDirectory::path() + QStringLiteral("/icons/") + iconFileOfKind(Entry));
}

void OrvMaterialPaintManager::setThumbnail(const QString& Key, const QIcon& Icon)
{
    m_Thumbnails.insert(Key, Icon);
}

#include "moc_OrvMaterialPaintManager.cpp"
