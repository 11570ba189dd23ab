// What is done to the layers of a stack: making, grouping, copying.

#include "OrvCore/Layers/OrvLayerStack.h"

#include "OrvCore/Channels/OrvChannelConversion.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerClipboard.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Layers/OrvShaderLayers.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QSet>

OrvSnBaseNode* OrvLayerStack::placeFor(OrvLayerCreateFlags Flags, const OrvLayer* pBelow, QString* pObstacle)
{
    const auto none = [pObstacle](const QString& Obstacle) {
        if (pObstacle)
            *pObstacle = Obstacle;
        return nullptr;
    };
    if (!isStructureModifiable())
        return none(topNode() ? OrvEditObstacle::at(topNode()) : OrvEditObstacle::of(ownerShaderInput()));
    OrvSnBaseNode* pTarget = topNode();
    while (pTarget && pTarget->hasTag(OrvSnNames::AdjustmentStackTopTag))
        pTarget = pTarget->preferredInputNode();
    const auto isHere = [this](const OrvLayer* pLayer) {
        while (pLayer
            && !OrvChainTargets::of(pLayer->blendNode()).Targets.contains({m_pNode.data(), m_InputName}))
            pLayer = pLayer->parentGroup();
        return pLayer != nullptr;
    };
    const OrvLayer* pCurrent = OrvLayerManager::instance().currentLayer(network());
    if (pBelow && isHere(pBelow)) {
        pTarget = pBelow->blendNode();
    } else if (Flags.testFlag(OrvLayerAtBottom)) {
        pTarget = bottomNode();
    } else if (Flags.testFlag(OrvLayerInsideCurrentGroup) && isHere(pCurrent) && pCurrent->isGroupLayer()) {
        pTarget = pCurrent->contentNode();
    } else if (Flags.testFlag(OrvLayerAboveCurrent) && isHere(pCurrent)) {
        pTarget = pCurrent->blendNode();
    }
    if (!pTarget) {
        // The chain ends in nothing.
        OrvSnBaseNode* pLast = isEmpty() ? m_pNode.data() : layerList().last()->blendNode();
        pTarget = OrvChainEditing::addNode(
            network(), std::make_unique<OrvSnBottomTransparencyNode>(), QString(), pLast, -1, 0);
        if (!pLast->connectInput(isEmpty() ? m_InputName : OrvSnNames::Base, pTarget))
            return nullptr;
    }
    return OrvLayerUtils::isModificationAllowedAt(pTarget) ? pTarget : none(OrvEditObstacle::at(pTarget));
}

void OrvLayerStack::present(const QList<OrvLayer*>& Layers, OrvLayerCreateFlags Flags)
{
    if (Layers.isEmpty())
        return;
    if (Flags.testFlag(OrvLayerSelectAlone)) {
        QSet<OrvSnBaseNode*> Nodes;
        for (const OrvLayer* pLayer : Layers)
            Nodes.insert(pLayer->blendNode());
        network()->selectNone(Nodes);
        for (OrvLayer* pLayer : Layers)
            pLayer->setSelected(true);
    }
    if (Flags.testFlag(OrvLayerMakeCurrent))
        OrvLayerManager::instance().setCurrentLayer(network(), Layers.first(), true);
}

OrvLayer* OrvLayerStack::addLayer(const QString& MacroText, OrvLayerCreateFlags Flags, OrvLayer* pBelow,
    const QString& Name, const QString& DefaultName, const ContentFactory& MakeContent, QString* pError)
{
    OrvUndoManager::AutoMacro Macro(MacroText);
    OrvLayerManager& Manager = OrvLayerManager::instance();
    const auto refused = [&](const QString& Reason) -> OrvLayer* {
        Macro.cancel();
        if (pError)
            *pError = Reason;
        else
            Q_EMIT Manager.refused(Reason);
        return nullptr;
    };
    QString Obstacle;
    OrvSnBaseNode* pTarget = placeFor(Flags, pBelow, &Obstacle);
    if (!pTarget)
        return refused(tr("No layer can be added here: %1").arg(Obstacle));
    const bool AmongShaders = OrvShaderLayers::isPlaceOfShaders(pTarget);
    QString LayerName = Name.isEmpty() ? DefaultName : Name;
    if (Name.isEmpty() && Flags.testFlag(OrvLayerUniqueName))
        LayerName = Manager.uniqueLayerName(network(), DefaultName);
    OrvSnBaseNode* pContent = MakeContent(pTarget, LayerName);
    if (!pContent) {
        Macro.cancel();
        return nullptr;
    }
    OrvSnMergeNode* pMerge
        = OrvChainEditing::addNode(network(), std::make_unique<OrvSnMergeNode>(), LayerName, pTarget, 1, 0);
    if (!pMerge->connectInput(OrvSnNames::Over, pContent) || !OrvChainEditing::insertAbove(pMerge, pTarget))
        return refused(tr("'%1' cannot stand here: it would show itself").arg(LayerName));
    OrvLayer* pLayer = Manager.getLayer(pMerge, true);
    if (!OrvShaderLayers::fits(pLayer, AmongShaders))
        return refused(AmongShaders ? tr("Only shader layers stand in a material channel")
                                    : tr("Shader layers stand in material channels only"));
    present({pLayer}, Flags);
    return pLayer;
}

