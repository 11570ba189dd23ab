#include "OrvCoreModules/Window/OrvPaletteManager.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteSidebar.h"

#include <QtCore/QSettings>
#include <QtWidgets/QToolBar>

namespace {

const char File[] = "OrvPaletteManager";
const char NameKey[] = "Name%u";
const char GeometryKey[] = "Geometry%u";
const char FloatingKey[] = "Floating%u";
const char AreaKey[] = "Area%u";
const char PinnedKey[] = "Pinned%u";
const QString SidebarModeKey = QStringLiteral("SidebarMode");
const QString PalettesMenu = QStringLiteral("&Palettes");
const QString PalettesPath = QStringLiteral("/Orvi/Palettes");

QString numbered(const char* pKey, int Index)
{
    return QString::asprintf(pKey, unsigned(Index));
}

/// The entry that bears the palette's own name, else the one of that index.
int indexOf(const QSettings& Settings, const OrvPalette* pPalette, int Index)
{
    for (int Candidate = 0; Settings.contains(numbered(NameKey, Candidate)); ++Candidate) {
        if (Settings.value(numbered(NameKey, Candidate)).toString() == pPalette->objectName())
            return Candidate;
    }
    return Index;
}

bool isDockArea(int Area)
{
    return Area == Qt::LeftDockWidgetArea || Area == Qt::RightDockWidgetArea || Area == Qt::TopDockWidgetArea
        || Area == Qt::BottomDockWidgetArea;
}

} // namespace

OrvPaletteManager& OrvPaletteManager::instance()
{
    static auto* pInstance = new OrvPaletteManager;
    return *pInstance;
}

void OrvPaletteManager::registerPalette(OrvPalette* pPalette, bool ShownAtFirstStart, const QString& IconFile)
{
    if (!pPalette) {
        OrvDebug(File, __LINE__, QStringLiteral("pPalette is NULL"), false, false);
        return;
    }
    if (m_Palettes.contains(pPalette))
        return;
    m_Palettes.removeAll(QPointer<OrvPalette>());
    m_Palettes.append(pPalette);
    if (!IconFile.isEmpty())
        pPalette->setPaletteIcon(OrvIcon::createIconFromPath(IconFile));
    OrvMainWindow::instance().addDockWidget(Qt::LeftDockWidgetArea, pPalette);
    pPalette->setVisible(ShownAtFirstStart);
    if (!m_Sidebar)
        createSidebar();
    m_Sidebar->addPalette(pPalette);
    addToPalettesMenu(pPalette);
    Q_EMIT paletteRegistered(pPalette);
}

void OrvPaletteManager::createSidebar()
{
    OrvMainWindow& MainWindow = OrvMainWindow::instance();
    auto* pStrip = new QToolBar(tr("Palette Sidebar"), &MainWindow);
    pStrip->setObjectName(QStringLiteral("PaletteSidebar"));
    pStrip->setMovable(false);
    m_Sidebar = new OrvPaletteSidebar(pStrip);
    pStrip->addWidget(m_Sidebar);
    MainWindow.addToolBar(Qt::LeftToolBarArea, pStrip);
}

void OrvPaletteManager::addToPalettesMenu(OrvPalette* pPalette)
{
    auto* pAction = new OrvAction(pPalette->paletteIcon(), pPalette->objectName(), pPalette);
    pAction->setCheckable(true);
    pAction->setIconVisibleInMenu(false); // it would stand where the check mark does
    pAction->setChecked(pPalette->isPaletteActive());
    connect(pPalette, &OrvPalette::paletteActiveChanged, pAction, &QAction::setChecked);
    connect(pAction, &QAction::triggered, pPalette, [pPalette](bool Open) {
        if (Open)
            pPalette->open();
        else
            pPalette->close();
    });
    OrvActionTreeManager::instance().registerAction(PalettesPath, pAction);
    OrvMenuManager::instance().registerAction(QStringLiteral("MainWindow"), PalettesMenu, QString(), pAction);
}

QList<OrvPalette*> OrvPaletteManager::palettes() const
{
    QList<OrvPalette*> Palettes;
    for (const QPointer<OrvPalette>& pPalette : m_Palettes) {
        if (pPalette)
            Palettes.append(pPalette);
    }
    return Palettes;
}

OrvPalette* OrvPaletteManager::find(const QString& Name)
{
    for (OrvPalette* pPalette : instance().palettes()) {
        if (pPalette->objectName() == Name)
            return pPalette;
    }
    return nullptr;
}

OrvPaletteSidebar* OrvPaletteManager::sidebar()
{
    return instance().m_Sidebar;
}

void OrvPaletteManager::savePaletteSettings(QSettings& Settings) const
{
    if (m_Sidebar)
        Settings.setValue(SidebarModeKey, int(m_Sidebar->paletteOpenMode()));
}

void OrvPaletteManager::restorePaletteSettings(QSettings& Settings)
{
    if (!m_Sidebar || !Settings.contains(SidebarModeKey))
        return;
    const int Mode = Settings.value(SidebarModeKey).toInt();
    m_Sidebar->setPaletteOpenMode(
        Mode == OrvPaletteSidebar::Open ? OrvPaletteSidebar::Open : OrvPaletteSidebar::Dock);
}

void OrvPaletteManager::savePaletteSettings(QSettings& Settings, int Index, const OrvPalette* pPalette) const
{
    if (!pPalette) {
        OrvDebug(File, __LINE__, QStringLiteral("pPalette is NULL"), false, false);
        return;
    }
    Settings.setValue(numbered(NameKey, Index), pPalette->objectName());
    Settings.setValue(numbered(GeometryKey, Index), pPalette->saveGeometry());
    Settings.setValue(numbered(FloatingKey, Index), pPalette->isFloating());
    Settings.setValue(numbered(AreaKey, Index),
        int(OrvMainWindow::instance().dockWidgetArea(const_cast<OrvPalette*>(pPalette))));
    Settings.setValue(numbered(PinnedKey, Index), pPalette->isPinned());
}

void OrvPaletteManager::restorePaletteSettings(QSettings& Settings, int Index, OrvPalette* pPalette)
{
    if (!pPalette) {
        OrvDebug(File, __LINE__, QStringLiteral("pPalette is NULL"), false, false);
        return;
    }
    const int Stored = indexOf(Settings, pPalette, Index);
    const QVariant Area = Settings.value(numbered(AreaKey, Stored));
    const QVariant Floating = Settings.value(numbered(FloatingKey, Stored));
    const QVariant Pinned = Settings.value(numbered(PinnedKey, Stored));
    const QByteArray Geometry = Settings.value(numbered(GeometryKey, Stored)).toByteArray();

    OrvMainWindow& MainWindow = OrvMainWindow::instance();
    if (Area.isValid() && isDockArea(Area.toInt()) && MainWindow.dockWidgetArea(pPalette) != Area.toInt())
        MainWindow.addDockWidget(Qt::DockWidgetArea(Area.toInt()), pPalette);
    if (Floating.isValid())
        pPalette->setFloating(Floating.toBool());
    // A docked palette's size is the window's affair.
    if (!Geometry.isEmpty() && pPalette->isFloating())
        pPalette->restoreGeometry(Geometry);
    if (Pinned.isValid())
        pPalette->setPinned(Pinned.toBool());
}

#include "moc_OrvPaletteManager.cpp"
