#include "OrvCore/Layers/OrvLayerManager.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerCurrentEdits.h"
#include "OrvCore/Layers/OrvLayerNotices.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Layers/OrvMultiChannelLayer.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <utility>

namespace {

/// What of a layer is painted on: what was, if it is the layer's; else its paint, else its mask.
OrvSnBaseNode* componentOf(const OrvLayer* pLayer, OrvSnBaseNode* pBefore)
{
    if (!pLayer)
        return nullptr;
    OrvSnBaseNode* pPaint = pLayer->paintNode();
    OrvSnBaseNode* pMask = pLayer->maskPaintNode();
    if (pBefore && (pBefore == pPaint || pBefore == pMask))
        return pBefore;
    return pPaint ? pPaint : pMask;
}

} // namespace

OrvLayerManager& OrvLayerManager::instance()
{
    static OrvLayerManager Manager;
    return Manager;
}

OrvLayerManager::OrvLayerManager()
    : m_Names(OrvLayerUtils::holdsLayerName)
{
    qRegisterMetaType<OrvLayer*>("OrvLayer*");
    qRegisterMetaType<OrvLayerStack*>("OrvLayerStack*");
    qRegisterMetaType<OrvSnBaseNode*>("OrvSnBaseNode*");
    qRegisterMetaType<OrvSnBaseNodeCacheActiveState>("OrvSnBaseNodeCacheActiveState");
    qRegisterMetaType<OrvCustomAttribute>("OrvCustomAttribute");

    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(pNetworks, &OrvShaderNetworkManager::nodeRegistered, this, &OrvLayerManager::onNodeRegistered);
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeDeregistered, this, &OrvLayerManager::onNodeDeregistered);
    connect(pNetworks,
        QOverload<OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*>::of(
            &OrvShaderNetworkManager::nodeReconnected),
        this, &OrvLayerManager::noteStructureChange);
    connect(pNetworks, &OrvShaderNetworkManager::nodeNameChanged, this,
        [this](OrvSnBaseNode* pNode) { m_Names.rename(pNode); });
    connect(pNetworks, &OrvShaderNetworkManager::currentShaderNetworkChanged, this,
        &OrvLayerManager::onCurrentNetworkChanged);
    connect(
        &OrvUndoManager::instance(), &OrvUndoManager::editFinished, this, &OrvLayerManager::onEditFinished);
    // After the manager's own connections: a layer's signals find names and current layer up to date.
    m_pNotices = std::make_unique<OrvLayerNotices>(*this);
}

OrvLayerManager::~OrvLayerManager()
{
    delete m_pDummyBlendNode;
    qDeleteAll(m_Stacks);
}

OrvLayer* OrvLayerManager::currentLayer(OrvShaderNetwork* pNetwork) const
{
    return m_CurrentLayers.value(
        pNetwork ? pNetwork : OrvShaderNetworkManager::instance().currentShaderNetwork());
}

void OrvLayerManager::setCurrentLayer(OrvShaderNetwork* pNetwork, OrvLayer* pLayer, bool Undoable)
{
    if (!pNetwork || (pLayer && !pLayer->blendNode()->network()))
        return;
    if (Undoable && currentLayer(pNetwork) != pLayer) {
        OrvUndoManager::instance().perform(std::make_unique<OrvCurrentLayerEdit>(pNetwork, pLayer));
        return;
    }
    if (pLayer) {
        OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
        const QList<OrvShaderInput*> Parents
            = OrvShaderInputUtils::findParents(pLayer->blendNode(), QString());
        OrvShaderInput* pCurrentChannel = Channels.currentShaderInput(pNetwork);
        if (!Parents.isEmpty())
            Channels.setCurrentLayerOf(
                Parents.contains(pCurrentChannel) ? pCurrentChannel : Parents.first(), pLayer);
    }
    if (m_CurrentLayers.value(pNetwork) == pLayer)
        return;
    if (pLayer)
        m_CurrentLayers.insert(pNetwork, pLayer);
    else
        m_CurrentLayers.remove(pNetwork);
    if (pNetwork != OrvShaderNetworkManager::instance().currentShaderNetwork())
        return;
    setCurrentComponent(componentOf(pLayer, m_pCurrentComponent));
    Q_EMIT currentLayerChanged(pLayer);
}

