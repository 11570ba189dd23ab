#include "OrvCore/Channels/OrvShaderInputManager.h"

#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <algorithm>

OrvShaderInputManager& OrvShaderInputManager::instance()
{
    static OrvShaderInputManager Manager;
    return Manager;
}

OrvShaderInputManager::OrvShaderInputManager()
    : m_Names([](const OrvSnBaseNode* pNode) {
        return qobject_cast<const OrvSnShaderInputNode*>(pNode) != nullptr;
    })
{
    qRegisterMetaType<OrvColorSpaceConfig>("OrvColorSpaceConfig");
    qRegisterMetaType<GLenum>("GLenum");
    // Layers are told of an edit before channels are, which look at them.
    OrvLayerManager* pLayers = &OrvLayerManager::instance();
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeRegistered, this, &OrvShaderInputManager::onNodeRegistered);
    connect(pNetworks, &OrvShaderNetworkManager::nodeDeregistered, this,
        &OrvShaderInputManager::onNodeDeregistered);
    connect(pNetworks, &OrvShaderNetworkManager::nodeNameChanged, this,
        &OrvShaderInputManager::onNodeNameChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeLockedChanged, this,
        &OrvShaderInputManager::onNodeLockedChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeUserAttributeChanged, this,
        &OrvShaderInputManager::onNodeAttributeChanged);
    connect(pNetworks,
        QOverload<OrvShaderNetwork*, QString, OrvSnBaseNode*, OrvSnBaseNode*, OrvSnBaseNode*>::of(
            &OrvShaderNetworkManager::nodeReconnected),
        this, &OrvShaderInputManager::onNodeReconnected);
    connect(pNetworks, &OrvShaderNetworkManager::currentShaderNetworkChanged, this,
        &OrvShaderInputManager::onCurrentNetworkChanged);
    connect(
        pLayers, &OrvLayerManager::structureRefreshed, this, &OrvShaderInputManager::onStructureRefreshed);
}

OrvShaderInput* OrvShaderInputManager::currentShaderInput(OrvShaderNetwork* pNetwork) const
{
    return m_Current.value(pNetwork ? pNetwork : OrvShaderNetworkManager::instance().currentShaderNetwork());
}

OrvSnBaseNode* OrvShaderInputManager::currentShaderInputNode() const
{
    const OrvShaderInput* pCurrent = currentShaderInput();
    return pCurrent ? pCurrent->node() : nullptr;
}

void OrvShaderInputManager::makeShaderInputCurrent(OrvShaderInput* pInput, bool Notify)
{
    if (pInput && pInput->network())
        makeShaderInputCurrent(pInput->network(), pInput, Notify);
}

void OrvShaderInputManager::makeShaderInputCurrent(
    OrvShaderNetwork* pNetwork, OrvShaderInput* pInput, bool Notify)
{
    if (!pNetwork || m_Current.value(pNetwork) == pInput)
        return;
    if (pInput) {
        m_Current.insert(pNetwork, pInput);
        m_Visited[pNetwork].removeOne(pInput);
        m_Visited[pNetwork].append(pInput);
    } else {
        m_Current.remove(pNetwork);
    }
    OrvLayerManager& Layers = OrvLayerManager::instance();
    const bool IsCurrent = pNetwork == OrvShaderNetworkManager::instance().currentShaderNetwork();
    if (IsCurrent)
        Layers.setCurrentLayerStack(pInput);
    OrvLayer* pLayer = pInput ? pInput->currentLayer() : nullptr;
    Layers.setCurrentLayer(pNetwork, pLayer);
    // What is painted on is marked, unless the user has left other layers of the channel selected.
    if (pLayer && pInput->selectedLayers().isEmpty())
        pLayer->setSelected(true);
    if (Notify && IsCurrent)
        Q_EMIT currentShaderInputChanged(pInput);
}

QList<OrvShaderInput*> OrvShaderInputManager::getShaderInputsFromNetwork(
    const OrvShaderNetwork* pNetwork) const
{
    return m_Channels.value(pNetwork);
}

