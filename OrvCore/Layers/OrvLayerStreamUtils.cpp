#include "OrvCore/Layers/OrvLayerStreamUtils.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerSnapshot.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
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

bool insertLayerAfter(OrvLayer* pLayer, OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
{
    OrvSnMergeNode* pMerge = pLayer ? pLayer->blendNode() : nullptr;
    if (!pMerge || !pTarget || !pLayer->isMoveable() || !pLayer->canBePlacedAt(pTarget, pStack))
        return false;
    if (pTarget == pMerge || pMerge->inputNode(OrvSnNames::Base) == pTarget)
        return true;
    OrvUndoManager::AutoMacro Macro(tr("Move Layer '%1'").arg(pLayer->name()));
    const OrvUdimLayout Before = OrvImageSettings::ofLayer(pMerge).Layout;
    OrvChainEditing::takeOut(pMerge);
    if (!OrvChainEditing::insertAbove(pMerge, pTarget)) {
        Macro.cancel();
        return false;
    }
    const OrvUdimLayout After = OrvImageSettings::ofLayer(pMerge).Layout;
    if (After != Before)
        OrvChainEditing::fitImages(pMerge, After);
    return true;
}

OrvLayer* addDuplicateLayerAbove(OrvLayer* pLayer, OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
{
    OrvShaderNetwork* pNetwork = pTarget ? pTarget->network() : nullptr;
    if (!pLayer || !pNetwork || !OrvLayerUtils::isModificationAllowedAt(pTarget))
        return nullptr;
    const bool SameNetwork = pLayer->blendNode()->network() == pNetwork;
    const OrvUdimLayout Layout = pStack ? OrvImageSettings::ofStack(pStack).Layout : OrvUdimLayout();
    OrvUndoManager::AutoMacro Macro(tr("Copy Layer '%1'").arg(pLayer->name()));
    const QVector<OrvSnMergeNode*> Copies = OrvLayerSnapshot::capture({pLayer->blendNode()},
        SameNetwork ? OrvChainEditing::Channels::AreLimits : OrvChainEditing::Channels::AreFollowed)
                                                .instantiate(pNetwork, Layout);
    if (Copies.isEmpty() || !OrvChainEditing::insertAbove(Copies.first(), pTarget)) {
        Macro.cancel();
        return nullptr;
    }
    OrvSnMergeNode* pCopy = Copies.first();
    if (SameNetwork)
        pCopy->setName(copyName(pNetwork, pLayer->name()));
    pCopy->setLocked(false);
    return OrvLayerManager::instance().getLayer(pCopy, true);
}

OrvSnBaseNode* createLayerNodeAfter(
    OrvSnBaseNode* pTarget, OrvSnBaseNode* pContent, const QString& Name, const QString&, bool)
{
    OrvShaderNetwork* pNetwork = pTarget ? pTarget->network() : nullptr;
    if (!pNetwork || !pContent || pContent->network() != pNetwork
        || !OrvLayerUtils::isModificationAllowedAt(pTarget))
        return nullptr;
    const QString LayerName = Name.isEmpty() ? pContent->name() : Name;
    OrvUndoManager::AutoMacro Macro(tr("Add Layer '%1'").arg(LayerName));
    OrvSnMergeNode* pMerge
        = OrvChainEditing::addNode(pNetwork, std::make_unique<OrvSnMergeNode>(), LayerName, pTarget, 1, 0);
    if (pMerge->connectInput(OrvSnNames::Over, pContent) && OrvChainEditing::insertAbove(pMerge, pTarget))
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

bool validateGroupSelection(const QList<OrvLayer*>& Layers, const OrvSnBaseNode*)
{
    return std::all_of(
        Layers.begin(), Layers.end(), [](const OrvLayer* pLayer) { return pLayer != nullptr; });
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

bool isMultiChannelMergeLayer(const OrvLayer*)
{
    return false;
}

bool isMaterialLayer(const OrvLayer*)
{
    return false;
}

bool isInvalidMaterialLayer(const OrvLayer*)
{
    return false;
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
