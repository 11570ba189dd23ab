#include "OrvCore/Shaders/OrvLayerShaderManager.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Shaders/OrvSnSystemShaderNode.h"

OrvLayerShaderManager& OrvLayerShaderManager::instance()
{
    static OrvLayerShaderManager Manager;
    return Manager;
}

OrvLayerShaderManager::OrvLayerShaderManager()
{
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(
        pNetworks, &OrvShaderNetworkManager::nodeRegistered, this, &OrvLayerShaderManager::onNodeRegistered);
    connect(pNetworks, &OrvShaderNetworkManager::nodeDeregistered, this,
        &OrvLayerShaderManager::onNodeDeregistered);
    connect(pNetworks, &OrvShaderNetworkManager::nodeTagsChanged, this,
        &OrvLayerShaderManager::onNodeTagsChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeNameChanged, this,
        &OrvLayerShaderManager::onNodeNameChanged);
    connect(pNetworks, &OrvShaderNetworkManager::currentShaderNetworkChanged, this,
        &OrvLayerShaderManager::onCurrentNetworkChanged);
    OrvShaderInputManager* pChannels = &OrvShaderInputManager::instance();
    const auto tellEvaluation
        = [](const OrvShaderInput* pChannel) { OrvNodeEvaluation::channelsChanged(pChannel->network()); };
    connect(pChannels, &OrvShaderInputManager::shaderInputAdded, this, tellEvaluation);
    connect(pChannels, &OrvShaderInputManager::shaderInputRemoved, this, tellEvaluation);
}

OrvLayerShaderManager::~OrvLayerShaderManager()
{
    qDeleteAll(m_Shaders);
}

OrvLayerShader* OrvLayerShaderManager::currentLayerShader(const OrvShaderNetwork* pNetwork) const
{
    return m_Current.value(pNetwork ? pNetwork : OrvShaderNetworkManager::instance().currentShaderNetwork());
}

OrvSnBaseNode* OrvLayerShaderManager::currentShaderNode() const
{
    const OrvLayerShader* pCurrent = currentLayerShader();
    return pCurrent ? pCurrent->node() : nullptr;
}

void OrvLayerShaderManager::setCurrentShader(OrvSnBaseNode* pNode)
{
    const OrvShaderNetwork* pNetwork
        = pNode ? pNode->network() : OrvShaderNetworkManager::instance().currentShaderNetwork();
    OrvLayerShader* pShader = getLayerShader(pNode);
    if (!pNetwork)
        return;
    // Whoever is told of the current one may ask for the chosen one.
    if (isListed(pShader))
        select(pNetwork, pNode);
    makeCurrent(pNetwork, pShader);
}

void OrvLayerShaderManager::makeCurrent(const OrvShaderNetwork* pNetwork, OrvLayerShader* pShader)
{
    if (m_Current.value(pNetwork) == pShader)
        return;
    if (pShader)
        m_Current.insert(pNetwork, pShader);
    else
        m_Current.remove(pNetwork);
    // Of another network it is told when that becomes the current one.
    if (pNetwork == OrvShaderNetworkManager::instance().currentShaderNetwork())
        Q_EMIT currentLayerShaderChanged(pShader);
}

OrvSnBaseNode* OrvLayerShaderManager::selectedUserShaderNode(const OrvShaderNetwork* pNetwork) const
{
    if (!pNetwork)
        pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    // It may have left since, and may come back.
    OrvSnBaseNode* pSelected = m_Selected.value(pNetwork);
    return pSelected && pNetwork && pSelected->network() == pNetwork ? pSelected : nullptr;
}

void OrvLayerShaderManager::resetSelectedUserShaderNode()
{
    select(OrvShaderNetworkManager::instance().currentShaderNetwork(), nullptr);
}

