#include "Orvi/OrvSelectionCommands.h"

#include "Orvi/OrvCanvasSelection.h"
#include "Orvi/OrvCanvasTools.h"
#include "Orvi/OrvSelectionGroups.h"
#include "Orvi/OrvSelectionTool.h"

#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QMessageBox>

namespace {

const QString ActionPath = QStringLiteral("/Orvi/Select");
const QString Window = QStringLiteral("MainWindow");
const QString Menu = QStringLiteral("&Select");
constexpr int MessageDuration = 5000; // ms

} // namespace

OrvSelectionCommands::OrvSelectionCommands(OrvCanvasTools* pTools, QObject* pParent)
    : QObject(pParent)
    , m_pTools(pTools)
{
    createActions();
    const OrvProjectManager& Projects = OrvProjectManager::instance();
    connect(&Projects, &OrvProjectManager::objectMadeCurrent, this, [this] { rebuildLoadMenu(); });
    connect(&Projects, &OrvProjectManager::selectionGroupsChanged, this, [this] { rebuildLoadMenu(); });
    rebuildLoadMenu();
}

OrvSelectionCommands::~OrvSelectionCommands()
{
    clearLoadMenu();
}

void OrvSelectionCommands::createActions()
{
    OrvShortcutManager& Shortcuts = OrvShortcutManager::instance();
    const QString MenuPath = Window + QLatin1Char('/') + Menu;
    OrvActionCreator State(ActionPath, m_pTools->selection(), MenuPath, QStringLiteral("ProjectOnly"));
    OrvActionCreator Tools(ActionPath, m_pTools, MenuPath, QString());
    OrvActionCreator Groups(ActionPath, this, MenuPath, QStringLiteral("ProjectOnly"));
    const auto add = [&](OrvActionCreator& Creator, const QString& Text, const QString& Icon,
                         const char* pSlot, const QKeySequence& Keys) {
        if (!Keys.isEmpty())
            Shortcuts.setDefaultShortcut(ActionPath + QLatin1Char('/') + Text, Keys);
        Creator.createAndAddToMenu(Text, Icon, pSlot, QVariant(), QString());
    };
    add(State, tr("All"), QString(), SLOT(selectAll()), QKeySequence(Qt::CTRL + Qt::Key_A));
    add(State, tr("None"), QString(), SLOT(selectNone()), QKeySequence(Qt::CTRL + Qt::Key_D));
    add(State, tr("Invert"), QString(), SLOT(invert()), QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_I));
    State.addMenuSeparator();
    add(Tools, tr("Brush"), QStringLiteral("Brush.png"), SLOT(takeBrush()), QKeySequence(Qt::Key_B));
    add(Tools, tr("Rectangle Selection"), QStringLiteral("SelectRectangle.png"), SLOT(takeRectangle()),
        QKeySequence(Qt::Key_M));
    add(Tools, tr("Lasso Selection"), QStringLiteral("SelectLasso.png"), SLOT(takeLasso()),
        QKeySequence(Qt::Key_L));
    Tools.addMenuSeparator();
    add(Groups, tr("Save Selection As"), QString(), SLOT(saveSelectionAs()), QKeySequence());
    // The sub-menu takes its place here, even while it is empty.
    OrvMenuManager::instance().addSeparator(Window, Menu, tr("Load Selection"));
    add(Groups, tr("Show Selections"), QStringLiteral("SelectionGroups.png"), SLOT(showGroups()),
        QKeySequence());
}

void OrvSelectionCommands::clearLoadMenu()
{
    for (QAction* pAction : qAsConst(m_LoadActions)) {
        OrvMenuManager::instance().unregisterAction(Window, Menu, tr("Load Selection"), pAction);
        // The chosen entry is still being triggered.
        pAction->deleteLater();
    }
    m_LoadActions.clear();
}

void OrvSelectionCommands::rebuildLoadMenu()
{
    clearLoadMenu();
    for (const QString& Name : OrvSelectionGroups::names()) {
        QString Text = Name;
        QAction* pAction = new QAction(Text.replace(QLatin1Char('&'), QLatin1String("&&")), this);
        connect(pAction, &QAction::triggered, this, [this, Name] { load(Name); });
        OrvMenuManager::instance().registerAction(Window, Menu, tr("Load Selection"), pAction);
        m_LoadActions.append(pAction);
    }
    OrvMenuManager::instance().setMenuEnabled(
        Window + QLatin1Char('/') + Menu + QLatin1Char('/') + tr("Load Selection"), !m_LoadActions.isEmpty());
}

void OrvSelectionCommands::load(const QString& GroupName)
{
    m_pTools->selection()->load(GroupName,
        OrvSelectionTool::combination(QGuiApplication::keyboardModifiers(), OrvSelectionArea::Replace));
}

void OrvSelectionCommands::saveSelectionAs()
{
    if (m_pTools->selection()->area().isEmpty()) {
        OrvStatusManager::instance().showMessage(tr("Nothing is selected"), MessageDuration);
        return;
    }
    if (!OrvApplication::popupsAllowed())
        return;
    OrvMainWindow& Parent = OrvMainWindow::instance();
    bool Agreed = false;
    const QString Name = QInputDialog::getText(&Parent, tr("Save Selection"), tr("Name of the selection:"),
        QLineEdit::Normal, OrvSelectionGroups::unusedName(), &Agreed)
                             .trimmed();
    if (!Agreed || Name.isEmpty())
        return;
    const bool Replaces = OrvSelectionGroups::names().contains(Name);
    if (Replaces
        && QMessageBox::question(
               &Parent, tr("Save Selection"), tr("\"%1\" exists already. Replace it?").arg(Name))
            != QMessageBox::Yes)
        return;
    OrvSelectionGroups::store(Name, m_pTools->selection()->area());
}

void OrvSelectionCommands::showGroups()
{
    if (OrvPalette* pPalette = OrvPaletteManager::find(QStringLiteral("Selections")))
        pPalette->open();
}

#include "moc_OrvSelectionCommands.cpp"
