#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtWidgets/QMessageBox>

#include <algorithm>

using Result = OrvLayerDrop::Result;

namespace {

Result failed()
{
    return {Result::Failed, QString()};
}

/// Told in the status line, where the drag is, and in no box.
Result failedBecause(const QString& Reason)
{
    return {Result::Failed, Reason};
}

Result refused(const QString& Message)
{
    return {Result::FailedWithMessage, Message};
}

OrvLayer* layerOf(OrvSnBaseNode* pNode)
{
    return OrvLayerStreamUtils::isMergeNode(pNode) ? OrvLayerManager::instance().getLayer(pNode, true)
                                                   : nullptr;
}

/// The nodes of layers as the user sees them dragged; others are left as they are.
QVector<OrvSnBaseNode*> inOrderOf(const OrvLayerStack* pSourceStack, const QVector<OrvSnBaseNode*>& Nodes)
{
    if (!pSourceStack || Nodes.size() < 2)
        return Nodes;
    QList<OrvLayer*> Layers;
    for (OrvSnBaseNode* pNode : Nodes)
        Layers.append(layerOf(pNode));
    const QList<OrvLayer*> All = pSourceStack->allLayers();
    const QSet<OrvLayer*> Present(All.cbegin(), All.cend());
    if (!std::all_of(Layers.cbegin(), Layers.cend(),
            [&Present](OrvLayer* pLayer) { return Present.contains(pLayer); }))
        return Nodes;
    QVector<OrvSnBaseNode*> Ordered;
    for (const OrvLayer* pLayer : pSourceStack->outermost(Layers))
        Ordered.append(pLayer->blendNode());
    return Ordered;
}

bool needsMaterialStack(const OrvLayer* pLayer, const OrvLayerStack* pStack)
{
    return OrvLayerStreamUtils::containsShaderLayers(pLayer, pStack)
        || OrvLayerStreamUtils::containsMaterialShaderInputLayers(pLayer, pStack);
}

/// The layers whose mask the node is.
QList<OrvLayer*> maskedLayers(const OrvSnBaseNode* pNode)
{
    QList<OrvLayer*> Layers;
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers()) {
        if (Reader.InputName != OrvSnNames::Mask)
            continue;
        // Where several channels have the mask in common, one stands for all.
        const QVector<OrvSnMergeNode*> Owners = OrvChainTargets::owners({Reader.pNode, Reader.InputName});
        if (!Owners.isEmpty())
            Layers.append(layerOf(Owners.first()));
    }
    return Layers;
}

// Told in these words alone, in every language.
QString cyclicLayerMessage(const QString& Name)
{
    return QStringLiteral(
        "Could not add a shared layer for '%1'. Sharing '%1' at this location would make a cyclic "
        "reference.")
        .arg(Name);
}

QString unusableShaderMessage(const QString& Name)
{
    return QStringLiteral("Could not process Shader '%1'").arg(Name);
}

QString cyclicChannelMessage(const QString& Name)
{
    return QStringLiteral(
        "Could not add a Shared Channel Layer for Channel '%1'. Sharing '%1' at this location would "
        "make a cyclic reference.")
        .arg(Name);
}

} // namespace