void OrvLayerManager::setCurrentLayerStack(OrvLayerStack* pStack)
{
    if (m_pCurrentStack == pStack)
        return;
    m_pCurrentStack = pStack;
    Q_EMIT currentLayerStackChanged(pStack);
}

void OrvLayerManager::setCurrentComponent(OrvSnBaseNode* pNode)
{
    if (m_pCurrentComponent == pNode)
        return;
    OrvUndoManager& Undo = OrvUndoManager::instance();
    if (Undo.isInMacro() && !Undo.isRestoring())
        Undo.perform(std::make_unique<OrvCurrentComponentEdit>(m_pCurrentComponent, pNode));
    else
        applyCurrentComponent(pNode);
}

void OrvLayerManager::applyCurrentComponent(OrvSnBaseNode* pNode)
{
    OrvSnBaseNode* pOld = m_pCurrentComponent;
    OrvSnBaseNode* pNew = pNode && pNode->network() ? pNode : nullptr;
    if (pNew == pOld)
        return;
    m_pCurrentComponent = pNew;
    Q_EMIT currentComponentChanged(pNew, pOld);
}

bool OrvLayerManager::inBatchLayerStateRefresh() const
{
    return m_pNotices->inBatch();
}

OrvLayer* OrvLayerManager::getLayer(OrvSnBaseNode* pNode, bool Create)
{
    auto* pMerge = qobject_cast<OrvSnMergeNode*>(pNode);
    if (!pMerge)
        return nullptr;
    if (!pMerge->m_pLayer && Create)
        pMerge->m_pLayer
            = pMerge->multiChannelNode() ? new OrvMultiChannelLayer(pMerge) : new OrvLayer(pMerge);
    return pMerge->m_pLayer;
}

QList<OrvLayer*> OrvLayerManager::layersOf(OrvSnBaseNode* pNode)
{
    QList<OrvLayer*> Layers;
    const auto note = [&Layers](const OrvSnMergeNode* pMerge) {
        if (pMerge && pMerge->layer())
            Layers.append(pMerge->layer());
    };
    note(qobject_cast<OrvSnMergeNode*>(pNode));
    if (const auto* pCommon = qobject_cast<OrvSnMultiChannelMergeNode*>(pNode)) {
        for (const OrvSnMergeNode* pMerge : pCommon->mergeNodes())
            note(pMerge);
    }
    return Layers;
}

bool OrvLayerManager::carriesStack(const OrvSnBaseNode* pNode, const QString& InputName)
{
    if (!pNode || !pNode->network())
        return false;
    if (pNode->hasTag(OrvSnNames::ShaderInputTag))
        return InputName == pNode->preferredInput();
    const OrvSnBaseNode* pSource = pNode->inputNode(InputName);
    if (!pSource || !OrvChainTargets::isTarget(pNode, InputName))
        return false;
    if (InputName == OrvSnNames::Mask) {
        const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pSource);
        return !qobject_cast<const OrvSnChannelInputNode*>(pSource)
            && !qobject_cast<const OrvSnMultiChannelMergeNode*>(pSource)
            && !qobject_cast<const OrvSnCustomProceduralNode*>(pSource)
            && !(pOperation && pOperation->isProcedural());
    }
    return (InputName == OrvSnNames::Over && pSource->hasTag(OrvSnNames::AdjustmentStackTopTag))
        || qobject_cast<const OrvSnMergeNode*>(pSource)
        || qobject_cast<const OrvSnBottomTransparencyNode*>(pSource);
}

