#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderViewActions.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvShaderNetworkUtils.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvAction.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputDisconnectDialog.h"

#include <QtCore/QTimer>
#include <QtWidgets/QAction>

#include <algorithm>

using namespace OrvLayerViewContext;

namespace {

const char AddShaderIcon[] = "AddShader.png";
const QLatin1Char Separator('/');
const QString ShaderMenuPrefix = QStringLiteral("Shaders/");

void report(int Line, const QString& Message)
{
    OrvDebug("OrvShaderViewActions", Line, Message, false, false);
}

OrvLayerShader* currentShader(int Line)
{
    OrvLayerShader* pShader = OrvLayerShaderManager::instance().currentLayerShader();
    if (!pShader)
        report(Line, QStringLiteral("LayerShader is NULL"));
    return pShader;
}

/// Of the shaders that follow what is current, each object has the ones that it has.
OrvLayerShader* currentUserShader(int Line)
{
    OrvLayerShader* pShader = currentShader(Line);
    if (!pShader || !OrvLayerShaderManager::instance().isSystemShader(pShader))
        return pShader;
    OrvLayerViewUtils::tell(
        OrvShaderViewActions::tr("'%1' comes with every object: choose a shader of your own")
            .arg(pShader->name()));
    return nullptr;
}

void warn(const QString& Title, const QString& Error)
{
    if (OrvApplication::appInstance().popupsAllowed())
        OrvLayerViewUtils::warn(Title, Error);
}

/// Whether there are layers to ask about when the shader goes.
bool hasMultiChannelLayers(const OrvLayerShader* pShader)
{
    const QList<OrvShaderInput*> Channels = pShader->inputShaderInputs();
    return std::any_of(Channels.cbegin(), Channels.cend(), [pShader](const OrvShaderInput* pChannel) {
        return OrvLayerStreamUtils::containsMultiChannelLayers(pChannel, pShader->shaderModel());
    });
}

QString reasonToStay(const OrvLayerShader* pShader)
{
    const QString Obstacle = OrvLayerShaderUtils::obstacleToRemoval(pShader);
    return Obstacle.isEmpty() ? OrvShaderViewActions::tr("its multi-channel layers were not converted")
                              : Obstacle;
}

/// Removes the current shader, one way or another, after the user was asked what becomes of its layers.
void removeCurrent(const QString& Text, bool (*pRemove)(OrvLayerShader*, bool))
{
    using Dialog = OrvShaderInputDisconnectDialog;
    OrvUndoManager::AutoMacro Macro(Text);
    const QPointer<OrvLayerShader> pShader = currentUserShader(__LINE__);
    if (!pShader)
        return;
    const Dialog::Treatment Treatment = hasMultiChannelLayers(pShader)
        ? Dialog::ask(Dialog::Occasion::RemovingShader)
        : Dialog::Treatment::Convert;
    if (!pShader || Treatment == Dialog::Treatment::GiveUp
        || pRemove(pShader, Treatment == Dialog::Treatment::Disconnect))
        return;
    Macro.cancel();
    OrvLayerViewUtils::tell(
        OrvShaderViewActions::tr("'%1' was not removed: %2").arg(pShader->name(), reasonToStay(pShader)));
}

void switchEntries(const QMenu* pMenu, bool Enabled)
{
    for (QAction* pEntry : pMenu->actions()) {
        pEntry->setEnabled(Enabled);
        if (pEntry->menu())
            switchEntries(pEntry->menu(), Enabled);
    }
}

} // namespace

OrvShaderViewActions& OrvShaderViewActions::instance()
{
    static OrvShaderViewActions Instance;
    return Instance;
}