void OrvLayerShaderManager::select(const OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
{
    const QPointer<OrvSnBaseNode> pFormer = m_Selected.value(pNetwork);
    if (!pNetwork || pFormer == pNode)
        return;
    if (pNode)
        m_Selected.insert(pNetwork, pNode);
    else
        m_Selected.remove(pNetwork);
    if (pFormer)
        pFormer->removeTag(nodeTagUserSelectedShader(), false);
    if (pNode)
        pNode->addTag(nodeTagUserSelectedShader(), false);
}

QList<OrvSnBaseNode*> OrvLayerShaderManager::getShaderNodes(
    const OrvShaderNetwork* pNetwork, bool WithSystemShaders) const
{
    QList<OrvSnBaseNode*> Nodes;
    if (!pNetwork || m_Shaders.isEmpty())
        return Nodes;
    for (OrvSnBaseNode* pNode : pNetwork->systemNodes()) {
        if (WithSystemShaders && getLayerShader(pNode))
            Nodes.append(pNode);
    }
    for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
        if (getLayerShader(pNode) && (WithSystemShaders || !isSystemShaderNode(pNode)))
            Nodes.append(pNode);
    }
    return Nodes;
}

QList<OrvLayerShader*> OrvLayerShaderManager::getUserLayerShaders(const OrvShaderNetwork* pNetwork) const
{
    QList<OrvLayerShader*> Shaders;
    for (const OrvSnBaseNode* pNode : getShaderNodes(pNetwork, false)) {
        if (isListed(getLayerShader(pNode)))
            Shaders.append(getLayerShader(pNode));
    }
    return Shaders;
}

bool OrvLayerShaderManager::isListed(const OrvLayerShader* pShader) const
{
    return pShader && !isSystemShader(pShader) && !pShader->node()->hasTag(OrvSnNames::StackShaderTag);
}

bool OrvLayerShaderManager::isSystemShader(const OrvLayerShader* pShader) const
{
    return pShader && isSystemShaderNode(pShader->node());
}

bool OrvLayerShaderManager::isSystemShaderNode(const OrvSnBaseNode* pNode, bool AcceptUnfinished) const
{
    if (!pNode || (!AcceptUnfinished && !getLayerShader(pNode)))
        return false;
    const QStringList& Kinds = OrvSnSystemShaderNode::kinds();
    return std::any_of(
        Kinds.begin(), Kinds.end(), [pNode](const QString& Tag) { return pNode->hasTag(Tag); });
}

OrvSnBaseNode* OrvLayerShaderManager::systemShaderOfKind(
    const OrvShaderNetwork* pNetwork, const QString& Tag) const
{
    if (!pNetwork)
        pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    for (OrvSnBaseNode* pNode : pNetwork ? pNetwork->systemNodes() : QVector<OrvSnBaseNode*>()) {
        if (pNode->hasTag(Tag))
            return pNode;
    }
    return nullptr;
}

OrvSnBaseNode* OrvLayerShaderManager::getCurrentChannelShader(const OrvShaderNetwork* pNetwork) const
{
    return systemShaderOfKind(pNetwork, nodeTagCurrentChannelShader());
}

OrvSnBaseNode* OrvLayerShaderManager::getCurrentLayerAndBelowShader(const OrvShaderNetwork* pNetwork) const
{
    return systemShaderOfKind(pNetwork, nodeTagCurrentLayerAndBelowShader());
}

OrvSnBaseNode* OrvLayerShaderManager::getCurrentCurrentLayerShader() const
{
    return systemShaderOfKind(nullptr, nodeTagCurrentLayerShader());
}

OrvSnBaseNode* OrvLayerShaderManager::getCurrentCurrentComponentShader() const
{
    return systemShaderOfKind(nullptr, nodeTagCurrentComponentShader());
}

OrvSnBaseNode* OrvLayerShaderManager::getCurrentMaterialProxyShader(const OrvShaderNetwork* pNetwork) const
{
    return materialShader(pNetwork) ? systemShaderOfKind(pNetwork, nodeTagCurrentMaterialProxyShader())
                                    : nullptr;
}

OrvLayerShader* OrvLayerShaderManager::materialShader(const OrvShaderNetwork* pNetwork) const
{
    if (!pNetwork)
        pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    if (OrvLayerShader* pSelected = getLayerShader(selectedUserShaderNode(pNetwork)))
        return pSelected;
    const QList<OrvLayerShader*> Shaders = getUserLayerShaders(pNetwork);
    return Shaders.isEmpty() ? nullptr : Shaders.first();
}

