#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvCallMethodUndo.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Widgets/OrvDeferredTimer.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteSplitter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPanelToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvQuickChannelStrip.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputPropertiesPane.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRowSynchronizer.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputTreeView.h"

#include <QtGui/QContextMenuEvent>
#include <QtWidgets/QVBoxLayout>

#include <memory>

namespace {

constexpr int LayoutRightOfReference = 9;

void report(int Line, const QString& Message)
{
    OrvDebug("OrvShaderInputView", Line, Message, false, false);
}

void showInMainLayerView(OrvLayerStack* pLayerStack)
{
    OrvLayerViewContextManager& Palettes = OrvLayerViewContextManager::instance();
    if (OrvLayerView* pLayerView = Palettes.mainLayerView()) {
        pLayerView->setLayerStack(pLayerStack);
        Palettes.setActiveLayerView(pLayerView);
    }
}

} // namespace

OrvShaderInputView::OrvShaderInputView(QWidget* pParent)
    : QWidget(pParent)
{
    auto* pSplitter = new OrvPaletteSplitter(QStringLiteral("ChannelView"), this);
    m_Properties = new OrvShaderInputPropertiesPane;
    pSplitter->setPanes(createListPane(), m_Properties);
    OrvPaletteSplitter::createTightLayout(this)->addWidget(pSplitter);
    m_Rows = new OrvShaderInputRowSynchronizer(this);
    m_RefreshTimer = new OrvDeferredTimer(OrvLayerViewContext::RefreshInterval, this);
    connectParts();
    connectHost();
    registerShortcuts();
}

QWidget* OrvShaderInputView::createListPane()
{
    QWidget* pPane = new QWidget;
    QVBoxLayout* pLayout = OrvPaletteSplitter::createTightLayout(pPane);

    m_QuickChannelStrip = new OrvQuickChannelStrip;
    QHBoxLayout* pStripLayout = new QHBoxLayout;
    pStripLayout->setContentsMargins(0, 0, 0, 0);
    pStripLayout->addWidget(m_QuickChannelStrip);
    m_QuickChannelGroup = new OrvExpandableListWidget(tr("Quick Channel"), pPane);
    m_QuickChannelGroup->addChild(pStripLayout, QString(), QString());
    m_QuickChannelGroup->setEnabled(OrvProjectManager::instance().currentProject() != nullptr);

    m_Model = new OrvShaderInputModel(this);
    m_TreeView = new OrvShaderInputTreeView(this);
    m_TreeView->setModel(m_Model);
    m_TreeView->setDragDropMode(QAbstractItemView::DragDrop);

    m_ToolBar = new OrvPanelToolBar(QStringLiteral("Channels"), this);
    for (const char* pName : {"/Add Channel", "/Duplicate Channel", "/Convert Channel", "/Remove Channel"})
        addToolBarAction(OrvLayerViewContext::ChannelsPath + QLatin1String(pName));

    pLayout->addWidget(m_QuickChannelGroup);
    pLayout->addWidget(m_TreeView, 1);
    pLayout->addWidget(m_ToolBar);
    return pPane;
}

void OrvShaderInputView::addToolBarAction(const QString& Path)
{
    // Every command but the first comes to the tool bar through the menu manager, as the user has set it up.
    const QString First = OrvLayerViewContext::ChannelsPath + QStringLiteral("/Add Channel");
    if (QAction* pAction = OrvActionTreeManager::instance().findAction(First))
        m_ToolBar->addAction(pAction);
    else
        report(__LINE__, QStringLiteral("Unable to find action '%1'").arg(Path));
}

void OrvShaderInputView::connectParts()
{
    connectList();
    connect(m_Rows, SIGNAL(channelRenamed()), this, SLOT(requestRefresh()));
    connect(m_RefreshTimer, SIGNAL(timedOut()), this, SLOT(onRefreshTimerTimeout()));
    connect(m_QuickChannelStrip, SIGNAL(colorChosen(OrvColor, OrvColorSpaceDefaults::ColorSpaceTarget)), this,
        SLOT(quickChannel(OrvColor, OrvColorSpaceDefaults::ColorSpaceTarget)));
    connect(m_QuickChannelStrip, SIGNAL(preferencesChanged()), this, SLOT(saveQuickChannelPrefs()));
}

void OrvShaderInputView::connectList()
{
    connect(m_TreeView, SIGNAL(currentIndexChanged(QModelIndex, QModelIndex)), this,
        SLOT(onCurrentIndexChanged(QModelIndex)));
}

