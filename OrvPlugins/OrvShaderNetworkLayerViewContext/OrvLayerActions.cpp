#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Menus/OrvActionCreator.h"
#include "OrvCoreModules/Menus/OrvActionHelpers.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMethodRelay.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>

using namespace OrvLayerViewContext;

namespace {

const char File[] = "OrvLayerActions";
const char* const ViewRelay = SLOT(invokeLayerViewMethod(QAction*));
const char* const StackRelay = SLOT(invokeLayerStackMethod(QAction*));
const char* const LayerRelay = SLOT(invokeLayerMethod(QAction*));

void report(int Line, const char* Message) { OrvDebug(File, Line, QString::fromLatin1(Message), false, false); }

QVariant withCreateFlags(const QString& Method)
{
    return QVariantList{Method, QVariant::fromValue(OrvLayerCreateFlags(30))};
}

void setEnabled(const QString& Path, const QStringList& Texts, bool Enabled)
{
    for (const QString& Text : Texts)
        OrvActionHelpers::setActionEnabled(Path + QLatin1Char('/') + Text, Enabled);
}

} // namespace

OrvLayerActions& OrvLayerActions::instance()
{
    static OrvLayerActions Instance;
    return Instance;
}

OrvLayerActions::OrvLayerActions()
{
    createLayerActions();
    createMaskActions();
    createAdjustmentStackActions();
    createSharingActions();
    createDynamicLayerCreationMenus();
    createQuickFind();
    connectHost();
    onCurrentLayerStackChanged(OrvLayerManager::instance().currentLayerStack());
}

void OrvLayerActions::createLayerActions()
{
    OrvActionCreator Creator(LayersPath, this, LayersMenu, LayersOnlySet);
    Creator.create(tr("Add New Layer"), "AddPaintLayer.png", ViewRelay, "addNewLayer", QString());
    Creator.create(tr("Cut"), "Cut.png", StackRelay, "cutToClipboard", QString());
    Creator.create(tr("Copy"), "Copy.png", StackRelay, "copyToClipboard", QString());
    Creator.create(tr("Paste"), "Paste.png", ViewRelay, "paste", QString());
    Creator.create(tr("Remove Layers"), "DeleteLayer.png", StackRelay, "deleteLayers", QString());
    Creator.create(tr("Merge Layers"), "AddPaintLayer.png", StackRelay, withCreateFlags("mergeLayers"), QString());
    Creator.create(
        tr("Add Empty Layer Group"), "AddLayerGroup.png", StackRelay, withCreateFlags("createGroupLayer"), QString());
    Creator.create(tr("Group Layers"), "AddLayerGroup.png", ViewRelay, withCreateFlags("groupLayers"), QString());
    Creator.create(tr("Ungroup Layers"), "RemoveLayerGroup.png", StackRelay, "ungroupLayers", QString());
}

void OrvLayerActions::createMaskActions()
{
    OrvActionCreator Creator(MaskPath, this, LayerMaskMenu, LayersOnlySet);
    Creator.create(tr("Reveal All"), "ShowAll.png", LayerRelay, "addMaskImageSet", QString());
    Creator.create(tr("Hide All"), "Hide.png", LayerRelay, "addMaskImageSetAndFillBlack", QString());
    Creator.setActionPath(LayersPath);
    Creator.create(tr("Make Mask Stack"), "Mask.png", LayerRelay, "convertMaskToMaskStack", QString());
    Creator.create(tr("Remove Mask"), "Mask.png", LayerRelay, "deleteMask", QString());
    Creator.create(tr("Enable Mask"), "Mask.png", LayerRelay, QVariantList{"setMaskEnabled", true}, QString());
    Creator.create(
        tr("Disable Mask"), "ToggleMaskPreview.png", LayerRelay, QVariantList{"setMaskEnabled", false}, QString());
}

