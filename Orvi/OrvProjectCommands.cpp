#include "Orvi/OrvProjectCommands.h"

#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvDialogAction.h"
#include "Orvi/OrvFailureMessage.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectFile.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Widgets/OrvFileDialog.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvProgressDialog.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QAction>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace {

const QString ActionPath = QStringLiteral("/Orvi/File");
const QString MenuPath = QStringLiteral("MainWindow/&File");
const QString ProjectOnlySet = QStringLiteral("ProjectOnly");
const QString DirectoryKey = QStringLiteral("Project/Directory");
const QString Suffix = QStringLiteral(".orvi");
constexpr int MessageDuration = 4000; // ms
constexpr std::chrono::milliseconds PausePatience(20); // between two looks at the event queue

/// The folder of a project that is named by it or by the manifest in it.
QString folderOf(const QString& Path)
{
    const QFileInfo File(Path);
    return File.isFile() ? File.absolutePath() : QDir(Path).absolutePath();
}

enum class CopyAnswer { Recover, Discard, Later };

CopyAnswer askAboutCopy(const OrvAutosave::Copy& Left, const QString& DiscardText, const QString& LaterText)
{
    QMessageBox Box(&OrvMainWindow::instance());
    Box.setIcon(QMessageBox::Question);
    Box.setWindowTitle(OrvProjectCommands::tr("Recover Project"));
    Box.setText(OrvProjectCommands::tr("Orvi did not end properly while \"%1\" had unsaved changes.")
                    .arg(Left.ProjectName));
    Box.setInformativeText(
        OrvProjectCommands::tr("A copy from %1 can be opened; it becomes a new project beside the saved one.")
            .arg(QLocale().toString(Left.Written, QLocale::ShortFormat)));
    const QPushButton* pRecover = Box.addButton(OrvProjectCommands::tr("Recover"), QMessageBox::AcceptRole);
    const QPushButton* pDiscard = Box.addButton(DiscardText, QMessageBox::DestructiveRole);
    Box.addButton(LaterText, QMessageBox::RejectRole);
    Box.exec();
    if (Box.clickedButton() == pRecover)
        return CopyAnswer::Recover;
    return Box.clickedButton() == pDiscard ? CopyAnswer::Discard : CopyAnswer::Later;
}

} // namespace

OrvProjectCommands::OrvProjectCommands(OrvCanvasRenderer* pRenderer, QObject* pParent)
    : QObject(pParent)
    , m_pRenderer(pRenderer)
{
    createActions();
    connect(&m_Recent, &OrvRecentProjects::chosen, this, &OrvProjectCommands::open);
    OrvProjectManager& Projects = OrvProjectManager::instance();
    connect(&Projects, &OrvProjectManager::onMakeProjectCurrent, this, &OrvProjectCommands::updateTitle);
    connect(&Projects, &OrvProjectManager::onProjectSaved, this, &OrvProjectCommands::updateTitle);
    connect(&Projects, &OrvProjectManager::modifiedChanged, this, &OrvProjectCommands::updateTitle);
    OrvMainWindow::instance().setCloseGuard([this] { return mayLeaveProject(); });
    updateTitle();
}

void OrvProjectCommands::createActions()
{
    OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
    OrvActionCreator Creator(ActionPath, this, MenuPath, QString());
    const auto create
        = [&](const QString& Text, const QString& Icon, const char* pSlot, const QKeySequence& Keys) {
              Shortcuts.setDefaultShortcut(ActionPath + QLatin1Char('/') + Text, Keys);
              return Creator.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString());
          };
    create(tr("New Project"), QStringLiteral("New.png"), SLOT(newProject()), QKeySequence::New);
    OrvDialogAction::mark(
        create(tr("Open Project"), QStringLiteral("Open.png"), SLOT(openProject()), QKeySequence::Open));
    // The sub-menu takes its place here, even while it is empty.
    OrvMenuManager::instance().addSeparator(
        QStringLiteral("MainWindow"), QStringLiteral("&File"), QStringLiteral("Open Recent"));
    Creator.addMenuSeparator();
    Creator.setActionSetName(ProjectOnlySet);
    create(tr("Save Project"), QStringLiteral("Save.png"), SLOT(saveProject()), QKeySequence::Save);
    OrvDialogAction::mark(create(tr("Save Project As"), QString(), SLOT(saveProjectAs()),
        QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_S)));
    create(tr("Close Project"), QString(), SLOT(closeProject()), QKeySequence::Close);
    Creator.addMenuSeparator();
}