OrvShaderInput* OrvShaderInputManager::neighborOf(
    const OrvShaderNetwork* pNetwork, const OrvShaderInput* pInput) const
{
    // In the order of the palette, so that the row below follows.
    const auto comesBefore = [](const OrvShaderInput* pFirst, const OrvShaderInput* pSecond) {
        return pFirst->name() < pSecond->name();
    };
    // One pass: a document may have thousands.
    const QList<OrvShaderInput*> Channels = getShaderInputsFromNetwork(pNetwork);
    const bool Listed = Channels.contains(const_cast<OrvShaderInput*>(pInput));
    OrvShaderInput *pNext = nullptr, *pPrevious = nullptr;
    bool Passed = false; // of channels with the same name those are next that come later in the list
    for (OrvShaderInput* pChannel : Channels) {
        Passed = Passed || pChannel == pInput;
        if (pChannel == pInput || pChannel->isMaterialStack())
            continue;
        const bool IsAfter = !Listed || comesBefore(pInput, pChannel)
            || (Passed && !comesBefore(pChannel, pInput));
        if (IsAfter && (!pNext || comesBefore(pChannel, pNext)))
            pNext = pChannel;
        if (!IsAfter && (!pPrevious || !comesBefore(pChannel, pPrevious)))
            pPrevious = pChannel;
    }
    return pNext ? pNext : pPrevious;
}

OrvShaderInput* OrvShaderInputManager::formerOf(
    const OrvShaderNetwork* pNetwork, const OrvShaderInput* pInput) const
{
    const QVector<QPointer<OrvShaderInput>> Visited = m_Visited.value(pNetwork);
    const auto Found = std::find_if(Visited.crbegin(), Visited.crend(), [&](const OrvShaderInput* pChannel) {
        return pChannel && pChannel != pInput && pChannel->network() == pNetwork;
    });
    return Found != Visited.crend() ? Found->data() : nullptr;
}

void OrvShaderInputManager::selectNextShaderInput()
{
    OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    makeShaderInputCurrent(pNetwork, neighborOf(pNetwork, currentShaderInput(pNetwork)), true);
}

bool OrvShaderInputManager::destroy(OrvShaderInput* pInput, int Strategy)
{
    OrvShaderNetwork* pNetwork = pInput ? pInput->network() : nullptr;
    if (!pNetwork)
        return false;
    OrvLayerManager& Layers = OrvLayerManager::instance();
    if (!pInput->isModifiable()) {
        Q_EMIT Layers.refused(OrvEditObstacle::of(pInput));
        return false;
    }
    OrvUndoManager::AutoMacro Macro(tr("Remove Channel : %1").arg(pInput->name()));
    QList<OrvSnBaseNode*> Sharers;
    pInput->isShared(Sharers);
    OrvSnBaseNode* pTop = pInput->topNode();
    for (OrvSnBaseNode* pSharer : qAsConst(Sharers)) {
        if (Strategy == SharersAreDeleted) {
            auto* pMerge = static_cast<OrvSnMergeNode*>(pSharer);
            if (OrvLayer* pLayer = Layers.getLayer(pMerge, true)) {
                for (OrvLayerStack* pStack : pLayer->stacks())
                    pStack->deleteLayers({pLayer});
            }
        } else if (!pSharer->connectInput(OrvSnNames::Over, pTop)) {
            Macro.cancel();
            return false;
        }
    }
    const OrvLayer* pCurrentLayer = Layers.currentLayer(pNetwork);
    const bool HoldsCurrent = pCurrentLayer
        && OrvShaderInputUtils::findParents(pCurrentLayer->blendNode(), QString()).contains(pInput);
    if (m_Current.value(pNetwork) == pInput)
        makeShaderInputCurrent(pNetwork, neighborOf(pNetwork, pInput), true);
    else if (HoldsCurrent)
        Layers.setCurrentLayer(pNetwork, nullptr);
    pNetwork->removeNode(pInput->node());
    OrvChainEditing::removeUnused(pTop);
    return true;
}

OrvLayer* OrvShaderInputManager::currentLayerOf(const OrvShaderInput* pInput) const
{
    // The layer may have gone elsewhere since.
    OrvLayer* pLayer = m_CurrentLayers.value(pInput);
    if (pLayer && pLayer->blendNode()->network()
        && OrvShaderInputUtils::findParents(pLayer->blendNode(), QString())
               .contains(const_cast<OrvShaderInput*>(pInput)))
        return pLayer;
    return pInput->isEmpty() ? nullptr : pInput->layerList().first();
}

void OrvShaderInputManager::setCurrentLayerOf(OrvShaderInput* pInput, OrvLayer* pLayer)
{
    if (!pInput || m_CurrentLayers.value(pInput) == pLayer)
        return;
    m_CurrentLayers.insert(pInput, pLayer);
    Q_EMIT pInput->layerMadeCurrent();
}