void OrvLayerActions::createAdjustmentStackActions()
{
    OrvActionCreator Creator(AdjustmentStackPath, this, AdjustmentStackMenu, LayersOnlySet);
    Creator.create(tr("Remove Adjustment Stack"), QString(), LayerRelay, "removeLayerAdjustment", QString());
    Creator.create(tr("Enable Adjustment Stack"), QString(), LayerRelay, "enableAdjustmentStack", QString());
    Creator.create(tr("Disable Adjustment Stack"), QString(), LayerRelay, "disableAdjustmentStack", QString());
}

void OrvLayerActions::createSharingActions()
{
    OrvActionCreator Creator(LayersPath, this, LayersMenu, LayersOnlySet);
    Creator.create(tr("Open Layer Contents in Node Graph"), QString(), SLOT(openLayerContentsInNodeGraph()),
        QVariant(), QString());
    Creator.setMenuPath(SharingMenu);
    Creator.create(tr("Share Layer"), QString(), SLOT(shareCurrentLayer()), QVariant(), QString());
    Creator.create(
        tr("Make Shared Channel Current"), QString(), SLOT(makeSharedShaderInputCurrent()), QVariant(), QString());
}

void OrvLayerActions::createQuickFind()
{
    QAction* pAction = new QAction(tr("Quick Find"), this);
    OrvActionTreeManager::instance().registerAction(LayersPath + QLatin1Char('/'), pAction);
    connect(pAction, SIGNAL(triggered()), this, SLOT(quickFind()));
    OrvShortcutManager::instance().addShortcutGroupMapping(QStringLiteral("Layers"), QStringLiteral("OrvLayerView"));
}

void OrvLayerActions::createDynamicLayerCreationMenus()
{
    const QStringList Adjustments{QStringLiteral("Filter")};
    createLayerTypeActions(AdjustmentPath, LayersAdjustmentOnlySet, AddAdjustmentLayerMenu, Adjustments,
        "addAdjustmentLayerFromKey", ViewRelay, "AddAdjustmentLayer.png");
    createLayerTypeActions(ProceduralPath, LayersProceduralOnlySet, AddProceduralLayerMenu,
        OrvLayerUtils::getProceduralLayerGroups(), "addProceduralLayerFromKey", ViewRelay, "AddProceduralLayer.png");
    createLayerTypeActions(AdjustmentStackPath, LayersAdjustmentStackOnlySet,
        AdjustmentStackMenu + QStringLiteral("/Add Adjustment Stack"), Adjustments, "addLayerAdjustmentLayerFromKey",
        LayerRelay, "AddAdjustmentLayer.png");
}

void OrvLayerActions::createLayerTypeActions(const QString& ActionPath, const QString& SetName,
    const QString& MenuPath, const QStringList& Groups, const QString& Method, const char* pRelay,
    const QString& Icon)
{
    const OrvShaderNetworkManager& NetworkManager = OrvShaderNetworkManager::instance();
    const OrvActionTreeManager& ActionTree = OrvActionTreeManager::instance();
    OrvActionCreator Creator(ActionPath, this, MenuPath, SetName);
    for (const QString& Key : NetworkManager.layerPathKeys()) {
        const QString NodePath = NetworkManager.nodeMenuPath(Key);
        if (!Groups.contains(NodePath.section(QLatin1Char('/'), 0, 0)))
            continue;
        if (!ActionTree.hasAction(ActionPath + QLatin1Char('/') + NodePath))
            Creator.createAndAddToMenuWithHierarchy(NodePath, Icon, pRelay, QVariantList{Method, Key}, QString());
    }
}

