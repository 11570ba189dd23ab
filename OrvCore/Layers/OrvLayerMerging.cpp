// Several layers of a stack become one that is painted.

#include "OrvCore/Layers/OrvLayerStack.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImageSet.h"

namespace {

bool areNeighbors(const QList<OrvLayer*>& Layers)
{
    for (int Index = 1; Index < Layers.size(); ++Index) {
        if (Layers[Index - 1]->blendNode()->inputNode(OrvSnNames::Base) != Layers[Index]->blendNode())
            return false;
    }
    return true;
}

} // namespace

OrvLayer* OrvLayerStack::mergeLayers(OrvLayerCreateFlags Flags)
{
    const QList<OrvLayer*> Merged = outermost(selectedLayers());
    QString Error;
    if (Merged.isEmpty() || !canBeGathered(Merged, Error))
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Merge Layers"));
    const OrvImageSettings Settings = OrvImageSettings::ofStack(this);
    const QString Name = Merged.first()->name();
    OrvSnMergeNode* pTop = Merged.first()->blendNode();
    OrvSnBaseNode* pBelow = Merged.last()->blendNode()->inputNode(OrvSnNames::Base);

    // Layers that need what lies below them are seen together with it; all others alone, so that what lies
    // below can still be changed under them.
    const bool WithBelow = areNeighbors(Merged) && dependsOnWhatIsBelow(Merged)
        && (OrvLayerStreamUtils::isMergeNode(pBelow) || !OrvLayerStreamUtils::isChainEnd(pBelow));
    OrvImageBuffer Pixels;
    if (WithBelow)
        Pixels = OrvLayerRendering::renderDifference(pTop, pBelow, Settings.Layout, Settings.Paint);
    OrvSnMergeNode* pGroup = gather(Merged, pTop, Name);
    if (!pGroup) {
        Macro.cancel();
        return nullptr;
    }
    OrvSnBaseNode* pInside = pGroup->inputNode(OrvSnNames::Over);
    if (!WithBelow)
        Pixels = OrvLayerRendering::render(pInside, Settings.Layout, Settings.Paint);
    OrvSnChannelInputNode* pPaint = OrvChainEditing::addImageNode(
        network(), Settings.Layout, Settings.Paint, OrvColor::clear(), Name, pGroup, 0, 1, Pixels);

    OrvLayerManager& Manager = OrvLayerManager::instance();
    OrvLayer* pLayer = Manager.getLayer(pGroup, true);
    const bool HeldCurrent = survivorOf(Merged) != Manager.currentLayer(network());
    if (HeldCurrent)
        Manager.setCurrentLayer(network(), pLayer, true);
    pGroup->connectInput(OrvSnNames::Over, pPaint);
    OrvChainEditing::removeUnused(pInside);
    tellRemoved(Merged);
    if (pLayer->isCurrent())
        Manager.setCurrentComponent(pPaint);
    present({pLayer}, Flags);
    return pLayer;
}
