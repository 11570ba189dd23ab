#include "OrvCore/Layers/OrvLayerStreamUtils.h"

#include "OrvCore/Channels/OrvChannelConversion.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerSnapshot.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Layers/OrvShaderLayers.h"
#include "OrvCore/Layers/OrvStreamPlaces.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>
#include <QtGui/QColor>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvLayerStreamUtils", pText);
}

template <class Predicate>
bool anyInside(const OrvLayer* pLayer, Predicate Holds)
{
    if (!pLayer)
        return false;
    if (Holds(pLayer))
        return true;
    const OrvLayerStack* pInside = OrvLayerStreamUtils::groupStack(pLayer);
    const QList<OrvLayer*> Layers = pInside ? pInside->allLayers() : QList<OrvLayer*>();
    return std::any_of(Layers.begin(), Layers.end(), Holds);
}

/// "Rust", "Rust Copy", "Rust Copy 2".
QString copyName(const OrvShaderNetwork* pNetwork, const QString& Name)
{
    static const QRegularExpression Numbered(tr("^(.*) Copy( \\d+)?$"));
    const QRegularExpressionMatch Match = Numbered.match(Name);
    const QString Original = Match.hasMatch() ? Match.captured(1) : Name;
    return OrvLayerManager::instance().uniqueLayerName(pNetwork, tr("%1 Copy").arg(Original));
}

/// Where the copy of a layer's stream goes when that of another one goes above the target: above the like layer, else
/// above the original. Null where nothing may be put.
OrvSnBaseNode* placeOfCopy(OrvSnMergeNode* pOriginal, const OrvSnBaseNode* pTarget)
{
    const auto* pAbove = qobject_cast<const OrvSnMergeNode*>(pTarget);
    OrvShaderInput* pChannel = OrvShaderInputUtils::getShaderInput(OrvChainTargets::channel(pOriginal));
    if (pChannel && pAbove && pAbove->multiChannelNode())
        return OrvStreamPlaces::alike(pAbove, pChannel);
    return OrvLayerUtils::isModificationAllowedAt(pOriginal) ? pOriginal : nullptr;
}

} // namespace

