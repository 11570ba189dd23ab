#include "OrvCore/Layers/OrvLayerDirtyNodes.h"

#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"

#include <algorithm>
#include <utility>

void OrvLayerDirtyNodes::note(OrvSnBaseNode* pNode, Reach Extent)
{
    Reach& Known = m_Nodes[pNode];
    Known = qMax(Known, Extent);
}

void OrvLayerDirtyNodes::noteLayers(OrvSnBaseNode* pNode, Reach Extent)
{
    note(pNode, Extent);
    if (const auto* pCommon = qobject_cast<OrvSnMultiChannelMergeNode*>(pNode)) {
        for (OrvSnMergeNode* pMerge : pCommon->mergeNodes())
            note(pMerge, Extent);
    }
}

void OrvLayerDirtyNodes::noteMoved(OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode)
{
    const auto feeds = [](const OrvSnBaseNode* pSource, const OrvSnBaseNode* pReader) {
        return pSource && pReader
            && std::any_of(pReader->inputs().begin(), pReader->inputs().end(),
                [pSource](const OrvSnBaseNode::Input& Input) { return Input.pNode == pSource; });
    };
    // A node went into a chain or out of it: what lies below stays where it was.
    const bool Spliced = feeds(pOldInputNode, pNewInputNode) || feeds(pNewInputNode, pOldInputNode);
    for (OrvSnBaseNode* pMoved : {pNewInputNode, pOldInputNode}) {
        if (pMoved)
            note(pMoved, Spliced ? Alone : WithAllBelow);
    }
}

void OrvLayerDirtyNodes::noteContent(OrvSnBaseNode* pNode)
{
    if (pNode)
        m_Contents.insert(pNode);
}

void OrvLayerDirtyNodes::forget(OrvSnBaseNode* pNode)
{
    m_Nodes.remove(pNode);
    m_Contents.remove(pNode);
    m_Held.remove(pNode);
}

QSet<OrvSnBaseNode*> OrvLayerDirtyNodes::take()
{
    const QHash<OrvSnBaseNode*, Reach> Dirty = std::exchange(m_Nodes, {});
    const QSet<OrvSnBaseNode*> Contents = std::exchange(m_Contents, {});
    const QSet<OrvSnBaseNode*> Held = std::exchange(m_Held, {});
    QSet<OrvSnBaseNode*> Seen;
    QVector<OrvSnBaseNode*> Pending;
    const auto visit = [&](OrvSnBaseNode* pNode) {
        if (pNode && !Seen.contains(pNode)) {
            Seen.insert(pNode);
            Pending.append(pNode);
        }
    };
    for (auto Node = Dirty.begin(); Node != Dirty.end(); ++Node) {
        for (const OrvSnBaseNode::Input& Input : Node.key()->inputs()) {
            if (Node.value() == WithAllBelow
                || (Node.value() == WithContents && Input.Name != OrvSnNames::Base))
                visit(Input.pNode);
        }
    }
    while (!Pending.isEmpty()) {
        for (const OrvSnBaseNode::Input& Input : Pending.takeLast()->inputs())
            visit(Input.pNode);
    }
    for (auto Node = Dirty.begin(); Node != Dirty.end(); ++Node)
        Seen.insert(Node.key());
    // What holds a layer in one of its channels holds it in all.
    for (OrvSnBaseNode* pNode : QSet<OrvSnBaseNode*>(Seen)) {
        if (const auto* pCommon = qobject_cast<OrvSnMultiChannelMergeNode*>(pNode)) {
            for (OrvSnMergeNode* pMerge : pCommon->mergeNodes())
                Seen.insert(pMerge);
        }
    }
    for (const OrvSnBaseNode* pContent : Contents) {
        const QVector<OrvChainTargets::Target> Targets = OrvChainTargets::of(pContent).Targets;
        for (const OrvChainTargets::Target& Target : Targets) {
            for (OrvSnMergeNode* pOwner : OrvChainTargets::owners(Target))
                Seen.insert(pOwner);
        }
    }
    for (const OrvSnBaseNode* pNode : Held) {
        for (OrvSnBaseNode* pHolder : OrvChainTargets::containers(pNode))
            Seen.insert(pHolder);
    }
    return Seen;
}
