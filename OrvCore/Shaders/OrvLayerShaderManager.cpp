#include "OrvCore/Shaders/OrvLayerShaderManager.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Network/OrvSnNames.h"

OrvLayerShaderManager& OrvLayerShaderManager::instance()
{
    static OrvLayerShaderManager Manager;
    return Manager;
}

OrvLayerShaderManager::OrvLayerShaderManager()
{
    OrvShaderNetworkManager* pNetworks = &OrvShaderNetworkManager::instance();
    connect(pNetworks, &OrvShaderNetworkManager::nodeRegistered, this, &OrvLayerShaderManager::onNodeRegistered);
    connect(pNetworks, &OrvShaderNetworkManager::nodeDeregistered, this, &OrvLayerShaderManager::onNodeDeregistered);
    connect(pNetworks, &OrvShaderNetworkManager::nodeTagsChanged, this, &OrvLayerShaderManager::onNodeTagsChanged);
    connect(pNetworks, &OrvShaderNetworkManager::nodeNameChanged, this, &OrvLayerShaderManager::onNodeNameChanged);
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
    if (!pNetwork || m_Current.value(pNetwork) == pShader)
        return;
    if (pShader)
        m_Current.insert(pNetwork, pShader);
    else
        m_Current.remove(pNetwork);
    Q_EMIT currentLayerShaderChanged(pShader);
}

QList<OrvSnBaseNode*> OrvLayerShaderManager::getShaderNodes(
    const OrvShaderNetwork* pNetwork, bool WithSystemShaders) const
{
    QList<OrvSnBaseNode*> Nodes;
    if (!pNetwork || m_Shaders.isEmpty())
        return Nodes;
    for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
        if (getLayerShader(pNode) && (WithSystemShaders || !isSystemShaderNode(pNode)))
            Nodes.append(pNode);
    }
    return Nodes;
}

QList<OrvLayerShader*> OrvLayerShaderManager::getUserLayerShaders(const OrvShaderNetwork* pNetwork) const
{
    QList<OrvLayerShader*> Shaders;
    for (const OrvSnBaseNode* pNode : getShaderNodes(pNetwork, false))
        Shaders.append(getLayerShader(pNode));
    return Shaders;
}

bool OrvLayerShaderManager::isSystemShader(const OrvLayerShader* pShader) const
{
    return pShader && isSystemShaderNode(pShader->node());
}

bool OrvLayerShaderManager::isSystemShaderNode(const OrvSnBaseNode* pNode, bool AcceptUnfinished) const
{
    if (!pNode || (!AcceptUnfinished && !getLayerShader(pNode)))
        return false;
    for (const QString& Tag : {nodeTagCurrentChannelShader(), nodeTagCurrentLayerAndBelowShader(),
             nodeTagCurrentLayerShader(), nodeTagCurrentComponentShader(), nodeTagCurrentMaterialProxyShader(),
             nodeTagCurrentMaterialShader()}) {
        if (pNode->hasTag(Tag))
            return true;
    }
    return false;
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
    if (m_Current.value(pNetwork) == pShader) {
        m_Current.remove(pNetwork);
        Q_EMIT currentLayerShaderChanged(nullptr);
    }
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

#include "moc_OrvLayerShaderManager.cpp"
