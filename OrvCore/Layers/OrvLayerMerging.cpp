// Several layers of a stack become one that is painted: those that are selected, or those of a group.

#include "OrvCore/Layers/OrvLayerStack.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvShaderLayers.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QStringList>
#include <QtGui/QColor>

#include <algorithm>

namespace {

bool areNeighbors(const QList<OrvLayer*>& Layers)
{
    for (int Index = 1; Index < Layers.size(); ++Index) {
        if (Layers[Index - 1]->blendNode()->inputNode(OrvSnNames::Base) != Layers[Index]->blendNode())
            return false;
    }
    return true;
}

/// The group as it is seen over what lies below it, which its layers read.
OrvImageBuffer renderTogetherWithBelow(OrvSnMergeNode* pGroup, const OrvImageSettings& Settings)
{
    const bool WasVisible = pGroup->enabledAsBool();
    pGroup->setEnabledAsBool(true);
    const OrvImageBuffer Pixels = OrvLayerRendering::renderDifference(
        pGroup, pGroup->inputNode(OrvSnNames::Base), Settings.Layout, Settings.Paint,
        OrvChannelSpace::storedAround(pGroup));
    pGroup->setEnabledAsBool(WasVisible);
    return Pixels;
}

/// The names of those that are hidden among the layers and, on all levels, in those that are shown.
QStringList hiddenAmong(const QList<OrvLayer*>& Layers)
{
    QStringList Names;
    for (const OrvLayer* pLayer : Layers) {
        const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pLayer);
        if (!pLayer->isVisibleHere())
            Names.append(QStringLiteral("'%1'").arg(pLayer->name()));
        else if (pInside)
            Names += hiddenAmong(pInside->layerList());
    }
    return Names;
}

void tellLeftOut(const QStringList& Hidden)
{
    if (!Hidden.isEmpty())
        Q_EMIT OrvLayerManager::instance().refused(
            OrvLayerStack::tr("Left out because hidden: %1").arg(Hidden.join(QStringLiteral(", "))));
}

/// The tag that all of the layers have; invalid when they differ.
QColor commonColor(const QList<OrvLayer*>& Layers)
{
    const QColor Color = Layers.first()->color();
    const bool Same = std::all_of(Layers.begin(), Layers.end(),
        [&Color](const OrvLayer* pLayer) { return pLayer->color() == Color; });
    return Same ? Color : QColor();
}

/// Layers that stand in other channels too would fall apart; true, with a word to the user, when there are some.
bool refuseMultiChannelLayers(const QList<OrvLayer*>& Layers)
{
    for (const OrvLayer* pLayer : Layers) {
        if (OrvLayerStreamUtils::containsMultiChannelLayers(pLayer)) {
            Q_EMIT OrvLayerManager::instance().refused(
                OrvLayerStack::tr("'%1' stands in other channels too, or holds a layer that does").arg(pLayer->name()));
            return true;
        }
    }
    return false;
}

/// The group becomes an ordinary one in each of its channels, and the layers in it that stand in several become
/// ordinary ones.
QList<OrvLayer*> convertWithContents(const OrvLayer* pGroup)
{
    const QList<OrvLayer*> Streams = pGroup->inAllChannels();
    QList<OrvLayer*> Converted = Streams;
    for (const OrvLayer* pStream : Streams) {
        if (const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pStream))
            Converted += pInside->allLayers();
    }
    return OrvMultiChannelLayerUtils::convertToStandardLayers(Converted).mid(0, Streams.size());
}

/// The pixels hold all that the blending did.
void blendPlainly(OrvSnMergeNode* pMerge)
{
    for (const QString& Name : {OrvMergeAttributes::BlendMode, OrvMergeAttributes::Amount,
             OrvMergeAttributes::AmountEnabled, OrvMergeAttributes::AdvancedEnabled})
        pMerge->removeUserAttribute(Name);
    OrvSnBaseNode* pMask = pMerge->inputNode(OrvSnNames::Mask);
    pMerge->disconnectInput(OrvSnNames::Mask);
    OrvChainEditing::removeUnused(pMask);
}

} // namespace

