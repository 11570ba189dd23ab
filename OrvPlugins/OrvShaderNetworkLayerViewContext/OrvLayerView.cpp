#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Menus/OrvMenuManager.h"
#include "OrvCoreModules/Widgets/OrvDeferredTimer.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvPalette.h"
#include "OrvCoreModules/Window/OrvPaletteManager.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerBlendRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerCreationMenus.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerKeyCommands.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerPropertiesArea.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRows.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackChanges.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerToolBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeEmptyText.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewFilterBar.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewHostSignals.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerVisibilityGesture.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayersPane.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMultiChannelLayerCommands.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteSplitter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderLayerCommands.h"

#include <QtCore/QTimer>
#include <QtGui/QContextMenuEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

using OrvLayerViewUtils::report;

namespace {

constexpr int ParentCloseDelay = 20; // ms
const QSize DedicatedSize(360, 480);

/// Whether what the stack shows reaches a shader that the user made.
bool feedsUserShader(const OrvLayerStack* pLayerStack)
{
    OrvMultiChannelLayerUtils::DownstreamShaders Fed;
    OrvShaderNetworkUtils::OrvNodeWalker::walk(pLayerStack->topNode(), Fed);
    const QVector<OrvSnBaseNode*>& Shaders = Fed.shaderNodes();
    return std::any_of(Shaders.cbegin(), Shaders.cend(), [](const OrvSnBaseNode* pShader) {
        return !OrvLayerShaderManager::instance().isSystemShaderNode(pShader, false);
    });
}

} // namespace

OrvLayerView::OrvLayerView(QWidget* pParent, int Flags)
    : QWidget(pParent)
    , m_Palette(qobject_cast<OrvPalette*>(pParent))
    , m_IsDedicated(Flags & DedicatedStack)
{
    auto* pSplitter = new OrvPaletteSplitter(QStringLiteral("LayerView"), this);
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(pSplitter);
    auto* pLayersPane = new OrvLayersPane(this);
    m_BlendRow = pLayersPane->blendRow();
    m_Model = pLayersPane->model();
    m_View = pLayersPane->treeView();
    m_ToolBar = pLayersPane->toolBar();
    // The palette of a single stack is about its layers' contents; blending has its row above.
    m_PropertiesArea = new OrvLayerPropertiesArea(this,
        m_IsDedicated ? OrvLayerPropertiesArea::BlendNode::LeftOut
                      : OrvLayerPropertiesArea::BlendNode::Shown);
    pSplitter->setPanes(pLayersPane, m_PropertiesArea);
    m_Rows = std::make_unique<OrvLayerRows>(this, pLayersPane->filterBar());
    m_EmptyText = new OrvLayerTreeEmptyText(this, pLayersPane->filterBar());
    m_StackChanges = new OrvLayerStackChanges(this);
    m_VisibilityGesture = new OrvLayerVisibilityGesture(this);
    m_Commands = std::make_unique<OrvLayerViewCommands>(this);
    m_ShaderLayerCommands = std::make_unique<OrvShaderLayerCommands>(this, m_Commands.get());
    m_MultiChannelCommands = std::make_unique<OrvMultiChannelLayerCommands>(this, m_Commands.get());
    m_RefreshTimer = new OrvDeferredTimer(OrvLayerViewContext::RefreshInterval, this);
    connectParts(pLayersPane->filterBar());
    OrvLayerViewHostSignals::connectTo(this);
    registerShortcuts();
    switchActionsEnabled(OrvProjectManager::instance().currentProject());
    clearProperties();
    m_EmptyText->update();
}

OrvLayerView::~OrvLayerView() = default;

void OrvLayerView::connectParts(const OrvLayerViewFilterBar* pFilterBar)
{
    connect(pFilterBar, SIGNAL(filterChanged()), this, SLOT(updateItemTreeFilteredStates()));
    connectTreeRelays();
    connect(m_View, SIGNAL(expanded(QModelIndex)), this, SLOT(onExpanded(QModelIndex)));
    connect(m_View, SIGNAL(collapsed(QModelIndex)), this, SLOT(onCollapsed(QModelIndex)));
    connect(m_RefreshTimer, SIGNAL(timedOut()), this, SLOT(onRefreshTimerTimeout()));
}

void OrvLayerView::connectTreeRelays()
{
    m_View->connectSelectionRelay();
    connect(m_View, SIGNAL(currentIndexChanged(QModelIndex, QModelIndex)), this,
        SLOT(onCurrentIndexChanged(QModelIndex)), Qt::UniqueConnection);
}

