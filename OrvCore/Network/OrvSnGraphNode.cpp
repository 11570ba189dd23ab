#include "OrvCore/Network/OrvSnGraphNode.h"

#include "OrvCore/Network/OrvNodeDescription.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"

OrvSnGraphNode::OrvSnGraphNode()
    : m_pNested(new OrvShaderNetwork(this))
{
}

QString OrvSnGraphNode::typeLabel() const
{
    return tr("Graph");
}

OrvSnBaseNode* OrvSnGraphNode::outputNode() const
{
    for (OrvSnBaseNode* pNode : m_pNested->nodes()) {
        if (qobject_cast<OrvSnGraphOutputNode*>(pNode))
            return pNode;
    }
    return nullptr;
}

void OrvSnGraphNode::describe(OrvNodeDescription& Description) const
{
    Description.Nested = OrvNodeSubgraph::capture(m_pNested->nodes()).nodes();
}

void OrvSnGraphNode::adopt(const OrvNodeDescription& Description)
{
    OrvNodeSubgraph Inside;
    for (const OrvNodeDescription& Node : Description.Nested)
        Inside.append(Node);
    // A description that keeps its identity (undo, loading) keeps those inside too.
    Inside.instantiate(m_pNested,
        Description.Uuid == uuidString() ? OrvNodeSubgraph::KeepIdentities : OrvNodeSubgraph::NewIdentities);
}

#include "moc_OrvSnGraphNode.cpp"