OrvLayer* OrvLayerStack::createPaintableLayer(
    OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name, const OrvColor& Fill)
{
    return addLayer(tr("Add Layer"), Flags, pBelow, Name, tr("Layer"),
        [&](OrvSnBaseNode* pTarget, const QString& LayerName) {
            const OrvImageSettings Settings = OrvImageSettings::ofStack(this);
            return OrvChainEditing::addImageNode(
                network(), Settings.Layout, Settings.Paint, Fill, LayerName, pTarget, 1, 1);
        });
}

OrvLayer* OrvLayerStack::createPaintableLayer(
    const OrvColor& Fill, OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name)
{
    return createPaintableLayer(Flags, pBelow, Name, Fill);
}

OrvLayer* OrvLayerStack::addOperationLayer(const QString& MacroText, const QString& Key, bool Procedural,
    OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name)
{
    std::unique_ptr<OrvSnBaseNode> pNode = OrvNodeRegistry::instance().createFromMenuPath(Key);
    const auto* pOperation = qobject_cast<const OrvSnOperationNode*>(pNode.get());
    if (!pOperation || pOperation->isProcedural() != Procedural)
        return nullptr;
    const QString Label = pNode->typeLabel();
    return addLayer(MacroText, Flags, pBelow, Name, Label, [&](OrvSnBaseNode* pTarget, const QString&) {
        if (Procedural) {
            OrvCustomAttribute Extent(
                OrvSnOperationNode::ExtentAttribute, OrvImageSettings::ofStack(this).Layout.extent().size());
            Extent.setVisible(false);
            pNode->createUserAttribute(Extent);
        }
        return OrvChainEditing::addNode(network(), std::move(pNode), Label, pTarget, 1, 1);
    });
}

OrvLayer* OrvLayerStack::createAdjustmentLayer(
    const QString& Key, OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name)
{
    return addOperationLayer(tr("Add Adjustment Layer"), Key, false, Flags, pBelow, Name);
}

OrvLayer* OrvLayerStack::createProceduralLayer(
    const QString& Key, OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name)
{
    return addOperationLayer(tr("Add Procedural Layer"), Key, true, Flags, pBelow, Name);
}

OrvLayer* OrvLayerStack::createGraphLayer(OrvLayerCreateFlags Flags, OrvLayer* pBelow, const QString& Name)
{
    return addLayer(tr("Add Graph Layer"), Flags, pBelow, Name, tr("Graph"),
        [&](OrvSnBaseNode* pTarget, const QString& LayerName) {
            auto pGraph = std::make_unique<OrvSnGraphNode>();
            {
                // The inside comes and goes with the node.
                const OrvUndoManager::NoRecording NoRecording;
                OrvChainEditing::addNode(pGraph->nestedNetwork(), std::make_unique<OrvSnGraphOutputNode>(),
                    tr("Output"), nullptr, 0, 0);
            }
            return OrvChainEditing::addNode<OrvSnBaseNode>(
                network(), std::move(pGraph), LayerName, pTarget, 1, 1);
        });
}

OrvLayer* OrvLayerStack::createGroupLayer(OrvLayerCreateFlags Flags)
{
    return addLayer(tr("Add Layer Group"), Flags, nullptr, QString(), tr("Group"),
        [&](OrvSnBaseNode* pTarget, const QString&) {
            return OrvChainEditing::addNode<OrvSnBaseNode>(
                network(), std::make_unique<OrvSnBottomTransparencyNode>(), QString(), pTarget, 0, 1);
        });
}

OrvLayer* OrvLayerStack::createBakePointLayer(OrvLayerCreateFlags Flags)
{
    return addLayer(tr("Add Bake Point"), Flags, nullptr, QString(), tr("Bake Point"),
        [&](OrvSnBaseNode* pTarget, const QString& LayerName) {
            return OrvChainEditing::addNode<OrvSnBaseNode>(
                network(), std::make_unique<OrvSnBakePointNode>(), LayerName, pTarget, 1, 1);
        });
}

