#include "OrvCore/Project/OrvCurrentState.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvObjectReferenceManager.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvSnSystemShaderNode.h"

#include <QtCore/QJsonObject>

namespace {

const QString ChannelKey = QStringLiteral("currentChannel");
const QString LayersKey = QStringLiteral("currentLayers");
const QString ShaderKey = QStringLiteral("currentShader");
const QString SelectedShaderKey = QStringLiteral("selectedShader");

OrvSnBaseNode* nodeOf(const QString& Uuid)
{
    return qobject_cast<OrvSnBaseNode*>(OrvObjectReferenceManager::instance().getPointer(Uuid));
}

} // namespace

OrvCurrentState OrvCurrentState::of(const OrvGeoEntity* pEntity)
{
    OrvCurrentState State;
    const OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
    if (const OrvShaderInput* pChannel = Channels.currentShaderInput(pEntity->shaderNetwork()))
        State.m_Channel = pChannel->node()->uuidString();
    for (const OrvShaderInput* pChannel : Channels.getShaderInputsFromNetwork(pEntity->shaderNetwork())) {
        const OrvLayer* pLayer = pChannel->currentLayer();
        if (pLayer && pLayer->blendNode())
            State.m_Layers.insert(pChannel->node()->uuidString(), pLayer->blendNode()->uuidString());
    }
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    if (const OrvLayerShader* pShader = Shaders.currentLayerShader(pEntity->shaderNetwork())) {
        const auto* pSystem = qobject_cast<const OrvSnSystemShaderNode*>(pShader->node());
        State.m_Shader = pSystem ? pSystem->kind() : pShader->node()->uuidString();
    }
    if (const OrvSnBaseNode* pSelected = Shaders.selectedUserShaderNode(pEntity->shaderNetwork()))
        State.m_SelectedShader = pSelected->uuidString();
    return State;
}

void OrvCurrentState::apply(const OrvGeoEntity* pEntity) const
{
    OrvShaderInputManager& Channels = OrvShaderInputManager::instance();
    for (OrvShaderInput* pChannel : Channels.getShaderInputsFromNetwork(pEntity->shaderNetwork())) {
        OrvSnBaseNode* pLayerNode = nodeOf(m_Layers.value(pChannel->node()->uuidString()));
        if (OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pLayerNode, true)) {
            Channels.setCurrentLayerOf(pChannel, pLayer);
            pLayer->setSelected(true, false);
        }
    }
    OrvShaderInput* pCurrent = OrvShaderInputUtils::getShaderInput(nodeOf(m_Channel));
    // It may be current already, since it came back, but without its layer.
    if (Channels.currentShaderInput(pEntity->shaderNetwork()) == pCurrent && pCurrent)
        OrvLayerManager::instance().setCurrentLayer(pEntity->shaderNetwork(), pCurrent->currentLayer());
    Channels.makeShaderInputCurrent(pEntity->shaderNetwork(), pCurrent, false);

    OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    const auto makeShaderCurrent = [&](const QString& Key) {
        OrvSnBaseNode* pShader = Shaders.systemShaderOfKind(pEntity->shaderNetwork(), Key);
        if (!pShader)
            pShader = nodeOf(Key);
        if (Shaders.getLayerShader(pShader) && pShader->network() == pEntity->shaderNetwork())
            Shaders.setCurrentShader(pShader);
    };
    makeShaderCurrent(m_SelectedShader); // the chosen one is the user's that was current last
    makeShaderCurrent(m_Shader);
}

void OrvCurrentState::write(QJsonObject& Entity) const
{
    if (!m_Channel.isEmpty())
        Entity.insert(ChannelKey, m_Channel);
    QJsonObject Layers;
    for (auto Layer = m_Layers.begin(); Layer != m_Layers.end(); ++Layer)
        Layers.insert(Layer.key(), Layer.value());
    Entity.insert(LayersKey, Layers);
    if (!m_Shader.isEmpty())
        Entity.insert(ShaderKey, m_Shader);
    if (!m_SelectedShader.isEmpty())
        Entity.insert(SelectedShaderKey, m_SelectedShader);
}

OrvCurrentState OrvCurrentState::read(const QJsonObject& Entity)
{
    OrvCurrentState State;
    State.m_Channel = Entity.value(ChannelKey).toString();
    const QJsonObject Layers = Entity.value(LayersKey).toObject();
    for (auto Layer = Layers.begin(); Layer != Layers.end(); ++Layer)
        State.m_Layers.insert(Layer.key(), Layer.value().toString());
    State.m_Shader = Entity.value(ShaderKey).toString();
    State.m_SelectedShader = Entity.value(SelectedShaderKey).toString();
    return State;
}
