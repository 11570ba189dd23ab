#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackWarnings.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

QString OrvLayerStackWarnings::ofGroup(const OrvLayer* pGroup, const OrvLayerStack* pGroupStack)
{
    const bool IsMultiChannel = OrvLayerStreamUtils::isMultiChannelMergeLayer(pGroup);
    if (OrvLayerStreamUtils::validateGroupSelection(
            pGroupStack->layerList(), IsMultiChannel ? pGroup->commonNode() : nullptr))
        return {};
    const QString Warning = IsMultiChannel
        ? OrvLayerView::tr(
            "Multi-Channel Group Layer '%1' has some unrepresentable connections due to nested "
            "multi-channel layers of different shader model. Please rewire in the node graph.")
        : OrvLayerView::tr(
            "Group Layer '%1' has some unrepresentable connections due to nested multi-channel "
            "layers. Please rewire in the node graph.");
    return Warning.arg(pGroup->name());
}

QString OrvLayerStackWarnings::below(const QList<OrvLayer*>& Layers, const OrvLayerStack* pLayerStack)
{
    OrvSnBaseNode* pBottom = Layers.isEmpty()
        ? pLayerStack->bottomNode()
        : OrvLayerStreamUtils::layerNodeBelow(Layers.last(), pLayerStack);
    if (OrvLayerStreamUtils::isValidBottomTransparencyNode(pBottom))
        return {};
    if (!pBottom)
        return OrvLayerView::tr("No bottom stack node.");
    const auto* pCommon = qobject_cast<OrvSnMultiChannelMergeNode*>(pBottom);
    if (pCommon && !pCommon->isRepresentable())
        return OrvLayerView::tr(
            "Node '%1' is unrepresentable, only Merge nodes and Multi-Channel Merge nodes "
            "can be represented in the layer stack.")
            .arg(pBottom->name());
    const OrvLayer* pLayer = OrvLayerManager::layersOf(pBottom).value(0);
    if (OrvLayerStreamUtils::isInvalidMaterialLayer(pLayer))
        return OrvLayerView::tr("Multi-Channel Layer '%1' has some unrepresentable connections.")
            .arg(pBottom->name());
    return OrvLayerView::tr("Node '%1' is unrepresentable.").arg(pBottom->name());
}
