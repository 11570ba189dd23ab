#include "OrvCore/Network/OrvNodeEvaluation.h"

#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QRect>
#include <QtCore/QSet>

#include <random>

namespace {

constexpr OrvEngineNode::Pad Pads[] = {OrvEngineNode::Base, OrvEngineNode::Over, OrvEngineNode::Mask};

/// Nodes whose engine nodes are to be connected anew.
QSet<OrvSnBaseNode*>& stale()
{
    static QSet<OrvSnBaseNode*> Nodes;
    return Nodes;
}

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

OrvSnBaseNode* OrvNodeEvaluation::withNewEngineNode(const OrvSnBaseNode* pNode)
{
    auto* pMade = const_cast<OrvSnBaseNode*>(pNode);
    pMade->m_pEngineNode = pMade->createEngineNode();
    if (!pMade->m_pEngineNode)
        // An operation that this machine's engine lacks passes its input on.
        pMade->m_pEngineNode = OrvEngineNode::createPass();
    pMade->updateEngineNode(*pMade->m_pEngineNode);
    return pMade;
}

void OrvNodeEvaluation::connectAll(QVector<OrvSnBaseNode*> Nodes)
{
    struct Link {
        OrvEngineNode* pReader;
        OrvEngineNode::Pad Pad;
        OrvEngineNode* pSource;
    };
    const int FirstNew = Nodes.size();
    std::vector<Link> Changed, New;
    for (int Index = 0; Index < Nodes.size(); ++Index) {
        const QStringList Inputs = Nodes[Index]->enginePadInputs();
        for (int Position = 0; Position < Inputs.size(); ++Position) {
            if (Inputs[Position].isEmpty())
                continue;
            const OrvSnBaseNode* pSource = provider(Nodes[Index]->inputNode(Inputs[Position]));
            if (pSource && !pSource->m_pEngineNode)
                Nodes.append(withNewEngineNode(pSource));
            OrvEngineNode* pReader = Nodes[Index]->m_pEngineNode.get();
            OrvEngineNode* pWanted = pSource ? pSource->m_pEngineNode.get() : nullptr;
            if (!pReader->readsFrom(Pads[Position], pWanted))
                (Index < FirstNew ? Changed : New).push_back({pReader, Pads[Position], pWanted});
        }
    }
    // With every connection the engine walks through all that lies above and below it. In order along a chain of n
    // layers that is n * n steps; in a random one the pieces that are joined stay short, and it is n * log n. New nodes
    // first, while nothing lies below them.
    std::minstd_rand Random;
    std::shuffle(New.begin(), New.end(), Random);
    std::shuffle(Changed.begin(), Changed.end(), Random);
    if (Changed.size() > 1) {
        // What was must not close a loop with what comes.
        for (const Link& One : Changed)
            One.pReader->connectInput(One.Pad, nullptr);
    }
    for (const std::vector<Link>* pLinks : {&New, &Changed}) {
        for (const Link& One : *pLinks)
            One.pReader->connectInput(One.Pad, One.pSource);
    }
}

void OrvNodeEvaluation::update()
{
    if (stale().isEmpty())
        return;
    QVector<OrvSnBaseNode*> Nodes;
    for (OrvSnBaseNode* pNode : qAsConst(stale())) {
        if (pNode->m_pEngineNode)
            Nodes.append(pNode);
    }
    stale().clear();
    connectAll(Nodes);
    for (const OrvSnBaseNode* pNode : qAsConst(Nodes))
        updateBlends(pNode);
}

OrvEngineNode* OrvNodeEvaluation::result(const OrvSnBaseNode* pNode)
{
    update();
    const OrvSnBaseNode* pWanted = provider(pNode);
    if (!pWanted)
        return nullptr;
    if (!pWanted->m_pEngineNode)
        connectAll({withNewEngineNode(pWanted)});
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
    markReaders(pBottom->consumers());
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
    markReaders({{pNode, InputName}});
}

void OrvNodeEvaluation::markReaders(QVector<OrvSnBaseNode::Consumer> Pending)
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
        if (pChanged->m_pEngineNode)
            stale().insert(pChanged);
    }
    const OrvUndoManager& Undo = OrvUndoManager::instance();
    if (!Undo.isInMacro() && !Undo.isRestoring())
        update();
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
    markReaders(pNode->consumers());
    update(); // whoever shows it may be painting on it now
}

void OrvNodeEvaluation::removed(OrvSnBaseNode* pNode)
{
    stale().remove(pNode);
    pNode->m_pEngineNode.reset();
}
