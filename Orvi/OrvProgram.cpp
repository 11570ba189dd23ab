#include "Orvi/OrvProgram.h"

#include "Orvi/OrvAutosave.h"
#include "Orvi/OrvBrushBar.h"
#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvas.h"
#include "Orvi/OrvCanvasTools.h"
#include "Orvi/OrvCommandLine.h"
#include "Orvi/OrvEditCommands.h"
#include "Orvi/OrvFailureMessage.h"
#include "Orvi/OrvHistoryPalette.h"
#include "Orvi/OrvImportExport.h"
#include "Orvi/OrvObjectCommands.h"
#include "Orvi/OrvObjectsPalette.h"
#include "Orvi/OrvProjectCommands.h"
#include "Orvi/OrvSampleProject.h"
#include "Orvi/OrvSelectionCommands.h"
#include "Orvi/OrvSelectionPalette.h"
#include "Orvi/OrvStartupTrace.h"
#include "Orvi/OrvToolBar.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Graph/OrvNodeGraphPalette.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvPanelToolBars.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Plugin/OrvPluginInterface.h"
#include "OrvCoreModules/Plugin/OrvPluginLoader.h"
#include "OrvCoreModules/Shelf/OrvShelfPalette.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvLogView.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvProgressDialog.h"
#include "OrvCoreModules/Window/OrvResourceInfo.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include "OrvDdi/Engine/OrvEngine.h"

#include <QtCore/QTimer>
#include <QtWidgets/QMessageBox>

namespace {

const QString ViewPath = QStringLiteral("/Orvi/View");
const QString BrushPath = QStringLiteral("/Orvi/Brush");
constexpr int RoomyHeight = 850; // of a window in which two palettes fit one below the other

const QStringList MenuOrder{QStringLiteral("File"), QStringLiteral("Edit"), QStringLiteral("Objects"),
    QStringLiteral("Channels"), QStringLiteral("Layers"), QStringLiteral("Shaders"), QStringLiteral("Select"),
    QStringLiteral("Brush"), QStringLiteral("View"), QStringLiteral("Palettes"), QStringLiteral("Help")};

/// Those that others build upon come first, and so are destroyed last.
void makeManagers()
{
    OrvObjectReferenceManager::instance();
    OrvUndoManager::instance();
    OrvShaderNetworkManager::instance();
    OrvLayerManager::instance();
    OrvShaderInputManager::instance();
    OrvLayerShaderManager::instance();
    OrvProjectManager::instance();
    OrvStatusManager::instance();
    OrvActionTreeManager::instance();
    OrvShortcutManager::instance();
    OrvMenuManager::instance();
    OrvMainWindow::instance();
    OrvPaletteManager::instance();
}

} // namespace

OrvProgram::OrvProgram()
{
    // It takes longer to be ready than the window.
    OrvEngine::warmUp();
    QApplication::setWindowIcon(OrvIcon::createIconFromFilename(QStringLiteral("Orvi.png")));
    makeManagers();
    makeParts();
    makeMenus();
    loadPlugins();
    OrvApplication::appInstance().setInitialized(true);
}

OrvProgram::~OrvProgram()
{
    OrvMainWindow::instance().setCloseGuard({});
    OrvProjectManager::instance().closeProject();
    // The canvas computes in a thread of its own, which ends with it.
    delete m_pCanvas;
}

void OrvProgram::makeParts()
{
    OrvMainWindow& Window = OrvMainWindow::instance();
    m_pTools = new OrvCanvasTools(this);
    m_pCanvas = new OrvCanvas(m_pTools);
    Window.setCentralWidget(m_pCanvas);
    Window.addToolBar(new OrvToolBar(m_pTools, &Window));
    Window.addToolBar(new OrvBrushBar(m_pTools->brushTool(), &Window));
    m_pProjectCommands = new OrvProjectCommands(m_pCanvas->renderer(), this);
    m_pImportExport = new OrvImportExport(m_pProjectCommands, this);
    m_pSelectionCommands = new OrvSelectionCommands(m_pTools, this);
    m_pObjectCommands = new OrvObjectCommands(this);
    m_pEditCommands = new OrvEditCommands(this);
    m_pAutosave = new OrvAutosave(m_pCanvas->renderer(), this);
}

