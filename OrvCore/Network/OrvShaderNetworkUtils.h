#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVector>

class OrvShaderNetwork;
class OrvSnBaseNode;

/// Questions about graphs of nodes that need walking through them.
namespace OrvShaderNetworkUtils {

/// Keys of the shader types that stand on their own, which can be put into material stacks as layers too, and
/// of those that are made of layers, that is, of material stacks; in menu order.
ORVCORE_EXPORT QStringList standaloneShaderTypes();
ORVCORE_EXPORT QStringList layeredShaderTypes();

/// A network's nodes, each after all that read it, so that they can be taken away in this order.
ORVCORE_EXPORT QVector<OrvSnBaseNode*> readersFirst(const OrvShaderNetwork* pNetwork);

/// Visits the nodes reachable from a start node, each once, the start node included. A nested network's
/// output node leads on to the node that holds the network.
class ORVCORE_EXPORT OrvNodeWalker {
public:
    enum Direction { Upstream, Downstream };

    class ORVCORE_EXPORT Visitor {
    public:
        virtual ~Visitor();
        virtual Direction direction() const = 0;
        /// False ends the walk.
        virtual bool visit(OrvSnBaseNode* pNode) = 0;
    };

    static void walk(OrvSnBaseNode* pStart, Visitor& Walked);
    /// The nodes one step away.
    static QVector<OrvSnBaseNode*> neighbors(const OrvSnBaseNode* pNode, Direction Where);
};

/// Tells whether any of some candidate nodes lies upstream of a node, or is it. It walks up from the node and
/// down from the candidates in turns, so that a short way on either side decides early.
class ORVCORE_EXPORT OrvNodeWalkerUpstream {
public:
    explicit OrvNodeWalkerUpstream(const QSet<OrvSnBaseNode*>& Candidates)
        : m_Candidates(Candidates)
    {
    }
    bool walk(OrvSnBaseNode* pNode) const;

private:
    QSet<OrvSnBaseNode*> m_Candidates;
};

} // namespace OrvShaderNetworkUtils
