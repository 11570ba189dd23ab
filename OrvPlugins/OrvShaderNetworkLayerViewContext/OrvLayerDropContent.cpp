#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropContent.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnNames.h"

#include <QtCore/QSet>

#include <algorithm>

OrvLayerDropContent::Kind OrvLayerDropContent::kindOf(OrvSnBaseNode* pNode)
{
    if (layerOf(pNode))
        return Kind::Layer;
    if (pNode->hasTag(OrvSnNames::ShaderInputTag))
        return Kind::Channel;
    if (pNode->hasTag(OrvSnNames::ShaderTag))
        return Kind::Shader;
    return qobject_cast<OrvSnChannelInputNode*>(pNode) ? Kind::Image : Kind::Other;
}

OrvLayer* OrvLayerDropContent::layerOf(OrvSnBaseNode* pNode)
{
    return OrvLayerStreamUtils::isMergeNode(pNode) ? OrvLayerManager::instance().getLayer(pNode, true)
                                                   : nullptr;
}

QList<OrvLayer*> OrvLayerDropContent::maskedLayers(const OrvSnBaseNode* pNode)
{
    QList<OrvLayer*> Layers;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        if (Reader.InputName != OrvSnNames::Mask)
            continue;
        // Where several channels have the mask in common, one stands for all.
        const QVector<OrvSnMergeNode*> Owners = OrvChainTargets::owners({Reader.pNode, Reader.InputName});
        if (!Owners.isEmpty())
            Layers.append(layerOf(Owners.first()));
    }
    return Layers;
}

QVector<OrvSnBaseNode*> OrvLayerDropContent::inOrderOf(
    const OrvLayerStack* pSourceStack, const QVector<OrvSnBaseNode*>& Nodes)
{
    if (!pSourceStack || Nodes.size() < 2)
        return Nodes;
    QList<OrvLayer*> Layers;
    for (OrvSnBaseNode* pNode : Nodes)
        Layers.append(layerOf(pNode));
    const QList<OrvLayer*> All = pSourceStack->allLayers();
    const QSet<OrvLayer*> Present(All.cbegin(), All.cend());
    if (!std::all_of(Layers.cbegin(), Layers.cend(),
            [&Present](OrvLayer* pLayer) { return Present.contains(pLayer); }))
        return Nodes;
    QVector<OrvSnBaseNode*> Ordered;
    for (const OrvLayer* pLayer : pSourceStack->outermost(Layers))
        Ordered.append(pLayer->blendNode());
    return Ordered;
}

bool OrvLayerDropContent::needsMaterialStack(OrvSnBaseNode* pNode, const OrvLayerStack* pStack)
{
    if (pNode->hasTag(OrvSnNames::ShaderTag))
        return true;
    if (const OrvLayer* pLayer = layerOf(pNode))
        return OrvLayerStreamUtils::containsShaderLayers(pLayer, pStack)
            || OrvLayerStreamUtils::containsMaterialShaderInputLayers(pLayer, pStack);
    const OrvShaderInput* pChannel
        = pNode->hasTag(OrvSnNames::ShaderInputTag) ? OrvShaderInputUtils::getShaderInput(pNode) : nullptr;
    return pChannel && pChannel->isMaterialStack();
}
