#include "OrvCore/Network/OrvNodeEvaluation.h"

#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"

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
    if (!pGroup || !pGroup->isPassThrough() || !pGroup->holdsGroup())
        return nullptr;
    const OrvSnBaseNode* pEnd = pGroup->inputNode(OrvSnNames::Over);
    while (pEnd && !OrvLayerStreamUtils::isChainEnd(pEnd))
        pEnd = pEnd->preferredInputNode();
    return pEnd;
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
    // Depth first without recursion: stacks are thousands of nodes deep.
    QVector<const OrvSnBaseNode*> Pending{pWanted};
    while (!Pending.isEmpty()) {
        auto* pNext = const_cast<OrvSnBaseNode*>(Pending.last());
        if (pNext->m_pEngineNode) {
            Pending.removeLast();
            continue;
        }
        const int Before = Pending.size();
        for (const QString& InputName : pNext->enginePadInputs()) {
            const OrvSnBaseNode* pSource = provider(pNext->inputNode(InputName));
            if (pSource && !pSource->m_pEngineNode)
                Pending.append(pSource);
        }
        if (Pending.size() > Before)
            continue;
        Pending.removeLast();
        pNext->m_pEngineNode = pNext->createEngineNode();
        if (!pNext->m_pEngineNode)
            // An operation that this machine's engine lacks passes its input on.
            pNext->m_pEngineNode = OrvEngineNode::createPass();
        pNext->updateEngineNode(*pNext->m_pEngineNode);
        connectPads(pNext);
    }
    return pWanted->m_pEngineNode.get();
}

void OrvNodeEvaluation::inputReconnected(OrvSnBaseNode* pNode, const QString& InputName)
{
    QVector<OrvSnBaseNode::Consumer> Pending{{pNode, InputName}};
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
                if (One.pNode != pChanged)
                    Pending.append(One);
            }
        }
        if (!pChanged->m_pEngineNode)
            continue;
        const int Pad = pChanged->enginePadInputs().indexOf(Changed.InputName);
        if (Pad >= 0)
            pChanged->m_pEngineNode->connectInput(Pads[Pad], result(pChanged->inputNode(Changed.InputName)));
        if (Changed.InputName == OrvSnNames::Over)
            pChanged->updateEngineNode(*pChanged->m_pEngineNode);
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

