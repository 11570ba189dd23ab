#include "Orvi/OrvProjectCommands.h"

#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvFailureMessage.h"

#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvProgressDialog.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QAction>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace {

const QString ActionPath = QStringLiteral("/Orvi/File");
const QString MenuPath = QStringLiteral("MainWindow/&File");
const QString ProjectOnlySet = QStringLiteral("ProjectOnly");
const QString DirectoryKey = QStringLiteral("Project/Directory");
const QString Suffix = QStringLiteral(".orvi");
constexpr int MessageDuration = 4000; // ms

} // namespace

OrvProjectCommands::OrvProjectCommands(QObject* pParent)
    : QObject(pParent)
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
              Creator.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString());
          };
    create(tr("New Project"), QStringLiteral("New.png"), SLOT(newProject()), QKeySequence::New);
    create(tr("Open Project"), QStringLiteral("Open.png"), SLOT(openProject()), QKeySequence::Open);
    // The sub-menu takes its place here, even while it is empty.
    OrvMenuManager::instance().addSeparator(
        QStringLiteral("MainWindow"), QStringLiteral("&File"), QStringLiteral("Open &Recent"));
    Creator.addMenuSeparator();
    Creator.setActionSetName(ProjectOnlySet);
    create(tr("Save Project"), QStringLiteral("Save.png"), SLOT(saveProject()), QKeySequence::Save);
    create(tr("Save Project As"), QString(), SLOT(saveProjectAs()),
        QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_S));
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

void OrvProjectCommands::newProject()
{
    if (mayLeaveProject())
        makeNew(tr("Untitled"));
}

void OrvProjectCommands::openProject()
{
    const QString Path = QFileDialog::getExistingDirectory(&OrvMainWindow::instance(),
        tr("Open Project (a folder \"Name.orvi\")"), lastDirectory(), QFileDialog::ShowDirsOnly);
    if (!Path.isEmpty())
        open(Path);
}

bool OrvProjectCommands::open(const QString& Path)
{
    if (!mayLeaveProject())
        return false;
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
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    rememberDirectory(pProject->path());
    m_Recent.add(pProject->path());
    updateTitle();
    return true;
}

bool OrvProjectCommands::saveTo(const QString& Path)
{
    QString Error;
    bool Saved = false;
    {
        OrvProgressDialog Progress(
            tr("Saving %1").arg(QFileInfo(Path).completeBaseName()), &OrvMainWindow::instance());
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
    QFileDialog Dialog(&OrvMainWindow::instance(), tr("Save Project As"), lastDirectory());
    Dialog.setAcceptMode(QFileDialog::AcceptSave);
    Dialog.setFileMode(QFileDialog::AnyFile);
    Dialog.setNameFilter(tr("Orvi projects (*.orvi)"));
    Dialog.selectFile(pProject->name() + Suffix);
    if (Dialog.exec() != QDialog::Accepted || Dialog.selectedFiles().isEmpty())
        return false;
    QString Path = Dialog.selectedFiles().first();
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