OrvLayerStack* OrvLayerManager::stackLeftIn(const OrvShaderNetwork* pNetwork) const
{
    OrvLayerStack* pStack = m_Left.value(pNetwork).pStack;
    return pStack && pNetwork && pNetwork->contains(pStack->node()) ? pStack : nullptr;
}

OrvLayerStack* OrvLayerManager::getLayerStack(OrvSnBaseNode* pNode, const QString& InputName)
{
    if (!pNode)
        return nullptr;
    if (const auto* pChannel = qobject_cast<OrvSnShaderInputNode*>(pNode))
        return InputName.isEmpty() || InputName == pNode->preferredInput() ? pChannel->shaderInput()
                                                                           : nullptr;
    const StackKey Key(pNode, InputName);
    OrvLayerStack* pStack = m_Stacks.value(Key);
    if (!pStack && carriesStack(pNode, InputName)) {
        pStack = new OrvLayerStack(pNode, InputName);
        m_Stacks.insert(Key, pStack);
    }
    return pStack;
}

OrvSnBaseNode* OrvLayerManager::dummyBlendNode()
{
    if (!m_pDummyBlendNode)
        m_pDummyBlendNode = new OrvSnMergeNode;
    return m_pDummyBlendNode;
}

void OrvLayerManager::onNodeRegistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    noteStructureChange();
    m_Names.enter(pNode);
}

void OrvLayerManager::onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
{
    noteStructureChange();
    m_Names.leave(pNetwork, pNode);
    dropStacksOf(pNode);
    if (m_pCurrentComponent == pNode)
        applyCurrentComponent(nullptr);
    if (m_pCurrentStack && m_pCurrentStack->node() == pNode)
        setCurrentLayerStack(nullptr);
    OrvLayer* pLayer = getLayer(pNode, false);
    if (!pLayer)
        return;
    pLayer->setSelected(false);
    if (m_CurrentLayers.value(pNetwork) == pLayer) {
        m_CurrentLayers.remove(pNetwork);
        if (pNetwork == OrvShaderNetworkManager::instance().currentShaderNetwork())
            Q_EMIT currentLayerChanged(nullptr);
    }
}

void OrvLayerManager::onCurrentNetworkChanged(OrvShaderNetwork* pNew, OrvShaderNetwork* pOld)
{
    m_Left.insert(pOld, {m_pCurrentStack, m_pCurrentComponent});
    if (!pNew)
        m_Left.clear(); // the project closes
    OrvLayer* pLayer = currentLayer();
    applyCurrentComponent(componentOf(pLayer, m_Left.value(pNew).pComponent));
    Q_EMIT currentLayerChanged(pLayer);
}

void OrvLayerManager::onEditFinished()
{
    const bool StructureChanged = std::exchange(m_StructureChanged, false);
    if (StructureChanged)
        dropStacksThatNoLongerHold();
    m_pNotices->tellStates();
    if (StructureChanged)
        Q_EMIT structureRefreshed();
}

void OrvLayerManager::drop(OrvLayerStack* pStack)
{
    if (m_pCurrentStack == pStack)
        setCurrentLayerStack(OrvShaderInputManager::instance().currentShaderInput(nullptr));
    pStack->deleteLater();
}

void OrvLayerManager::dropStacksOf(const OrvSnBaseNode* pNode)
{
    for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
        if (OrvLayerStack* pStack = m_Stacks.take(StackKey(pNode, Input.Name)))
            drop(pStack);
    }
}

void OrvLayerManager::dropStacksThatNoLongerHold()
{
    QList<OrvLayerStack*> Dropped;
    for (auto Stack = m_Stacks.begin(); Stack != m_Stacks.end();) {
        if (carriesStack(Stack.key().first, Stack.key().second)) {
            ++Stack;
        } else {
            Dropped.append(Stack.value());
            Stack = m_Stacks.erase(Stack);
        }
    }
    for (OrvLayerStack* pStack : qAsConst(Dropped))
        drop(pStack);
}

#include "moc_OrvLayerManager.cpp"