namespace OrvLayerStreamUtils {

bool isMergeNode(const OrvSnBaseNode* pNode)
{
    return qobject_cast<const OrvSnMergeNode*>(pNode) != nullptr;
}

OrvSnBaseNode* layerNodeBelow(const OrvLayer* pLayer, const OrvLayerStack*)
{
    return pLayer ? pLayer->blendNode()->inputNode(OrvSnNames::Base) : nullptr;
}

QString overInputName(const QString&)
{
    return OrvSnNames::Over;
}

bool isValidBottomTransparencyNode(const OrvSnBaseNode* pNode)
{
    return isChainEnd(pNode);
}

bool isChainEnd(const OrvSnBaseNode* pNode)
{
    return qobject_cast<const OrvSnBottomTransparencyNode*>(pNode)
        || (pNode && pNode->hasTag(OrvSnNames::AdjustmentStackBottomTag));
}

bool insertLayersAfter(const QList<OrvLayer*>& Layers, OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
{
    // Where a layer stands is known from one walk through its stack until something is changed: so all is asked before
    // the first change, and the rest after the last one.
    if (Layers.isEmpty())
        return true;
    QVector<OrvUdimLayout> Before;
    QStringList FormerSpaces;
    for (const OrvLayer* pLayer : Layers) {
        if (!pTarget || !pLayer || !pLayer->isMoveable() || !pLayer->canBePlacedAt(pTarget, pStack))
            return false;
        Before.append(OrvImageSettings::ofLayer(pLayer->blendNode()).Layout);
        FormerSpaces.append(OrvChannelConversion::paintSpaceAt(pLayer->blendNode()));
    }
    const QString Space = OrvChannelConversion::paintSpaceAt(pTarget);
    OrvUndoManager::AutoMacro Macro(
        Layers.size() == 1 ? tr("Move Layer '%1'").arg(Layers.first()->name()) : tr("Move Layers"));
    for (const OrvLayer* pLayer : Layers) {
        OrvSnMergeNode* pMerge = pLayer->blendNode();
        if (pTarget == pMerge || pMerge->inputNode(OrvSnNames::Base) == pTarget)
            continue;
        OrvChainEditing::takeOut(pMerge);
        if (!OrvChainEditing::insertAbove(pMerge, pTarget)) {
            Macro.cancel();
            return false;
        }
    }
    QVector<OrvUdimLayout> After;
    for (const OrvLayer* pLayer : Layers)
        After.append(OrvImageSettings::ofLayer(pLayer->blendNode()).Layout);
    for (int Index = 0; Index < Layers.size(); ++Index) {
        if (After[Index] != Before[Index])
            OrvChainEditing::fitImages(Layers[Index]->blendNode(), After[Index]);
        OrvChannelConversion::keepColors(Layers[Index]->blendNode(), FormerSpaces[Index], Space);
    }
    return true;
}

bool insertLayerAfter(OrvLayer* pLayer, OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
{
    return insertLayersAfter({pLayer}, pTarget, pStack);
}

OrvLayer* addDuplicateLayerAbove(OrvLayer* pLayer, OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
{
    OrvShaderNetwork* pNetwork = pTarget ? pTarget->network() : nullptr;
    if (!pLayer || !pNetwork)
        return nullptr;
    const auto refuse = [pLayer](const QString& Obstacle) {
        if (!Obstacle.isEmpty())
            Q_EMIT OrvLayerManager::instance().refused(
                tr("'%1' cannot be copied: %2").arg(pLayer->name(), Obstacle));
        return nullptr;
    };
    if (!OrvLayerUtils::isModificationAllowedAt(pTarget))
        return refuse(OrvEditObstacle::at(pTarget));
    const bool SameNetwork = pLayer->blendNode()->network() == pNetwork;
    const bool InAllChannels = OrvStreamPlaces::isForAllStreams(pLayer, pTarget);
    QVector<OrvSnMergeNode*> Originals;
    for (const OrvLayer* pStream : InAllChannels ? pLayer->inAllChannels() : QList<OrvLayer*>{pLayer})
        Originals.append(pStream->blendNode());
    const OrvUdimLayout Layout
        = pStack && !InAllChannels ? OrvImageSettings::ofStack(pStack).Layout : OrvUdimLayout();
    const bool AmongShaders = OrvShaderLayers::isPlaceOfShaders(pTarget);
    OrvUndoManager::AutoMacro Macro(tr("Copy Layer '%1'").arg(pLayer->name()));
    const QVector<OrvSnMergeNode*> Copies = OrvLayerSnapshot::capture(Originals,
        SameNetwork ? OrvChainEditing::Channels::AreLimits : OrvChainEditing::Channels::AreFollowed)
                                                .instantiate(pNetwork, Layout);
    bool Done = Copies.size() == Originals.size();
    for (int Index = 0; Index < Copies.size() && Done; ++Index) {
        OrvSnBaseNode* pPlace = Index == 0 ? pTarget : placeOfCopy(Originals[Index], pTarget);
        const QString FormerSpace = OrvChannelConversion::paintSpaceAt(Originals[Index]);
        const QString Space = OrvChannelConversion::paintSpaceAt(pPlace);
        Done = pPlace && OrvChainEditing::insertAbove(Copies[Index], pPlace)
            && OrvShaderLayers::fits(Copies[Index], AmongShaders);
        if (Done)
            OrvChannelConversion::keepColors(Copies[Index], FormerSpace, Space);
    }
    if (!Done) {
        Macro.cancel();
        QStringList Obstacles;
        for (const OrvSnMergeNode* pOriginal : qAsConst(Originals))
            Obstacles.append(OrvEditObstacle::at(pOriginal));
        return refuse(OrvEditObstacle::several(Obstacles));
    }
    OrvSnBaseNode* pCopy = Copies.first()->commonNode();
    if (SameNetwork)
        pCopy->setName(copyName(pNetwork, pLayer->name()));
    pCopy->setLocked(false);
    return OrvLayerManager::instance().getLayer(Copies.first(), true);
}

OrvSnBaseNode* createLayerNodeAfter(
    OrvSnBaseNode* pTarget, OrvSnBaseNode* pContent, const QString& Name, const QString&, bool)
{
    OrvShaderNetwork* pNetwork = pTarget ? pTarget->network() : nullptr;
    if (!pNetwork || !pContent || pContent->network() != pNetwork
        || !OrvLayerUtils::isModificationAllowedAt(pTarget))
        return nullptr;
    const QString LayerName = Name.isEmpty() ? pContent->name() : Name;
    const bool AmongShaders = OrvShaderLayers::isPlaceOfShaders(pTarget);
    OrvUndoManager::AutoMacro Macro(tr("Add Layer '%1'").arg(LayerName));
    OrvSnMergeNode* pMerge
        = OrvChainEditing::addNode(pNetwork, std::make_unique<OrvSnMergeNode>(), LayerName, pTarget, 1, 0);
    if (pMerge->connectInput(OrvSnNames::Over, pContent) && OrvChainEditing::insertAbove(pMerge, pTarget)
        && OrvShaderLayers::fits(pMerge, AmongShaders))
        return pMerge;
    Macro.cancel();
    return nullptr;
}

bool containsShaderLayers(const OrvLayer* pLayer, const OrvLayerStack*)
{
    return anyInside(pLayer, [](const OrvLayer* pInside) { return pInside->isShaderLayer(); });
}

bool containsMaterialShaderInputLayers(const OrvLayer* pLayer, const OrvLayerStack*)
{
    return anyInside(pLayer, [](const OrvLayer* pInside) {
        const OrvShaderInput* pChannel = pInside->sharedShaderInput();
        return pChannel && pChannel->isMaterialStack();
    });
}

bool isLayerGroup(const OrvLayer* pLayer, const OrvLayerStack*)
{
    return pLayer && pLayer->isGroupLayer();
}

bool isLayerGroup(const OrvLayer* pLayer, const QString&)
{
    return pLayer && pLayer->isGroupLayer();
}

OrvLayerStack* groupStack(const OrvLayer* pLayer, const QString&)
{
    if (!pLayer || !pLayer->isGroupLayer())
        return nullptr;
    if (OrvSnBaseNode* pBottom = pLayer->adjustmentStackBottomNode())
        return OrvLayerStack::getLayerStack(pBottom, OrvSnNames::Input);
    return OrvLayerStack::getLayerStack(pLayer->blendNode(), OrvSnNames::Over);
}

bool validateGroupSelection(const QList<OrvLayer*>& Layers, const OrvSnBaseNode* pMultiChannelNode)
{
    const auto* pGroup = qobject_cast<const OrvSnMultiChannelMergeNode*>(pMultiChannelNode);
    return std::all_of(Layers.begin(), Layers.end(), [pGroup](const OrvLayer* pLayer) {
        const OrvSnMultiChannelMergeNode* pCommon = pLayer ? pLayer->blendNode()->multiChannelNode() : nullptr;
        if (!pCommon)
            return pLayer != nullptr;
        return pCommon->isRepresentable() && (!pGroup || pCommon->shaderModelKey() == pGroup->shaderModelKey());
    });
}

bool isLayerGroupPassThrough(const OrvSnBaseNode* pBlendNode)
{
    const auto* pMerge = qobject_cast<const OrvSnMergeNode*>(pBlendNode);
    return pMerge && pMerge->isPassThrough();
}

void setLayerGroupPassThrough(OrvSnBaseNode* pBlendNode, bool PassThrough)
{
    if (!isMergeNode(pBlendNode))
        return;
    const OrvUndoManager::AutoMacro Macro(tr("Set Pass-Through of '%1'").arg(pBlendNode->name()));
    pBlendNode->setUserAttributeValue(OrvMergeAttributes::PassThrough, PassThrough);
}

bool isMultiChannelMergeLayer(const OrvLayer* pLayer)
{
    return pLayer && pLayer->isMultiChannelLayer();
}

bool isMaterialLayer(const OrvLayer* pLayer)
{
    const OrvSnMultiChannelMergeNode* pCommon = pLayer ? pLayer->blendNode()->multiChannelNode() : nullptr;
    return pCommon && pCommon->isMaterial();
}

bool isInvalidMaterialLayer(const OrvLayer* pLayer)
{
    if (!isMaterialLayer(pLayer))
        return false;
    const QList<OrvLayer*> Streams = pLayer->inAllChannels();
    return !pLayer->blendNode()->multiChannelNode()->isRepresentable()
        || std::any_of(
            Streams.begin(), Streams.end(), [](const OrvLayer* pStream) { return !pStream->contentNode(); });
}

OrvSnBaseNode* materialNode(const OrvLayer* pLayer)
{
    return isMaterialLayer(pLayer) ? pLayer->contentNode() : nullptr;
}

bool containsMultiChannelLayers(const OrvLayer* pLayer)
{
    return anyInside(pLayer, [](const OrvLayer* pInside) { return pInside->isMultiChannelLayer(); });
}

bool containsMultiChannelLayers(const OrvShaderInput* pChannel, const OrvShadingModel* pModel)
{
    const QList<OrvLayer*> Layers = pChannel ? pChannel->allLayers() : QList<OrvLayer*>();
    return std::any_of(Layers.begin(), Layers.end(), [pModel](const OrvLayer* pLayer) {
        const OrvSnMultiChannelMergeNode* pCommon = pLayer->blendNode()->multiChannelNode();
        return pCommon && (!pModel || pCommon->shaderModelKey() == pModel->key());
    });
}

void setColorRecursiveUndo(const QList<OrvLayer*>& Layers, const QColor& Color)
{
    const OrvUndoManager::AutoMacro Macro(tr("Set Layer Colors"));
    for (OrvLayer* pLayer : Layers) {
        if (!pLayer)
            continue;
        pLayer->setColor(Color);
        if (const OrvLayerStack* pInside = groupStack(pLayer)) {
            for (OrvLayer* pNested : pInside->allLayers())
                pNested->setColor(Color);
        }
    }
}

void makePaintComponentCurrent(OrvLayer* pLayer, OrvLayerStack*)
{
    if (!pLayer)
        return;
    OrvLayerManager& Manager = OrvLayerManager::instance();
    Manager.setCurrentLayer(pLayer->blendNode()->network(), pLayer, OrvUndoManager::instance().isInMacro());
    Manager.setCurrentComponent(pLayer->paintNode());
}

void openLayerContentsInNodeGraph(OrvLayer* pLayer)
{
    OrvSnBaseNode* pContent = pLayer ? pLayer->contentNode() : nullptr;
    const auto* pGraph = qobject_cast<OrvSnGraphNode*>(pContent);
    if (OrvSnBaseNode* pOutput = pGraph ? pGraph->outputNode() : nullptr)
        pContent = pOutput;
    if (pContent)
        OrvShaderNetworkManager::instance().focusOnNode(pContent);
}

void openLayerMaskContentsInNodeGraph(OrvLayer* pLayer)
{
    if (OrvSnBaseNode* pMask = pLayer ? pLayer->maskNode() : nullptr)
        OrvShaderNetworkManager::instance().focusOnNode(pMask);
}

} // namespace OrvLayerStreamUtils