void OrvShaderInputManager::onNodeRegistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
{
    auto* pChannelNode = qobject_cast<OrvSnShaderInputNode*>(pNode);
    if (!pChannelNode)
        return;
    if (!pChannelNode->m_pShaderInput) {
        pChannelNode->m_pShaderInput = new OrvShaderInput(pChannelNode);
        Q_EMIT shaderInputCreated(pChannelNode->m_pShaderInput);
    }
    m_Channels[pNetwork].append(pChannelNode->m_pShaderInput);
    m_Names.enter(pNode);
    m_Empty.insert(pChannelNode->m_pShaderInput, pChannelNode->m_pShaderInput->isEmpty());
    Q_EMIT shaderInputAdded(pChannelNode->m_pShaderInput);
    // Who makes a channel makes it current; where undo or redo brings the first one back, nobody does.
    if (OrvUndoManager::instance().isRestoring() && !m_Current.value(pNetwork))
        makeShaderInputCurrent(pNetwork, pChannelNode->m_pShaderInput, true);
}

void OrvShaderInputManager::onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
{
    const auto* pChannelNode = qobject_cast<OrvSnShaderInputNode*>(pNode);
    OrvShaderInput* pInput = pChannelNode ? pChannelNode->m_pShaderInput : nullptr;
    if (!pInput)
        return;
    const bool WasCurrent = m_Current.value(pNetwork) == pInput;
    OrvShaderInput* pNext = nullptr;
    if (WasCurrent) {
        // Undo of what made the channel leads back to where the user was before.
        pNext = OrvUndoManager::instance().isRestoring() ? formerOf(pNetwork, pInput) : nullptr;
        if (!pNext)
            pNext = neighborOf(pNetwork, pInput);
    }
    QList<OrvShaderInput*>& Channels = m_Channels[pNetwork];
    Channels.removeOne(pInput);
    m_Names.leave(pNetwork, pNode);
    m_Reconnected.remove(pInput);
    if (Channels.isEmpty()) {
        m_Channels.remove(pNetwork);
        m_Visited.remove(pNetwork);
    }
    m_Empty.remove(pInput);
    if (WasCurrent)
        makeShaderInputCurrent(pNetwork, pNext, true);
    Q_EMIT shaderInputRemoved(pInput);
}

void OrvShaderInputManager::onNodeNameChanged(OrvSnBaseNode* pNode, QString)
{
    m_Names.rename(pNode);
    if (OrvShaderInput* pInput = OrvShaderInputUtils::getShaderInput(pNode))
        Q_EMIT shaderInputRenamed(pInput);
}

void OrvShaderInputManager::onNodeLockedChanged(OrvSnBaseNode* pNode, bool Locked)
{
    if (OrvShaderInput* pInput = OrvShaderInputUtils::getShaderInput(pNode))
        Q_EMIT pInput->lockedChanged(Locked);
}

void OrvShaderInputManager::onNodeAttributeChanged(OrvSnBaseNode* pNode, QString Name)
{
    if (OrvShaderInput* pInput = OrvShaderInputUtils::getShaderInput(pNode))
        pInput->readNode(Name);
}

void OrvShaderInputManager::onNodeReconnected(
    OrvShaderNetwork*, QString InputName, OrvSnBaseNode* pNode, OrvSnBaseNode* pNewInputNode, OrvSnBaseNode*)
{
    OrvShaderInput* pInput = OrvShaderInputUtils::getShaderInput(pNode);
    if (m_Empty.contains(pInput))
        m_Reconnected.insert(pInput);
    if (pNode->hasTag(OrvSnNames::ShaderTag) && OrvShaderInputUtils::getShaderInput(pNewInputNode))
        Q_EMIT newShaderInputConnected(InputName, pNewInputNode);
}

void OrvShaderInputManager::onCurrentNetworkChanged()
{
    OrvShaderInput* pCurrent = currentShaderInput();
    OrvLayerManager& Layers = OrvLayerManager::instance();
    OrvLayerStack* pLeft = Layers.stackLeftIn(OrvShaderNetworkManager::instance().currentShaderNetwork());
    Layers.setCurrentLayerStack(pLeft && !qobject_cast<OrvShaderInput*>(pLeft) ? pLeft : pCurrent);
    Q_EMIT currentShaderInputChanged(pCurrent);
}

void OrvShaderInputManager::onStructureRefreshed()
{
    for (OrvShaderInput* pInput : std::exchange(m_Reconnected, {})) {
        const bool Empty = pInput->isEmpty();
        if (std::exchange(m_Empty[pInput], Empty) != Empty)
            Q_EMIT pInput->layerMadeCurrent();
    }
}

#include "moc_OrvShaderInputManager.cpp"
