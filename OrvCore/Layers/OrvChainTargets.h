#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QVector>

class OrvSnMergeNode;

/// Where chains lead: for a node, the inputs of stacks that it finally feeds, and whether a cached layer
/// above it freezes it. Derived from the graph as it is asked, remembered until the next structural change,
/// so that asking for every layer of a long stack is one walk.
class ORVCORE_EXPORT OrvChainTargets {
public:
    struct Target {
        OrvSnBaseNode* pNode = nullptr;
        QString InputName;
        bool operator==(const Target& Other) const
        {
            return pNode == Other.pNode && InputName == Other.InputName;
        }
    };
    struct Entry {
        QVector<Target> Targets;
        bool FrozenAbove = false; ///< a merge node further up the chain is cached up to there
    };

    /// While one lives, its maker promises that the edits meanwhile leave some nodes, and what holds them, where they are:
    /// what is known of these stays known, so that putting copies of thousands of layers above one node asks but once
    /// where all of them stand. They do not nest.
    class ORVCORE_EXPORT FixedPlaces {
    public:
        explicit FixedPlaces(const QVector<OrvSnBaseNode*>& Nodes);
        ~FixedPlaces();
        FixedPlaces(const FixedPlaces&) = delete;
        FixedPlaces& operator=(const FixedPlaces&) = delete;
    };

    /// Valid until the next structural change.
    static const Entry& of(const OrvSnBaseNode* pNode);
    /// The layers' merge nodes whose content, adjustment stack or mask the target is; none for a channel.
    static QVector<OrvSnMergeNode*> owners(const Target& Target);
    /// The nodes that hold the node as content or mask, on all levels: merge nodes, what those of a layer in
    /// several channels have in common, and channels; nearest first, shared channels included.
    static QVector<OrvSnBaseNode*> containers(const OrvSnBaseNode* pNode);
    /// What stands at the input is seen as a part of a mask: values that mean no colour, whatever the channel
    /// holds.
    static bool isWithinMask(const Target& Target);
    /// The channel in which the node's pixels are seen first, or null.
    static OrvSnBaseNode* channel(const OrvSnBaseNode* pNode);

    /// The input is where a chain ends: a channel's, a merge node's content or mask, an adjustment stack's
    /// content.
    static bool isTarget(const OrvSnBaseNode* pNode, const QString& InputName);
    /// The node above goes on the chain that comes in at this input.
    static bool continuesChain(const OrvSnBaseNode* pNode, const QString& InputName);

    /// Flags that count here (caches) changed without a structural change.
    static void invalidate();

private:
    static Entry compute(const OrvSnBaseNode* pNode);
};
