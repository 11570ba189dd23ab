// What a layer has in common with others, and where it may stand.

#include "OrvCore/Layers/OrvLayer.h"

#include "OrvCore/Channels/OrvChannelConversion.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerSnapshot.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Layers/OrvShaderLayers.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

namespace {

/// The merge nodes of other layers that read the node as this kind of component.
QVector<OrvSnMergeNode*> otherReaders(
    const OrvSnBaseNode* pComponent, bool AsMask, const OrvSnMergeNode* pSelf)
{
    QVector<OrvSnMergeNode*> Readers;
    if (!pComponent || pComponent->hasTag(OrvSnNames::ShaderInputTag))
        return Readers;
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pComponent).Targets;
    for (const OrvChainTargets::Target& Target : Targets) {
        if ((Target.InputName == OrvSnNames::Mask) != AsMask)
            continue;
        for (OrvSnMergeNode* pReader : OrvChainTargets::owners(Target)) {
            // Streams of one layer share nothing with each other: the mask is the layer's.
            if (pReader->commonNode() != pSelf->commonNode() && !Readers.contains(pReader))
                Readers.append(pReader);
        }
    }
    return Readers;
}

} // namespace

bool OrvLayer::isPaintComponentShared() const
{
    return !otherReaders(contentNode(), false, m_pBlendNode).isEmpty();
}

bool OrvLayer::isMaskComponentShared() const
{
    return !otherReaders(maskNode(), true, m_pBlendNode).isEmpty();
}

QList<OrvLayer*> OrvLayer::getOtherSharers() const
{
    QList<OrvLayer*> Sharers;
    for (const QVector<OrvSnMergeNode*>& Readers :
        {otherReaders(contentNode(), false, m_pBlendNode), otherReaders(maskNode(), true, m_pBlendNode)}) {
        for (OrvSnMergeNode* pReader : Readers) {
            OrvLayer* pLayer = OrvLayerManager::instance().getLayer(pReader, true);
            if (!Sharers.contains(pLayer))
                Sharers.append(pLayer);
        }
    }
    return Sharers;
}

bool OrvLayer::isDownstreamShared() const
{
    return !downstreamSharer().isEmpty();
}

QList<OrvLayer*> OrvLayer::downstreamSharer() const
{
    for (OrvSnBaseNode* pContainer : OrvChainTargets::containers(m_pBlendNode)) {
        if (qobject_cast<OrvSnMultiChannelMergeNode*>(pContainer))
            continue;
        OrvLayer* pAround = OrvLayerManager::instance().getLayer(pContainer, true);
        if (!pAround)
            break; // what shares the channel shares all of it, which the channel says
        if (pAround->isShared())
            return QList<OrvLayer*>{pAround} + pAround->getOtherSharers();
    }
    return {};
}

bool OrvLayer::isTaggedForCrossChannelSharing() const
{
    return m_pBlendNode->userAttribute(OrvMergeAttributes::CrossChannelSharing).value().toBool();
}

QString OrvLayer::placementObstacle(const OrvSnBaseNode* pTarget, const OrvLayerStack* pStack) const
{
    if (!pTarget || pTarget->network() != m_pBlendNode->network())
        return tr("'%1' belongs to another object").arg(name());
    if (!OrvLayerUtils::isModificationAllowedAt(pTarget))
        return OrvEditObstacle::at(pTarget);
    // Inside itself, or inside what it shows.
    const QVector<OrvSnBaseNode*> Containers = OrvChainTargets::containers(pTarget);
    if (Containers.contains(m_pBlendNode) || Containers.contains(contentNode()))
        return tr("'%1' cannot stand inside itself").arg(name());
    // A stream of a layer in several channels is that of its channel, in masks there is none.
    if (OrvLayerStreamUtils::containsMultiChannelLayers(this)
        && (OrvChainTargets::channel(pTarget) != OrvChainTargets::channel(m_pBlendNode)
            || (pStack && pStack->isWithinMask())))
        return tr("'%1' is in several channels, and stays in each").arg(name());
    // A layered shader is fed by stacks in which it cannot stand itself.
    if (isShaderLayer() && pTarget->network()->wouldConnectionBreakDAG(shaderNode(), pTarget))
        return tr("The shader of '%1' is fed by this stack").arg(name());
    const bool AmongShaders = OrvShaderLayers::isPlaceOfShaders(pTarget);
    // What goes into a shared group later is seen with its sharers too.
    const bool KindIsOpen = isGroupLayer() && !isPaintComponentShared();
    if (OrvShaderLayers::fits(this, AmongShaders)
        && (KindIsOpen || OrvShaderLayers::isPlaceOfShaders(m_pBlendNode) == AmongShaders))
        return QString();
    return AmongShaders ? tr("Only shader layers stand in a material channel")
                        : tr("Shader layers stand in material channels only");
}

