#include "OrvCore/Layers/OrvLayerNotices.h"

#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerCost.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include <utility>

OrvLayerNotices::OrvLayerNotices(OrvLayerManager& Manager)
    : m_Manager(Manager)
{
    const OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(pNetworks, &OrvShaderNetworkManager::nodeRegistered, this, &OrvLayerNotices::onNodeRegistered);
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeDeregistered, this, &OrvLayerNotices::onNodeDeregistered);
    connect(pNetworks,
        QOverload<OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*>::of(
            &OrvShaderNetworkManager::nodeReconnected),
        this, &OrvLayerNotices::onNodeReconnected);
    connect(pNetworks, &OrvShaderNetworkManager::nodeEnabledChanged, this,
        &OrvLayerNotices::onNodeEnabledChanged);
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeLockedChanged, this, &OrvLayerNotices::onNodeLockedChanged);
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeBlockedChanged, this, &OrvLayerNotices::onNodeLockedChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeCacheActiveChanged, this,
        &OrvLayerNotices::onNodeCacheActiveChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeUserAttributeChanged, this,
        &OrvLayerNotices::onNodeAttributeChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeNameChanged, this, &OrvLayerNotices::onNodeNameChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeRefreshed, this, &OrvLayerNotices::onNodeRefreshed);
}

void OrvLayerNotices::onNodeRegistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    if (auto* pBakePoint = qobject_cast<OrvSnBakePointNode*>(pNode))
        m_BakePoints.insert(pBakePoint);
    if (qobject_cast<OrvSnMergeNode*>(pNode))
        m_Dirty.note(pNode, OrvLayerDirtyNodes::Alone);
}

void OrvLayerNotices::onNodeDeregistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    m_Dirty.forget(pNode);
    m_BakePoints.remove(qobject_cast<OrvSnBakePointNode*>(pNode));
}

void OrvLayerNotices::onNodeReconnected(OrvShaderNetwork*, QString InputName, OrvSnBaseNode* pNode,
    OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode)
{
    const bool IsMerge = OrvLayerUtils::holdsLayerName(pNode);
    // A merge node that nothing reads yet, or any more, takes nothing along.
    const bool InChain = OrvChainTargets::continuesChain(pNode, InputName) && !pNode->consumers().isEmpty();
    if (InChain || OrvChainTargets::isTarget(pNode, InputName))
        m_Dirty.noteMoved(pNewInputNode, pOldInputNode);
    if (!IsMerge)
        return;
    m_Dirty.noteLayers(pNode, OrvLayerDirtyNodes::Alone);
    if (InputName == OrvSnNames::Base)
        return;
    m_Dirty.noteContent(pNewInputNode);
    m_Dirty.noteContent(pOldInputNode);
    const auto isStackTop = [](const OrvSnBaseNode* pSource) {
        return pSource && pSource->hasTag(OrvSnNames::AdjustmentStackTopTag);
    };
    for (OrvLayer* pLayer : OrvLayerManager::layersOf(pNode)) {
        if (InputName == OrvSnNames::Mask)
            Q_EMIT pLayer->maskEnabledChanged(pLayer->isMaskEnabled());
        else if (isStackTop(pNewInputNode) || isStackTop(pOldInputNode))
            Q_EMIT pLayer->adjustmentEnabledChanged(pLayer->isAdjustmentStackEnabled());
    }
}

void OrvLayerNotices::onNodeEnabledChanged(OrvSnBaseNode* pNode, int Enabled)
{
    OrvLayerCost::invalidate();
    if (OrvLayerUtils::holdsLayerName(pNode)) {
        m_Dirty.noteLayers(pNode, OrvLayerDirtyNodes::Alone);
        m_Dirty.noteHolders(pNode);
        for (OrvLayer* pLayer : OrvLayerManager::layersOf(pNode)) {
            Q_EMIT pLayer->enabledAsBoolChanged(pLayer->isVisible());
            Q_EMIT pLayer->nodeEnabledChanged(pNode, Enabled);
        }
        return;
    }
    if (!pNode->hasTag(OrvSnNames::AdjustmentStackTopTag))
        return;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        OrvLayer* pLayer = m_Manager.getLayer(Reader.pNode, false);
        if (pLayer && Reader.InputName == OrvSnNames::Over) {
            m_Dirty.note(Reader.pNode, OrvLayerDirtyNodes::Alone);
            Q_EMIT pLayer->adjustmentEnabledChanged(Enabled != 0);
        }
    }
}

void OrvLayerNotices::onNodeLockedChanged(OrvSnBaseNode* pNode, bool)
{
    m_Dirty.noteLayers(pNode, OrvLayerDirtyNodes::WithContents);
    for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
        if (Input.Name != OrvSnNames::Base)
            m_Dirty.noteContent(Input.pNode);
    }
}

