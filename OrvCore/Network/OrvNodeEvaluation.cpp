#include "OrvCore/Network/OrvNodeEvaluation.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvInputStep.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnBottomTransparencyNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvSnShaderNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralOutputNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Engine/OrvEngineRewiring.h"

#include <QtCore/QRect>
#include <QtCore/QSet>

#include <random>

namespace {

/// The pad behind a node's engine input.
OrvEngineNode::Pad padAt(int Position)
{
    return OrvEngineNode::Pad(Position);
}

/// Nodes whose engine nodes are to be connected anew.
QSet<OrvSnBaseNode*>& stale()
{
    static QSet<OrvSnBaseNode*> Nodes;
    return Nodes;
}

/// Nodes that feed something else now: what they hold may be seen in another channel.
QSet<OrvSnBaseNode*>& moved()
{
    static QSet<OrvSnBaseNode*> Nodes;
    return Nodes;
}

/// What a node reads depends on where it stands: in some, images are to have another size or colours another
/// space than in others, or than in masks.
bool hasDifferentChannels(const OrvShaderNetwork* pNetwork)
{
    const QList<OrvShaderInput*> Channels
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pNetwork);
    if (Channels.isEmpty())
        return false;
    const OrvUdimLayout Layout = Channels.first()->layout();
    const QString Space = OrvChannelSpace::ofChannel(Channels.first());
    if (!OrvColorManager::isIdentity(Space, OrvColorManager::linear()))
        return true;
    return std::any_of(Channels.begin(), Channels.end(), [&](const OrvShaderInput* pChannel) {
        return pChannel->layout() != Layout || OrvChannelSpace::ofChannel(pChannel) != Space
            || OrvChannelSpace::storedIn(pChannel) != Space;
    });
}

/// The network that a node holds, or is made of; null for most.
const OrvShaderNetwork* insideOf(const OrvSnBaseNode* pNode)
{
    const auto* pProcedural = qobject_cast<const OrvSnCustomProceduralNode*>(pNode);
    return pProcedural ? pProcedural->inside() : pNode->nestedNetwork();
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

const OrvSnBaseNode* OrvNodeEvaluation::standIn(const OrvSnBaseNode* pNode)
{
    return pNode->isEvaluationAlias() ? pNode->evaluationAlias() : pNode;
}

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
    std::vector<OrvInputStep> Superfluous; // go when nobody reads them any more
    for (int Index = 0; Index < Nodes.size(); ++Index) {
        const QStringList Inputs = Nodes[Index]->enginePadInputs();
        for (OrvInputStep& Step : takeInputSteps(Nodes[Index]))
            Superfluous.push_back(std::move(Step));
        for (int Position = 0; Position < Inputs.size(); ++Position) {
            if (Inputs[Position].isEmpty())
                continue;
            const OrvSnBaseNode* pSource = provider(Nodes[Index]->inputNode(Inputs[Position]));
            if (pSource && !pSource->m_pEngineNode)
                Nodes.append(withNewEngineNode(pSource));
            const auto link = [&, IsNew = Index >= FirstNew](
                                  OrvEngineNode* pReader, OrvEngineNode::Pad Pad, OrvEngineNode* pWanted) {
                if (!pReader->readsFrom(Pad, pWanted))
                    (IsNew ? New : Changed).push_back({pReader, Pad, pWanted});
            };
            OrvEngineNode* pReader = Nodes[Index]->m_pEngineNode.get();
            OrvEngineNode* pWanted = pSource ? pSource->m_pEngineNode.get() : nullptr;
            if (const OrvInputStep* pStep = inputStep(Nodes[Index], padAt(Position))) {
                link(pStep->entry(), OrvEngineNode::Base, pWanted);
                pWanted = pStep->pEngineNode.get();
            }
            link(pReader, padAt(Position), pWanted);
        }
    }
    // With every connection the engine walks through all that lies above and below it. In order along a chain of n
    // layers that is n * n steps; in a random one the pieces that are joined stay short, and it is n * log n. New nodes
    // first, while nothing lies below them.
    std::minstd_rand Random;
    std::shuffle(New.begin(), New.end(), Random);
    std::shuffle(Changed.begin(), Changed.end(), Random);
    std::vector<OrvEngineRewiring::Input> Inputs;
    for (const Link& One : Changed)
        Inputs.push_back({One.pReader, One.Pad});
    const OrvEngineRewiring Rewiring(Inputs);
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
    markContentsOfMoved();
    if (stale().isEmpty())
        return;
    // What feeds a shader decides how large its picture is, which layers that show it scale.
    for (const OrvSnBaseNode* pNode : QSet<OrvSnBaseNode*>(stale())) {
        if (!qobject_cast<const OrvSnShaderNode*>(pNode))
            continue;
        for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers())
            stale().insert(Reader.pNode);
    }
    QVector<OrvSnBaseNode*> Nodes;
    for (OrvSnBaseNode* pNode : qAsConst(stale())) {
        if (pNode->m_pEngineNode)
            Nodes.append(pNode);
    }
    stale().clear();
    connectAll(Nodes);
    for (const OrvSnBaseNode* pNode : qAsConst(Nodes))
        updateParameters(pNode);
}