OrvLayer* OrvLayer::addSharedLayerAfter(OrvSnBaseNode* pTarget, const QString&, bool)
{
    // The content of an adjustment layer is what lies below it: another place makes it another content.
    if (!pTarget || !overNode() || OrvChainEditing::baseOperationOf(m_pBlendNode))
        return nullptr;
    if (pTarget->network() != m_pBlendNode->network() || !OrvLayerUtils::isModificationAllowedAt(pTarget)
        || OrvShaderLayers::isPlaceOfShaders(pTarget) != OrvShaderLayers::isPlaceOfShaders(m_pBlendNode))
        return nullptr;
    const QString FormerSpace = OrvChannelConversion::paintSpaceAt(m_pBlendNode);
    const QString Space = OrvChannelConversion::paintSpaceAt(pTarget);
    OrvUndoManager::AutoMacro Macro(tr("Share Layer '%1'").arg(name()));
    OrvSnMergeNode* pMerge = OrvChainEditing::addNode(
        m_pBlendNode->network(), std::make_unique<OrvSnMergeNode>(), name(), pTarget, 1, 0);
    OrvChainEditing::copyAppearance(*m_pBlendNode, *pMerge);
    const bool Done = pMerge->connectInput(OrvSnNames::Over, overNode())
        && (!maskNode() || pMerge->connectInput(OrvSnNames::Mask, maskNode()))
        && OrvChainEditing::insertAbove(pMerge, pTarget);
    if (!Done) {
        Macro.cancel();
        return nullptr;
    }
    OrvChannelConversion::keepColors(pMerge, FormerSpace, Space);
    return OrvLayerManager::instance().getLayer(pMerge, true);
}

OrvShaderInput* OrvLayer::shareLayerAsChannel()
{
    const QList<OrvLayerStack*> Stacks = stacks();
    return Stacks.isEmpty() ? nullptr : Stacks.first()->shareLayersAsChannel({this});
}

OrvShaderInput* OrvLayerStack::shareLayersAsChannel(const QList<OrvLayer*>& Layers)
{
    OrvShaderInput* pOwner = ownerShaderInput();
    const QList<OrvLayer*> Shared = outermost(Layers);
    if (!pOwner || Shared.isEmpty())
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Share Layers As Channel"));
    OrvShaderInput* pChannel = OrvShaderInputUtils::create(network(),
        OrvShaderInputUtils::generateUniqueName(network(), Shared.first()->name()), pOwner->imageSetSize(),
        pOwner->imageSetDepth(), &pOwner->colorSpaceConfig(), pOwner->isScalar() || isWithinMask());
    if (pChannel && holdsShaders())
        pChannel->node()->addTag(OrvSnNames::MaterialShaderInputTag);
    OrvSnBaseNode* pTarget = pChannel ? pChannel->topNode() : nullptr;
    for (auto Layer = Shared.rbegin(); Layer != Shared.rend() && pTarget; ++Layer) {
        // What reads what lies below it reads something else there: it becomes a layer of its own.
        const OrvLayer* pThere = OrvChainEditing::baseOperationOf((*Layer)->blendNode())
            ? OrvLayerStreamUtils::addDuplicateLayerAbove(*Layer, pTarget, pChannel)
            : (*Layer)->addSharedLayerAfter(pTarget, QString(), true);
        pTarget = pThere ? pThere->blendNode() : nullptr;
    }
    if (!pTarget) {
        Macro.cancel();
        return nullptr;
    }
    return pChannel;
}

void OrvLayer::unshareLayer()
{
    if (!isShared() || !OrvLayerUtils::isLayerModifiable(this))
        return;
    OrvUndoManager::AutoMacro Macro(tr("Unshare Layer '%1'").arg(name()));
    OrvLayerManager& Manager = OrvLayerManager::instance();
    const bool PaintShared = isPaintComponentShared();
    const bool MaskShared = isMaskComponentShared();
    const bool PaintCurrent
        = PaintShared && Manager.currentComponent() && Manager.currentComponent() == paintNode();
    const bool MaskCurrent
        = MaskShared && Manager.currentComponent() && Manager.currentComponent() == maskPaintNode();
    // A copy of the whole layer lends its parts.
    const QVector<OrvSnMergeNode*> Copies
        = OrvLayerSnapshot::capture({m_pBlendNode}, OrvChainEditing::Channels::AreLimits)
              .instantiate(m_pBlendNode->network(), OrvUdimLayout());
    if (Copies.isEmpty()) {
        Macro.cancel();
        return;
    }
    const auto takeOver = [&](OrvSnBaseNode* pHolder, const QString& InputName) {
        OrvSnBaseNode* pFormer = pHolder->inputNode(InputName);
        pHolder->connectInput(InputName, Copies.first()->inputNode(InputName));
        OrvChainEditing::removeUnused(pFormer); // an adjustment stack of its own above what was shared
    };
    if (PaintShared)
        takeOver(m_pBlendNode, OrvSnNames::Over);
    if (MaskShared)
        takeOver(commonNode(), OrvSnNames::Mask);
    OrvChainEditing::removeUnused(Copies.first());
    if (isCurrent() && (PaintCurrent || MaskCurrent))
        Manager.setCurrentComponent(PaintCurrent ? paintNode() : maskPaintNode());
}
