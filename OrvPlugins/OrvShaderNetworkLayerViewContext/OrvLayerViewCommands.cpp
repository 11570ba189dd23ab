#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewCommands.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Widgets/OrvBasicColorSwatch.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"
#include "OrvCoreModules/Widgets/OrvNodeQuickFind.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerCreationMenus.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvTagColorSwatch.h"

#include <QtCore/QPointer>
#include <QtGui/QCursor>
#include <QtWidgets/QApplication>

#include <algorithm>

using OrvLayerViewUtils::report;
using OrvLayerViewUtils::tell;
using OrvLayerViewUtils::warn;

namespace {

constexpr int PastedLayerFlags = OrvLayerViewContext::NewLayerFlags & ~OrvLayerUniqueName;

const QString SettingsGroup = QStringLiteral("LayerView");

bool startsWithAny(const QString& Path, const QStringList& Prefixes)
{
    return std::any_of(Prefixes.cbegin(), Prefixes.cend(),
        [&Path](const QString& Prefix) { return Path.startsWith(Prefix); });
}

/// Says why not.
bool isModifiable(const OrvLayer* pLayer)
{
    const QString Obstacle = OrvEditObstacle::ofSharers(pLayer);
    if (!Obstacle.isEmpty())
        tell(Obstacle);
    return Obstacle.isEmpty();
}

} // namespace

OrvLayerViewCommands::OrvLayerViewCommands(OrvLayerView* pLayerView)
    : m_LayerView(pLayerView)
{
}

OrvLayerStack* OrvLayerViewCommands::layerStack(int Line) const
{
    if (!m_LayerView->layerStack()) {
        report(Line, "pLayerStack is NULL");
        const OrvShaderInput* pChannel = OrvShaderInputManager::instance().currentShaderInput();
        tell(pChannel && pChannel->isMaterialStack()
                ? OrvLayerView::tr("'%1' holds shader layers: work on them in the Shaders palette")
                      .arg(pChannel->name())
                : OrvLayerView::tr("There are no layers to work on: add or choose a channel first"));
    }
    return m_LayerView->layerStack();
}

OrvLayer* OrvLayerViewCommands::currentLayer(int Line) const
{
    const OrvLayerStack* pLayerStack = layerStack(Line);
    if (!pLayerStack)
        return nullptr;
    // Of the object whose stack is shown: a palette can be open on another one than the current. A stack that
    // was removed, and stays in sight until the next refresh, belongs to none.
    OrvShaderNetwork* pNetwork = pLayerStack->network();
    OrvLayer* pLayer = pNetwork ? OrvLayerManager::instance().currentLayer(pNetwork) : nullptr;
    if (!pLayer) {
        report(Line, "Layer is NULL");
        tell(OrvLayerView::tr("There is no layer to work on: add or choose one first"));
    }
    return pLayer;
}

OrvLayerCreateFlags OrvLayerViewCommands::creationFlags() const
{
    return withGroup(OrvLayerViewContext::NewLayerFlags);
}

OrvLayerCreateFlags OrvLayerViewCommands::withGroup(int Flags) const
{
    const QModelIndex Current = m_LayerView->treeView()->currentIndex();
    const OrvLayer* pLayer = m_LayerView->layerFromIndex(Current);
    if (!pLayer) {
        report(__LINE__, "CurrentLayer is NULL");
        return Flags;
    }
    if (!OrvLayerStreamUtils::isLayerGroup(pLayer, m_LayerView->layerStack()))
        return Flags;
    const OrvLayerViewItemRowWidget* pRowWidget = m_LayerView->rowWidget(Current);
    if (!pRowWidget) {
        report(__LINE__, "ItemRowWidget is NULL");
        return Flags;
    }
    return pRowWidget->isExpanded() ? Flags | OrvLayerInsideCurrentGroup : Flags;
}

void OrvLayerViewCommands::addNewLayer()
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->createPaintableLayer(
            creationFlags(), nullptr, QString(), OrvColor(0.0f, 0.0f, 0.0f, 0.0f));
}

void OrvLayerViewCommands::addLayerMask()
{
    OrvLayer* pLayer = currentLayer(__LINE__);
    if (pLayer)
        pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor(1.0f, 1.0f, 1.0f, 1.0f));
}

void OrvLayerViewCommands::addMaskStack()
{
    OrvLayer* pLayer = currentLayer(__LINE__);
    if (!pLayer || !isModifiable(pLayer) || pLayer->hasMaskStack())
        return;
    OrvUndoManager::AutoMacro Macro(OrvLayerView::tr("Add Mask Stack to : %1").arg(pLayer->name()));
    if (!pLayer->hasMask())
        pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor(1.0f, 1.0f, 1.0f, 1.0f));
    if (!pLayer->convertMaskToMaskStack())
        Macro.cancel();
}

void OrvLayerViewCommands::addGraphLayer()
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->createGraphLayer(creationFlags());
}

void OrvLayerViewCommands::chooseAdjustment()
{
    if (layerStack(__LINE__))
        OrvLayerCreationMenus::popupAdjustments(m_LayerView, SLOT(addAdjustmentLayerFromAction()));
}

void OrvLayerViewCommands::chooseProcedural()
{
    if (layerStack(__LINE__))
        OrvLayerCreationMenus::popupProcedurals(m_LayerView);
}

void OrvLayerViewCommands::addAdjustmentLayer(const QString& Key)
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->createAdjustmentLayer(Key, creationFlags(), nullptr, QString());
}

