#include "OrvCore/Layers/OrvShaderLayers.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"

namespace {

/// What ends at the target are lit pictures; for a group's inside, the place of the group says.
bool endsAmongShaders(const OrvChainTargets::Target& Target)
{
    if (Target.pNode->hasTag(OrvSnNames::ShaderInputTag))
        return Target.pNode->hasTag(OrvSnNames::MaterialShaderInputTag);
    const OrvSnBaseNode* pTop = Target.pNode->inputNode(Target.InputName);
    if (Target.InputName == OrvSnNames::Mask || (pTop && pTop->hasTag(OrvSnNames::AdjustmentStackTopTag)))
        return false;
    const QVector<OrvSnMergeNode*> Groups = OrvChainTargets::owners(Target);
    return !Groups.isEmpty() && std::all_of(Groups.begin(), Groups.end(), OrvShaderLayers::isPlaceOfShaders);
}

bool isOfShaders(const OrvLayer* pLayer)
{
    const OrvShaderInput* pChannel = pLayer->sharedShaderInput();
    return pLayer->isShaderLayer() || (pChannel && pChannel->isMaterialStack());
}

} // namespace

bool OrvShaderLayers::isPlaceOfShaders(const OrvSnBaseNode* pNode)
{
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pNode).Targets;
    return !Targets.isEmpty() && std::all_of(Targets.begin(), Targets.end(), endsAmongShaders);
}

bool OrvShaderLayers::fits(const OrvLayer* pLayer, bool AmongShaders)
{
    const auto fitsAlone = [AmongShaders](const OrvLayer* pOne) {
        return pOne->isGroupLayer() || OrvLayerStreamUtils::isMultiChannelMergeLayer(pOne)
            || isOfShaders(pOne) == AmongShaders;
    };
    if (!fitsAlone(pLayer))
        return false;
    const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pLayer);
    const QList<OrvLayer*> Inside = pInside ? pInside->allLayers() : QList<OrvLayer*>();
    return std::all_of(Inside.begin(), Inside.end(), fitsAlone);
}

bool OrvShaderLayers::fits(OrvSnMergeNode* pMerge, bool AmongShaders)
{
    return fits(OrvLayerManager::instance().getLayer(pMerge, true), AmongShaders);
}

bool OrvLayerStack::holdsShaders() const
{
    return m_pNode && endsAmongShaders({m_pNode.data(), m_InputName});
}

OrvLayer* OrvLayerStack::createShaderLayer(
    OrvLayerShader* pShader, OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name)
{
    OrvSnBaseNode* pNode = pShader ? pShader->node() : nullptr;
    if (!pNode || !network() || pNode->network() != network()
        || OrvLayerShaderManager::instance().isSystemShader(pShader) || !holdsShaders())
        return nullptr;
    return addLayer(tr("Add Shader Layer"), Flags, pBelow, Name, pNode->name(),
        [pNode](OrvSnBaseNode*, const QString&) { return pNode; });
}

bool OrvLayer::isSharedShader() const
{
    const OrvSnBaseNode* pShader = shaderNode();
    return pShader && (!pShader->hasTag(OrvSnNames::StackShaderTag) || pShader->consumers().size() > 1);
}

OrvSnBaseNode* OrvLayer::convertShaderLayerToShader()
{
    OrvSnBaseNode* pShader = shaderNode();
    if (!pShader || isSharedShader() || !isModifiable())
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Convert Layer '%1' to Shader").arg(name()));
    // A listed shader stays when its last layer goes.
    pShader->removeTag(OrvSnNames::StackShaderTag);
    for (OrvLayerStack* pStack : stacks())
        pStack->deleteLayers({this});
    if (!m_pBlendNode->network())
        return pShader;
    Macro.cancel();
    return nullptr;
}