void OrvProgram::makeMenus()
{
    OrvActionCreator File(
        QStringLiteral("/Orvi/File"), m_pProjectCommands, QStringLiteral("MainWindow/&File"), QString());
    OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
    Shortcuts.setDefaultShortcut(QStringLiteral("/Orvi/File/") + tr("Quit"), QKeySequence::Quit);
    File.createAndAddToMenu(tr("Quit"), QString(), SLOT(quit()), QVariant(), QString());

    OrvActionCreator View(ViewPath, m_pCanvas, QStringLiteral("MainWindow/&View"), QString());
    const auto addView
        = [&](const QString& Text, const QString& Icon, const char* pSlot, const QKeySequence& Keys) {
              Shortcuts.setDefaultShortcut(ViewPath + QLatin1Char('/') + Text, Keys);
              View.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString());
          };
    addView(tr("Zoom In"), QString(), SLOT(zoomIn()), QKeySequence(Qt::CTRL + Qt::Key_Plus));
    addView(tr("Zoom Out"), QString(), SLOT(zoomOut()), QKeySequence(Qt::CTRL + Qt::Key_Minus));
    addView(tr("Actual Size"), QString(), SLOT(showActualSize()), QKeySequence(Qt::CTRL + Qt::Key_1));
    addView(tr("Fit"), QStringLiteral("ZoomFit.png"), SLOT(fit()), QKeySequence(Qt::Key_F));
    View.addMenuSeparator();
    OrvActionCreator Light(ViewPath, m_pCanvas->light(), QStringLiteral("MainWindow/&View"), QString());
    Light.createAndAddToMenu(tr("Show or Hide Light"), QString(), SLOT(toggleHandle()), QVariant(), QString());
    Light.createAndAddToMenu(tr("Reset Light"), QString(), SLOT(resetLight()), QVariant(), QString());

    OrvActionCreator Brush(BrushPath, m_pTools->brushTool(), QStringLiteral("MainWindow/&Brush"), QString());
    const auto addBrush
        = [&](const QString& Text, const QString& Icon, const char* pSlot, const QKeySequence& Keys) {
              Shortcuts.setDefaultShortcut(BrushPath + QLatin1Char('/') + Text, Keys);
              Brush.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString());
          };
    addBrush(tr("Larger"), QString(), SLOT(growBrush()), QKeySequence(Qt::Key_BracketRight));
    addBrush(tr("Smaller"), QString(), SLOT(shrinkBrush()), QKeySequence(Qt::Key_BracketLeft));
    addBrush(tr("Erase"), QStringLiteral("Eraser.png"), SLOT(toggleEraser()), QKeySequence(Qt::Key_E));

    OrvActionCreator Help(QStringLiteral("/Orvi/Help"), this, QStringLiteral("MainWindow/&Help"), QString());
    Help.createAndAddToMenu(tr("Open Sample Project"), QString(), SLOT(openSample()), QVariant(), QString());
    Help.addMenuSeparator();
    Help.createAndAddToMenu(tr("About Orvi"), QString(), SLOT(showAbout()), QVariant(), QString());
}

void OrvProgram::loadPlugins()
{
    OrvPluginLoader& Plugins = OrvPluginLoader::instance();
    if (!Plugins.loadAll()) {
        for (const OrvPluginLoader::Plugin& One : Plugins.plugins()) {
            if (One.CurrentState == OrvPluginLoader::Failed)
                OrvFailureMessage::show(tr("Plug-ins"), QStringLiteral("%1: %2").arg(One.File, One.Error));
        }
    }
    registerPalettes();
    OrvPanelToolBars::instance().publish();
    OrvMainWindow::instance().setMenuOrder(MenuOrder);
    OrvMainWindow::instance().setDefaultLayout([] { arrangePalettes(); });
}

void OrvProgram::registerPalettes()
{
    OrvPaletteManager& Palettes = OrvPaletteManager::instance();
    const QString IconPath = OrvResourceInfo::iconPath();
    Palettes.registerPalette(new OrvNodeGraphPalette, false, IconPath + QStringLiteral("/NodeGraph.png"));
    Palettes.registerPalette(new OrvHistoryPalette, false, IconPath + QStringLiteral("/History.png"));
    Palettes.registerPalette(new OrvShelfPalette, false, IconPath + QStringLiteral("/Materials.png"));
    Palettes.registerPalette(new OrvSelectionPalette(m_pSelectionCommands), false,
        IconPath + QStringLiteral("/SelectionGroups.png"));
    Palettes.registerPalette(
        new OrvObjectsPalette(m_pObjectCommands), false, IconPath + QStringLiteral("/Object.png"));
    auto* pLog = new OrvPalette;
    pLog->setBodyWidget(new OrvLogView(pLog));
    pLog->setObjectName(tr("Log"));
    pLog->setWindowTitle(tr("Log"));
    Palettes.registerPalette(pLog, false, IconPath + QStringLiteral("/simple_collection_view.png"));
}

