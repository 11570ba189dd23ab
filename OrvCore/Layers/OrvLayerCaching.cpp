// What is kept instead of computed again, and how it is let go.

#include "OrvCore/Layers/OrvLayer.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

bool OrvLayer::isLayerCached() const
{
    return m_pBlendNode->userAttribute(OrvMergeAttributes::LayerCached).value().toBool();
}

bool OrvLayer::cacheLayer()
{
    if (isLayerCached())
        return true;
    if (!m_pBlendNode->network() || isDownstreamCached())
        return refuse(tr("'%1' is part of a cache already").arg(name()));
    const OrvUndoManager::AutoMacro Macro(tr("Cache Layer '%1'").arg(name()));
    m_pBlendNode->setUserAttributeValue(OrvMergeAttributes::LayerCached, true);
    return true;
}

void OrvLayer::uncacheLayer()
{
    const OrvUndoManager::AutoMacro Macro(tr("Uncache Layer '%1'").arg(name()));
    m_pBlendNode->setUserAttributeValue(OrvMergeAttributes::LayerCached, false);
}

bool OrvLayer::isCachedUpToHere() const
{
    return m_pBlendNode->cacheActive() == OrvSnCacheActive;
}

bool OrvLayer::canCacheUpToHere() const
{
    return m_pBlendNode->network() && !isCachedUpToHere() && !isDownstreamCached();
}

bool OrvLayer::cacheUpToHere()
{
    if (!canCacheUpToHere())
        return refuse(tr("'%1' is part of a cache already").arg(name()));
    const OrvUndoManager::AutoMacro Macro(tr("Cache Up To '%1'").arg(name()));
    m_pBlendNode->setCacheActive(OrvSnCacheActive);
    return true;
}

void OrvLayer::uncacheUpToHere()
{
    const OrvUndoManager::AutoMacro Macro(tr("Uncache Up To '%1'").arg(name()));
    m_pBlendNode->setCacheActive(OrvSnCacheInactive);
}

bool OrvLayer::isDownstreamCached() const
{
    return OrvLayerUtils::isPartOfCache(m_pBlendNode);
}

void OrvLayerStack::cacheLayers()
{
    const OrvUndoManager::AutoMacro Macro(tr("Cache Layers"));
    for (OrvLayer* pLayer : outermost(selectedLayers()))
        pLayer->cacheLayer();
}

void OrvLayerStack::uncacheLayers()
{
    const OrvUndoManager::AutoMacro Macro(tr("Uncache Layers"));
    for (OrvLayer* pLayer : selectedLayers())
        pLayer->uncacheLayer();
}