void OrvShaderInputView::disconnectList()
{
    disconnect(m_TreeView, SIGNAL(currentIndexChanged(QModelIndex, QModelIndex)), this,
        SLOT(onCurrentIndexChanged(QModelIndex)));
}

void OrvShaderInputView::connectHost()
{
    OrvShaderInputManager* pChannels = &OrvShaderInputManager::instance();
    OrvMenuManager* pMenus = &OrvMenuManager::instance();
    OrvProjectManager* pProjects = &OrvProjectManager::instance();
    connect(pChannels, SIGNAL(shaderInputAdded(OrvShaderInput*)), this, SLOT(requestRefresh()));
    connect(pChannels, SIGNAL(shaderInputRemoved(OrvShaderInput*)), this, SLOT(requestRefresh()));
    connect(&OrvLayerManager::instance(), SIGNAL(layersRemoved(QSet<OrvLayer*>)), this,
        SLOT(undoableRequestRefresh()));
    connect(pChannels, SIGNAL(currentShaderInputChanged(OrvShaderInput*)), this,
        SLOT(onCurrentShaderInputChanged(OrvShaderInput*)));
    connect(&OrvShaderNetworkManager::instance(), SIGNAL(currentShaderNetworkChanged(OrvShaderNetwork*)),
        this, SLOT(requestRefresh()));
    connect(pMenus, SIGNAL(actionAdded(QString, QString, QString, QAction*)), this,
        SLOT(onMenuManagerActionAdded(QString, QString, QString, QAction*)));
    connect(pMenus, SIGNAL(actionRemoved(QString, QString, QString, QAction*)), this,
        SLOT(onMenuManagerActionRemoved(QString, QString, QString, QAction*)));
    connect(pProjects, SIGNAL(onMakeProjectCurrent(OrvProject*)), this,
        SLOT(onCurrentProjectChanged(OrvProject*)));
    connect(pProjects, SIGNAL(objectMadeCurrent(OrvGeoEntity*)), this,
        SLOT(onCurrentGeoEntityChanged(OrvGeoEntity*)));
}

void OrvShaderInputView::registerShortcuts()
{
    // The menu shows the keys, though they work in the list alone.
    const auto set = [this](int Keys, const char* pSlot, const QString& Command) {
        OrvActionHelpers::createAndRegisterShortcut(
            m_TreeView, QKeySequence(Keys), pSlot, &OrvShaderInputActions::instance());
        OrvShortcutManager::instance().showWidgetShortcut(
            OrvLayerViewContext::ChannelsPath + QLatin1Char('/') + Command, QStringLiteral("Channels"),
            pSlot);
    };
    set(Qt::Key_Delete, SLOT(removeShaderInput()), OrvShaderInputActions::tr("Remove Channel"));
    set(Qt::CTRL + Qt::Key_X, SLOT(cut()), OrvShaderInputActions::tr("Cut"));
    set(Qt::CTRL + Qt::Key_C, SLOT(copy()), OrvShaderInputActions::tr("Copy"));
    set(Qt::CTRL + Qt::Key_V, SLOT(paste()), OrvShaderInputActions::tr("Paste"));
}

void OrvShaderInputView::onCurrentShaderInputChanged(OrvShaderInput* pNewShaderInput)
{
    m_TreeView->setCurrentIndex(
        pNewShaderInput ? m_Model->indexFromShaderInput(pNewShaderInput) : QModelIndex());
    // The Shaders palette shows material stacks.
    showInMainLayerView(pNewShaderInput && !pNewShaderInput->isMaterialStack() ? pNewShaderInput : nullptr);
    remakePropertyWidgets(pNewShaderInput);
}

void OrvShaderInputView::onCurrentIndexChanged(QModelIndex Current)
{
    if (!Current.isValid())
        return;
    const OrvSnBaseNode* pNode = m_Model->nodeFromIndex(Current);
    if (!pNode) {
        report(__LINE__, QStringLiteral("ShaderInputNode is NULL"));
        return;
    }
    OrvShaderInput* pShaderInput = OrvShaderInputUtils::getShaderInput(pNode);
    // Until the next refresh the row of a removed channel is still there.
    if (!pShaderInput || !pShaderInput->network())
        return;
    OrvShaderInputManager::instance().makeShaderInputCurrent(pShaderInput, true);
    showInMainLayerView(pShaderInput);
}

