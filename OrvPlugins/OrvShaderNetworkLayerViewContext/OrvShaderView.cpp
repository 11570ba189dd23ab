#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Widgets/OrvDeferredTimer.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteSplitter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPanelToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputsPane.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderListView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderLook.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderRowSynchronizer.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderSuccession.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderTagActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderViewActions.h"

#include <QtGui/QContextMenuEvent>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include <memory>

namespace {

// No sum of the paths that all share: those may be made after it.
const QString AddShaderAction = QStringLiteral("/Orvi/Layers/Shaders/Add New Shader");
constexpr int IconEdge = 16;
const QSize SmallestInputsSize(40, 40);

void report(int Line, const QString& Message)
{
    OrvDebug("OrvShaderView", Line, Message, false, false);
}

void report(int Line, const char* pMessage)
{
    report(Line, QString::fromLatin1(pMessage));
}

} // namespace

OrvShaderView::OrvShaderView(QWidget* pParent)
    : QWidget(pParent)
{
    // The palettes are made before the shader commands would be, and look them up.
    OrvShaderViewActions::instance();
    m_TagActions = new OrvShaderTagActions(this);
    auto* pSplitter = new OrvPaletteSplitter(QStringLiteral("ShaderView"), this);
    pSplitter->setPanes(createListPane(), createInputsArea());
    OrvPaletteSplitter::createTightLayout(this)->addWidget(pSplitter);
    m_RefreshTimer = new OrvDeferredTimer(OrvLayerViewContext::RefreshInterval, this);
    m_RefreshTimerShaderProperties = new OrvDeferredTimer(OrvLayerViewContext::RefreshInterval, this);
    connectParts();
    connectHost();
    registerShortcuts();
    updateActionEnablement(OrvProjectManager::instance().currentProject());
}

QWidget* OrvShaderView::createListPane()
{
    QWidget* pPane = new QWidget;
    m_ListView = new OrvShaderListView(pPane);
    m_Model = new OrvShaderModel(this);
    m_ListView->setModel(m_Model);
    m_Rows = new OrvShaderRowSynchronizer(m_Model, m_ListView, this);
    m_Succession = new OrvShaderSuccession(m_Model, this);
    createToolBar();
    QVBoxLayout* pLayout = OrvPaletteSplitter::createTightLayout(pPane);
    pLayout->addWidget(m_ListView, 1);
    pLayout->addWidget(m_ToolBar);
    return pPane;
}

void OrvShaderView::createToolBar()
{
    m_ToolBar = new OrvPanelToolBar(QStringLiteral("Shaders"), this);
    m_ToolBar->setIconSize({IconEdge, IconEdge});
    m_AddButton = new QToolButton(m_ToolBar);
    m_AddButton->setText(QStringLiteral("Add New Shader"));
    m_AddButton->setToolTip(m_AddButton->text());
    m_AddButton->setIcon(OrvIcon::createIconFromFilename(QStringLiteral("AddShader.png")));
    m_AddButton->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_ToolBar->addWidget(m_AddButton);
    for (const char* pName : {"/Duplicate Shader", "/Remove Shader"})
        addToolBarAction(OrvLayerViewContext::ShadersPath + QLatin1String(pName));
}

void OrvShaderView::addToolBarAction(const QString& Path)
{
    // Every command but the first comes to the tool bar through the menu manager, as the user has set it up.
    if (QAction* pAction = OrvActionTreeManager::instance().findAction(AddShaderAction))
        m_ToolBar->addAction(pAction);
    else
        report(__LINE__, QStringLiteral("Unable to find action '%1'").arg(Path));
}

QWidget* OrvShaderView::createInputsArea()
{
    QScrollArea* pScrollArea = new QScrollArea;
    pScrollArea->setWidgetResizable(true);
    pScrollArea->setMinimumSize(SmallestInputsSize);
    m_InputsPane = new OrvShaderInputsPane(pScrollArea);
    pScrollArea->setWidget(m_InputsPane);
    return pScrollArea;
}

void OrvShaderView::connectParts()
{
    connectList();
    connect(m_Model, SIGNAL(addShaderNode(OrvSnBaseNode*)), this, SLOT(addShaderNode(OrvSnBaseNode*)));
    connect(m_Rows, SIGNAL(shaderRenamed()), this, SLOT(requestRefresh()));
    connect(m_AddButton, SIGNAL(clicked()), this, SLOT(addNewShader()));
    connect(m_RefreshTimer, SIGNAL(timedOut()), this, SLOT(onRefreshTimerTimeout()));
    connect(m_RefreshTimerShaderProperties, SIGNAL(timedOut()), this,
        SLOT(onRefreshTimerShaderPropertiesTimeout()));
}