void OrvLayerView::disconnectTreeRelays()
{
    m_View->disconnectSelectionRelay();
    disconnect(m_View, SIGNAL(currentIndexChanged(QModelIndex, QModelIndex)), this,
        SLOT(onCurrentIndexChanged(QModelIndex)));
}

void OrvLayerView::registerShortcuts()
{
    OrvActionHelpers::createAndRegisterShortcut(
        m_View, QKeySequence(Qt::Key_Delete), SLOT(removeLayers()), this);
    OrvActionHelpers::createAndRegisterShortcut(
        m_View, QKeySequence(Qt::CTRL + Qt::Key_X), SLOT(cut()), this);
    OrvActionHelpers::createAndRegisterShortcut(
        m_View, QKeySequence(Qt::CTRL + Qt::Key_C), SLOT(copy()), this);
    OrvActionHelpers::createAndRegisterShortcut(
        m_View, QKeySequence(Qt::CTRL + Qt::Key_V), SLOT(paste()), this);
    new OrvLayerKeyCommands(this);
}

OrvLayerStack* OrvLayerView::layerStack() const
{
    return m_LayerStack;
}

void OrvLayerView::setLayerStack(OrvLayerStack* pLayerStack)
{
    if (m_LayerStack == pLayerStack)
        return;
    m_LayerStack = pLayerStack;
    requestRefresh();
    m_EmptyText->hide();
    Q_EMIT layerStackChanged(pLayerStack);
}

QSize OrvLayerView::sizeHint() const
{
    // A palette of its own opens with some rows in sight, and with all of its tool bar.
    return m_IsDedicated ? QWidget::sizeHint().expandedTo(DedicatedSize) : QWidget::sizeHint();
}

void OrvLayerView::makeLayerStackCurrent()
{
    OrvLayerManager::instance().setCurrentLayerStack(m_LayerStack);
}

void OrvLayerView::makeActive()
{
    OrvLayerViewContextManager::instance().setActiveLayerView(this);
    makeLayerStackCurrent();
}

void OrvLayerView::setDragEnabled(bool Enabled)
{
    m_View->setDragEnabled(Enabled);
}

OrvPalette* OrvLayerView::parentPalette()
{
    return m_Palette;
}

OrvLayer* OrvLayerView::layerFromIndex(const QModelIndex& Index) const
{
    return m_Model->layerFromIndex(Index);
}

OrvLayerViewItemRowWidget* OrvLayerView::rowWidget(const QModelIndex& Index) const
{
    return m_Rows->rowWidget(Index);
}

void OrvLayerView::renameCurrentLayer()
{
    m_Rows->editCurrentName();
}

// Refresh

void OrvLayerView::requestRefresh()
{
    if (!m_RefreshTimer) {
        report(__LINE__, "m_RefreshTimer is NULL");
        return;
    }
    m_RefreshTimer->start();
    Q_EMIT refreshRequested();
}

void OrvLayerView::clearAndRefresh()
{
    // Rows that go must not take their layers' selection along.
    disconnectTreeRelays();
    m_Rows->clear();
    refresh();
}

void OrvLayerView::refresh()
{
    const OrvStatusManager::AutoProgress Progress(tr("Refreshing Layer View"), 100, 0, 1);
    m_RefreshTimer->stop();
    m_StackChanges->forget();
    disconnectTreeRelays();

    OrvLayerStack* pLayerStack = stackToShow();
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    m_ToolBar->setMultiChannelLayerEnabled(pLayerStack
        && !OrvLayerShaderManager::instance().getUserLayerShaders(pNetwork).isEmpty()
        && feedsUserShader(pLayerStack));
    if (pLayerStack) {
        showStack(pLayerStack);
    } else {
        m_Rows->clear();
        clearProperties();
    }
    m_EmptyText->update();
    connectTreeRelays();
}

OrvLayerStack* OrvLayerView::stackToShow() const
{
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    const bool HasChannels
        = pNetwork && !OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork).isEmpty();
    return HasChannels ? m_LayerStack : nullptr;
}

void OrvLayerView::showStack(OrvLayerStack* pLayerStack)
{
    const auto* pShaderInput = qobject_cast<OrvShaderInput*>(pLayerStack);
    m_ToolBar->showCommandsOf(pShaderInput && pShaderInput->isMaterialStack()
            ? OrvLayerToolBar::StackKind::Material
            : OrvLayerToolBar::StackKind::Ordinary);
    m_Rows->showStack(pLayerStack);
    if (pLayerStack->layerList().isEmpty())
        clearProperties();
    else
        refreshProperties();
}