OrvLayer* OrvLayerStack::mergeLayers(OrvLayerCreateFlags Flags)
{
    const QList<OrvLayer*> Merged = outermost(selectedLayers());
    QString Error;
    if (Merged.isEmpty() || (Merged.size() == 1 && !Merged.first()->isGroupLayer()))
        Error = tr("Select the layers to merge: there must be two at least");
    if (!Error.isEmpty() || !canBeGathered(Merged, Error)) {
        Q_EMIT OrvLayerManager::instance().refused(Error);
        return nullptr;
    }
    if (refuseMultiChannelLayers(Merged))
        return nullptr;
    if (OrvShaderLayers::isPlaceOfShaders(Merged.first()->blendNode())) {
        Q_EMIT OrvLayerManager::instance().refused(tr("Shader layers cannot be merged: they hold no paint"));
        return nullptr;
    }
    const auto TopmostShown = std::find_if(
        Merged.begin(), Merged.end(), [](const OrvLayer* pLayer) { return pLayer->isVisibleHere(); });
    if (TopmostShown == Merged.end()) {
        Q_EMIT OrvLayerManager::instance().refused(
            tr("Show one of the layers to merge: of hidden layers nothing would be left"));
        return nullptr;
    }
    const QStringList Hidden = hiddenAmong(Merged);
    const QColor Color = commonColor(Merged);
    OrvUndoManager::AutoMacro Macro(tr("Merge Layers"));
    const OrvImageSettings Settings = OrvImageSettings::ofStack(this);
    const QString Name = (*TopmostShown)->name();
    OrvSnMergeNode* pTop = Merged.first()->blendNode();
    OrvSnBaseNode* pBelow = Merged.last()->blendNode()->inputNode(OrvSnNames::Base);

    // Layers that need what lies below them are seen together with it; all others alone, so that what lies
    // below can still be changed under them.
    const bool WithBelow = areNeighbors(Merged) && dependsOnWhatIsBelow(Merged)
        && (OrvLayerStreamUtils::isMergeNode(pBelow) || !OrvLayerStreamUtils::isChainEnd(pBelow));
    const QString Space = OrvChannelSpace::storedAround(pTop);
    OrvImageBuffer Pixels;
    if (WithBelow)
        Pixels = OrvLayerRendering::renderDifference(pTop, pBelow, Settings.Layout, Settings.Paint, Space);
    OrvSnMergeNode* pGroup = gather(Merged, pTop, Name);
    OrvSnBaseNode* pInside = pGroup ? pGroup->inputNode(OrvSnNames::Over) : nullptr;
    if (pGroup && !WithBelow)
        Pixels = OrvLayerRendering::render(pInside, Settings.Layout, Settings.Paint, Space);
    if (!pGroup || Pixels.isNull()) {
        Macro.cancel();
        return nullptr;
    }
    OrvSnChannelInputNode* pPaint = OrvChainEditing::addImageNode(
        network(), Settings.Layout, Settings.Paint, OrvColor::clear(), Name, pGroup, 0, 1, Pixels);

    OrvLayerManager& Manager = OrvLayerManager::instance();
    OrvLayer* pLayer = Manager.getLayer(pGroup, true);
    const bool HeldCurrent = survivorOf(Merged) != Manager.currentLayer(network());
    if (HeldCurrent)
        Manager.setCurrentLayer(network(), pLayer, true);
    pGroup->connectInput(OrvSnNames::Over, pPaint);
    if (Color.isValid())
        pLayer->setColor(Color);
    OrvChainEditing::removeUnused(pInside);
    tellRemoved(Merged);
    if (pLayer->isCurrent())
        Manager.setCurrentComponent(pPaint);
    present({pLayer}, Flags);
    tellLeftOut(Hidden);
    return pLayer;
}

OrvLayer* OrvLayerStreamUtils::flattenLayer(OrvLayer* pLayer, OrvLayerStack*, bool)
{
    OrvLayerManager& Manager = OrvLayerManager::instance();
    const OrvLayerStack* pInside = groupStack(pLayer);
    if (!pInside || !pLayer->isModifiable()) {
        if (pLayer) {
            Q_EMIT Manager.refused(pInside ? OrvEditObstacle::ofSharers(pLayer)
                                           : OrvLayerStack::tr("'%1' is no group").arg(pLayer->name()));
        }
        return nullptr;
    }
    if (OrvShaderLayers::isPlaceOfShaders(pLayer->blendNode())) {
        Q_EMIT Manager.refused(
            OrvLayerStack::tr("'%1' cannot be flattened: it holds shaders, and no paint").arg(pLayer->name()));
        return nullptr;
    }
    OrvUndoManager::AutoMacro Macro(OrvLayerStack::tr("Flatten Layer Group : %1").arg(pLayer->name()));
    if (pLayer->isMultiChannelLayer()) {
        QList<OrvLayer*> Flat;
        for (OrvLayer* pStream : convertWithContents(pLayer))
            Flat.append(flattenLayer(pStream, nullptr));
        if (!Flat.isEmpty() && !Flat.contains(nullptr))
            return Flat.first();
        Macro.cancel();
        return nullptr;
    }
    if (refuseMultiChannelLayers({pLayer})) {
        Macro.cancel();
        return nullptr;
    }
    OrvSnMergeNode* pGroup = pLayer->blendNode();
    OrvSnBaseNode* pContent = pLayer->contentNode();
    const QStringList Hidden = hiddenAmong(pInside->layerList());
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(pGroup);
    const bool WithBelow
        = pGroup->passesThrough() && OrvLayerStack::dependsOnWhatIsBelow(pInside->layerList());
    const OrvImageBuffer Pixels = WithBelow
        ? renderTogetherWithBelow(pGroup, Settings)
        : OrvLayerRendering::render(
              pContent, Settings.Layout, Settings.Paint, OrvChannelSpace::storedAround(pGroup));
    const QList<OrvLayer*> Layers = pInside->allLayers()
        + (pLayer->hasMaskStack() ? pLayer->maskStack()->allLayers() : QList<OrvLayer*>());
    if (Layers.contains(Manager.currentLayer(pGroup->network())))
        Manager.setCurrentLayer(pGroup->network(), pLayer, true);
    OrvSnChannelInputNode* pPaint = Pixels.isNull()
        ? nullptr
        : OrvChainEditing::addImageNode(pGroup->network(), Settings.Layout, Settings.Paint, OrvColor::clear(),
            pLayer->name(), pGroup, 0, 1, Pixels);
    if (!pPaint || !OrvChainEditing::replaceContent(pContent, pPaint)) {
        Macro.cancel();
        return nullptr;
    }
    setLayerGroupPassThrough(pGroup, false);
    if (WithBelow)
        blendPlainly(pGroup);
    OrvLayerStack::tellRemoved(Layers);
    if (pLayer->isCurrent())
        Manager.setCurrentComponent(pPaint);
    tellLeftOut(Hidden);
    return pLayer;
}
