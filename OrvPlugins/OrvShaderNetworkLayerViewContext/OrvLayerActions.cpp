#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActions.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Object/OrvClock.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActionStates.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerActionTable.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMethodRelay.h"

#include <QtGui/QClipboard>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>

#include <optional>

namespace {

const char File[] = "OrvLayerActions";

void report(int Line, const QString& Message)
{
    OrvDebug(File, Line, Message, false, false);
}

/// Null is reported under the name.
template <typename Target>
Target* checked(Target* pTarget, const char* pName, int Line)
{
    if (!pTarget)
        report(Line, QStringLiteral("%1 is NULL").arg(QLatin1String(pName)));
    return pTarget;
}

/// Data of any other type is reported: a text would convert to some number, too.
std::optional<int> numberIn(const QAction* pAction, int Line)
{
    if (!checked(pAction, "pAction", Line))
        return std::nullopt;
    const QVariant Data = pAction->data();
    const int Type = Data.userType();
    if (Type == QMetaType::Int || Type == QMetaType::UInt || Type == QMetaType::LongLong
        || Type == QMetaType::ULongLong)
        return Data.toInt();
    report(Line,
        QString::asprintf("Action '%s' contains invalid data type of '%s'", qUtf8Printable(pAction->text()),
            qUtf8Printable(QString::fromLatin1(Data.typeName()))));
    return std::nullopt;
}

OrvLayerView* layerViewAround(QWidget* pWidget)
{
    OrvLayerView* pLayerView = nullptr;
    for (; pWidget && !pLayerView; pWidget = pWidget->parentWidget())
        pLayerView = qobject_cast<OrvLayerView*>(pWidget);
    return pLayerView;
}

} // namespace

OrvLayerActions& OrvLayerActions::instance()
{
    static OrvLayerActions Instance;
    return Instance;
}

OrvLayerActions::OrvLayerActions()
{
    OrvLayerActionTable(this).createActions();
    connectHost();
    onCurrentLayerStackChanged(OrvLayerManager::instance().currentLayerStack());
}

void OrvLayerActions::connectHost()
{
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    OrvLayerManager* pLayers = &OrvLayerManager::instance();
    connect(
        pNetworks, SIGNAL(registeredNodePopulationChanged()), this, SLOT(createDynamicLayerCreationMenus()));
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
    connect(QGuiApplication::clipboard(), SIGNAL(dataChanged()), this, SLOT(switchActionsEnabled()),
        Qt::QueuedConnection);
    connect(pLayers, SIGNAL(refused(QString)), this, SLOT(showRefusal(const QString&)));
}

void OrvLayerActions::createDynamicLayerCreationMenus()
{
    OrvLayerActionTable(this).createLayerTypeActions();
}

void OrvLayerActions::switchActionsEnabled()
{
    OrvLayerActionStates().switchLayerActions();
}

void OrvLayerActions::onCurrentLayerStackChanged(OrvLayerStack*)
{
    // The argument came through the event queue; the stack may be gone by now.
    OrvLayerActionStates().switchStackActions();
    switchActionsEnabled();
}

void OrvLayerActions::onLayerStateRefreshed(OrvLayer* Layer)
{
    if (Layer && Layer == OrvLayerManager::instance().currentLayer())
        switchActionsEnabled();
}

void OrvLayerActions::invokeLayerViewMethod(QAction* Action)
{
    OrvMethodRelay::invoke(OrvLayerViewContextManager::instance().layerView(), "pLayerView", Action, File);
}

void OrvLayerActions::invokeLayerStackMethod(QAction* Action)
{
    OrvMethodRelay::invoke(
        OrvLayerManager::instance().currentLayerStack(), "pCurrentLayerStack", Action, File);
}

void OrvLayerActions::invokeLayerMethod(QAction* Action)
{
    OrvMethodRelay::invoke(OrvLayerManager::instance().currentLayer(), "pCurrentLayer", Action, File);
}

void OrvLayerActions::flattenLayerGroup()
{
    OrvLayer* pCurrentLayer = checked(OrvLayerManager::instance().currentLayer(), "pCurrentLayer", __LINE__);
    OrvLayerStack* pCurrentLayerStack
        = checked(OrvLayerManager::instance().currentLayerStack(), "pCurrentLayerStack", __LINE__);
    if (pCurrentLayer && pCurrentLayerStack)
        OrvLayerStreamUtils::flattenLayer(pCurrentLayer, pCurrentLayerStack, true);
}