OrvShaderViewActions::OrvShaderViewActions()
{
    OrvMenuManager& Menus = OrvMenuManager::instance();
    const auto separate = [&Menus] { Menus.addSeparator(MainWindowName, ShadersMenuTitle, QString()); };
    m_AddShaderAction = createSubMenuAction(QStringLiteral("Add New Shader"), LayerShaderNodeType);
    m_AddShaderLayerAction
        = createSubMenuAction(QStringLiteral("Add New Shader Layer"), LayerOfLayerShaderNodeType);
    separate();
    createCommand(QStringLiteral("Duplicate Shader"), "DuplicateShader.png", SLOT(duplicateShader()));
    createCommand(QStringLiteral("Remove Shader"), "RemoveShader.png", SLOT(removeShader()));
    separate();
    createCommand(QStringLiteral("Cut"), "Cut.png", SLOT(cut()));
    createCommand(QStringLiteral("Copy"), "Copy.png", SLOT(copy()));
    createCommand(QStringLiteral("Paste"), "Paste.png", SLOT(paste()));
    separate();
    createMaintenanceActions();
    followLayerMenu();

    // The types that stand alone come first in both menus.
    createStandaloneShaderActions();
    for (const QString& Window : {LayerShaderNodeType, LayerOfLayerShaderNodeType})
        Menus.addSeparator(Window, AddShaderKey, QString(), QString());
    createLayeredShaderActions();

    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(
        pNetworks, SIGNAL(registeredNodePopulationChanged()), this, SLOT(createStandaloneShaderActions()));
    connect(pNetworks, SIGNAL(registeredNodePopulationChanged()), this, SLOT(createLayeredShaderActions()));
    OrvProjectManager& Projects = OrvProjectManager::instance();
    connect(
        &Projects, SIGNAL(onMakeProjectCurrent(OrvProject*)), this, SLOT(switchActionsEnabled(OrvProject*)));
    switchActionsEnabled(Projects.currentProject());
}

QAction* OrvShaderViewActions::createAction(const QString& Text, const char* pIcon)
{
    QAction* pAction = new QAction(OrvIcon::createIconFromFilename(QString::fromLatin1(pIcon)), Text, this);
    m_Commands.append(pAction);
    OrvActionTreeManager::instance().registerAction(ShadersPath, pAction);
    OrvMenuManager::instance().registerAction(MainWindowName, ShadersMenuTitle, QString(),
        new OrvLateBindAction(ShadersPath + Separator + Text, this), QString(), QString());
    return pAction;
}

QAction* OrvShaderViewActions::createCommand(const QString& Text, const char* pIcon, const char* pSlot)
{
    QAction* pAction = createAction(Text, pIcon);
    connect(pAction, SIGNAL(triggered()), this, pSlot);
    return pAction;
}

QAction* OrvShaderViewActions::createSubMenuAction(const QString& Text, const QString& Window)
{
    QAction* pAction = createAction(Text, AddShaderIcon);
    connect(pAction, SIGNAL(triggered()), &OrvMenuManager::instance(), SLOT(popupSubMenu()));
    updateAddShaderSubMenu(pAction, Window);
    return pAction;
}

void OrvShaderViewActions::createMaintenanceActions()
{
    const QString MenuPath = MainWindowName + Separator + ShadersMenuTitle;
    const auto create = [this, &MenuPath](QObject* pHost, const QString& Text, const char* pSlot) {
        OrvActionCreator Creator(ShadersPath, pHost, MenuPath, QString());
        m_Commands.append(Creator.createAndAddToMenu(Text, QString(), pSlot, QVariant(), QString()));
    };
    create(&OrvLayerShaderManager::instance(), tr("Recreate System Shaders"), SLOT(recreateSystemShaders()));
    create(&OrvShaderNetworkManager::instance(), tr("Force Update Shaders"), SLOT(upgradeAllNodes()));
}

// Menus of shader types

void OrvShaderViewActions::createStandaloneShaderActions()
{
    createEntries(
        OrvShaderNetworkUtils::standaloneShaderTypes(), {LayerShaderNodeType, LayerOfLayerShaderNodeType});
}

void OrvShaderViewActions::createLayeredShaderActions()
{
    createEntries(OrvShaderNetworkUtils::layeredShaderTypes(), {LayerShaderNodeType});
}

void OrvShaderViewActions::createEntries(const QStringList& Types, const QStringList& Windows)
{
    OrvActionTreeManager& ActionTree = OrvActionTreeManager::instance();
    for (const QString& Type : Types) {
        QString EntryPath = OrvShaderNetworkManager::instance().nodeMenuPath(Type);
        if (EntryPath.startsWith(ShaderMenuPrefix))
            EntryPath.remove(0, ShaderMenuPrefix.size());
        if (EntryPath.isEmpty() || ActionTree.hasAction(AddShaderPath + Separator + EntryPath))
            continue;
        const QString SubMenu = EntryPath.section(Separator, 0, -2);
        QAction* pEntry = new QAction(OrvIcon::createIconFromFilename(QString::fromLatin1(AddShaderIcon)),
            EntryPath.section(Separator, -1), this);
        pEntry->setData(Type);
        connect(pEntry, SIGNAL(triggered()), this, SLOT(addShaderFromAction()));
        ActionTree.registerAction(AddShaderPath + Separator + SubMenu, pEntry);
        for (const QString& Window : Windows)
            OrvMenuManager::instance().registerAction(
                Window, AddShaderKey, SubMenu, pEntry, QString(), QString());
    }
    updateAddShaderSubMenu(m_AddShaderAction, LayerShaderNodeType);
    updateAddShaderSubMenu(m_AddShaderLayerAction, LayerOfLayerShaderNodeType);
}