void OrvProgram::arrangePalettes()
{
    OrvMainWindow& Window = OrvMainWindow::instance();
    OrvPalette* pChannels = OrvPaletteManager::find(QStringLiteral("Channels"));
    OrvPalette* pShaders = OrvPaletteManager::find(QStringLiteral("Shaders"));
    OrvPalette* pLayers = OrvPaletteManager::find(QStringLiteral("Layers"));
    OrvPalette* pHistory = OrvPaletteManager::find(QStringLiteral("History"));
    for (OrvPalette* pPalette : {pChannels, pShaders, pLayers, pHistory}) {
        if (!pPalette)
            continue;
        pPalette->setFloating(false);
        Window.addDockWidget(
            pPalette == pLayers ? Qt::RightDockWidgetArea : Qt::LeftDockWidgetArea, pPalette);
        pPalette->show();
    }
    // What is looked at now and then opens below the layers.
    OrvPalette* pFirst = nullptr;
    for (const char* pName : {"Shelf", "Objects", "Selections", "Log"}) {
        OrvPalette* pPalette = OrvPaletteManager::find(QString::fromLatin1(pName));
        if (!pPalette)
            continue;
        pPalette->setFloating(false);
        Window.addDockWidget(Qt::RightDockWidgetArea, pPalette);
        if (pFirst)
            Window.tabifyDockWidget(pFirst, pPalette);
        else
            pFirst = pPalette;
        pPalette->hide();
    }
    // The canvas has the room until somebody wants to see the graph below it.
    if (OrvPalette* pGraph = OrvPaletteManager::find(QStringLiteral("Node Graph"))) {
        pGraph->setFloating(false);
        Window.addDockWidget(Qt::BottomDockWidgetArea, pGraph);
        pGraph->hide();
    }
    const bool Roomy = Window.height() >= RoomyHeight;
    if (pChannels && pShaders && Roomy)
        Window.splitDockWidget(pChannels, pShaders, Qt::Vertical);
    else if (pChannels && pShaders)
        Window.tabifyDockWidget(pChannels, pShaders);
    if (pShaders && pHistory) {
        Window.tabifyDockWidget(pShaders, pHistory);
        (Roomy || !pChannels ? pShaders : pChannels)->raise();
    }
    if (pChannels && pLayers)
        Window.resizeDocks({pChannels, pLayers}, {375, 345}, Qt::Horizontal);
    if (pChannels && pShaders && Roomy)
        Window.resizeDocks({pChannels, pShaders}, {420, 480}, Qt::Vertical);
}

void OrvProgram::start(const OrvCommandLine& Line)
{
    OrvMainWindow& Window = OrvMainWindow::instance();
    Window.restoreLayout();
    new OrvStartupTrace(this);
    Window.show();
    // The window is painted before anything slow begins.
    QTimer::singleShot(0, this, [this, Line] { open(Line); });
}

void OrvProgram::open(const OrvCommandLine& Line)
{
    const QString Trouble = OrvSettings::trouble();
    if (!Trouble.isEmpty())
        OrvFailureMessage::show(tr("Settings"), Trouble);
    if (Line.RequestedMode == OrvCommandLine::Sample) {
        if (!m_pProjectCommands->offerRecovery(OrvSampleProject::path()))
            openSample();
    } else if (!Line.Project.isEmpty()) {
        m_pProjectCommands->open(Line.Project);
    } else if (!Line.Images.isEmpty()) {
        m_pImportExport->openImagesAsProject(Line.Images);
    } else if (Line.RequestedMode == OrvCommandLine::Interactive) {
        m_pProjectCommands->offerRecovery();
    }
}

void OrvProgram::openSample()
{
    if (!m_pProjectCommands->mayLeaveProject() || !m_pProjectCommands->mayOpenSaved(OrvSampleProject::path()))
        return;
    QString Error;
    bool Opened = false;
    {
        OrvProgressDialog Progress(tr("Opening the sample project"), &OrvMainWindow::instance());
        Opened = OrvSampleProject::open(
            Error, [&Progress](int Done, int Total) { return Progress.step(Done, Total); });
        if (Progress.isCancelled())
            return;
    }
    if (!Opened)
        OrvFailureMessage::show(tr("Sample Project"), Error);
}

void OrvProgram::showAbout()
{
    QString Plugins;
    for (const OrvPluginLoader::Plugin& One : OrvPluginLoader::instance().plugins()) {
        if (One.pInterface)
            Plugins
                += QStringLiteral("<br>%1 - %2").arg(One.pInterface->name(), One.pInterface->description());
    }
    QMessageBox::about(&OrvMainWindow::instance(), tr("About Orvi"),
        tr("<b>Orvi %1</b><p>A layered texture-painting studio.</p><p>Plug-ins:%2</p>")
            .arg(QCoreApplication::applicationVersion(), Plugins));
}

#include "moc_OrvProgram.cpp"