void OrvLayerActions::maskConvertCurrent(QAction* Action)
{
    OrvLayer* pLayer = checked(OrvLayerManager::instance().currentLayer(), "pLayer", __LINE__);
    if (!pLayer)
        return;
    if (const std::optional<int> Depth = numberIn(Action, __LINE__))
        pLayer->convertMask(unsigned(*Depth));
}

void OrvLayerActions::maskResizeCurrent(QAction* Action)
{
    OrvLayer* pLayer = checked(OrvLayerManager::instance().currentLayer(), "pLayer", __LINE__);
    if (!pLayer)
        return;
    if (const std::optional<int> Size = numberIn(Action, __LINE__))
        pLayer->resizeMaskImageSets(OrvClock::currentFrame(), *Size, true, true);
}

void OrvLayerActions::layerResizeCurrent(QAction* Action)
{
    OrvLayer* pLayer = checked(OrvLayerManager::instance().currentLayer(), "pLayer", __LINE__);
    if (!pLayer)
        return;
    if (const std::optional<int> Size = numberIn(Action, __LINE__)) {
        const OrvUndoManager::AutoMacro Macro(tr("Resize Layer"));
        pLayer->resizeImageSets(OrvClock::currentFrame(), *Size, true, true);
    }
}

void OrvLayerActions::openLayerContentsInNodeGraph()
{
    if (OrvLayer* pCurrentLayer
        = checked(OrvLayerManager::instance().currentLayer(), "pCurrentLayer", __LINE__))
        OrvLayerStreamUtils::openLayerContentsInNodeGraph(pCurrentLayer);
}

void OrvLayerActions::shareLayersAsChannel()
{
    OrvLayerStack* pCurrentLayerStack
        = checked(OrvLayerManager::instance().currentLayerStack(), "CurrentLayerStack", __LINE__);
    if (!pCurrentLayerStack)
        return;
    const QList<OrvLayer*> Layers = pCurrentLayerStack->selectedLayers();
    if (Layers.isEmpty())
        showRefusal(tr("Select the layers to share as a channel"));
    else if (!pCurrentLayerStack->shareLayersAsChannel(Layers))
        showRefusal(
            tr("These layers cannot be shared: the look of an adjustment depends on what is below it"));
}

void OrvLayerActions::shareCurrentLayer()
{
    OrvLayerStack* pCurrentLayerStack
        = checked(OrvLayerManager::instance().currentLayerStack(), "pCurrentLayerStack", __LINE__);
    OrvLayer* pCurrentLayer = checked(OrvLayerManager::instance().currentLayer(), "pCurrentLayer", __LINE__);
    if (!pCurrentLayerStack || !pCurrentLayer)
        return;
    if (!pCurrentLayerStack->shareLayer(pCurrentLayer, OrvLayerViewContext::NewLayerFlags))
        showRefusal(tr("'%1' cannot be shared here").arg(pCurrentLayer->name()));
}

void OrvLayerActions::makeSharedShaderInputCurrent()
{
    const OrvLayer* pCurrentLayer
        = checked(OrvLayerManager::instance().currentLayer(), "pCurrentLayer", __LINE__);
    OrvShaderInput* pShaderInput = pCurrentLayer ? pCurrentLayer->sharedShaderInput() : nullptr;
    if (pShaderInput)
        OrvShaderInputManager::instance().makeShaderInputCurrent(pShaderInput, true);
}

OrvLayerView* OrvLayerActions::layerViewInUse()
{
    // The key works over a layer tree, whatever has the focus; from a menu neither need lead to one.
    if (OrvLayerView* pFocused = layerViewAround(QApplication::focusWidget()))
        return pFocused;
    if (OrvLayerView* pUnderCursor = layerViewAround(QApplication::widgetAt(QCursor::pos())))
        return pUnderCursor;
    return OrvLayerViewContextManager::instance().layerView();
}

void OrvLayerActions::quickFind()
{
    OrvLayerView* pLayerView = checked(layerViewInUse(), "pLayerView", __LINE__);
    if (!pLayerView)
        return;
    const OrvLayerStack* pLayerStack = pLayerView->layerStack();
    const QString Name = pLayerStack ? pLayerStack->name() : QString();
    report(__LINE__,
        QString::asprintf(
            "[ -- ] quickfind %p %s", static_cast<const void*>(pLayerView), qUtf8Printable(Name)));
    pLayerView->quickFind();
}

void OrvLayerActions::showRefusal(const QString& Reason)
{
    OrvLayerViewUtils::tell(Reason);
}

#include "moc_OrvLayerActions.cpp"