void OrvShaderViewActions::updateAddShaderSubMenu(QAction* Action, QString Window)
{
    if (!Action) {
        report(__LINE__, QStringLiteral("Action is NULL"));
        return;
    }
    OrvMenuManager& Menus = OrvMenuManager::instance();
    auto* pMenu = qobject_cast<OrvMenu*>(Action->menu());
    if (pMenu) {
        pMenu->clearAll();
        Menus.fillMenu(pMenu, Window, AddShaderKey, QString());
    } else {
        pMenu = Menus.makeMenu(Window, AddShaderKey, QString());
        // An action does not own its menu, and a menu's parent can only be a widget.
        connect(Action, &QObject::destroyed, pMenu, &QObject::deleteLater);
        Action->setMenu(pMenu);
    }
    switchEntries(pMenu, OrvProjectManager::instance().currentProject());
}

void OrvShaderViewActions::followLayerMenu()
{
    // Both menus have the same entries, and a menu is closed before its entry is triggered.
    QMenu* pMenu = m_AddShaderLayerAction->menu();
    connect(pMenu, &QMenu::aboutToShow, this, [this] { m_IsChoosingLayer = true; });
    connect(m_AddShaderAction->menu(), &QMenu::aboutToShow, this, [this] { m_IsChoosingLayer = false; });
    connect(pMenu, &QMenu::aboutToHide, this, [this, pMenu] {
        QTimer::singleShot(0, pMenu, [this, pMenu] { m_IsChoosingLayer = pMenu->isVisible(); });
    });
}

void OrvShaderViewActions::switchActionsEnabled(OrvProject* Project)
{
    for (const QPointer<QAction>& pAction : qAsConst(m_Commands)) {
        if (pAction)
            pAction->setEnabled(Project);
    }
    for (const QAction* pAction : {m_AddShaderAction, m_AddShaderLayerAction})
        switchEntries(pAction->menu(), Project);
}

// Commands

void OrvShaderViewActions::addShaderFromAction()
{
    const auto* pAction = qobject_cast<QAction*>(sender());
    if (!pAction) {
        report(__LINE__, QStringLiteral("Action is NULL"));
        return;
    }
    const QString Key = pAction->data().toString();
    // A Layers palette that opened the menu adds the layer itself; for a menu bar it is the palette in use.
    if (m_IsChoosingLayer && !OrvLayerShaderManager::instance().layerShaderCreating())
        addShaderLayerOfType(Key);
    else
        m_CreatedShader = OrvLayerShaderUtils::createShaderFromKey(Key, true);
}

void OrvShaderViewActions::addShaderLayerOfType(const QString& Key)
{
    if (OrvLayerView* pLayerView = OrvLayerViewContextManager::instance().layerView())
        pLayerView->addShaderLayerFromKey(Key);
}

OrvLayerShader* OrvShaderViewActions::takeCreatedShader()
{
    OrvLayerShader* pShader = m_CreatedShader;
    m_CreatedShader.clear();
    return pShader;
}

void OrvShaderViewActions::removeShader()
{
    removeCurrent(tr("Remove Shader"), OrvLayerShaderUtils::destroy);
}

void OrvShaderViewActions::duplicateShader()
{
    OrvLayerShader* pShader = currentUserShader(__LINE__);
    if (!pShader)
        return;
    QString Error;
    if (OrvLayerShaderUtils::duplicateLayerShader(pShader, Error))
        return;
    const QByteArray Name = pShader->name().toLocal8Bit();
    report(__LINE__,
        QString::asprintf(
            "[ !! ] Failed to duplicate shader '%s' due to multi-channel layers", Name.constData()));
    warn(tr("Duplication Operation Failed"), Error);
}

void OrvShaderViewActions::cut()
{
    removeCurrent(tr("Cut Shader"), OrvLayerShaderUtils::cutToClipboard);
}

void OrvShaderViewActions::copy()
{
    if (const OrvLayerShader* pShader = currentUserShader(__LINE__))
        OrvLayerShaderUtils::copyToClipboard(pShader);
}

void OrvShaderViewActions::paste()
{
    OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    if (!pNetwork) {
        report(__LINE__, QStringLiteral("Network is NULL"));
        return;
    }
    QString Error;
    if (!OrvLayerShaderUtils::pasteFromClipboard(Error, pNetwork))
        warn(tr("Shader Operation Failed"), Error);
}

#include "moc_OrvShaderViewActions.cpp"