void OrvShaderView::connectList()
{
    connect(m_ListView, SIGNAL(currentIndexChanged(QModelIndex, QModelIndex)), this,
        SLOT(onCurrentIndexChanged(QModelIndex)));
    connect(m_Model, SIGNAL(itemChanged(QStandardItem*)), this, SLOT(onItemChanged(QStandardItem*)));
}

void OrvShaderView::disconnectList()
{
    disconnect(m_ListView, SIGNAL(currentIndexChanged(QModelIndex, QModelIndex)), this,
        SLOT(onCurrentIndexChanged(QModelIndex)));
    disconnect(m_Model, SIGNAL(itemChanged(QStandardItem*)), this, SLOT(onItemChanged(QStandardItem*)));
}

void OrvShaderView::connectHost()
{
    OrvLayerShaderManager* pShaders = &OrvLayerShaderManager::instance();
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    OrvShaderInputManager* pChannels = &OrvShaderInputManager::instance();
    OrvProjectManager* pProjects = &OrvProjectManager::instance();
    connect(pNetworks, SIGNAL(currentShaderNetworkChanged(OrvShaderNetwork*)), this, SLOT(requestRefresh()));
    connect(pShaders, SIGNAL(shaderAdded(OrvSnBaseNode*)), this, SLOT(requestRefresh()));
    connect(
        pProjects, SIGNAL(projectOpenAbsolutelyCompleted()), this, SLOT(requestRefreshShaderProperties()));
    connect(pNetworks, SIGNAL(upgradeCompleted()), this, SLOT(requestRefreshShaderProperties()));
    connect(pChannels, SIGNAL(newShaderInputConnected(QString, OrvSnBaseNode*)), this,
        SLOT(refreshShaderPropertiesForNewShaderInput(QString, OrvSnBaseNode*)));
    for (const char* pSignal : {SIGNAL(shaderInputCreated(OrvShaderInput*)),
             SIGNAL(shaderInputAdded(OrvShaderInput*)), SIGNAL(shaderInputRemoved(OrvShaderInput*))})
        connect(pChannels, pSignal, this, SLOT(requestRefreshShaderProperties()));
    connect(pShaders, SIGNAL(shaderRemoved(OrvSnBaseNode*)), this, SLOT(onShaderRemoved(OrvSnBaseNode*)));
    connect(pShaders, SIGNAL(shaderTagsChanged(QString, OrvSnBaseNode*)), this,
        SLOT(onShaderTagsChanged(QString, OrvSnBaseNode*)));
    connect(pShaders, SIGNAL(currentLayerShaderChanged(OrvLayerShader*)), this,
        SLOT(onCurrentLayerShaderChanged(OrvLayerShader*)));
    connectHostInputs();
    connect(
        pProjects, SIGNAL(onMakeProjectCurrent(OrvProject*)), this, SLOT(currentProjectChanged(OrvProject*)));
    OrvMenuManager* pMenus = &OrvMenuManager::instance();
    connect(pMenus, SIGNAL(actionAdded(QString, QString, QString, QAction*)), this,
        SLOT(onMenuManagerActionAdded(QString, QString, QString, QAction*)));
    connect(pMenus, SIGNAL(actionRemoved(QString, QString, QString, QAction*)), this,
        SLOT(onMenuManagerActionRemoved(QString, QString, QString, QAction*)));
}

void OrvShaderView::connectHostInputs()
{
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(pNetworks, SIGNAL(nodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*)),
        this, SLOT(onNodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*)));
    connect(pNetworks, SIGNAL(groupNodeInputRenamed(OrvSnBaseNode*, QString, QString)), this,
        SLOT(onGroupNodeInputNameChanged(OrvSnBaseNode*, QString, QString)));
    connect(pNetworks, SIGNAL(nodeInputOrderChanged(OrvShaderNetwork*, OrvSnBaseNode*)), this,
        SLOT(onNodeInputOrderChanged(OrvShaderNetwork*, OrvSnBaseNode*)));
    connect(pNetworks, SIGNAL(nodeInputEnabledChanged(OrvSnBaseNode*, QString, bool)), this,
        SLOT(onNodeInputEnabledChanged(OrvSnBaseNode*, QString, bool)));
}

void OrvShaderView::registerShortcuts()
{
    // The menu shows the keys, though they work in the list alone.
    const auto set = [this](int Keys, const char* pSlot, const char* pCommand) {
        OrvActionHelpers::createAndRegisterShortcut(
            m_ListView, QKeySequence(Keys), pSlot, &OrvShaderViewActions::instance());
        OrvShortcutManager::instance().showWidgetShortcut(
            OrvLayerViewContext::ShadersPath + QLatin1String(pCommand), QStringLiteral("Shaders"), pSlot);
    };
    set(Qt::Key_Delete, SLOT(removeShader()), "/Remove Shader");
    set(Qt::CTRL + Qt::Key_X, SLOT(cut()), "/Cut");
    set(Qt::CTRL + Qt::Key_C, SLOT(copy()), "/Copy");
    set(Qt::CTRL + Qt::Key_V, SLOT(paste()), "/Paste");
}

