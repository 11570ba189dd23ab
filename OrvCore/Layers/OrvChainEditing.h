#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Image/OrvImageBuffer.h"

class OrvColor;
class OrvSnChannelInputNode;
class OrvSnMergeNode;
class OrvUdimLayout;

/// The steps of which every operation on layers is composed: merge nodes go into chains and out of them. Each
/// is undoable and belongs into the macro of whoever calls it; none asks for locks.
namespace OrvChainEditing {

/// The content of a merge node, below the adjustment stack where there is one.
ORVCORE_EXPORT OrvSnBaseNode* contentOf(const OrvSnMergeNode* pMerge);
/// The node of an adjustment or bake point layer that reads what lies below the layer, or null.
ORVCORE_EXPORT OrvSnBaseNode* baseOperationOf(const OrvSnMergeNode* pMerge);
/// The end of the chain that starts at the node and goes down: a bottom node, or null when there is none.
ORVCORE_EXPORT OrvSnBaseNode* chainEnd(OrvSnBaseNode* pTop);
/// The node goes on in these inputs as a part of its chains; other readers of the same node are left out.
ORVCORE_EXPORT QVector<OrvSnBaseNode::Consumer> streamReaders(const OrvSnBaseNode* pNode);

/// A new node, placed in the node graph beside the reference node: that many columns to the right, rows up.
ORVCORE_EXPORT OrvSnBaseNode* addNode(OrvShaderNetwork* pNetwork, std::unique_ptr<OrvSnBaseNode> pNode,
    const QString& Name, const OrvSnBaseNode* pReference, int Columns, int Rows);
template <class Node>
Node* addNode(OrvShaderNetwork* pNetwork, std::unique_ptr<Node> pNode, const QString& Name,
    const OrvSnBaseNode* pReference, int Columns, int Rows)
{
    Node* pAdded = pNode.get();
    addNode(pNetwork, std::unique_ptr<OrvSnBaseNode>(std::move(pNode)), Name, pReference, Columns, Rows);
    return pAdded;
}

/// A new image node with these pixels, or of one colour.
ORVCORE_EXPORT OrvSnChannelInputNode* addImageNode(OrvShaderNetwork* pNetwork, const OrvUdimLayout& Layout,
    const OrvPixelFormat& Format, const OrvColor& Fill, const QString& Name, const OrvSnBaseNode* pReference,
    int Columns, int Rows, const OrvImageBuffer& Pixels = OrvImageBuffer());

/// Puts a merge node that stands in no chain between the target and what reads it. False when that would
/// close a cycle; the macro is then to be cancelled.
ORVCORE_EXPORT bool insertAbove(OrvSnMergeNode* pMerge, OrvSnBaseNode* pTarget);
/// Closes the chains around the merge node; its content and mask stay connected to it.
ORVCORE_EXPORT void takeOut(OrvSnMergeNode* pMerge);
/// Brings the images that the merge node's layer holds to another layout; those that are seen in channels of
/// other layouts too stay as they are.
ORVCORE_EXPORT void fitImages(OrvSnMergeNode* pMerge, const OrvUdimLayout& Layout);
/// Another node becomes the content of every layer that shows this one, which goes unless it is read
/// otherwise. False when that would close a cycle; the macro is then to be cancelled.
ORVCORE_EXPORT bool replaceContent(OrvSnBaseNode* pContent, OrvSnBaseNode* pOther);
/// How the layer of a merge node blends and looks becomes that of the other one, an ordinary one. What is
/// cached does not.
ORVCORE_EXPORT void copyAppearance(const OrvSnMergeNode& From, OrvSnMergeNode& To);
/// Removes the node, and whatever is then read by nothing, unless it is read itself, a channel or a shader.
ORVCORE_EXPORT void removeUnused(OrvSnBaseNode* pNode);

/// The nodes that make up the layers of these merge nodes: themselves and what feeds their content and masks.
/// Channels among it end the walk, or are walked through as well; those that feed shaders end it always.
enum class Channels { AreLimits, AreFollowed };
ORVCORE_EXPORT QVector<OrvSnBaseNode*> nodesOf(const QVector<OrvSnMergeNode*>& Merges, Channels Handling);

} // namespace OrvChainEditing
