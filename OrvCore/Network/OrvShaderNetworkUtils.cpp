#include "OrvCore/Network/OrvShaderNetworkUtils.h"

#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnGraphNode.h"
#include "OrvCore/Network/OrvSnGraphOutputNode.h"

#include <QtCore/QHash>

namespace OrvShaderNetworkUtils {

QStringList standaloneShaderTypes()
{
    return OrvNodeRegistry::instance().shaderTypes(OrvNodeRegistry::StandaloneShader);
}

QStringList layeredShaderTypes()
{
    return OrvNodeRegistry::instance().shaderTypes(OrvNodeRegistry::LayeredShader);
}

QVector<OrvSnBaseNode*> readersFirst(const OrvShaderNetwork* pNetwork)
{
    QHash<const OrvSnBaseNode*, int> Readers;
    QVector<OrvSnBaseNode*> Ordered, Unread;
    for (OrvSnBaseNode* pNode : pNetwork->nodes()) {
        Readers.insert(pNode, pNode->consumers().size());
        if (pNode->consumers().isEmpty())
            Unread.append(pNode);
    }
    while (!Unread.isEmpty()) {
        Ordered.append(Unread.takeLast());
        for (const OrvSnBaseNode::Input& Input : Ordered.last()->inputs()) {
            if (Input.pNode && --Readers[Input.pNode] == 0)
                Unread.append(Input.pNode);
        }
    }
    return Ordered;
}

OrvNodeWalker::Visitor::~Visitor() = default;

QVector<OrvSnBaseNode*> OrvNodeWalker::neighbors(const OrvSnBaseNode* pNode, Direction Where)
{
    QVector<OrvSnBaseNode*> Found;
    if (Where == Upstream) {
        for (const OrvSnBaseNode::Input& Input : pNode->inputs()) {
            if (Input.pNode)
                Found.append(Input.pNode);
        }
        const auto* pGraph = qobject_cast<const OrvSnGraphNode*>(pNode);
        if (OrvSnBaseNode* pOutput = pGraph ? pGraph->outputNode() : nullptr)
            Found.append(pOutput);
        return Found;
    }
    for (const OrvSnBaseNode::Consumer& Reader : pNode->consumers())
        Found.append(Reader.pNode);
    const bool EndsGraph = qobject_cast<const OrvSnGraphOutputNode*>(pNode) && pNode->network();
    if (OrvSnBaseNode* pContainer = EndsGraph ? pNode->network()->container() : nullptr)
        Found.append(pContainer);
    return Found;
}

void OrvNodeWalker::walk(OrvSnBaseNode* pStart, Visitor& Walked)
{
    if (!pStart)
        return;
    QSet<OrvSnBaseNode*> Seen{pStart};
    QVector<OrvSnBaseNode*> Pending{pStart};
    while (!Pending.isEmpty()) {
        OrvSnBaseNode* pNode = Pending.takeLast();
        if (!Walked.visit(pNode))
            return;
        for (OrvSnBaseNode* pNext : neighbors(pNode, Walked.direction())) {
            if (!Seen.contains(pNext)) {
                Seen.insert(pNext);
                Pending.append(pNext);
            }
        }
    }
}

bool OrvNodeWalkerUpstream::walk(OrvSnBaseNode* pNode) const
{
    if (!pNode || m_Candidates.isEmpty())
        return false;
    if (m_Candidates.contains(pNode))
        return true;
    QSet<OrvSnBaseNode*> SeenAbove{pNode}, SeenBelow = m_Candidates;
    QVector<OrvSnBaseNode*> Above{pNode}, Below;
    for (OrvSnBaseNode* pCandidate : m_Candidates)
        Below.append(pCandidate);
    const auto step = [](QVector<OrvSnBaseNode*>& Pending, QSet<OrvSnBaseNode*>& Seen,
                          OrvNodeWalker::Direction Where, const QSet<OrvSnBaseNode*>& Met) {
        for (OrvSnBaseNode* pNext : OrvNodeWalker::neighbors(Pending.takeLast(), Where)) {
            if (Met.contains(pNext))
                return true;
            if (!Seen.contains(pNext)) {
                Seen.insert(pNext);
                Pending.append(pNext);
            }
        }
        return false;
    };
    while (!Above.isEmpty() && !Below.isEmpty()) {
        if (step(Above, SeenAbove, OrvNodeWalker::Upstream, SeenBelow)
            || step(Below, SeenBelow, OrvNodeWalker::Downstream, SeenAbove))
            return true;
    }
    return false;
}

} // namespace OrvShaderNetworkUtils