// The list

void OrvShaderView::requestRefresh()
{
    if (!m_RefreshTimer) {
        report(__LINE__, "m_RefreshTimer is NULL");
        return;
    }
    m_RefreshTimer->start();
    Q_EMIT refreshRequested();
}

void OrvShaderView::onRefreshTimerTimeout()
{
    refresh();
}

void OrvShaderView::refresh()
{
    const OrvStatusManager::AutoProgress Progress(tr("Refreshing Shader View"), 100, 0, 1);
    // Rows that come and go must not change the host's current shader, nor new texts its names.
    disconnectList();
    m_Rows->synchronize();
    connectList();
    // No tag changes when the chosen shader leaves or returns.
    m_TagActions->showCurrent(OrvLayerShaderManager::instance().currentLayerShader());
    requestRefreshShaderProperties();
}

QStandardItem* OrvShaderView::addShaderNode(OrvSnBaseNode* Node)
{
    if (!Node) {
        report(__LINE__, "Node is NULL");
        return nullptr;
    }
    QStandardItem* pItem = m_Rows->addRow(Node);
    if (pItem)
        m_ListView->scrollTo(pItem->index());
    return pItem;
}

void OrvShaderView::onItemChanged(QStandardItem* Item)
{
    if (!Item) {
        report(__LINE__, "Item is NULL");
        return;
    }
    if (!m_Model) {
        report(__LINE__, "m_Model is NULL");
        return;
    }
    OrvSnBaseNode* pNode = m_Model->nodeFromItem(Item);
    if (!pNode)
        return;
    // A shader without a name could not be told from others; the row gets its old text back.
    if (Item->text().trimmed().isEmpty())
        requestRefresh();
    else
        pNode->setName(Item->text());
}

void OrvShaderView::onShaderTagsChanged(QString, OrvSnBaseNode* NodeChanged)
{
    if (QStandardItem* pItem = m_Model->itemFromIndex(m_Model->indexFromNode(NodeChanged))) {
        disconnectList();
        pItem->setIcon(OrvShaderLook::icon(NodeChanged));
        connectList();
    }
    m_TagActions->showCurrent(OrvLayerShaderManager::instance().currentLayerShader());
    requestRefresh();
}

// The current shader

void OrvShaderView::onCurrentIndexChanged(QModelIndex)
{
    requestRefreshShaderProperties();
    if (OrvSnBaseNode* pNode = m_Model->nodeFromIndex(m_ListView->currentIndex()))
        OrvLayerShaderManager::instance().setCurrentShader(pNode);
}

void OrvShaderView::onCurrentLayerShaderChanged(OrvLayerShader* Shader)
{
    followCurrentNode(Shader ? Shader->node() : nullptr);
    m_Rows->showCurrent(Shader ? Shader->node() : nullptr);
    m_TagActions->showCurrent(Shader);
    requestRefreshShaderProperties();
}

void OrvShaderView::followCurrentNode(OrvSnBaseNode* pNode)
{
    OrvSnBaseNode* pFormer = m_Succession->current();
    if (pFormer == pNode)
        return;
    const char* pSignal = SIGNAL(inputNodeChanged(QString, OrvSnBaseNode*, QString));
    const char* pSlot = SLOT(onNodeInputConnectionChanged(QString, OrvSnBaseNode*, QString));
    if (pFormer)
        disconnect(pFormer, pSignal, this, pSlot);
    m_Succession->setCurrent(pNode);
    if (pNode)
        connect(pNode, pSignal, this, pSlot);
}

void OrvShaderView::onShaderRemoved(OrvSnBaseNode* NodeRemoved)
{
    if (!OrvProjectManager::instance().currentProject()) {
        m_Rows->clear();
        return;
    }
    OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    if (NodeRemoved && Shaders.selectedUserShaderNode() == NodeRemoved)
        Shaders.resetSelectedUserShaderNode();
    m_Succession->succeed(NodeRemoved);
    requestRefresh();
}

void OrvShaderView::currentChannel()
{
    m_TagActions->view(OrvShaderTagActions::Channel);
}

void OrvShaderView::currentLayerAndBelow()
{
    m_TagActions->view(OrvShaderTagActions::LayerAndBelow);
}

void OrvShaderView::currentLayer()
{
    m_TagActions->view(OrvShaderTagActions::Layer);
}

