#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropCheck.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropContent.h"

#include <algorithm>

using OrvLayerDropContent::Kind;
using OrvLayerDropContent::layerOf;
using OrvLayerDropContent::maskedLayers;
using Result = OrvLayerDropResult;

OrvLayerDropCheck::OrvLayerDropCheck(const QVector<OrvSnBaseNode*>& Nodes, Qt::DropAction Action,
    OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
    : m_Nodes(Nodes)
    , m_Action(Action)
    , m_pTarget(pTarget)
    , m_pStack(pStack)
{
    const QList<OrvShaderInput*> Channels = OrvShaderInputUtils::findParents(pTarget, QString());
    m_WithinMaterial = std::all_of(Channels.cbegin(), Channels.cend(),
        [](const OrvShaderInput* pChannel) { return pChannel->isMaterialStack(); });
}

Result OrvLayerDropCheck::cyclicLayer(const QString& Name)
{
    return Result::refused(QStringLiteral(
        "Could not add a shared layer for '%1'. Sharing '%1' at this location would make a cyclic "
        "reference.")
                               .arg(Name));
}

Result OrvLayerDropCheck::cyclicChannel(const QString& Name)
{
    return Result::refused(QStringLiteral(
        "Could not add a Shared Channel Layer for Channel '%1'. Sharing '%1' at this location would "
        "make a cyclic reference.")
                               .arg(Name));
}

Result OrvLayerDropCheck::unusableShader(const QString& Name)
{
    return Result::refused(QStringLiteral("Could not process Shader '%1'").arg(Name));
}

Result OrvLayerDropCheck::result() const
{
    if (m_Nodes.isEmpty() || !m_pTarget)
        return Result::failed();
    if (!OrvLayerUtils::isModificationAllowedAt(m_pTarget))
        return Result::failedBecause(
            tr("Nothing can be dropped here: %1").arg(OrvEditObstacle::at(m_pTarget)));
    for (const auto pCheck : {&OrvLayerDropCheck::checkNetwork, &OrvLayerDropCheck::checkNode}) {
        for (OrvSnBaseNode* pNode : m_Nodes) {
            const Result Checked = (this->*pCheck)(pNode);
            if (!Checked.isDone())
                return Checked;
        }
    }
    return m_Action == Qt::MoveAction ? checkMoves() : Result();
}

Result OrvLayerDropCheck::checkMoves() const
{
    // Locked layers stay where they are; with nothing else to move there is no drop.
    const bool AllStay = std::all_of(m_Nodes.cbegin(), m_Nodes.cend(), [](OrvSnBaseNode* pNode) {
        const OrvLayer* pLayer = layerOf(pNode);
        return pLayer && !pLayer->isMoveable();
    });
    if (!AllStay)
        return {};
    QStringList Obstacles;
    for (OrvSnBaseNode* pNode : m_Nodes)
        Obstacles.append(OrvEditObstacle::of(layerOf(pNode)));
    return Result::failedBecause(
        tr("What is dragged stays where it is: %1").arg(OrvEditObstacle::several(Obstacles)));
}

Result OrvLayerDropCheck::checkNetwork(OrvSnBaseNode* pNode) const
{
    if (m_Action == Qt::CopyAction || pNode->network() == m_pTarget->network())
        return {};
    return Result::refused((m_Action == Qt::MoveAction
            ? tr("Could not move layer '%1'. Moving layers between objects isn't allowed.")
            : tr("Could not add a shared layer for '%1'. Sharing layers between objects isn't allowed."))
                               .arg(pNode->name()));
}

Result OrvLayerDropCheck::checkNode(OrvSnBaseNode* pNode) const
{
    switch (OrvLayerDropContent::kindOf(pNode)) {
    case Kind::Layer:
        return checkLayer(layerOf(pNode));
    case Kind::Channel:
        return checkChannel(pNode);
    case Kind::Shader:
        return checkShader(pNode);
    case Kind::Image:
        return checkMask(pNode);
    case Kind::Other:
        break;
    }
    return {};
}

Result OrvLayerDropCheck::checkLayer(OrvLayer* pLayer) const
{
    const QString Name = pLayer->name();
    const bool NeedsMaterial = OrvLayerDropContent::needsMaterialStack(pLayer->blendNode(), m_pStack);
    if (NeedsMaterial && !m_WithinMaterial)
        return Result::refused(
            tr("Could not add a Shader layer for '%1'. Can only add '%1' within Material stacks.").arg(Name));
    if (m_Action == Qt::CopyAction)
        return NeedsMaterial ? Result() : checkPlainCopy(pLayer);
    if (!pLayer->canBePlacedAt(m_pTarget, m_pStack))
        return m_Action == Qt::MoveAction
            ? Result::failedBecause(pLayer->placementObstacle(m_pTarget, m_pStack))
            : Result::refused(
                tr("Could not add a shared layer for '%1'. Sharing '%1' at this location would make a cyclic "
                   "reference.")
                    .arg(Name));
    if (m_Action == Qt::MoveAction)
        return {};
    if (pLayer->isPaintComponentShared() || pLayer->isMaskComponentShared())
        return Result::failedBecause(tr("'%1' is shared already, and can be copied here").arg(Name));
    // What an adjustment shows is what lies below it: it cannot be the same elsewhere.
    return OrvChainEditing::baseOperationOf(pLayer->blendNode()) ? cyclicLayer(Name) : Result();
}

Result OrvLayerDropCheck::checkPlainCopy(const OrvLayer* pLayer) const
{
    const bool InMaterial
        = m_WithinMaterial && m_pStack && m_pStack->ownerShaderInput() && !m_pStack->isWithinMask();
    return InMaterial && !pLayer->isGroupLayer()
        ? Result::failedBecause(tr("Only shader layers stand in a material channel"))
        : Result();
}

Result OrvLayerDropCheck::checkChannel(OrvSnBaseNode* pNode) const
{
    const QString Name = pNode->name();
    if (m_Action != Qt::LinkAction)
        return Result::refused(
            QStringLiteral("Could not add non-Shared Channel Layer for Channel '%1'").arg(Name));
    if (!m_WithinMaterial && OrvLayerDropContent::needsMaterialStack(pNode, m_pStack))
        return Result::refused(
            tr("Could not add a Channel Layer for '%1'. Can only add '%1' within Material stacks.")
                .arg(Name));
    return m_pTarget->network()->wouldConnectionBreakDAG(pNode, m_pTarget) ? cyclicChannel(Name) : Result();
}

Result OrvLayerDropCheck::checkShader(const OrvSnBaseNode* pNode) const
{
    const QString Name = pNode->name();
    if (!m_WithinMaterial)
        return Result::refused(
            tr("Could not add a Shader Layer for '%1'. Can only add '%1' within Material stacks.").arg(Name));
    const bool Usable = pNode->network() == m_pTarget->network()
        && OrvLayerShaderManager::instance().getLayerShader(pNode)
        && !m_pTarget->network()->wouldConnectionBreakDAG(pNode, m_pTarget);
    return Usable ? Result() : unusableShader(Name);
}

Result OrvLayerDropCheck::checkMask(const OrvSnBaseNode* pNode) const
{
    const QList<OrvLayer*> Masked = maskedLayers(pNode);
    if (m_Action == Qt::LinkAction && Masked.isEmpty())
        return Result::refused(tr("The given component imageset does not belong to a layer"));
    if (m_Action != Qt::MoveAction)
        return {};
    // Taken away from whoever shows it: every one of them must allow that, and none may lose its content.
    if (Masked.size() != pNode->consumers().size())
        return Result::failedBecause(
            tr("'%1' is more than a mask, and can be copied or shared here").arg(pNode->name()));
    QStringList Obstacles;
    for (const OrvLayer* pLayer : Masked)
        Obstacles.append(OrvEditObstacle::ofSharers(pLayer));
    const QString Obstacle = OrvEditObstacle::several(Obstacles);
    return Obstacle.isEmpty() ? Result() : Result::failedBecause(tr("The mask stays: %1").arg(Obstacle));
}
