#include "OrvCore/Layers/OrvLayerStack.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"

#include <QtCore/QSet>

namespace {

/// The first node of a chain that is no top of an adjustment stack.
OrvSnBaseNode* firstInChain(OrvSnBaseNode* pTop)
{
    while (pTop && pTop->hasTag(OrvSnNames::AdjustmentStackTopTag))
        pTop = pTop->preferredInputNode();
    return pTop;
}

/// Layers of a chain, topmost first; returns what lies below the last.
OrvSnBaseNode* collectLayers(OrvSnBaseNode* pTop, QList<OrvLayer*>& Layers)
{
    OrvLayerManager& Manager = OrvLayerManager::instance();
    OrvSnBaseNode* pNode = firstInChain(pTop);
    while (OrvLayer* pLayer = Manager.getLayer(pNode, true)) {
        Layers.append(pLayer);
        pNode = pNode->inputNode(OrvSnNames::Base);
    }
    return pNode;
}

} // namespace

OrvLayerStack::OrvLayerStack(OrvSnBaseNode* pNode, const QString& InputName)
    : m_pNode(pNode)
    , m_InputName(InputName)
{
}

OrvLayerStack::~OrvLayerStack() = default;

OrvLayerStack* OrvLayerStack::getLayerStack(OrvSnBaseNode* pNode, const QString& InputName)
{
    return OrvLayerManager::instance().getLayerStack(pNode, InputName);
}

OrvSnBaseNode* OrvLayerStack::topNode() const
{
    return m_pNode ? m_pNode->inputNode(m_InputName) : nullptr;
}

OrvSnBaseNode* OrvLayerStack::bottomNode() const
{
    return chain().pBottom;
}

QString OrvLayerStack::name() const
{
    if (!m_pNode)
        return {};
    const QVector<OrvSnMergeNode*> Owners = OrvChainTargets::owners({m_pNode, m_InputName});
    return Owners.isEmpty() ? m_pNode->name() : Owners.first()->commonNode()->name();
}

OrvShaderNetwork* OrvLayerStack::network() const
{
    return m_pNode ? m_pNode->network() : nullptr;
}

bool OrvLayerStack::isAdjustmentStack() const
{
    const OrvSnBaseNode* pTop = topNode();
    return pTop && pTop->hasTag(OrvSnNames::AdjustmentStackTopTag);
}

bool OrvLayerStack::isMaskStack() const
{
    return m_InputName == OrvSnNames::Mask;
}

bool OrvLayerStack::isGroupStack() const
{
    return m_pNode && !isMaskStack() && !isAdjustmentStack() && !m_pNode->hasTag(OrvSnNames::ShaderInputTag);
}

bool OrvLayerStack::isWithinMask() const
{
    return OrvChainTargets::isWithinMask({m_pNode.data(), m_InputName});
}

bool OrvLayerStack::isEmpty() const
{
    return !qobject_cast<OrvSnMergeNode*>(firstInChain(topNode()));
}

const OrvLayerStack::Chain& OrvLayerStack::chain() const
{
    const quint64 Revision = OrvShaderNetworkManager::instance().revision();
    if (m_Chain.Revision != Revision) {
        m_Chain.Layers.clear();
        m_Chain.pBottom = collectLayers(topNode(), m_Chain.Layers);
        m_Chain.Revision = Revision;
    }
    return m_Chain;
}

QList<OrvLayer*> OrvLayerStack::layerList(int RetrieveFlags) const
{
    if (RetrieveFlags == AllLayers)
        return chain().Layers;
    QList<OrvLayer*> Wanted;
    for (OrvLayer* pLayer : chain().Layers) {
        const RetrieveFlag Kind = pLayer->isMultiChannelLayer() ? MultiChannelLayers : OrdinaryLayers;
        if ((RetrieveFlags & Kind) && ((RetrieveFlags & DisabledLayers) || pLayer->isVisibleHere()))
            Wanted.append(pLayer);
    }
    return Wanted;
}