void OrvLayerActions::connectHost()
{
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    OrvLayerManager* pLayers = &OrvLayerManager::instance();
    connect(pNetworks, SIGNAL(registeredNodePopulationChanged()), this, SLOT(createDynamicLayerCreationMenus()));
    connect(&OrvProjectManager::instance(), SIGNAL(onMakeProjectCurrent(OrvProject*)), this,
        SLOT(switchActionsEnabled()), Qt::QueuedConnection);
    connect(pLayers, SIGNAL(currentLayerChanged(OrvLayer*)), this, SLOT(switchActionsEnabled()),
        Qt::QueuedConnection);
    connect(pNetworks, SIGNAL(nodeBlockedChanged(OrvSnBaseNode*, bool)), this, SLOT(switchActionsEnabled()),
        Qt::QueuedConnection);
    connect(pNetworks, SIGNAL(nodeEnabledChanged(OrvSnBaseNode*, int)), this, SLOT(switchActionsEnabled()),
        Qt::QueuedConnection);
    connect(pNetworks, SIGNAL(nodeLockedChanged(OrvSnBaseNode*, bool)), this, SLOT(switchActionsEnabled()),
        Qt::QueuedConnection);
    connect(pNetworks, SIGNAL(nodeCacheActiveChanged(OrvSnBaseNode*, OrvSnBaseNodeCacheActiveState)), this,
        SLOT(switchActionsEnabled()), Qt::QueuedConnection);
    connect(pLayers, SIGNAL(currentLayerStackChanged(OrvLayerStack*)), this,
        SLOT(onCurrentLayerStackChanged(OrvLayerStack*)), Qt::QueuedConnection);
    connect(pLayers, SIGNAL(layerStateRefreshed(OrvLayer*)), this, SLOT(onLayerStateRefreshed(OrvLayer*)),
        Qt::QueuedConnection);
}

void OrvLayerActions::invokeLayerViewMethod(QAction* Action)
{
    OrvMethodRelay::invoke(OrvLayerViewContextManager::instance().layerView(), "pLayerView", Action, File);
}

void OrvLayerActions::invokeLayerStackMethod(QAction* Action)
{
    OrvMethodRelay::invoke(OrvLayerManager::instance().currentLayerStack(), "pCurrentLayerStack", Action, File);
}

void OrvLayerActions::invokeLayerMethod(QAction* Action)
{
    OrvMethodRelay::invoke(OrvLayerManager::instance().currentLayer(), "pCurrentLayer", Action, File);
}

void OrvLayerActions::openLayerContentsInNodeGraph()
{
    if (OrvLayer* pCurrentLayer = OrvLayerManager::instance().currentLayer())
        OrvLayerStreamUtils::openLayerContentsInNodeGraph(pCurrentLayer);
    else
        report(__LINE__, "pCurrentLayer is NULL");
}

void OrvLayerActions::shareCurrentLayer()
{
    OrvLayerStack* pCurrentLayerStack = OrvLayerManager::instance().currentLayerStack();
    OrvLayer* pCurrentLayer = OrvLayerManager::instance().currentLayer();
    if (!pCurrentLayerStack)
        report(__LINE__, "pCurrentLayerStack is NULL");
    else if (!pCurrentLayer)
        report(__LINE__, "pCurrentLayer is NULL");
    else
        pCurrentLayerStack->shareLayer(pCurrentLayer, OrvLayerCreateFlags(30));
}

void OrvLayerActions::makeSharedShaderInputCurrent()
{
    const OrvLayer* pCurrentLayer = OrvLayerManager::instance().currentLayer();
    if (!pCurrentLayer) {
        report(__LINE__, "pCurrentLayer is NULL");
        return;
    }
    if (OrvShaderInput* pShaderInput = pCurrentLayer->sharedShaderInput())
        OrvShaderInputManager::instance().makeShaderInputCurrent(pShaderInput, true);
}

void OrvLayerActions::onCurrentLayerStackChanged(OrvLayerStack*)
{
    // The argument came through the event queue; the stack may be gone by now.
    const bool HasStack = OrvLayerManager::instance().currentLayerStack() != nullptr;
    setEnabled(LayersPath,
        {tr("Add New Layer"), tr("Cut"), tr("Copy"), tr("Paste"), tr("Remove Layers"), tr("Merge Layers"),
            tr("Add Empty Layer Group"), tr("Group Layers")},
        HasStack);
    OrvActionTreeManager& ActionTree = OrvActionTreeManager::instance();
    ActionTree.setActionSetEnabled(LayersAdjustmentOnlySet, HasStack);
    ActionTree.setActionSetEnabled(LayersProceduralOnlySet, HasStack);
    OrvActionHelpers::setMenuEnabled(AddAdjustmentLayerMenu, HasStack);
    OrvActionHelpers::setMenuEnabled(AddProceduralLayerMenu, HasStack);
    switchActionsEnabled();
}

