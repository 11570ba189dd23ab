#include "OrvCore/Layers/OrvStreamPlaces.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"

namespace {

/// The layer's stream in the channel, or null.
OrvSnMergeNode* streamIn(const OrvSnBaseNode* pMergeNode, const OrvShaderInput* pChannel)
{
    const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pMergeNode);
    const OrvSnMultiChannelMergeNode* pCommon = pMerge ? pMerge->multiChannelNode() : nullptr;
    for (OrvSnMergeNode* pStream : pCommon ? pCommon->mergeNodes() : QVector<OrvSnMergeNode*>()) {
        if (OrvChainTargets::channel(pStream) == pChannel->node())
            return pStream;
    }
    return nullptr;
}

} // namespace

OrvSnBaseNode* OrvStreamPlaces::alike(
    const OrvSnBaseNode* pPlace, OrvShaderInput* pChannel, QString* pObstacle)
{
    OrvSnBaseNode* pThere = nullptr;
    const OrvSnBaseNode* pNode = pPlace;
    while (pNode && !pThere) {
        OrvSnMergeNode* pStream = streamIn(pNode, pChannel);
        pThere = pStream && pNode != pPlace ? OrvChainEditing::contentOf(pStream) : pStream;
        const OrvChainTargets::Target Outer = OrvChainTargets::of(pNode).Targets.value(0);
        const QVector<OrvSnMergeNode*> Owners
            = Outer.pNode ? OrvChainTargets::owners(Outer) : QVector<OrvSnMergeNode*>();
        pNode = Owners.isEmpty() ? nullptr : Owners.first();
    }
    if (!pThere)
        return pChannel->placeFor(OrvLayerCreateFlags(), nullptr, pObstacle);
    if (OrvLayerUtils::isModificationAllowedAt(pThere))
        return pThere;
    if (pObstacle)
        *pObstacle = OrvEditObstacle::at(pThere);
    return nullptr;
}

bool OrvStreamPlaces::isForAllStreams(const OrvLayer* pLayer, const OrvSnBaseNode* pPlace)
{
    return pLayer->isMultiChannelLayer() && pPlace
        && OrvChainTargets::channel(pLayer->blendNode()) == OrvChainTargets::channel(pPlace)
        && !OrvChainTargets::isWithinMask(OrvChainTargets::of(pPlace).Targets.value(0));
}