OrvLayerDrop::OrvLayerDrop(const QVector<OrvSnBaseNode*>& Nodes, Qt::DropAction Action,
    const OrvLayerStack* pSourceStack, OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
    : m_Nodes(inOrderOf(pSourceStack, Nodes))
    , m_Action(Action)
    , m_pTarget(pTarget)
    , m_pStack(pStack)
{
    const QList<OrvShaderInput*> Channels = OrvShaderInputUtils::findParents(pTarget, QString());
    m_WithinMaterial = std::all_of(Channels.cbegin(), Channels.cend(),
        [](const OrvShaderInput* pChannel) { return pChannel->isMaterialStack(); });
}

bool OrvLayerDrop::inUndoStep(const std::function<Result()>& Work)
{
    Result Outcome;
    {
        OrvUndoManager::AutoMacro Macro(tr("Drop Layers"));
        Outcome = Work();
        if (!Outcome.isDone())
            Macro.cancel();
    }
    // The step is closed before the user is kept waiting with a message.
    if (!Outcome.isDone())
        OrvDebug("OrvLayerViewModel", __LINE__,
            QStringLiteral("[ !! ] Layer Opertion Failed '%1'").arg(Outcome.Message), false, false);
    if (Outcome.Outcome == Result::FailedWithMessage)
        QMessageBox::warning(
            &OrvMainWindow::instance(), tr("Layer Operation Failed"), Outcome.Message, QMessageBox::Ok);
    else if (!Outcome.isDone() && !Outcome.Message.isEmpty())
        OrvLayerViewUtils::tell(Outcome.Message);
    return Outcome.isDone();
}

QString OrvLayerDrop::streamName() const
{
    return m_pStack ? m_pStack->currentStreamName(m_pTarget) : QString();
}

// What stands against it

Result OrvLayerDrop::check() const
{
    if (m_Nodes.isEmpty() || !m_pTarget)
        return failed();
    if (!OrvLayerUtils::isModificationAllowedAt(m_pTarget))
        return failedBecause(tr("Nothing can be dropped here: %1").arg(OrvEditObstacle::at(m_pTarget)));
    for (const auto pCheck : {&OrvLayerDrop::checkNetwork, &OrvLayerDrop::checkNode}) {
        for (OrvSnBaseNode* pNode : m_Nodes) {
            const Result Checked = (this->*pCheck)(pNode);
            if (!Checked.isDone())
                return Checked;
        }
    }
    // Locked layers stay where they are; with nothing else to move there is no drop.
    const bool AllStay = m_Action == Qt::MoveAction
        && std::all_of(m_Nodes.cbegin(), m_Nodes.cend(), [](OrvSnBaseNode* pNode) {
               const OrvLayer* pLayer = layerOf(pNode);
               return pLayer && !pLayer->isMoveable();
           });
    if (!AllStay)
        return {};
    QStringList Obstacles;
    for (OrvSnBaseNode* pNode : m_Nodes)
        Obstacles.append(OrvEditObstacle::of(layerOf(pNode)));
    return failedBecause(
        tr("What is dragged stays where it is: %1").arg(OrvEditObstacle::several(Obstacles)));
}

Result OrvLayerDrop::checkNetwork(OrvSnBaseNode* pNode) const
{
    if (m_Action == Qt::CopyAction || pNode->network() == m_pTarget->network())
        return {};
    return refused((m_Action == Qt::MoveAction
            ? tr("Could not move layer '%1'. Moving layers between objects isn't allowed.")
            : tr("Could not add a shared layer for '%1'. Sharing layers between objects isn't allowed."))
                       .arg(pNode->name()));
}

Result OrvLayerDrop::checkNode(OrvSnBaseNode* pNode) const
{
    if (OrvLayer* pLayer = layerOf(pNode))
        return checkLayer(pLayer);
    if (pNode->hasTag(OrvSnNames::ShaderInputTag))
        return checkChannel(pNode);
    if (pNode->hasTag(OrvSnNames::ShaderTag))
        return checkShader(pNode);
    return qobject_cast<OrvSnChannelInputNode*>(pNode) ? checkMask(pNode) : Result();
}

Result OrvLayerDrop::checkLayer(OrvLayer* pLayer) const
{
    const QString Name = pLayer->name();
    const bool NeedsMaterial = needsMaterialStack(pLayer, m_pStack);
    if (NeedsMaterial && !m_WithinMaterial)
        return refused(
            tr("Could not add a Shader layer for '%1'. Can only add '%1' within Material stacks.").arg(Name));
    if (m_Action == Qt::CopyAction) {
        const bool InMaterial
            = m_WithinMaterial && m_pStack && m_pStack->ownerShaderInput() && !m_pStack->isWithinMask();
        return InMaterial && !NeedsMaterial && !pLayer->isGroupLayer()
            ? failedBecause(tr("Only shader layers stand in a material channel"))
            : Result();
    }
    if (!pLayer->canBePlacedAt(m_pTarget, m_pStack))
        return m_Action == Qt::MoveAction
            ? failedBecause(pLayer->placementObstacle(m_pTarget, m_pStack))
            : refused(
                tr("Could not add a shared layer for '%1'. Sharing '%1' at this location would make a cyclic "
                   "reference.")
                    .arg(Name));
    if (m_Action == Qt::MoveAction)
        return {};
    if (pLayer->isPaintComponentShared() || pLayer->isMaskComponentShared())
        return failedBecause(tr("'%1' is shared already, and can be copied here").arg(Name));
    // What an adjustment shows is what lies below it: it cannot be the same elsewhere.
    return OrvChainEditing::baseOperationOf(pLayer->blendNode()) ? refused(cyclicLayerMessage(Name))
                                                                 : Result();
}

Result OrvLayerDrop::checkChannel(const OrvSnBaseNode* pNode) const
{
    const QString Name = pNode->name();
    if (m_Action != Qt::LinkAction)
        return refused(QStringLiteral("Could not add non-Shared Channel Layer for Channel '%1'").arg(Name));
    const OrvShaderInput* pChannel = OrvShaderInputUtils::getShaderInput(pNode);
    if (pChannel && pChannel->isMaterialStack() && !m_WithinMaterial)
        return refused(tr("Could not add a Channel Layer for '%1'. Can only add '%1' within Material stacks.")
                           .arg(Name));
    return m_pTarget->network()->wouldConnectionBreakDAG(pNode, m_pTarget)
        ? refused(cyclicChannelMessage(Name))
        : Result();
}

Result OrvLayerDrop::checkShader(const OrvSnBaseNode* pNode) const
{
    const QString Name = pNode->name();
    if (!m_WithinMaterial)
        return refused(
            tr("Could not add a Shader Layer for '%1'. Can only add '%1' within Material stacks.").arg(Name));
    const bool Usable = pNode->network() == m_pTarget->network()
        && OrvLayerShaderManager::instance().getLayerShader(pNode)
        && !m_pTarget->network()->wouldConnectionBreakDAG(pNode, m_pTarget);
    return Usable ? Result() : refused(unusableShaderMessage(Name));
}

Result OrvLayerDrop::checkMask(const OrvSnBaseNode* pNode) const
{
    const QList<OrvLayer*> Masked = maskedLayers(pNode);
    if (m_Action == Qt::LinkAction && Masked.isEmpty())
        return refused(tr("The given component imageset does not belong to a layer"));
    if (m_Action != Qt::MoveAction)
        return {};
    // Taken away from whoever shows it: every one of them must allow that, and none may lose its content.
    if (Masked.size() != pNode->consumers().size())
        return failedBecause(
            tr("'%1' is more than a mask, and can be copied or shared here").arg(pNode->name()));
    QStringList Obstacles;
    for (const OrvLayer* pLayer : Masked)
        Obstacles.append(OrvEditObstacle::ofSharers(pLayer));
    const QString Obstacle = OrvEditObstacle::several(Obstacles);
    return Obstacle.isEmpty() ? Result() : failedBecause(tr("The mask stays: %1").arg(Obstacle));
}

bool OrvLayerDrop::isInPlace() const
{
    for (int Index = 0; Index < m_Nodes.size(); ++Index) {
        const OrvSnBaseNode* pBelow = Index + 1 < m_Nodes.size() ? m_Nodes[Index + 1] : m_pTarget;
        const OrvLayer* pLayer = layerOf(m_Nodes[Index]);
        if (!pLayer || OrvLayerStreamUtils::layerNodeBelow(pLayer, m_pStack) != pBelow)
            return false;
    }
    return true;
}

// What it does

Result OrvLayerDrop::carryOut()
{
    const bool Known = m_Action == Qt::CopyAction || m_Action == Qt::MoveAction || m_Action == Qt::LinkAction;
    if (!Known || (m_Action == Qt::MoveAction && isInPlace()))
        return {};
    const Result Checked = check();
    if (!Checked.isDone())
        return Checked;
    const OrvUndoManager::AutoMacro Macro(tr("Drop Layer"));
    const bool OnlyLayers = std::all_of(m_Nodes.cbegin(), m_Nodes.cend(), OrvLayerStreamUtils::isMergeNode);
    if (OnlyLayers && m_Action == Qt::MoveAction)
        return moveLayers(m_Nodes);
    // Copied and shared layers stay where they are, and so does what they come to stand above.
    const OrvChainTargets::FixedPlaces Places(
        OnlyLayers ? m_Nodes + QVector<OrvSnBaseNode*>{m_pTarget} : QVector<OrvSnBaseNode*>());
    for (OrvSnBaseNode* pNode : qAsConst(m_Nodes)) {
        const Result Dropped = dropNode(pNode);
        if (!Dropped.isDone())
            return Dropped;
    }
    return {};
}

Result OrvLayerDrop::moveLayers(const QVector<OrvSnBaseNode*>& Nodes)
{
    QList<OrvLayer*> Moved;
    for (OrvSnBaseNode* pNode : Nodes) {
        OrvLayer* pLayer = layerOf(pNode);
        if (pLayer->isMoveable())
            Moved.append(pLayer);
    }
    return OrvLayerStreamUtils::insertLayersAfter(Moved, m_pTarget, m_pStack) ? Result() : failed();
}

Result OrvLayerDrop::dropNode(OrvSnBaseNode* pNode)
{
    if (OrvLayer* pLayer = layerOf(pNode))
        return dropLayer(pLayer);
    if (pNode->hasTag(OrvSnNames::ShaderInputTag))
        return dropChannel(pNode);
    if (pNode->hasTag(OrvSnNames::ShaderTag))
        return dropShader(pNode);
    return qobject_cast<OrvSnChannelInputNode*>(pNode) ? dropMask(pNode) : Result();
}

Result OrvLayerDrop::dropLayer(OrvLayer* pLayer)
{
    const QString Name = pLayer->name();
    if (m_Action == Qt::CopyAction) {
        const OrvUndoManager::AutoMacro Macro(tr("Copy Layer '%1'").arg(Name));
        return OrvLayerStreamUtils::addDuplicateLayerAbove(pLayer, m_pTarget, m_pStack) ? Result() : failed();
    }
    if (m_Action == Qt::LinkAction) {
        const OrvUndoManager::AutoMacro Macro(tr("Share Layer '%1'").arg(Name));
        return pLayer->addSharedLayerAfter(m_pTarget, streamName(), true) ? Result()
                                                                          : refused(cyclicLayerMessage(Name));
    }
    return moveLayers({pLayer->blendNode()});
}

Result OrvLayerDrop::dropChannel(OrvSnBaseNode* pNode)
{
    const OrvUndoManager::AutoMacro Macro(tr("Share Channel as Layer '%1'").arg(pNode->name()));
    return addLayer(pNode, pNode->name()) ? Result() : refused(cyclicChannelMessage(pNode->name()));
}

Result OrvLayerDrop::dropShader(OrvSnBaseNode* pNode)
{
    const OrvUndoManager::AutoMacro Macro(tr("Shader as Layer '%1'").arg(pNode->name()));
    return OrvLayerUtils::createShaderLayerNodeAfter(m_pTarget, pNode, pNode->name())
        ? Result()
        : refused(unusableShaderMessage(pNode->name()));
}

Result OrvLayerDrop::dropMask(OrvSnBaseNode* pNode)
{
    if (m_Action == Qt::LinkAction)
        return shareMask(pNode);
    if (m_Action == Qt::MoveAction) {
        const OrvUndoManager::AutoMacro Macro(tr("Move Mask"));
        pNode->disconnectOutputs();
        return addLayer(pNode, pNode->name()) ? Result() : failed();
    }
    const OrvUndoManager::AutoMacro Macro(tr("Duplicate Mask"));
    OrvSnBaseNode* pCopy = OrvShaderInputUtils::duplicateImageSetNode(
        pNode, m_pTarget->network(), OrvImageSettings::ofStack(m_pStack).Layout);
    return pCopy && addLayer(pCopy, pNode->name()) ? Result() : failed();
}

Result OrvLayerDrop::shareMask(const OrvSnBaseNode* pNode)
{
    const OrvUndoManager::AutoMacro Macro(tr("Share Mask"));
    const QList<OrvLayer*> Masked = maskedLayers(pNode);
    if (Masked.isEmpty())
        return refused(tr("The given component imageset does not belong to a layer"));
    const OrvLayerStack* pMaskStack = Masked.first()->convertMaskToMaskStack();
    if (!pMaskStack || pMaskStack->layerList().isEmpty())
        return refused(tr("Failed to create a mask stack"));
    // The stack was just made of the mask, which is its one layer.
    OrvLayer* pMaskLayer = pMaskStack->layerList().last();
    return pMaskLayer->addSharedLayerAfter(m_pTarget, streamName(), true) ? Result() : failed();
}

bool OrvLayerDrop::addLayer(OrvSnBaseNode* pContent, const QString& Name)
{
    return OrvLayerStreamUtils::createLayerNodeAfter(m_pTarget, pContent, Name, streamName(), true);
}