void OrvShaderView::currentComponent()
{
    m_TagActions->view(OrvShaderTagActions::PaintTarget);
}

void OrvShaderView::currentMaterial()
{
    m_TagActions->view(OrvShaderTagActions::Material);
}

void OrvShaderView::lastSelectedUserShader()
{
    m_TagActions->view(OrvShaderTagActions::UserShader);
}

// The inputs of the current shader

void OrvShaderView::requestRefreshShaderProperties()
{
    if (!m_RefreshTimerShaderProperties) {
        report(__LINE__, "m_RefreshTimerShaderProperties is NULL");
        return;
    }
    m_RefreshTimerShaderProperties->start();
    Q_EMIT refreshRequestedShaderProperties();
}

void OrvShaderView::onRefreshTimerShaderPropertiesTimeout()
{
    refreshShaderProperties();
}

void OrvShaderView::refreshShaderProperties()
{
    m_InputsPane->refresh();
}

void OrvShaderView::refreshShaderPropertiesForNewShaderInput(
    QString ShaderInputName, OrvSnBaseNode* ShaderInputNode)
{
    m_InputsPane->refreshForNewShaderInput(ShaderInputName, ShaderInputNode);
}

void OrvShaderView::clearShaderProperties()
{
    m_InputsPane->clear();
}

void OrvShaderView::updateShaderInputConnections()
{
    m_InputsPane->updateConnections();
}

void OrvShaderView::createChannel()
{
    m_InputsPane->createChannel();
}

void OrvShaderView::createMaterialChannel()
{
    m_InputsPane->createMaterialChannel();
}

void OrvShaderView::onToggledInvertShaderInput(bool Inverted)
{
    m_InputsPane->toggleInvert(Inverted);
}

void OrvShaderView::onSwitchInputEnabledChanged(bool Enabled)
{
    m_InputsPane->onSwitchInputEnabledChanged(Enabled);
}

void OrvShaderView::refreshPropertiesOf(const OrvSnBaseNode* pNode)
{
    const bool IsCurrent = pNode
        && pNode->network() == OrvShaderNetworkManager::instance().currentShaderNetwork()
        && pNode->hasTag(OrvSnNames::ShaderTag)
        && pNode == OrvLayerShaderManager::instance().currentShaderNode();
    if (IsCurrent)
        requestRefreshShaderProperties();
}

void OrvShaderView::onNodeInputEnabledChanged(OrvSnBaseNode* ShaderNode, QString, bool)
{
    refreshPropertiesOf(ShaderNode);
}

void OrvShaderView::onNodeInputConnectionChanged(QString, OrvSnBaseNode*, QString)
{
    refreshPropertiesOf(qobject_cast<OrvSnBaseNode*>(sender()));
}

void OrvShaderView::onGroupNodeInputNameChanged(OrvSnBaseNode* Node, QString, QString)
{
    refreshPropertiesOf(Node);
}

void OrvShaderView::onNodeInputOrderChanged(OrvShaderNetwork*, OrvSnBaseNode* Node)
{
    refreshPropertiesOf(Node);
}

void OrvShaderView::onNodeReconnected(OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode* Node)
{
    refreshPropertiesOf(Node);
}

// Commands

void OrvShaderView::currentProjectChanged(OrvProject* Project)
{
    updateActionEnablement(Project);
    if (!Project)
        clearShaderProperties();
    requestRefresh();
}

void OrvShaderView::updateActionEnablement(OrvProject* Project)
{
    m_AddButton->setEnabled(Project);
    m_TagActions->setEnabled(Project);
}

void OrvShaderView::addNewShader()
{
    if (QAction* pAction = OrvActionTreeManager::instance().findAction(AddShaderAction))
        pAction->trigger();
    else
        report(__LINE__, QStringLiteral("Unable to find action '%1'").arg(AddShaderAction));
}

void OrvShaderView::onMenuManagerActionAdded(QString RootMenu, QString SubMenu, QString, QAction* Action)
{
    m_ToolBar->addPublishedAction(RootMenu, SubMenu, Action);
}

void OrvShaderView::onMenuManagerActionRemoved(QString RootMenu, QString SubMenu, QString, QAction* Action)
{
    m_ToolBar->removePublishedAction(RootMenu, SubMenu, Action);
}

void OrvShaderView::contextMenuEvent(QContextMenuEvent* pEvent)
{
    const std::unique_ptr<QMenu> pMenu(OrvMenuManager::instance().makeMenu(
        OrvLayerViewContext::MainWindowName, OrvLayerViewContext::ShadersMenuTitle));
    if (pMenu)
        pMenu->exec(pEvent->globalPos());
}

#include "moc_OrvShaderView.cpp"
