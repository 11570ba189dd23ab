#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropCheck.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDropContent.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

#include <QtWidgets/QMessageBox>

#include <algorithm>

using OrvLayerDropContent::Kind;
using OrvLayerDropContent::layerOf;
using Result = OrvLayerDropResult;

OrvLayerDrop::OrvLayerDrop(const QVector<OrvSnBaseNode*>& Nodes, Qt::DropAction Action,
    const OrvLayerStack* pSourceStack, OrvSnBaseNode* pTarget, OrvLayerStack* pStack)
    : m_Nodes(OrvLayerDropContent::inOrderOf(pSourceStack, Nodes))
    , m_Action(Action)
    , m_pTarget(pTarget)
    , m_pStack(pStack)
{
}

Result OrvLayerDrop::check() const
{
    return OrvLayerDropCheck(m_Nodes, m_Action, m_pTarget, m_pStack).result();
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
    return OrvLayerStreamUtils::insertLayersAfter(Moved, m_pTarget, m_pStack) ? Result() : Result::failed();
}

Result OrvLayerDrop::dropNode(OrvSnBaseNode* pNode)
{
    switch (OrvLayerDropContent::kindOf(pNode)) {
    case Kind::Layer:
        return dropLayer(layerOf(pNode));
    case Kind::Channel:
        return dropChannel(pNode);
    case Kind::Shader:
        return dropShader(pNode);
    case Kind::Image:
        return dropMask(pNode);
    case Kind::Other:
        break;
    }
    return {};
}

Result OrvLayerDrop::dropLayer(OrvLayer* pLayer)
{
    const QString Name = pLayer->name();
    if (m_Action == Qt::CopyAction) {
        const OrvUndoManager::AutoMacro Macro(tr("Copy Layer '%1'").arg(Name));
        return OrvLayerStreamUtils::addDuplicateLayerAbove(pLayer, m_pTarget, m_pStack) ? Result()
                                                                                        : Result::failed();
    }
    if (m_Action == Qt::LinkAction) {
        const OrvUndoManager::AutoMacro Macro(tr("Share Layer '%1'").arg(Name));
        return pLayer->addSharedLayerAfter(m_pTarget, streamName(), true)
            ? Result()
            : OrvLayerDropCheck::cyclicLayer(Name);
    }
    return moveLayers({pLayer->blendNode()});
}

Result OrvLayerDrop::dropChannel(OrvSnBaseNode* pNode)
{
    const OrvUndoManager::AutoMacro Macro(tr("Share Channel as Layer '%1'").arg(pNode->name()));
    return addLayer(pNode, pNode->name()) ? Result() : OrvLayerDropCheck::cyclicChannel(pNode->name());
}

Result OrvLayerDrop::dropShader(OrvSnBaseNode* pNode)
{
    const OrvUndoManager::AutoMacro Macro(tr("Shader as Layer '%1'").arg(pNode->name()));
    return OrvLayerUtils::createShaderLayerNodeAfter(m_pTarget, pNode, pNode->name())
        ? Result()
        : OrvLayerDropCheck::unusableShader(pNode->name());
}

Result OrvLayerDrop::dropMask(OrvSnBaseNode* pNode)
{
    if (m_Action == Qt::LinkAction)
        return shareMask(pNode);
    if (m_Action == Qt::MoveAction) {
        const OrvUndoManager::AutoMacro Macro(tr("Move Mask"));
        pNode->disconnectOutputs();
        return addLayer(pNode, pNode->name()) ? Result() : Result::failed();
    }
    const OrvUndoManager::AutoMacro Macro(tr("Duplicate Mask"));
    OrvSnBaseNode* pCopy = OrvShaderInputUtils::duplicateImageSetNode(
        pNode, m_pTarget->network(), OrvImageSettings::ofStack(m_pStack).Layout);
    return pCopy && addLayer(pCopy, pNode->name()) ? Result() : Result::failed();
}

Result OrvLayerDrop::shareMask(const OrvSnBaseNode* pNode)
{
    const OrvUndoManager::AutoMacro Macro(tr("Share Mask"));
    const QList<OrvLayer*> Masked = OrvLayerDropContent::maskedLayers(pNode);
    if (Masked.isEmpty())
        return Result::refused(tr("The given component imageset does not belong to a layer"));
    const OrvLayerStack* pMaskStack = Masked.first()->convertMaskToMaskStack();
    if (!pMaskStack || pMaskStack->layerList().isEmpty())
        return Result::refused(tr("Failed to create a mask stack"));
    // The stack was just made of the mask, which is its one layer.
    OrvLayer* pMaskLayer = pMaskStack->layerList().last();
    return pMaskLayer->addSharedLayerAfter(m_pTarget, streamName(), true) ? Result() : Result::failed();
}

bool OrvLayerDrop::addLayer(OrvSnBaseNode* pContent, const QString& Name)
{
    return OrvLayerStreamUtils::createLayerNodeAfter(m_pTarget, pContent, Name, streamName(), true);
}