OrvSnMergeNode* OrvLayerStack::gather(
    const QList<OrvLayer*>& Layers, OrvSnBaseNode* pTarget, const QString& Name)
{
    OrvSnBaseNode* pInnerTop = OrvChainEditing::addNode(
        network(), std::make_unique<OrvSnBottomTransparencyNode>(), QString(), pTarget, 0, 1);
    OrvSnMergeNode* pGroup
        = OrvChainEditing::addNode(network(), std::make_unique<OrvSnMergeNode>(), Name, pTarget, 1, 0);
    if (!pGroup->connectInput(OrvSnNames::Over, pInnerTop) || !OrvChainEditing::insertAbove(pGroup, pTarget))
        return nullptr;
    for (auto Layer = Layers.rbegin(); Layer != Layers.rend(); ++Layer) {
        OrvSnMergeNode* pMerge = (*Layer)->blendNode();
        OrvChainEditing::takeOut(pMerge);
        if (!OrvChainEditing::insertAbove(pMerge, pInnerTop))
            return nullptr;
        pInnerTop = pMerge;
    }
    return pGroup;
}

bool OrvLayerStack::canBeGathered(const QList<OrvLayer*>& Layers, QString& Error) const
{
    const auto targets
        = [](const OrvLayer* pLayer) { return OrvChainTargets::of(pLayer->blendNode()).Targets; };
    const QVector<OrvChainTargets::Target> Common = targets(Layers.first());
    for (const OrvLayer* pLayer : Layers) {
        if (!(targets(pLayer) == Common)) {
            Error = tr(
                "'%1' and '%2' stand in different groups; only layers of one group can be taken together")
                        .arg(Layers.first()->name(), pLayer->name());
            return false;
        }
        if (!OrvLayerUtils::isLayerModifiable(pLayer)) {
            Error = OrvEditObstacle::of(pLayer);
            return false;
        }
    }
    return true;
}

bool OrvLayerStack::dependsOnWhatIsBelow(const QList<OrvLayer*>& Layers)
{
    static const QString Normal = OrvBlendParameters::modeNames().first();
    return std::any_of(Layers.begin(), Layers.end(), [](const OrvLayer* pLayer) {
        const OrvSnMergeNode* pMerge = pLayer->blendNode();
        if (!pLayer->isVisibleHere())
            return false;
        if (pLayer->isAdjustmentLayer() || pLayer->isBakePointLayer()
            || pMerge->userAttribute(OrvMergeAttributes::BlendMode).value().toString() != Normal
            || pMerge->userAttribute(OrvMergeAttributes::AdvancedEnabled).value().toInt() != 0)
            return true;
        const OrvLayerStack* pInside
            = pMerge->isPassThrough() ? OrvLayerStreamUtils::groupStack(pLayer) : nullptr;
        return pInside && dependsOnWhatIsBelow(pInside->layerList());
    });
}

OrvLayer* OrvLayerStack::groupLayers(QString& Error, OrvLayerCreateFlags Flags,
    const QList<OrvLayer*>& Layers, OrvLayer* pBelow, const QString& Name)
{
    Error.clear();
    const QList<OrvLayer*> Gathered = outermost(Layers.isEmpty() ? selectedLayers() : Layers);
    if (Gathered.isEmpty() || !canBeGathered(Gathered, Error))
        return nullptr;
    OrvSnBaseNode* pTarget = (pBelow ? pBelow : Gathered.first())->blendNode();
    if (pBelow && (!OrvLayerUtils::isModificationAllowedAt(pTarget) || pTarget->network() != network())) {
        Error = tr("There is no place for a group above '%1'").arg(pBelow->name());
        return nullptr;
    }
    OrvUndoManager::AutoMacro Macro(tr("Group Layers"));
    OrvLayerManager& Manager = OrvLayerManager::instance();
    OrvSnMergeNode* pGroup
        = gather(Gathered, pTarget, Name.isEmpty() ? Manager.uniqueLayerName(network(), tr("Group")) : Name);
    if (!pGroup) {
        Error = tr("The layers hold the place where the group would stand");
        Macro.cancel();
        return nullptr;
    }
    // The picture stays as it was: what reads what lies below goes on reading it.
    OrvLayerStreamUtils::setLayerGroupPassThrough(pGroup, dependsOnWhatIsBelow(Gathered));
    OrvLayer* pLayer = Manager.getLayer(pGroup, true);
    present({pLayer}, Flags);
    return pLayer;
}