void OrvShaderInputView::requestRefresh()
{
    m_RefreshTimer->start();
    Q_EMIT refreshRequested();
}

void OrvShaderInputView::undoableRequestRefresh()
{
    OrvUndoManager& UndoManager = OrvUndoManager::instance();
    // Outside an edit (the project closes) there is nothing that could be undone.
    if (UndoManager.isInMacro())
        UndoManager.addUndo(new OrvCallMethodUndo(this, "requestRefresh()", {}, {}, -1, QString()));
    requestRefresh();
}

void OrvShaderInputView::onRefreshTimerTimeout()
{
    refresh();
}

void OrvShaderInputView::refresh()
{
    const OrvStatusManager::AutoProgress Progress(tr("Refreshing Shader Input View"), 100, 0, 1);
    // Rows that come and go must not change the host's current channel.
    disconnectList();
    m_Rows->synchronize();
    connectList();
    m_TreeView->resizeColumnToContents(0);
    m_TreeView->resizeColumnToContents(1);
}

void OrvShaderInputView::remakePropertyWidgets(OrvShaderInput* pShaderInput)
{
    m_Properties->showProperties(pShaderInput);
}

void OrvShaderInputView::quickChannel(OrvColor Value, OrvColorSpaceDefaults::ColorSpaceTarget Target)
{
    OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    if (!pNetwork) {
        report(__LINE__, QStringLiteral("Cannot get a handle to the network"));
        return;
    }
    const OrvProject* pProject = OrvProjectManager::instance().currentProject();
    if (!pProject) {
        report(__LINE__, QStringLiteral("Cannot get a handle to the current project"));
        return;
    }
    const OrvGeoEntity* pEntity = pProject->currentGeoEntity();
    if (!pEntity || !pEntity->shadingContext()) {
        report(__LINE__, QStringLiteral("Cannot get a handle to the current context"));
        return;
    }

    OrvUndoManager::AutoMacro Macro(tr("Add Quick Channel"));
    const QString Name = OrvShaderInputUtils::generateUniqueName(pNetwork, tr("Quick Channel"));
    OrvShaderInput* pShaderInput = OrvShaderInputUtils::create(pNetwork, Name,
        m_QuickChannelStrip->channelSize(), GLenum(m_QuickChannelStrip->channelDepth()), nullptr);
    if (!pShaderInput) {
        report(__LINE__, QStringLiteral("Cannot Create Shader Input"));
        return;
    }
    OrvColorManager::transform(Value, Value, Target, OrvColorSpaceDefaults::Working, nullptr);
    if (const OrvLayer* pBase
        = pShaderInput->createPaintableLayer(OrvLayerAtBottom, nullptr, tr("Base"), Value))
        pShaderInput->node()->setLayout(LayoutRightOfReference, pBase->blendNode(), false, true);

    OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
    Channels.makeShaderInputCurrent(pNetwork, nullptr, true);
    Channels.makeShaderInputCurrent(pShaderInput, true);
    OrvProjectManager::instance().triggerAutosave();
}

void OrvShaderInputView::saveQuickChannelPrefs()
{
    m_QuickChannelStrip->savePreferences();
}

void OrvShaderInputView::onCurrentProjectChanged(OrvProject* pNewProject)
{
    m_QuickChannelGroup->setEnabled(pNewProject != nullptr);
}

void OrvShaderInputView::onCurrentGeoEntityChanged(OrvGeoEntity* pNewGeoEntity)
{
    if (pNewGeoEntity)
        m_QuickChannelStrip->setPtex(pNewGeoEntity->isPtex());
}

void OrvShaderInputView::onMenuManagerActionAdded(QString RootMenu, QString SubMenu, QString, QAction* Action)
{
    m_ToolBar->addPublishedAction(RootMenu, SubMenu, Action);
}

void OrvShaderInputView::onMenuManagerActionRemoved(
    QString RootMenu, QString SubMenu, QString, QAction* Action)
{
    m_ToolBar->removePublishedAction(RootMenu, SubMenu, Action);
}

void OrvShaderInputView::contextMenuEvent(QContextMenuEvent* pEvent)
{
    const std::unique_ptr<QMenu> pMenu(OrvMenuManager::instance().makeMenu(
        OrvLayerViewContext::MainWindowName, OrvLayerViewContext::ChannelsMenuTitle));
    if (pMenu)
        pMenu->exec(pEvent->globalPos());
}

#include "moc_OrvShaderInputView.cpp"
