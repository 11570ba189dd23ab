#include "Orvi/OrvAutosave.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectFile.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Files/OrvDataBlockManager.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEvent>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QApplication>

namespace {

constexpr int Delay = 10 * 1000; // ms
constexpr int Interval = 3 * 60 * 1000; // ms
constexpr int Rest = 1500; // ms without mouse or keys
constexpr int SlicePause = 30; // ms for the window between two slices
const QString CopyFolder = QStringLiteral("Autosave");
const QString LockName = QStringLiteral("Autosave.lock");
const QString NotesName = QStringLiteral("Autosave.ini");
const QString NameKey = QStringLiteral("Name");
const QString PathKey = QStringLiteral("Path");

QString copyFolder(const QString& CacheDirectory)
{
    return CacheDirectory + QLatin1Char('/') + CopyFolder;
}

/// Never under the user's hand, nor in the midst of saving or importing.
bool isUserBusy()
{
    return OrvUndoManager::instance().isInMacro() || QApplication::mouseButtons() != Qt::NoButton
        || QApplication::activeModalWidget();
}

bool isTouch(QEvent::Type Type)
{
    switch (Type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::DragMove:
        return true;
    default:
        return false;
    }
}

} // namespace

OrvAutosave::OrvAutosave(OrvCanvasRenderer* pRenderer, QObject* pParent)
    : QObject(pParent)
    , m_pRenderer(pRenderer)
{
    m_Delay.setSingleShot(true);
    m_Delay.setInterval(Delay);
    m_Interval.setInterval(Interval);
    m_Idle.setSingleShot(true);
    m_Idle.setInterval(Rest);
    m_Slices.setInterval(SlicePause);
    connect(&m_Delay, &QTimer::timeout, this, &OrvAutosave::saveWhenIdle);
    connect(&m_Interval, &QTimer::timeout, this, &OrvAutosave::saveWhenIdle);
    connect(&m_Idle, &QTimer::timeout, this, &OrvAutosave::beginSaving);
    connect(&m_Slices, &QTimer::timeout, this, &OrvAutosave::saveSlice);
    OrvProjectManager& Projects = OrvProjectManager::instance();
    connect(&Projects, &OrvProjectManager::autosaveRequested, this, [this] { m_Delay.start(); });
    connect(&Projects, &OrvProjectManager::projectClosed, this, &OrvAutosave::dropCopy);
    connect(&Projects, &OrvProjectManager::onProjectSaved, this, &OrvAutosave::dropCopy);
    connect(&Projects, &OrvProjectManager::onMakeProjectCurrent, this, &OrvAutosave::onProjectCurrent);
    m_Interval.start();
    onProjectCurrent();
}

OrvAutosave::~OrvAutosave()
{
    dropCopy();
}

void OrvAutosave::onProjectCurrent()
{
    m_pLock.reset();
    m_Directory.clear();
    if (!OrvProjectManager::instance().currentProject())
        return;
    m_Directory = OrvDataBlockManager::subCachePath();
}

void OrvAutosave::saveWhenIdle()
{
    if (isWaiting() || !OrvProjectManager::instance().isModified())
        return;
    m_Idle.start();
    // Every event of the program passes a filter, so there is one only while it has something to do.
    qApp->installEventFilter(this);
}

