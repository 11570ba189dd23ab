// How layers leave a stack: removed, or freed of the group around them.

#include "OrvCore/Layers/OrvLayerStack.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerSnapshot.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtCore/QSet>
#include <QtWidgets/QUndoCommand>

namespace {

/// A layer that goes, and what goes with it in other channels: a layer that stands in several goes as a whole,
/// whether it goes itself or in a group. The layer itself comes first.
QList<OrvLayer*> goingWith(OrvLayer* pLayer)
{
    QList<OrvLayer*> Going{pLayer};
    for (int Index = 0; Index < Going.size(); ++Index) {
        QList<OrvLayer*> Held{Going[Index]};
        if (const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(Going[Index]))
            Held += pInside->allLayers();
        for (const OrvLayer* pHeld : qAsConst(Held)) {
            for (OrvLayer* pStream : pHeld->inAllChannels().mid(1)) {
                if (!Held.contains(pStream) && !Going.contains(pStream))
                    Going.append(pStream);
            }
        }
    }
    return Going;
}

/// The group around a layer, or the layer in whose mask or adjustment stack it stands; null for an outermost one.
OrvLayer* holderOf(const OrvLayer* pLayer)
{
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pLayer->blendNode()).Targets;
    for (const OrvChainTargets::Target& Target : Targets) {
        const QVector<OrvSnMergeNode*> Owners = OrvChainTargets::owners(Target);
        if (!Owners.isEmpty())
            return OrvLayerManager::instance().getLayer(Owners.first(), true);
    }
    return nullptr;
}

/// What a group did to the layers inside and they lack without it, in words; empty for a plain group.
QString lostWith(const OrvLayer* pGroup)
{
    const OrvBlendParameters Blending = pGroup->blendNode()->blendParameters();
    QStringList Lost;
    if (pGroup->hasMask() && Blending.MaskEnabled)
        Lost.append(OrvLayerStack::tr("mask"));
    if (pGroup->hasAdjustmentStack())
        Lost.append(OrvLayerStack::tr("adjustments"));
    if (Blending.Mode != OrvBlendMode::Normal)
        Lost.append(OrvLayerStack::tr("blend mode"));
    if (Blending.Amount < 1.0f)
        Lost.append(OrvLayerStack::tr("amount"));
    if (Blending.AdvancedEnabled)
        Lost.append(OrvLayerStack::tr("advanced blending"));
    return Lost.isEmpty()
        ? QString()
        : OrvLayerStack::tr("'%1' (%2)").arg(pGroup->name(), Lost.join(QLatin1String(", ")));
}

/// What keeps one of the layers where it is; empty when nothing does.
QString obstacleOf(const QList<OrvLayer*>& Layers)
{
    const auto Kept = std::find_if_not(Layers.begin(), Layers.end(), OrvLayerUtils::isLayerModifiable);
    return Kept == Layers.end() ? QString() : OrvEditObstacle::of(*Kept);
}

} // namespace

/// Tells, whenever it is done, that layers left their stacks.
class OrvRemovedLayersNotice : public QUndoCommand {
public:
    explicit OrvRemovedLayersNotice(const QList<OrvLayer*>& Layers)
        : m_Layers(Layers.begin(), Layers.end())
    {
    }
    void undo() override { }
    void redo() override { Q_EMIT OrvLayerManager::instance().layersRemoved(m_Layers); }

private:
    QSet<OrvLayer*> m_Layers;
};

void OrvLayerStack::tellRemoved(const QList<OrvLayer*>& Layers)
{
    QList<OrvLayer*> Gone;
    for (OrvLayer* pLayer : Layers) {
        if (!pLayer->blendNode()->network())
            Gone.append(pLayer);
    }
    if (!Gone.isEmpty())
        OrvUndoManager::instance().perform(std::make_unique<OrvRemovedLayersNotice>(Gone));
}

OrvLayer* OrvLayerStack::survivorOf(const QList<OrvLayer*>& Leaving) const
{
    OrvLayer* pCurrent = OrvLayerManager::instance().currentLayer(network());
    const QSet<OrvLayer*> Going(Leaving.begin(), Leaving.end());
    OrvLayer* pGone = nullptr;
    for (OrvLayer* pAround = pCurrent; pAround; pAround = holderOf(pAround)) {
        if (Going.contains(pAround))
            pGone = pAround;
    }
    if (!pGone)
        return pCurrent;
    OrvLayerManager& Manager = OrvLayerManager::instance();
    // The next one below, else the next one above, else the group around.
    for (OrvSnBaseNode* pNode = pGone->blendNode(); pNode; pNode = pNode->inputNode(OrvSnNames::Base)) {
        OrvLayer* pLayer = Manager.getLayer(pNode, true);
        if (pLayer && !Going.contains(pLayer))
            return pLayer;
    }
    OrvSnBaseNode* pNode = pGone->blendNode();
    while (pNode) {
        OrvSnBaseNode* pAbove = nullptr;
        for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
            if (Reader.InputName == OrvSnNames::Base && OrvLayerStreamUtils::isMergeNode(Reader.pNode))
                pAbove = Reader.pNode;
        }
        OrvLayer* pLayer = Manager.getLayer(pAbove, true);
        if (pLayer && !Going.contains(pLayer))
            return pLayer;
        pNode = pAbove;
    }
    return pGone->parentGroup();
}