void OrvNodeEvaluation::markContentsOfMoved()
{
    const QSet<OrvSnBaseNode*> Moved = std::exchange(moved(), {});
    QHash<const OrvShaderNetwork*, bool> Matters;
    QVector<OrvSnBaseNode*> Starts;
    for (OrvSnBaseNode* pNode : Moved) {
        // A new bottom, of a channel or group, holds nothing; channels are made by the thousand.
        if (pNode->inputs().isEmpty() && !pNode->m_pEngineNode && !insideOf(pNode))
            continue;
        const OrvShaderNetwork* pNetwork = pNode->network();
        if (!Matters.contains(pNetwork))
            Matters.insert(pNetwork, pNetwork && hasDifferentChannels(pNetwork));
        if (Matters.value(pNetwork))
            Starts.append(pNode);
    }
    markUpstream(Starts);
}

void OrvNodeEvaluation::markUpstream(const QVector<OrvSnBaseNode*>& Starts)
{
    // One walk for all: those of a chain lie above each other.
    QVector<OrvSnBaseNode*> Pending = Starts;
    const QSet<const OrvSnBaseNode*> IsStart(Starts.begin(), Starts.end());
    QSet<const OrvSnBaseNode*> Seen = IsStart;
    while (!Pending.isEmpty()) {
        OrvSnBaseNode* pNext = Pending.takeLast();
        if (pNext->m_pEngineNode)
            stale().insert(pNext);
        if (!IsStart.contains(pNext) && pNext->hasTag(OrvSnNames::ShaderInputTag))
            continue;
        if (pNext->consumers().size() > 1) {
            // Channels that share it convert what one of them makes of it.
            QVector<OrvSnBaseNode::Consumer> Readers = pNext->consumers();
            while (!Readers.isEmpty()) {
                OrvSnBaseNode* pReader = Readers.takeLast().pNode;
                if (pReader->isEvaluationAlias())
                    Readers += pReader->consumers();
                else if (pReader->m_pEngineNode)
                    stale().insert(pReader);
            }
        }
        const auto visit = [&](OrvSnBaseNode* pNode) {
            if (pNode && !Seen.contains(pNode)) {
                Seen.insert(pNode);
                Pending.append(pNode);
            }
        };
        for (const OrvSnBaseNode::Input& Input : pNext->inputs())
            visit(Input.pNode);
        if (const OrvShaderNetwork* pInside = insideOf(pNext)) {
            for (OrvSnBaseNode* pNode : pInside->nodes())
                visit(pNode);
        }
    }
}

OrvInputStep* OrvNodeEvaluation::inputStep(const OrvSnBaseNode* pNode, OrvEngineNode::Pad Pad)
{
    for (OrvInputStep& Step : const_cast<OrvSnBaseNode*>(pNode)->m_InputSteps) {
        if (Step.Pad == Pad)
            return &Step;
    }
    return nullptr;
}

/// Gives the node the steps that it is to have now, and returns those that it is to have no more.
std::vector<OrvInputStep> OrvNodeEvaluation::takeInputSteps(OrvSnBaseNode* pNode)
{
    std::vector<OrvInputStep> Former = std::exchange(pNode->m_InputSteps, {});
    const QStringList Inputs = pNode->enginePadInputs();
    for (int Position = 0; Position < Inputs.size(); ++Position) {
        OrvInputStep Wanted;
        Wanted.Pad = padAt(Position);
        pNode->describeInputStep(Inputs[Position], Wanted);
        if (!Wanted.isNeeded())
            continue;
        const auto Same = std::find_if(Former.begin(), Former.end(),
            [&Wanted](const OrvInputStep& One) { return One.pEngineNode && One.doesTheSameAs(Wanted); });
        if (Same != Former.end()) {
            Wanted.pEngineNode = std::move(Same->pEngineNode);
            Wanted.pInnerNode = std::move(Same->pInnerNode);
        } else {
            Wanted.createEngineNodes();
        }
        pNode->m_InputSteps.push_back(std::move(Wanted));
    }
    return Former;
}