void OrvLayerViewCommands::addProceduralLayer(const QString& Key)
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->createProceduralLayer(Key, creationFlags(), nullptr, QString());
}

void OrvLayerViewCommands::addCustomProceduralLayer(const QString& Key)
{
    OrvLayerStack* pLayerStack = layerStack(__LINE__);
    if (!pLayerStack)
        return;
    QString Error;
    pLayerStack->createCustomProceduralLayer(Key, nullptr, creationFlags(), Error);
    warn(OrvLayerView::tr("Custom Procedural Layer Creation Failed"), Error);
}

void OrvLayerViewCommands::chooseStackAdjustment()
{
    const OrvLayer* pLayer = currentLayer(__LINE__);
    if (pLayer && isModifiable(pLayer))
        OrvLayerCreationMenus::popupAdjustments(m_LayerView, SLOT(addAdjustmentStackFromAction()));
}

void OrvLayerViewCommands::addStackAdjustment(const QString& Key)
{
    if (OrvLayer* pLayer = currentLayer(__LINE__))
        pLayer->addLayerAdjustmentLayerFromKey(Key, QString());
}

void OrvLayerViewCommands::createChannel(ChannelKind Kind)
{
    const bool Material = Kind == MaterialChannel;
    OrvUndoManager::AutoMacro Macro(
        Material ? OrvLayerView::tr("Add Material Channel") : OrvLayerView::tr("Add Channel"));
    if (!OrvShaderInputUtils::createShaderInput(Material))
        Macro.cancel();
}

void OrvLayerViewCommands::groupLayers()
{
    if (layerStack(__LINE__))
        groupLayers(creationFlags());
}

void OrvLayerViewCommands::groupLayers(OrvLayerCreateFlags Flags)
{
    OrvLayerStack* pLayerStack = layerStack(__LINE__);
    if (!pLayerStack)
        return;
    QString Error;
    if (!pLayerStack->groupLayers(Error, Flags, {}, nullptr, QString()))
        warn(OrvLayerView::tr("Grouping Operation Failed"), Error);
}

void OrvLayerViewCommands::duplicateLayers()
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->duplicateLayers();
}

void OrvLayerViewCommands::mergeLayers()
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->mergeLayers();
}

void OrvLayerViewCommands::removeLayers()
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->deleteLayers({});
}

void OrvLayerViewCommands::cut()
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->cutToClipboard();
}

void OrvLayerViewCommands::copy()
{
    if (OrvLayerStack* pLayerStack = layerStack(__LINE__))
        pLayerStack->copyToClipboard();
}

void OrvLayerViewCommands::paste()
{
    OrvLayerStack* pLayerStack = layerStack(__LINE__);
    if (!pLayerStack)
        return;
    QString Error;
    if (pLayerStack->pasteFromClipboard(withGroup(PastedLayerFlags), Error).isEmpty())
        warn(OrvLayerView::tr("Layer Operation Failed"), Error);
}

void OrvLayerViewCommands::setPassThrough(OrvLayer* pGroup, bool PassThrough)
{
    if (!pGroup)
        report(__LINE__, "Layer is NULL");
    else if (!pGroup->blendNode())
        report(__LINE__, "BlendNode is NULL");
    else
        OrvLayerStreamUtils::setLayerGroupPassThrough(pGroup->blendNode(), PassThrough);
}

void OrvLayerViewCommands::setSelectedColors(const QColor& Color)
{
    const OrvLayerStack* pLayerStack = layerStack(__LINE__);
    if (!pLayerStack)
        return;
    OrvUndoManager::AutoMacro Macro(OrvLayerView::tr("Set Layer Colors"));
    OrvLayerStreamUtils::setColorRecursiveUndo(pLayerStack->selectedLayers(), Color);
}

void OrvLayerViewCommands::pickTagColors()
{
    if (!layerStack(__LINE__))
        return;
    OrvBasicColorSwatch* pSwatch = OrvTagColorSwatch::create(m_LayerView, Qt::Popup);
    pSwatch->setAttribute(Qt::WA_DeleteOnClose);
    pSwatch->setCheckable(false);
    QObject::connect(
        pSwatch, SIGNAL(colorPicked(QColor)), m_LayerView, SLOT(setSelectedColors(const QColor&)));
    QObject::connect(pSwatch, SIGNAL(colorPicked(QColor)), pSwatch, SLOT(close()));
    pSwatch->adjustSize();
    OrvMoveWidgetToCursor(pSwatch, QPoint());
    pSwatch->show();
}

void OrvLayerViewCommands::quickFind()
{
    if (!m_LayerView->layerStack()) {
        report(__LINE__, "m_LayerStack is NULL");
        return;
    }
    // The dialog opens under the cursor, and the tree gives up the focus when the cursor leaves it.
    QPointer<QWidget> pFocus = QApplication::focusWidget();
    if (!pFocus)
        pFocus = m_LayerView->treeView();
    const QString Path
        = OrvNodeQuickFind::choose(SettingsGroup, m_LayerView->mapFromGlobal(QCursor::pos()), m_LayerView);
    if (pFocus)
        pFocus->setFocus();
    // Empty, too, when the view went meanwhile.
    if (Path.isEmpty())
        return;
    if (startsWithAny(Path, OrvLayerUtils::getProceduralLayerGroups()))
        addProceduralLayer(Path);
    else if (startsWithAny(Path, OrvLayerUtils::getAdjustmentLayerGroups()))
        addAdjustmentLayer(Path);
}