QMap<OrvLayerStack::ImageSetStatus, QList<OrvImageSet*>> OrvLayerStack::allImageSetsByStatus() const
{
    QMap<ImageSetStatus, QList<OrvImageSet*>> Images;
    QVector<OrvSnMergeNode*> Merges;
    for (const OrvLayer* pLayer : layerList())
        Merges.append(pLayer->blendNode());
    const OrvShaderInput* pOwner = ownerShaderInput();
    for (const OrvSnBaseNode* pNode :
        OrvChainEditing::nodesOf(Merges, OrvChainEditing::Channels::AreLimits)) {
        const auto* pImages = qobject_cast<const OrvSnChannelInputNode*>(pNode);
        if (!pImages || !pImages->imageSet())
            continue;
        const QList<OrvShaderInput*> Channels = OrvShaderInputUtils::findParents(pNode, QString());
        const bool Shared = std::any_of(Channels.begin(), Channels.end(),
            [pOwner](const OrvShaderInput* pChannel) { return pChannel != pOwner; });
        const ImageSetStatus Status = !OrvLayerUtils::isModificationAllowedAt(pNode) ? LockedImageSets
            : Shared                                                                 ? SharedImageSets
                                                                                     : FreeImageSets;
        Images[Status].append(pImages->imageSet());
    }
    return Images;
}

QList<OrvLayer*> OrvLayerStack::allLayers() const
{
    QList<OrvLayer*> All, Pending = chain().Layers;
    std::reverse(Pending.begin(), Pending.end());
    QSet<const OrvLayer*> Seen;
    while (!Pending.isEmpty()) {
        OrvLayer* pLayer = Pending.takeLast();
        if (Seen.contains(pLayer)) // a shared group's layers
            continue;
        Seen.insert(pLayer);
        All.append(pLayer);
        QList<OrvLayer*> Inside;
        if (pLayer->isGroupLayer())
            collectLayers(pLayer->contentNode(), Inside);
        for (auto Layer = Inside.rbegin(); Layer != Inside.rend(); ++Layer)
            Pending.append(*Layer);
    }
    return All;
}

QList<OrvLayer*> OrvLayerStack::selectedLayers() const
{
    QList<OrvLayer*> Selected;
    for (OrvLayer* pLayer : allLayers()) {
        if (pLayer->isSelected())
            Selected.append(pLayer);
    }
    return Selected;
}

QList<OrvLayer*> OrvLayerStack::outermost(const QList<OrvLayer*>& Layers) const
{
    const QSet<OrvLayer*> Given(Layers.begin(), Layers.end());
    QList<OrvLayer*> Outer;
    for (OrvLayer* pLayer : allLayers()) {
        if (!Given.contains(pLayer))
            continue;
        OrvLayer* pAround = pLayer->parentGroup();
        while (pAround && !Given.contains(pAround))
            pAround = pAround->parentGroup();
        if (!pAround)
            Outer.append(pLayer);
    }
    return Outer;
}

QList<OrvShaderInput*> OrvLayerStack::parentShaderInputs() const
{
    QList<OrvShaderInput*> Channels = OrvShaderInputUtils::findParents(m_pNode, QString());
    if (OrvShaderInput* pSelf = OrvShaderInputUtils::getShaderInput(m_pNode))
        Channels.prepend(pSelf);
    return Channels;
}

OrvShaderInput* OrvLayerStack::ownerShaderInput() const
{
    const QList<OrvShaderInput*> Channels = parentShaderInputs();
    return Channels.isEmpty() ? nullptr : Channels.first();
}

QString OrvLayerStack::currentStream() const
{
    const OrvShaderInput* pOwner = ownerShaderInput();
    if (!pOwner)
        return {};
    const OrvLayerShaderManager& Shaders = OrvLayerShaderManager::instance();
    const OrvLayerShader* pCurrent = Shaders.currentLayerShader(network());
    const QString Shown = pCurrent ? pCurrent->inputStreamName(pOwner) : QString();
    if (!Shown.isEmpty())
        return Shown;
    for (const OrvSnBaseNode::Consumer& Reader : pOwner->node()->consumers()) {
        if (Reader.pNode->hasTag(OrvSnNames::ShaderTag) && !Shaders.isSystemShaderNode(Reader.pNode))
            return Reader.InputName;
    }
    return {};
}

QString OrvLayerStack::currentStreamName(const OrvSnBaseNode* pMergeNode) const
{
    const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pMergeNode);
    return pMerge && pMerge->multiChannelNode() ? pMerge->stream() : QString();
}

bool OrvLayerStack::isStructureModifiable() const
{
    if (!network())
        return false;
    const OrvSnBaseNode* pTop = topNode();
    return pTop ? OrvLayerUtils::isModificationAllowedAt(pTop)
                : !m_pNode->locked() && OrvLayerUtils::isModificationAllowedAt(m_pNode);
}

#include "moc_OrvLayerStack.cpp"