bool OrvAutosave::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (isTouch(pEvent->type())) {
        m_Slices.stop();
        m_pPause.reset();
        m_Idle.start();
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void OrvAutosave::beginSaving()
{
    if (isUserBusy())
        return m_Idle.start();
    m_pPause = std::make_unique<OrvCanvasRenderer::Pause>(m_pRenderer);
    m_Slices.start();
}

void OrvAutosave::saveSlice()
{
    if (isUserBusy()) {
        m_Slices.stop();
        m_pPause.reset();
        return m_Idle.start();
    }
    if (!m_pPause->isReached())
        return;
    // What one slice has stored the next one finds; so each brings at least one piece of an image more.
    QElapsedTimer Age;
    Age.start();
    int LastDone = 0;
    bool Brought = false, Cut = false;
    write([&](int Done, int Total) {
        Brought = Brought || Done == LastDone;
        LastDone = Done;
        Cut = Brought && Age.elapsed() > m_SliceLength && Done < Total;
        return !Cut;
    });
    if (!Cut)
        endSaving();
}

void OrvAutosave::endSaving()
{
    m_Idle.stop();
    m_Slices.stop();
    m_pPause.reset();
    qApp->removeEventFilter(this);
}

bool OrvAutosave::saveNow()
{
    const OrvCanvasRenderer::Pause Pause(m_pRenderer);
    return write({});
}

bool OrvAutosave::write(const std::function<bool(int Done, int Total)>& Step)
{
    OrvProjectManager& Projects = OrvProjectManager::instance();
    OrvProject* pProject = Projects.currentProject();
    if (!pProject || m_Directory.isEmpty() || !Projects.isModified())
        return false;
    if (!m_pLock) {
        auto pLock = std::make_unique<QLockFile>(m_Directory + QLatin1Char('/') + LockName);
        pLock->setStaleLockTime(0);
        if (!pLock->tryLock(0))
            return false;
        m_pLock = std::move(pLock);
    }
    QString Error;
    bool Cut = false;
    const auto step = [&](int Done, int Total) {
        Cut = Step && !Step(Done, Total);
        return !Cut;
    };
    if (!OrvProjectFile::write(
            *pProject, copyFolder(m_Directory), OrvProjectFile::ManifestName, Error, step)) {
        if (!Cut)
            OrvDebug("OrvAutosave", __LINE__, Error, false, false);
        return false;
    }
    QSettings Notes(m_Directory + QLatin1Char('/') + NotesName, QSettings::IniFormat);
    Notes.setValue(NameKey, pProject->name());
    Notes.setValue(PathKey, pProject->path());
    return true;
}

void OrvAutosave::dropCopy()
{
    m_Delay.stop();
    endSaving();
    if (!m_pLock)
        return;
    discard({m_Directory, QString(), QString(), QDateTime()});
    m_pLock.reset();
}

QList<OrvAutosave::Copy> OrvAutosave::leftBehind()
{
    QList<Copy> Copies;
    const QStringList Roots = OrvDataBlockManager::cacheRoots();
    if (Roots.isEmpty())
        return Copies;
    const QDir Root(Roots.first());
    for (const QString& Name : Root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString Directory = Root.filePath(Name);
        if (!QFileInfo::exists(Directory + QLatin1Char('/') + NotesName))
            continue;
        QLockFile Lock(Directory + QLatin1Char('/') + LockName);
        Lock.setStaleLockTime(0);
        if (!Lock.tryLock(0))
            continue;
        const QSettings Notes(Directory + QLatin1Char('/') + NotesName, QSettings::IniFormat);
        Copies.append({Directory, Notes.value(NameKey).toString(), Notes.value(PathKey).toString(),
            QFileInfo(copyFolder(Directory) + QLatin1Char('/') + OrvProjectFile::ManifestName)
                .lastModified()});
    }
    return Copies;
}

QString OrvAutosave::recover(const Copy& Left, QString& Error)
{
    const QDir Target = Left.ProjectPath.isEmpty()
        ? QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
        : QFileInfo(Left.ProjectPath).dir();
    const QString Base = tr("%1 recovered").arg(Left.ProjectName);
    QString Folder = Target.filePath(Base + QStringLiteral(".orvi"));
    for (int Number = 2; QFileInfo::exists(Folder); ++Number)
        Folder = Target.filePath(QStringLiteral("%1 %2.orvi").arg(Base).arg(Number));
    OrvProjectManager& Projects = OrvProjectManager::instance();
    if (!Projects.openProject(copyFolder(Left.Directory), Error) || !Projects.saveProjectAs(Folder, Error))
        return QString();
    discard(Left);
    return Folder;
}

void OrvAutosave::discard(const Copy& Left)
{
    // The notes first: without them there is no copy.
    QFile::remove(Left.Directory + QLatin1Char('/') + NotesName);
    QDir(copyFolder(Left.Directory)).removeRecursively();
}

#include "moc_OrvAutosave.cpp"