OrvEngineNode* OrvNodeEvaluation::inputResult(const OrvSnBaseNode* pNode, const QString& InputName)
{
    if (!result(pNode))
        return nullptr;
    const int Position = pNode->enginePadInputs().indexOf(InputName);
    const OrvInputStep* pStep = Position < 0 ? nullptr : inputStep(pNode, padAt(Position));
    return pStep ? pStep->pEngineNode.get() : result(pNode->inputNode(InputName));
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

void OrvNodeEvaluation::updateParameters(const OrvSnBaseNode* pNode)
{
    // How a merge node blends depends on whether its content reads what lies below it, how a shader is lit on
    // which of its inputs are fed, and by channels of which size; operations look the same at every size.
    QVector<const OrvSnBaseNode*> Pending{pNode};
    QSet<const OrvSnBaseNode*> Seen{pNode};
    while (!Pending.isEmpty()) {
        const OrvSnBaseNode* pNext = Pending.takeLast();
        const bool IsOperation = qobject_cast<const OrvSnOperationNode*>(pNext) != nullptr;
        if (pNext->m_pEngineNode
            && (IsOperation || qobject_cast<const OrvSnMergeNode*>(pNext)
                || qobject_cast<const OrvSnShaderNode*>(pNext)
                || qobject_cast<const OrvSnCustomProceduralOutputNode*>(pNext)))
            pNext->updateEngineNode(*pNext->m_pEngineNode);
        if (!IsOperation && !qobject_cast<const OrvSnBakePointNode*>(pNext))
            continue;
        for (const OrvSnBaseNode::Consumer& One : pNext->consumers()) {
            if (!Seen.contains(One.pNode)) {
                Seen.insert(One.pNode);
                Pending.append(One.pNode);
            }
        }
    }
}

void OrvNodeEvaluation::groupBottomChanged(OrvSnBaseNode* pTop)
{
    const OrvSnBaseNode* pBottom = OrvChainEditing::chainEnd(pTop);
    if (!qobject_cast<const OrvSnBottomTransparencyNode*>(pBottom))
        return;
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pTop).Targets;
    for (const OrvChainTargets::Target& Target : Targets)
        updateParameters(Target.pNode);
    markReaders(pBottom->consumers());
}

void OrvNodeEvaluation::inputReconnected(
    OrvSnBaseNode* pNode, const QString& InputName, OrvSnBaseNode* pFormerSource)
{
    if (pNode->inputNode(InputName))
        moved().insert(pNode->inputNode(InputName));
    for (OrvSnBaseNode* pSource : {pNode->inputNode(InputName), pFormerSource}) {
        // One that no channel feeds is as large as what shows it.
        if (qobject_cast<OrvSnShaderNode*>(pSource) && pSource->m_pEngineNode)
            stale().insert(pSource);
    }
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
    QVector<OrvSnBaseNode::Consumer> Readers{{pNode, InputName}};
    if (InputName == OrvSnNames::Over && pFormerSource && !pFormerSource->consumers().isEmpty()) {
        // Those that still show it may be in other channels.
        moved().insert(pFormerSource);
        Readers += pFormerSource->consumers();
    }
    markReaders(Readers);
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

void OrvNodeEvaluation::inputStepsChanged(OrvSnBaseNode* pNode)
{
    markReaders({{pNode, pNode->preferredInput()}});
}

void OrvNodeEvaluation::layoutChanged(OrvSnBaseNode* pNode)
{
    // All that it holds, and everybody who reads what comes from it.
    markUpstream({pNode});
    const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pNode).Targets;
    for (const OrvChainTargets::Target& Target : Targets) {
        for (OrvSnMergeNode* pOwner : OrvChainTargets::owners(Target)) {
            if (pOwner->m_pEngineNode)
                stale().insert(pOwner);
        }
    }
    markReaders(pNode->consumers());
    if (pNode->hasTag(OrvSnNames::ShaderInputTag))
        channelsChanged(pNode->network());
}

void OrvNodeEvaluation::channelsChanged(const OrvShaderNetwork* pNetwork)
{
    for (OrvSnBaseNode* pNode : OrvLayerShaderManager::instance().getShaderNodes(pNetwork, false)) {
        const bool Fed = std::any_of(pNode->inputs().begin(), pNode->inputs().end(),
            [](const OrvSnBaseNode::Input& Input) { return Input.pNode != nullptr; });
        if (!Fed && pNode->m_pEngineNode)
            stale().insert(pNode);
    }
    QVector<OrvSnBaseNode*> Unshown;
    for (OrvSnBaseNode* pNode : pNetwork ? pNetwork->nodes() : QVector<OrvSnBaseNode*>()) {
        const bool IsSized
            = insideOf(pNode) || (pNode->m_pEngineNode && qobject_cast<const OrvSnOperationNode*>(pNode));
        if (IsSized && !OrvChainTargets::channel(pNode))
            Unshown.append(pNode);
    }
    markUpstream(Unshown);
    markReaders({});
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
    layoutChanged(pNode);
    update(); // whoever shows it may be painting on it now
}

void OrvNodeEvaluation::removed(OrvSnBaseNode* pNode)
{
    stale().remove(pNode);
    moved().remove(pNode);
    pNode->m_pEngineNode.reset();
    pNode->m_InputSteps.clear();
}
