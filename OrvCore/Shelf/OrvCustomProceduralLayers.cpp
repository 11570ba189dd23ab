// Custom procedurals as contents and masks of layers.

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

namespace {

/// A node that nothing holds yet.
std::unique_ptr<OrvSnCustomProceduralNode> makeNode(
    const QString& PathOrKey, const OrvImageSettings& Settings, QString& Error)
{
    QByteArray Text;
    if (!OrvMaterialPaintManager::instance().readCustomProcedural(PathOrKey, Text, Error))
        return nullptr;
    return OrvSnCustomProceduralNode::create(Text, Settings.Layout.extent().size(), Error);
}

} // namespace

OrvLayer* OrvLayerStack::createCustomProceduralLayer(
    const QString& PathOrKey, OrvSnBaseNode* pTarget, OrvLayerCreateFlags Flags, QString& Error)
{
    Error.clear();
    OrvLayer* pBelow = OrvLayerManager::instance().getLayer(pTarget, true);
    if (pTarget && !pBelow && pTarget != bottomNode()) {
        // The bottom of a group in this stack.
        const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pTarget).Targets;
        OrvLayerStack* pInner
            = Targets.isEmpty() ? nullptr : getLayerStack(Targets.first().pNode, Targets.first().InputName);
        if (pInner && pInner != this && pInner->bottomNode() == pTarget)
            return pInner->createCustomProceduralLayer(PathOrKey, pTarget, Flags, Error);
    }
    std::unique_ptr<OrvSnCustomProceduralNode> pNode
        = makeNode(PathOrKey, OrvImageSettings::ofStack(this), Error);
    if (!pNode)
        return nullptr;
    if (pTarget && !pBelow)
        Flags = OrvLayerCreateFlags((int(Flags) | OrvLayerAtBottom) & ~OrvLayerInsideCurrentGroup);
    const QString Name = pNode->name();
    return addLayer(
        tr("Add Custom Procedural Layer"), Flags, pBelow, QString(), Name,
        [&](OrvSnBaseNode* pPlace, const QString&) {
            return OrvChainEditing::addNode<OrvSnBaseNode>(network(), std::move(pNode), Name, pPlace, 1, 1);
        },
        &Error);
}

OrvSnCustomProceduralNode* OrvLayer::customProceduralNode() const
{
    return qobject_cast<OrvSnCustomProceduralNode*>(contentNode());
}

OrvSnCustomProceduralNode* OrvLayer::maskCustomProceduralNode() const
{
    return qobject_cast<OrvSnCustomProceduralNode*>(maskNode());
}

bool OrvLayer::isCustomProceduralLayer() const
{
    return customProceduralNode() != nullptr;
}

bool OrvLayer::hasMaskCustomProcedural() const
{
    return maskCustomProceduralNode() != nullptr;
}

bool OrvLayer::addMaskCustomProcedural(const QString& PathOrKey, QString& Error)
{
    Error.clear();
    if (hasMask() || !isModifiable()) {
        Error = hasMask() ? tr("'%1' has a mask already").arg(name()) : OrvEditObstacle::ofSharers(this);
        return false;
    }
    std::unique_ptr<OrvSnCustomProceduralNode> pNode
        = makeNode(PathOrKey, OrvImageSettings::ofLayer(m_pBlendNode), Error);
    if (!pNode)
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Add Mask : %1").arg(name()));
    const QString Name = pNode->name();
    return commonNode()->connectInput(OrvSnNames::Mask,
        OrvChainEditing::addNode<OrvSnBaseNode>(
            m_pBlendNode->network(), std::move(pNode), Name, m_pBlendNode, -1, 2));
}

QStringList OrvLayer::missingGeoChannels() const
{
    QStringList Missing;
    // A material needs what any of its streams needs.
    for (const OrvLayer* pLayer : inAllChannels()) {
        for (const auto* pNode : {pLayer->customProceduralNode(), pLayer->maskCustomProceduralNode()}) {
            if (pNode)
                Missing += pNode->missingGeoChannels();
        }
    }
    Missing.removeDuplicates();
    return Missing;
}
