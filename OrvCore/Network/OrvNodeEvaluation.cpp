#include "OrvCore/Network/OrvNodeEvaluation.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Network/OrvShaderNetwork.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QRect>
#include <QtCore/QSet>

namespace {

constexpr OrvEngineNode::Pad Pads[] = {OrvEngineNode::Base, OrvEngineNode::Over, OrvEngineNode::Mask};

/// Nodes whose result follows that of an alias, besides those that its outputs feed.
const OrvSnBaseNode* hiddenReader(const OrvSnBaseNode* pNode)
{
    // The output node of a nested network stands behind the node around that.
    if (qobject_cast<const OrvSnGraphOutputNode*>(pNode) && pNode->network())
        return pNode->network()->container();
    return nullptr;
}

/// The bottom of a group in pass-through mode stands for what feeds the group's base.
const OrvSnBaseNode* passThroughBottom(const OrvSnBaseNode* pNode)
{
    const auto* pGroup = qobject_cast<const OrvSnMergeNode*>(pNode);
    if (!pGroup || !pGroup->passesThrough())
        return nullptr;
    return OrvChainEditing::chainEnd(pGroup->inputNode(OrvSnNames::Over));
}

} // namespace

const OrvSnBaseNode* OrvNodeEvaluation::provider(const OrvSnBaseNode* pNode)
{
    while (pNode && pNode->isEvaluationAlias())
        pNode = pNode->evaluationAlias();
    return pNode;
}

OrvEngineNode* OrvNodeEvaluation::existing(const OrvSnBaseNode* pNode)
{
    const OrvSnBaseNode* pProvider = provider(pNode);
    return pProvider ? pProvider->m_pEngineNode.get() : nullptr;
}

void OrvNodeEvaluation::connectPads(OrvSnBaseNode* pNode)
{
    const QStringList Inputs = pNode->enginePadInputs();
    for (int Index = 0; Index < Inputs.size(); ++Index) {
        if (!Inputs[Index].isEmpty())
            pNode->m_pEngineNode->connectInput(Pads[Index], existing(pNode->inputNode(Inputs[Index])));
    }
}

OrvEngineNode* OrvNodeEvaluation::result(const OrvSnBaseNode* pNode)
{
    const OrvSnBaseNode* pWanted = provider(pNode);
    if (!pWanted)
        return nullptr;
    // First all engine nodes that are missing, then their connections from the top down: the engine looks for loops
    // upstream of whatever is connected, where then is nothing yet.
    QVector<OrvSnBaseNode*> Made;
    const auto make = [&Made](const OrvSnBaseNode* pProvider) {
        if (!pProvider || pProvider->m_pEngineNode)
            return;
        auto* pNode = const_cast<OrvSnBaseNode*>(pProvider);
        pNode->m_pEngineNode = pNode->createEngineNode();
        if (!pNode->m_pEngineNode)
            // An operation that this machine's engine lacks passes its input on.
            pNode->m_pEngineNode = OrvEngineNode::createPass();
        pNode->updateEngineNode(*pNode->m_pEngineNode);
        Made.append(pNode);
    };
    make(pWanted);
    for (int Index = 0; Index < Made.size(); ++Index) {
        for (const QString& InputName : Made[Index]->enginePadInputs())
            make(provider(Made[Index]->inputNode(InputName)));
    }
    for (OrvSnBaseNode* pNode : qAsConst(Made))
        connectPads(pNode);
    return pWanted->m_pEngineNode.get();
}

void OrvNodeEvaluation::updateBlends(const OrvSnBaseNode* pNode)
{
    // How a merge node blends depends on whether its content reads what lies below it.
    if (qobject_cast<const OrvSnMergeNode*>(pNode)) {
        if (pNode->m_pEngineNode)
            pNode->updateEngineNode(*pNode->m_pEngineNode);
    } else if (qobject_cast<const OrvSnOperationNode*>(pNode)) {
        for (const OrvSnBaseNode::Consumer& One : pNode->consumers())
            updateBlends(One.pNode);
    }
}

void OrvNodeEvaluation::groupBottomChanged(OrvSnBaseNode* pTop)
{
    const OrvSnBaseNode* pBottom = OrvChainEditing::chainEnd(pTop);
    if (!qobject_cast<const OrvSnBottomTransparencyNode*>(pBottom))
        return;
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pTop).Targets;
    for (const OrvChainTargets::Target& Target : Targets)
        updateBlends(Target.pNode);
    reconnect(pBottom->consumers());
}

void OrvNodeEvaluation::inputReconnected(
    OrvSnBaseNode* pNode, const QString& InputName, OrvSnBaseNode* pFormerSource)
{
    if (InputName == OrvSnNames::Over) {
        // A chain that is shown once more, or once less, may begin with something else.
        OrvSnBaseNode* pSource = pNode->inputNode(InputName);
        const bool SameChain = pSource && pFormerSource
            && (pSource->preferredInputNode() == pFormerSource || pFormerSource->preferredInputNode() == pSource);
        if (!SameChain) {
            groupBottomChanged(pSource);
            groupBottomChanged(pFormerSource);
        }
    }
    reconnect({{pNode, InputName}});
}

void OrvNodeEvaluation::reconnect(QVector<OrvSnBaseNode::Consumer> Pending)
{
    const auto appendReaders = [&Pending](const OrvSnBaseNode* pAlias) {
        for (const OrvSnBaseNode::Consumer& One : pAlias->consumers())
            Pending.append(One);
    };
    while (!Pending.isEmpty()) {
        const OrvSnBaseNode::Consumer Changed = Pending.takeLast();
        OrvSnBaseNode* pChanged = Changed.pNode;
        if (pChanged->isEvaluationAlias()) {
            appendReaders(pChanged);
            if (const OrvSnBaseNode* pReader = hiddenReader(pChanged))
                appendReaders(pReader);
            continue;
        }
        if (const OrvSnBaseNode* pBottom = passThroughBottom(pChanged)) {
            // Over the group's base or its contents, the chain inside may now begin elsewhere.
            for (const OrvSnBaseNode::Consumer& One : pBottom->consumers()) {
                if (!(One == Changed)) // an empty group reads its own bottom
                    Pending.append(One);
            }
        }
        if (!pChanged->m_pEngineNode)
            continue;
        const int Pad = pChanged->enginePadInputs().indexOf(Changed.InputName);
        if (Pad >= 0)
            pChanged->m_pEngineNode->connectInput(Pads[Pad], result(pChanged->inputNode(Changed.InputName)));
        updateBlends(pChanged);
    }
}

void OrvNodeEvaluation::parametersChanged(OrvSnBaseNode* pNode)
{
    if (pNode->isEvaluationAlias())
        inputReconnected(pNode, pNode->preferredInput());
    else if (pNode->m_pEngineNode)
        pNode->updateEngineNode(*pNode->m_pEngineNode);
}

void OrvNodeEvaluation::pixelsWritten(OrvSnBaseNode* pNode, const QRect& Region)
{
    if (pNode->m_pEngineNode)
        pNode->m_pEngineNode->pixelsWritten(Region);
}

void OrvNodeEvaluation::replaced(OrvSnBaseNode* pNode)
{
    if (!pNode->m_pEngineNode)
        return;
    removed(pNode);
    for (const OrvSnBaseNode::Consumer& One : pNode->consumers())
        inputReconnected(One.pNode, One.InputName);
}

void OrvNodeEvaluation::removed(OrvSnBaseNode* pNode)
{
    pNode->m_pEngineNode.reset();
}

