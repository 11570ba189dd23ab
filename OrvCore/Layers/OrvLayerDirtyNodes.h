#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

/// The nodes whose layers an edit may have changed the looks of: noted while it goes on, taken at its end
/// together with all that follows. The layer manager's; it changes nothing and tells nobody.
class OrvLayerDirtyNodes {
public:
    /// Whose derived state an edit may have changed, besides the node's own.
    enum Reach { Alone, WithContents, WithAllBelow };

    void note(OrvSnBaseNode* pNode, Reach Extent);
    /// The node, and the merge nodes that have it in common.
    void noteLayers(OrvSnBaseNode* pNode, Reach Extent);
    /// An input reads another node now; either may be null.
    void noteMoved(OrvSnBaseNode* pNewInputNode, OrvSnBaseNode* pOldInputNode);
    /// Layers share the node, or shared it until now; null is none.
    void noteContent(OrvSnBaseNode* pNode);
    /// The node costs more or less to compute, and so do all that hold it.
    void noteHolders(OrvSnBaseNode* pNode) { m_Held.insert(pNode); }
    /// It leaves its network.
    void forget(OrvSnBaseNode* pNode);

    bool isEmpty() const { return m_Nodes.isEmpty() && m_Contents.isEmpty() && m_Held.isEmpty(); }
    QSet<OrvSnBaseNode*> take();

private:
    QHash<OrvSnBaseNode*, Reach> m_Nodes;
    QSet<OrvSnBaseNode*> m_Contents, m_Held;
};