void OrvLayerShaderManager::makeSystemShaders(OrvShaderNetwork* pNetwork)
{
    m_Networks.append(pNetwork);
    for (const QString& Kind : OrvSnSystemShaderNode::kinds())
        onNodeRegistered(pNetwork, pNetwork->addSystemNode(std::make_unique<OrvSnSystemShaderNode>(Kind)));
    makeCurrent(pNetwork, getLayerShader(getCurrentChannelShader(pNetwork)));
}

void OrvLayerShaderManager::dropSystemShaders(OrvShaderNetwork* pNetwork)
{
    if (!m_Networks.removeOne(pNetwork))
        return;
    makeCurrent(pNetwork, nullptr);
    while (!pNetwork->systemNodes().isEmpty()) {
        OrvSnBaseNode* pNode = pNetwork->takeSystemNode();
        // Its row is still found by its identity.
        onNodeDeregistered(pNetwork, pNode);
        pNetwork->releaseSystemNode(pNode);
    }
}

void OrvLayerShaderManager::forget(OrvShaderNetwork* pNetwork)
{
    dropSystemShaders(pNetwork);
    m_Current.remove(pNetwork);
    m_Selected.remove(pNetwork);
}

void OrvLayerShaderManager::recreateSystemShaders()
{
    const QList<OrvShaderNetwork*> Networks = m_Networks;
    for (OrvShaderNetwork* pNetwork : Networks) {
        OrvLayerShader* pCurrent = currentLayerShader(pNetwork);
        const auto* pSystem = pCurrent ? qobject_cast<OrvSnSystemShaderNode*>(pCurrent->node()) : nullptr;
        const QString Kind = pSystem ? pSystem->kind() : QString();
        dropSystemShaders(pNetwork);
        makeSystemShaders(pNetwork);
        makeCurrent(pNetwork, pSystem ? getLayerShader(systemShaderOfKind(pNetwork, Kind)) : pCurrent);
    }
}

void OrvLayerShaderManager::onNodeRegistered(OrvShaderNetwork*, OrvSnBaseNode* pNode)
{
    if (!pNode->hasTag(OrvSnNames::ShaderTag) || m_Shaders.contains(pNode))
        return;
    auto* pShader = new OrvLayerShader(pNode);
    m_Shaders.insert(pNode, pShader);
    Q_EMIT layerShaderCreated(pShader);
    Q_EMIT layerShaderAdded(pShader);
    Q_EMIT shaderAdded(pNode);
}

void OrvLayerShaderManager::onNodeDeregistered(OrvShaderNetwork* pNetwork, OrvSnBaseNode* pNode)
{
    OrvLayerShader* pShader = m_Shaders.take(pNode);
    if (!pShader)
        return;
    if (m_Current.value(pNetwork) == pShader)
        makeCurrent(pNetwork, getLayerShader(getCurrentChannelShader(pNetwork)));
    Q_EMIT layerShaderRemoved(pShader);
    Q_EMIT shaderRemoved(pNode);
    // Receivers of the signals above may be connected through the event queue.
    pShader->deleteLater();
}

void OrvLayerShaderManager::onNodeTagsChanged(OrvSnBaseNode* pNode, QString Tag)
{
    if (Tag == OrvSnNames::ShaderTag) {
        if (pNode->hasTag(Tag))
            onNodeRegistered(pNode->network(), pNode);
        else
            onNodeDeregistered(pNode->network(), pNode);
        return;
    }
    if (OrvLayerShader* pShader = getLayerShader(pNode)) {
        Q_EMIT layerShaderTagsChanged(Tag, pShader);
        Q_EMIT shaderTagsChanged(Tag, pNode);
    }
}

void OrvLayerShaderManager::onNodeNameChanged(OrvSnBaseNode* pNode, QString Name)
{
    if (OrvLayerShader* pShader = getLayerShader(pNode))
        Q_EMIT pShader->layerShaderNameChanged(Name);
}

void OrvLayerShaderManager::onCurrentNetworkChanged()
{
    Q_EMIT currentLayerShaderChanged(currentLayerShader());
}

#include "moc_OrvLayerShaderManager.cpp"