void OrvLayerView::onLayerStateRefreshed()
{
    if (!OrvLayerManager::instance().inBatchLayerStateRefresh())
        requestRefresh();
}

void OrvLayerView::onProjectClosing()
{
    if (m_LayerStack)
        setLayerStack(nullptr);
    refresh();
}

void OrvLayerView::onNodeReconnected(OrvShaderNetwork*, QString InputName, OrvSnBaseNode* Node,
    OrvSnBaseNode* NewInputNode, OrvSnBaseNode* OldInputNode)
{
    m_StackChanges->noteReconnection(InputName, Node, NewInputNode, OldInputNode);
}

void OrvLayerView::onNodeChanged(OrvSnBaseNode* Node)
{
    if (Node)
        m_StackChanges->noteChange(Node);
    else if (m_LayerStack)
        requestRefresh();
}

bool OrvLayerView::isRefreshPending() const
{
    return m_RefreshTimer->isActive();
}

// Current row and properties

void OrvLayerView::changeCurrentIndex(OrvLayer* Layer)
{
    m_Rows->makeCurrent(Layer);
}

void OrvLayerView::onCurrentIndexChanged(QModelIndex Current)
{
    OrvLayer* pLayer = layerFromIndex(Current);
    OrvLayer* pCurrentLayer = OrvLayerManager::instance().currentLayer();
    if (pLayer != pCurrentLayer) {
        if (pCurrentLayer)
            disconnect(pCurrentLayer, nullptr, this, nullptr);
        if (pLayer)
            pLayer->makeCurrent(false, false);
    } else if (pLayer) {
        // The host was there first, and may have selected other layers for it.
        requestRefresh();
    }
    updateComponentButtons(pLayer);
    redrawProperties();
}

void OrvLayerView::updateComponentButtons(OrvLayer* pLayer)
{
    m_Rows->updateComponentButtons(pLayer);
}

void OrvLayerView::onExpanded(QModelIndex Index)
{
    m_Rows->keepExpanded(Index, true);
}

void OrvLayerView::onCollapsed(QModelIndex Index)
{
    m_Rows->keepExpanded(Index, false);
}

void OrvLayerView::redrawProperties()
{
    if (!OrvApplication::isInitialized())
        return;
    OrvLayer* pLayer = m_Rows->currentLayer();
    m_BlendRow->showLayer(pLayer, m_LayerStack);
    m_PropertiesArea->showLayer(pLayer);
}

void OrvLayerView::refreshProperties()
{
    OrvLayer* pLayer = m_Rows->currentLayer();
    // Editors that are in use outlive a refresh: the user may be dragging one of their sliders.
    if (!pLayer || !m_BlendRow->shows(pLayer, m_LayerStack)) {
        redrawProperties();
        return;
    }
    m_BlendRow->refresh();
    m_PropertiesArea->refresh(pLayer);
}

void OrvLayerView::clearProperties()
{
    m_BlendRow->clear();
    m_PropertiesArea->clear();
}

QList<QPointer<QWidget>> OrvLayerView::createPropertyWidgets(OrvLayer* Layer, QWidget* Parent)
{
    return m_PropertiesArea->createEditors(Layer, Parent);
}

void OrvLayerView::onUserAttributeChanged(OrvCustomAttribute Attribute)
{
    m_BlendRow->followAttribute(Attribute);
}

void OrvLayerView::showAdvancedBlendingOptions()
{
    m_BlendRow->showAdvancedOptions();
}

void OrvLayerView::onAdvancedBlendingChanged(bool Enabled)
{
    m_BlendRow->setAdvancedIcon(Enabled);
}

void OrvLayerView::onBlendAmountChanged(bool Enabled)
{
    if (m_BlendRow->layer())
        m_BlendRow->setAmountEnabled(Enabled);
}

void OrvLayerView::onPassThroughChecked(bool PassThrough)
{
    m_Commands->setPassThrough(m_BlendRow->layer(), PassThrough);
}

// Commands

void OrvLayerView::addAdjustmentLayerFromAction()
{
    if (const QAction* pAction = sendingAction())
        addAdjustmentLayerFromKey(pAction->data().toString());
}

void OrvLayerView::addAdjustmentStackFromAction()
{
    if (const QAction* pAction = sendingAction())
        m_Commands->addStackAdjustment(pAction->data().toString());
}