QList<OrvLayer*> OrvLayerStack::duplicateLayers()
{
    const QList<OrvLayer*> Originals = outermost(selectedLayers());
    if (Originals.isEmpty())
        return {};
    OrvUndoManager::AutoMacro Macro(tr("Duplicate Layers"));
    QList<OrvLayer*> Copies;
    // Copies of neighbours stand together, above the topmost of them.
    OrvSnBaseNode* pTarget = nullptr;
    for (int Last = Originals.size() - 1; Last >= 0; --Last) {
        int First = Last;
        const auto targets
            = [&](int Index) { return OrvChainTargets::of(Originals[Index]->blendNode()).Targets; };
        while (First > 0 && targets(First - 1) == targets(Last))
            --First;
        pTarget = Originals[First]->blendNode();
        for (int Index = Last; Index >= First; --Index) {
            OrvLayer* pCopy = OrvLayerStreamUtils::addDuplicateLayerAbove(Originals[Index], pTarget, this);
            if (!pCopy) {
                Macro.cancel();
                return {};
            }
            Copies.prepend(pCopy);
            pTarget = pCopy->blendNode();
        }
        Last = First;
    }
    present(Copies, {OrvLayerMakeCurrent | OrvLayerSelectAlone});
    return Copies;
}

void OrvLayerStack::copyToClipboard()
{
    QVector<OrvSnMergeNode*> Merges;
    for (const OrvLayer* pLayer : outermost(selectedLayers()))
        Merges.append(pLayer->blendNode());
    if (!Merges.isEmpty())
        OrvLayerClipboard::put(OrvLayerClipboard::Layers,
            OrvLayerSnapshot::capture(Merges, OrvChainEditing::Channels::AreFollowed));
}

void OrvLayerStack::cutToClipboard()
{
    const OrvUndoManager::AutoMacro Macro(tr("Cut Layers"));
    copyToClipboard();
    deleteLayers();
}

QList<OrvLayer*> OrvLayerStack::pasteFromClipboard(OrvLayerCreateFlags Flags, QString& Error)
{
    Error.clear();
    OrvLayerSnapshot Snapshot;
    if (!OrvLayerClipboard::get(OrvLayerClipboard::Layers, Snapshot, Error))
        return {};
    OrvUndoManager::AutoMacro Macro(tr("Paste Layers"));
    QString Obstacle;
    OrvSnBaseNode* pTarget = placeFor(Flags, nullptr, &Obstacle);
    if (!pTarget) {
        Macro.cancel();
        Error = tr("Layers cannot be pasted here: %1").arg(Obstacle);
        return {};
    }
    const bool AmongShaders = OrvShaderLayers::isPlaceOfShaders(pTarget);
    const QString Space = OrvChannelConversion::paintSpaceAt(pTarget);
    const QVector<OrvSnMergeNode*> Merges
        = Snapshot.instantiate(network(), OrvImageSettings::ofStack(this).Layout);
    QList<OrvLayer*> Layers;
    for (auto Merge = Merges.rbegin(); Merge != Merges.rend(); ++Merge) {
        if (!OrvChainEditing::insertAbove(*Merge, pTarget)) {
            Error = tr("Layers cannot be pasted here: '%1' shares a channel that would then show itself")
                        .arg((*Merge)->name());
            Macro.cancel();
            return {};
        }
        OrvLayer* pLayer = OrvLayerManager::instance().getLayer(*Merge, true);
        if (!OrvShaderLayers::fits(pLayer, AmongShaders)) {
            const QString Reason = AmongShaders
                ? tr("'%1' cannot be pasted here: only shader layers stand in a material channel")
                : tr("'%1' cannot be pasted here: shader layers stand in material channels only");
            Error = Reason.arg((*Merge)->name());
            Macro.cancel();
            return {};
        }
        OrvChannelConversion::keepColors(*Merge, Snapshot.paintSpace(), Space);
        pTarget = *Merge;
        Layers.prepend(pLayer);
    }
    present(Layers, Flags);
    return Layers;
}

OrvLayer* OrvLayerStack::shareLayer(OrvLayer* pLayer, OrvLayerCreateFlags Flags)
{
    if (!pLayer)
        return nullptr;
    const OrvUndoManager::AutoMacro Macro(tr("Share Layer '%1'").arg(pLayer->name()));
    OrvLayer* pShared = pLayer->addSharedLayerAfter(pLayer->blendNode(), QString(), true);
    if (pShared)
        present({pShared}, Flags);
    return pShared;
}
