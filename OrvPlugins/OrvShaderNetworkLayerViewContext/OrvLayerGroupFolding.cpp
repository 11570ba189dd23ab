#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerGroupFolding.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

using OrvLayerViewContext::ExpandLayerGroupKey;

bool OrvLayerGroupFolding::isUnfolded(const OrvLayer* pGroup)
{
    const OrvSnMergeNode* pNode = pGroup->blendNode();
    return !pNode->exists(ExpandLayerGroupKey) || pNode->userAttribute(ExpandLayerGroupKey).value().toBool();
}

void OrvLayerGroupFolding::setUnfolded(const OrvLayer* pGroup, bool Unfolded)
{
    if (isUnfolded(pGroup) == Unfolded)
        return;
    OrvSnMergeNode* pNode = pGroup->blendNode();
    if (pNode->exists(ExpandLayerGroupKey)) {
        pNode->setUserAttributeValue(ExpandLayerGroupKey, Unfolded);
        return;
    }
    OrvCustomAttribute Attribute(ExpandLayerGroupKey, Unfolded);
    Attribute.setTweakable(false);
    Attribute.setVisible(false);
    pNode->createUserAttribute(Attribute);
}