void OrvProjectCommands::updateTitle()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    OrvMainWindow& Window = OrvMainWindow::instance();
    Window.setWindowTitle(pProject ? tr("%1[*] - Orvi").arg(pProject->name()) : tr("Orvi"));
    Window.setWindowModified(OrvProjectManager::instance().isModified());
    OrvActionTreeManager::instance().setActionSetEnabled(ProjectOnlySet, pProject != nullptr);
}

QString OrvProjectCommands::lastDirectory()
{
    return OrvSettings()
        .value(DirectoryKey, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
        .toString();
}

void OrvProjectCommands::rememberDirectory(const QString& ProjectPath)
{
    OrvSettings().setValue(DirectoryKey, QFileInfo(QDir(ProjectPath).absolutePath()).absolutePath());
}

bool OrvProjectCommands::mayLeaveProject()
{
    OrvProjectManager& Projects = OrvProjectManager::instance();
    if (!Projects.isModified() || !OrvApplication::popupsAllowed())
        return true;
    QMessageBox Box(&OrvMainWindow::instance());
    Box.setIcon(QMessageBox::Question);
    Box.setWindowTitle(tr("Unsaved Changes"));
    Box.setText(tr("\"%1\" has changes that are not saved.").arg(Projects.currentProject()->name()));
    Box.setInformativeText(tr("Do you want to save them?"));
    Box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    Box.setDefaultButton(QMessageBox::Save);
    switch (Box.exec()) {
    case QMessageBox::Save:
        return saveProject();
    case QMessageBox::Discard:
        return true;
    default:
        return false;
    }
}

void OrvProjectCommands::makeNew(const QString& Name)
{
    OrvProjectManager::instance().newProject(Name);
}

void OrvProjectCommands::rename(const QString& Name)
{
    OrvProject* pProject = OrvProjectManager::instance().currentProject();
    if (!pProject || !pProject->path().isEmpty())
        return;
    pProject->setName(Name);
    updateTitle();
}

bool OrvProjectCommands::offerRecovery(const QString& ExceptProject)
{
    if (!OrvApplication::popupsAllowed())
        return false;
    for (const OrvAutosave::Copy& Left : OrvAutosave::leftBehind()) {
        if (!ExceptProject.isEmpty() && Left.ProjectPath == ExceptProject)
            continue;
        const CopyAnswer Answer = askAboutCopy(Left, tr("Discard"), tr("Later"));
        if (Answer == CopyAnswer::Discard)
            OrvAutosave::discard(Left);
        else if (Answer == CopyAnswer::Recover)
            return recover(Left);
    }
    return false;
}

bool OrvProjectCommands::mayOpenSaved(const QString& Path)
{
    if (!OrvApplication::popupsAllowed())
        return true;
    const QString Folder = folderOf(Path);
    const QFileInfo Manifest(Folder + QLatin1Char('/') + OrvProjectFile::ManifestName);
    for (const OrvAutosave::Copy& Left : OrvAutosave::leftBehind()) {
        if (Left.ProjectPath != Folder || Left.Written <= Manifest.lastModified())
            continue;
        // An open project writes its own copies over the old one, so it is decided upon now.
        switch (askAboutCopy(Left, tr("Open What Was Saved"), tr("Cancel"))) {
        case CopyAnswer::Recover:
            recover(Left);
            return false;
        case CopyAnswer::Discard:
            OrvAutosave::discard(Left);
            return true;
        case CopyAnswer::Later:
            return false;
        }
    }
    return true;
}

bool OrvProjectCommands::recover(const OrvAutosave::Copy& Left)
{
    QString Error;
    const QString Folder = OrvAutosave::recover(Left, Error);
    if (Folder.isEmpty()) {
        OrvFailureMessage::show(tr("Recover Project"), Error);
        return false;
    }
    noteOpened();
    // No duration: nobody chose that place.
    OrvStatusManager::instance().showMessage(
        tr("The recovered project is saved as %1").arg(QDir::toNativeSeparators(Folder)));
    return true;
}

void OrvProjectCommands::noteOpened()
{
    const QString Path = OrvProjectManager::instance().currentProject()->path();
    rememberDirectory(Path);
    m_Recent.add(Path);
    updateTitle();
}

void OrvProjectCommands::newProject()
{
    if (mayLeaveProject())
        makeNew(tr("Untitled"));
}

void OrvProjectCommands::openProject()
{
    const QString Path = OrvFileDialog::askForFolder(
        &OrvMainWindow::instance(), tr("Open Project (a folder \"Name.orvi\")"), lastDirectory());
    if (!Path.isEmpty())
        open(Path);
}

bool OrvProjectCommands::open(const QString& Path)
{
    if (!QFileInfo::exists(Path)) {
        OrvFailureMessage::show(
            tr("Open Project"), tr("'%1' does not exist").arg(QDir::toNativeSeparators(Path)));
        return false;
    }
    if (!mayLeaveProject())
        return false;
    if (!mayOpenSaved(Path))
        return OrvProjectManager::instance().currentProject() != nullptr;
    QString Error;
    bool Opened = false;
    {
        OrvProgressDialog Progress(
            tr("Opening %1").arg(QFileInfo(Path).completeBaseName()), &OrvMainWindow::instance());
        Opened = OrvProjectManager::instance().openProject(
            Path, Error, [&Progress](int Done, int Total) { return Progress.step(Done, Total); });
        if (Progress.isCancelled())
            return false;
    }
    if (!Opened) {
        OrvFailureMessage::show(tr("Open Project"), Error);
        return false;
    }
    noteOpened();
    return true;
}

bool OrvProjectCommands::saveTo(const QString& Path)
{
    QString Error;
    bool Saved = false;
    {
        OrvProgressDialog Progress(
            tr("Saving %1").arg(QFileInfo(Path).completeBaseName()), &OrvMainWindow::instance());
        const OrvCanvasRenderer::Pause Pause(m_pRenderer);
        while (!Pause.isReached(PausePatience) && Progress.step(0, 0)) { }
        if (Progress.isCancelled())
            return false;
        Saved = OrvProjectManager::instance().saveProjectAs(
            Path, Error, [&Progress](int Done, int Total) { return Progress.step(Done, Total); });
        if (Progress.isCancelled())
            return false;
    }
    if (!Saved) {
        OrvFailureMessage::show(tr("Save Project"), Error);
        return false;
    }
    rememberDirectory(Path);
    m_Recent.add(Path);
    OrvStatusManager::instance().showMessage(
        tr("Saved %1").arg(QDir::toNativeSeparators(Path)), MessageDuration);
    return true;
}

bool OrvProjectCommands::saveProject()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    if (!pProject)
        return false;
    return pProject->path().isEmpty() ? saveProjectAs() : saveTo(pProject->path());
}

bool OrvProjectCommands::saveProjectAs()
{
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    if (!pProject)
        return false;
    OrvFileDialog Dialog(&OrvMainWindow::instance(), tr("Save Project As"), lastDirectory());
    Dialog.setAcceptMode(QFileDialog::AcceptSave);
    Dialog.setFileMode(QFileDialog::AnyFile);
    Dialog.setNameFilter(tr("Orvi projects (*.orvi)"));
    Dialog.selectFile(pProject->name() + Suffix);
    if (Dialog.exec() != QDialog::Accepted || Dialog.chosen().isEmpty())
        return false;
    QString Path = Dialog.chosen().first();
    if (!OrvCommandLine::isProjectPath(Path))
        Path += Suffix;
    return saveTo(Path);
}

void OrvProjectCommands::closeProject()
{
    if (mayLeaveProject())
        OrvProjectManager::instance().closeProject();
}

void OrvProjectCommands::quit()
{
    OrvMainWindow::instance().close();
}

#include "moc_OrvProjectCommands.cpp"