void OrvLayerView::createCustomProceduralLayerMenu(
    QMenu* Root, QHash<QString, QMenu*>& Menus, QMap<QString, QPair<QString, QIcon>> ResultMap)
{
    OrvLayerCreationMenus::addCustomProcedurals(this, Root, Menus, ResultMap);
}

void OrvLayerView::addCustomProceduralLayerFromAction()
{
    if (const QAction* pAction = sendingAction())
        m_Commands->addCustomProceduralLayer(pAction->data().toString());
}

void OrvLayerView::createMultiChannelLayerMenu()
{
    m_MultiChannelCommands->chooseLayer();
}

void OrvLayerView::addMultiChannelGroup()
{
    m_MultiChannelCommands->addGroup();
}

void OrvLayerView::addMaterialLayerFromAction()
{
    if (const QAction* pAction = sendingAction())
        m_MultiChannelCommands->addMaterial(pAction->data().toString());
}

void OrvLayerView::addProceduralLayerFromAction()
{
    if (const QAction* pAction = sendingAction())
        addProceduralLayerFromKey(pAction->data().toString());
}

void OrvLayerView::addShaderLayer()
{
    m_ShaderLayerCommands->addShaderLayer();
}

void OrvLayerView::addShaderLayerFromAction()
{
    m_ShaderLayerCommands->addChosenShader(sender());
}

void OrvLayerView::addShaderLayerFromKey(QString Key)
{
    m_ShaderLayerCommands->addShaderLayer(Key);
}

void OrvLayerView::onToggledInvertShaderInput(bool State)
{
    m_ShaderLayerCommands->setInputInverted(sender(), State);
}

const QAction* OrvLayerView::sendingAction() const
{
    const auto* pAction = qobject_cast<const QAction*>(sender());
    if (!pAction)
        report(__LINE__, "pAction is NULL");
    return pAction;
}

void OrvLayerView::updateItemTreeFilteredStates(QStandardItem* pRootItem)
{
    m_Rows->filter(pRootItem);
}

void OrvLayerView::updateItemTreeFilteredStates()
{
    updateItemTreeFilteredStates(m_Model->invisibleRootItem());
    m_EmptyText->update();
}

void OrvLayerView::switchActionsEnabled(OrvProject* Project)
{
    m_ToolBar->setCommandsEnabled(Project);
}

void OrvLayerView::onMenuManagerActionAdded(QString RootMenu, QString SubMenu, QString, QAction* Action)
{
    m_ToolBar->addPublishedAction(RootMenu, SubMenu, Action);
}

void OrvLayerView::onMenuManagerActionRemoved(QString RootMenu, QString SubMenu, QString, QAction* Action)
{
    m_ToolBar->removePublishedAction(RootMenu, SubMenu, Action);
}

void OrvLayerView::contextMenuEvent(QContextMenuEvent* pEvent)
{
    if (!m_LayerStack)
        return;
    const std::unique_ptr<QMenu> pMenu(OrvMenuManager::instance().makeMenu(
        QStringLiteral("CollectionContext"), QStringLiteral("OrvLayer"), QString()));
    if (!pMenu)
        return;
    if (OrvSettings::isDevToolEnabled()) {
        pMenu->addSeparator();
        pMenu->addAction(tr("Refresh Layer View"), this, SLOT(clearAndRefresh()));
    }
    makeLayerStackCurrent();
    pMenu->exec(pEvent->globalPos());
}

void OrvLayerView::closeEvent(QCloseEvent* pEvent)
{
    QWidget::closeEvent(pEvent);
    // A view popped up by a view that was popped up itself: with it may go the one below.
    auto* pParentView = qobject_cast<OrvLayerView*>(parentWidget());
    if (pParentView && qobject_cast<OrvLayerView*>(pParentView->parentWidget()))
        QTimer::singleShot(ParentCloseDelay, pParentView, SLOT(closeIfNotUnderMouse()));
}

void OrvLayerView::closeIfNotUnderMouse()
{
    const QWidget* pWidget = QApplication::topLevelAt(QCursor::pos());
    if (pWidget != this)
        close();
}

void OrvLayerView::onUnrepresentableButtonClicked()
{
    OrvPalette* pPalette = OrvPaletteManager::find(QStringLiteral("Node Graph"));
    if (!pPalette)
        return;
    if (!pPalette->isVisible())
        pPalette->show();
    pPalette->raise();
}

#include "moc_OrvLayerView.cpp"
