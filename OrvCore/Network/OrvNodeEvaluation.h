#pragma once

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/OrvCoreExport.h"

#include "OrvDdi/Engine/OrvEngineNode.h"

#include <QtCore/QString>
#include <QtCore/QVector>

class QRect;

/// Keeps the image engine's graph in step with the document's. Engine nodes are made when a result is first asked
/// for, so that a document that nobody looks at costs nothing; afterwards every edit of a node reaches its engine
/// node through the operations below, connections at the end of the whole edit or when a result is asked for before.
/// Edits of the document call them; nobody else needs to.
class ORVCORE_EXPORT OrvNodeEvaluation {
public:
    /// What the node yields, null for nothing (transparent). The engine node belongs to the document and stays valid
    /// until one of the operations below is called for its node.
    static OrvEngineNode* result(const OrvSnBaseNode* pNode);
    /// What the node reads at an input, as it reads it: brought to its own size, from its cache.
    static OrvEngineNode* inputResult(const OrvSnBaseNode* pNode, const QString& InputName);

    /// What the node passes on as its own result, null for nothing; the node itself when it computes one.
    static const OrvSnBaseNode* standIn(const OrvSnBaseNode* pNode);

    static void inputReconnected(
        OrvSnBaseNode* pNode, const QString& InputName, OrvSnBaseNode* pFormerSource = nullptr);
    /// What a group's chain begins with is another thing now; the node is the chain's top.
    static void groupBottomChanged(OrvSnBaseNode* pTop);
    static void parametersChanged(OrvSnBaseNode* pNode);
    /// What is to stand between the node and what it reads is another thing now.
    static void inputStepsChanged(OrvSnBaseNode* pNode);
    /// What the node yields has another size, or is in another colour space, now; what a channel holds is seen in that.
    static void layoutChanged(OrvSnBaseNode* pNode);
    /// The network has other channels, or one has another size: shaders that no channel feeds, and
    /// operations that none shows, follow them.
    static void channelsChanged(const OrvShaderNetwork* pNetwork);
    static void pixelsWritten(OrvSnBaseNode* pNode, const QRect& Region);
    /// The node's kind of engine node changed: it is made anew, and what it feeds is connected again.
    static void replaced(OrvSnBaseNode* pNode);
    static void removed(OrvSnBaseNode* pNode);

    /// Connects engine nodes as the document's nodes are connected now; at the end of an edit.
    static void update();

private:
    static const OrvSnBaseNode* provider(const OrvSnBaseNode* pNode);
    static OrvEngineNode* existing(const OrvSnBaseNode* pNode);
    static void markReaders(QVector<OrvSnBaseNode::Consumer> Pending);
    static void connectAll(QVector<OrvSnBaseNode*> Nodes);
    static OrvSnBaseNode* withNewEngineNode(const OrvSnBaseNode* pNode);
    static void updateParameters(const OrvSnBaseNode* pNode);
    static void markUpstream(const QVector<OrvSnBaseNode*>& Starts);
    static void markContentsOfMoved();
    static std::vector<OrvInputStep> takeInputSteps(OrvSnBaseNode* pNode);
    static OrvInputStep* inputStep(const OrvSnBaseNode* pNode, OrvEngineNode::Pad Pad);
};