void OrvLayerStack::leaveCurrentLayer(const QList<OrvLayer*>& Leaving)
{
    OrvLayerManager& Manager = OrvLayerManager::instance();
    OrvLayer* pNext = survivorOf(Leaving);
    const bool Moves = pNext != Manager.currentLayer(network());
    Manager.setCurrentLayer(network(), pNext, true);
    // What is selected in other stacks, or in the node graph alone, is none of this one's rows.
    const QSet<OrvLayer*> Going(Leaving.begin(), Leaving.end());
    const QList<OrvLayer*> Selected = selectedLayers();
    const bool NothingSelected = std::all_of(
        Selected.begin(), Selected.end(), [&](OrvLayer* pLayer) { return Going.contains(pLayer); });
    if (pNext && (Moves || NothingSelected))
        pNext->setSelected(true);
}

void OrvLayerStack::deleteLayers(const QList<OrvLayer*>& Layers)
{
    const QList<OrvLayer*> Leaving = outermost(Layers.isEmpty() ? selectedLayers() : Layers);
    if (Leaving.isEmpty())
        Q_EMIT OrvLayerManager::instance().refused(tr("Select the layers to remove"));
    QList<OrvLayer*> Going;
    QStringList Obstacles;
    for (OrvLayer* pLayer : Leaving) {
        const QList<OrvLayer*> Together = goingWith(pLayer);
        const QString Obstacle = obstacleOf(Together);
        if (Obstacle.isEmpty())
            Going += Together;
        else
            Obstacles.append(Obstacle);
    }
    if (!Obstacles.isEmpty())
        Q_EMIT OrvLayerManager::instance().refused(
            (Going.isEmpty() ? tr("No layer was removed: %1") : tr("Not all layers were removed: %1"))
                .arg(OrvEditObstacle::several(Obstacles)));
    if (Going.isEmpty())
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Remove Layers"));
    leaveCurrentLayer(Going);
    for (OrvLayer* pLayer : qAsConst(Going)) {
        if (!pLayer->blendNode()->network()) // it was in a group that went
            continue;
        OrvChainEditing::takeOut(pLayer->blendNode());
        OrvChainEditing::removeUnused(pLayer->blendNode());
    }
    tellRemoved(Going);
}

bool OrvLayerStack::freeLayersOf(const OrvLayer* pGroup, QList<OrvLayer*>& Freed)
{
    OrvSnBaseNode* pTarget = pGroup->blendNode();
    QVector<OrvSnMergeNode*> Inside;
    for (const OrvLayer* pLayer : OrvLayerStreamUtils::groupStack(pGroup)->layerList())
        Inside.append(pLayer->blendNode());
    // Layers that another group shows too stay there; copies of them are freed here.
    const bool Shared = pGroup->isPaintComponentShared();
    if (Shared) {
        Inside = OrvLayerSnapshot::capture(Inside, OrvChainEditing::Channels::AreLimits)
                     .instantiate(pTarget->network(), OrvUdimLayout());
    }
    for (auto Merge = Inside.rbegin(); Merge != Inside.rend(); ++Merge) {
        if (!Shared)
            OrvChainEditing::takeOut(*Merge);
        if (!OrvChainEditing::insertAbove(*Merge, pTarget))
            return false;
        if (!pGroup->isVisibleHere())
            (*Merge)->setEnabledAsBool(false);
        pTarget = *Merge;
        Freed.prepend(OrvLayerManager::instance().getLayer(*Merge, true));
    }
    return true;
}

void OrvLayerStack::ungroupLayers()
{
    QList<OrvLayer*> Groups;
    QStringList Obstacles;
    for (OrvLayer* pLayer : outermost(selectedLayers())) {
        const QList<OrvLayer*> Streams = pLayer->inAllChannels();
        const bool AreGroups = std::all_of(
            Streams.begin(), Streams.end(), [](const OrvLayer* pStream) { return pStream->isGroupLayer(); });
        const QString Obstacle = AreGroups ? obstacleOf(Streams) : QString();
        if (AreGroups && Obstacle.isEmpty())
            Groups += Streams;
        else
            Obstacles.append(Obstacle);
    }
    const QString Kept = OrvEditObstacle::several(Obstacles);
    OrvLayerManager& Manager = OrvLayerManager::instance();
    if (Groups.isEmpty()) {
        if (!Kept.isEmpty())
            Q_EMIT Manager.refused(tr("No group was taken apart: %1").arg(Kept));
        return;
    }
    OrvUndoManager::AutoMacro Macro(tr("Ungroup Layers"));
    QList<OrvLayer*> Freed;
    QStringList Lost;
    for (OrvLayer* pGroup : qAsConst(Groups)) {
        const QString LostHere = lostWith(pGroup);
        if (!LostHere.isEmpty())
            Lost.append(LostHere);
        const bool Here = outermost({pGroup}).contains(pGroup);
        QList<OrvLayer*> FreedHere;
        if (!freeLayersOf(pGroup, FreedHere)) {
            Macro.cancel();
            return;
        }
        leaveCurrentLayer({pGroup});
        OrvChainEditing::takeOut(pGroup->blendNode());
        OrvChainEditing::removeUnused(pGroup->blendNode());
        if (Here)
            Freed += FreedHere;
    }
    tellRemoved(Groups);
    present(Freed, {OrvLayerMakeCurrent | OrvLayerSelectAlone});
    // In one text: a second one would take the place of the first.
    QStringList Told;
    if (!Kept.isEmpty())
        Told.append(tr("Not all groups were taken apart: %1").arg(Kept));
    Lost.removeDuplicates();
    if (!Lost.isEmpty())
        Told.append(tr("With the group went what it did as a whole: %1").arg(Lost.join(QLatin1String(", "))));
    if (!Told.isEmpty())
        Q_EMIT Manager.refused(Told.join(QLatin1String(". ")));
}