void OrvLayerActions::onLayerStateRefreshed(OrvLayer* Layer)
{
    if (Layer == OrvLayerManager::instance().currentLayer())
        switchActionsEnabled();
}

void OrvLayerActions::switchActionsEnabled()
{
    const OrvLayerManager& LayerManager = OrvLayerManager::instance();
    const OrvLayer* pLayer
        = OrvProjectManager::instance().currentProject() ? LayerManager.currentLayer() : nullptr;
    const OrvLayerStack* pLayerStack = LayerManager.currentLayerStack();
    const bool Modifiable = pLayer && pLayer->isModifiable() && !pLayer->isBakePointLayer();

    setEnabled(LayersPath, {tr("Ungroup Layers")},
        Modifiable && pLayerStack && OrvLayerStreamUtils::isLayerGroup(pLayer, pLayerStack));
    setEnabled(LayersPath, {tr("Open Layer Contents in Node Graph")}, pLayer != nullptr);

    const bool HasMask = Modifiable && pLayer->hasMask();
    OrvActionHelpers::setMenuEnabled(LayerMaskMenu, Modifiable);
    setEnabled(MaskPath, {tr("Reveal All"), tr("Hide All")}, Modifiable && !HasMask);
    setEnabled(LayersPath, {tr("Make Mask Stack")}, HasMask && !pLayer->hasMaskStack());
    setEnabled(LayersPath, {tr("Remove Mask")}, HasMask);
    setEnabled(LayersPath, {tr("Enable Mask")}, HasMask && !pLayer->isMaskEnabled());
    setEnabled(LayersPath, {tr("Disable Mask")}, HasMask && pLayer->isMaskEnabled());

    const bool TakesAdjustmentStack
        = Modifiable && !pLayer->isAdjustmentLayer() && pLayer->canHaveAdjustmentStack();
    const bool HasAdjustmentStack = TakesAdjustmentStack && pLayer->hasAdjustmentStack();
    OrvActionHelpers::setMenuEnabled(AdjustmentStackMenu, TakesAdjustmentStack);
    OrvActionTreeManager::instance().setActionSetEnabled(LayersAdjustmentStackOnlySet, TakesAdjustmentStack);
    setEnabled(AdjustmentStackPath, {tr("Remove Adjustment Stack")}, HasAdjustmentStack);
    setEnabled(AdjustmentStackPath, {tr("Enable Adjustment Stack")},
        HasAdjustmentStack && !pLayer->isAdjustmentStackEnabled());
    setEnabled(AdjustmentStackPath, {tr("Disable Adjustment Stack")},
        HasAdjustmentStack && pLayer->isAdjustmentStackEnabled());

    const bool Shareable = Modifiable && !OrvLayerStreamUtils::isMultiChannelMergeLayer(pLayer);
    OrvActionHelpers::setMenuEnabled(SharingMenu, Shareable);
    setEnabled(LayersPath, {tr("Share Layer")}, Shareable);
    setEnabled(LayersPath, {tr("Make Shared Channel Current")}, Shareable && pLayer->isSharedShaderInput());
}

void OrvLayerActions::quickFind()
{
    QWidget* pWidget = QApplication::focusWidget();
    if (!pWidget)
        pWidget = QApplication::widgetAt(QCursor::pos());
    OrvLayerView* pLayerView = nullptr;
    for (; pWidget && !pLayerView; pWidget = pWidget->parentWidget())
        pLayerView = qobject_cast<OrvLayerView*>(pWidget);
    if (!pLayerView)
        return;
    const OrvLayerStack* pLayerStack = pLayerView->layerStack();
    const QByteArray Name = pLayerStack ? pLayerStack->name().toLocal8Bit() : QByteArray();
    OrvDebug(File, __LINE__,
        QString::asprintf("[ -- ] quickfind %p %s", static_cast<void*>(pLayerView), Name.constData()), false, false);
    pLayerView->quickFind();
}

#include "moc_OrvLayerActions.cpp"
