#include "OrvCore/Layers/OrvMultiChannelLayer.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"

OrvSnMultiChannelMergeNode* OrvMultiChannelLayer::multiChannelNode() const
{
    return blendNode()->multiChannelNode();
}

QString OrvMultiChannelLayer::streamName() const
{
    return blendNode()->stream();
}

bool OrvMultiChannelLayer::isMaterialLayer() const
{
    const OrvSnMultiChannelMergeNode* pCommon = multiChannelNode();
    return pCommon && pCommon->isMaterial();
}

bool OrvMultiChannelLayer::isBlendingAmountModifiable(const QString& ShortName) const
{
    const OrvSnMultiChannelMergeNode* pCommon = multiChannelNode();
    OrvSnMergeNode* pMerge
        = pCommon && !ShortName.isEmpty() ? pCommon->mergeNodeForShaderModelInput(ShortName) : nullptr;
    const OrvLayer* pStream = pMerge ? OrvLayerManager::instance().getLayer(pMerge, true) : this;
    return pStream->isBlendingModifiable();
}

QList<OrvLayer*> OrvMultiChannelLayer::siblings() const
{
    return inAllChannels().mid(1);
}

#include "moc_OrvMultiChannelLayer.cpp"