void OrvLayerNotices::onNodeCacheActiveChanged(OrvSnBaseNode* pNode, OrvSnBaseNodeCacheActiveState)
{
    OrvLayerCost::invalidate();
    m_Dirty.note(pNode, OrvLayerDirtyNodes::WithAllBelow);
    m_Dirty.noteHolders(pNode);
    if (OrvLayer* pLayer = m_Manager.getLayer(pNode, false))
        Q_EMIT pLayer->cacheStateChanged();
}

void OrvLayerNotices::onNodeAttributeChanged(OrvSnBaseNode* pNode, QString Name)
{
    OrvLayerCost::invalidate();
    if (Name == OrvMergeAttributes::LayerCached) {
        m_Dirty.note(pNode, OrvLayerDirtyNodes::WithContents);
        m_Dirty.noteHolders(pNode);
    } else if (Name == OrvMergeAttributes::PassThrough) {
        m_Dirty.note(pNode, OrvLayerDirtyNodes::Alone);
    } else if (Name == OrvMergeAttributes::MaskEnabled) {
        m_Dirty.noteLayers(pNode, OrvLayerDirtyNodes::Alone);
    } else if (Name == OrvSnCustomProceduralNode::ProceduralAttribute) {
        tellProceduralChanged(pNode);
    }
    for (OrvLayer* pLayer : OrvLayerManager::layersOf(pNode)) {
        if (Name == OrvMergeAttributes::ColorTag)
            Q_EMIT pLayer->colorChanged(pLayer->color());
        else if (Name == OrvMergeAttributes::MaskEnabled)
            Q_EMIT pLayer->maskEnabledChanged(pLayer->isMaskEnabled());
        else if (Name == OrvMergeAttributes::LayerCached)
            Q_EMIT pLayer->cacheStateChanged();
    }
}

void OrvLayerNotices::tellProceduralChanged(const OrvSnBaseNode* pNode)
{
    const auto* pProcedural = qobject_cast<const OrvSnCustomProceduralNode*>(pNode);
    if (!pProcedural)
        return;
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pNode).Targets;
    for (const OrvChainTargets::Target& Target : Targets) {
        for (OrvSnMergeNode* pOwner : OrvChainTargets::owners(Target)) {
            OrvLayer* pLayer = m_Manager.getLayer(pOwner, false);
            if (!pLayer)
                continue;
            Q_EMIT pLayer->proceduralTypeChanged(pProcedural->procedural().Type);
            Q_EMIT pLayer->missingGeoChannelsRefreshed(
                pLayer->missingGeoChannels().join(QStringLiteral(", ")));
        }
    }
}

void OrvLayerNotices::onNodeNameChanged(OrvSnBaseNode* pNode, QString)
{
    for (OrvLayer* pLayer : OrvLayerManager::layersOf(pNode))
        Q_EMIT pLayer->nameChanged(pLayer->name());
}

void OrvLayerNotices::onNodeRefreshed(OrvSnBaseNode* pNode)
{
    if (!qobject_cast<OrvSnBakePointNode*>(pNode))
        return;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        m_Dirty.note(Reader.pNode, OrvLayerDirtyNodes::Alone);
        if (OrvLayer* pLayer = m_Manager.getLayer(Reader.pNode, false))
            Q_EMIT pLayer->bakePointStateChanged();
    }
}

void OrvLayerNotices::tellStates()
{
    refreshBakePoints();
    refreshDirtyStates();
}

void OrvLayerNotices::refreshBakePoints()
{
    for (OrvSnBakePointNode* pBakePoint : qAsConst(m_BakePoints)) {
        if (pBakePoint->refreshBakedState())
            Q_EMIT OrvShaderNetworkManager::instance().nodeRefreshed(pBakePoint);
    }
}

void OrvLayerNotices::refreshDirtyStates()
{
    constexpr int Handful = 5;
    if (m_Dirty.isEmpty())
        return;
    QList<QPointer<OrvLayer>> Layers;
    const QSet<OrvSnBaseNode*> Nodes = m_Dirty.take();
    for (OrvSnBaseNode* pNode : Nodes) {
        if (OrvLayer* pLayer = m_Manager.getLayer(pNode, false))
            Layers.append(pLayer);
    }
    m_InBatch = Layers.size() > Handful;
    for (const QPointer<OrvLayer>& pLayer : qAsConst(Layers)) {
        if (!pLayer)
            continue;
        Q_EMIT m_Manager.layerStateRefreshed(pLayer);
        if (pLayer)
            Q_EMIT pLayer->layerStateRefreshed(pLayer);
    }
    if (std::exchange(m_InBatch, false))
        Q_EMIT m_Manager.batchLayerStatesRefreshed();
}

#include "moc_OrvLayerNotices.cpp"
