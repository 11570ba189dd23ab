#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include "OrvCore/Network/OrvSnBaseNode.h"

#include <QtCore/QHash>
#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QVector>

class OrvShaderNetwork;

/// The edits of the node graph, made of the document's own. Each is one undo step named after what it does;
/// one that is not allowed changes nothing and says why in the status line. They know nodes, no items.
namespace OrvNodeGraphCommands {

/// An output that feeds, and the input that it is to feed.
struct Link {
    OrvSnBaseNode* pSource = nullptr;
    QString OutputName;
    OrvSnBaseNode* pTarget = nullptr;
    QString InputName;
};

/// Why the nodes may not be connected so; empty when they may.
ORVCOREMODULES_EXPORT QString refusal(const Link& Wanted);
ORVCOREMODULES_EXPORT bool connect(const Link& Wanted);
ORVCOREMODULES_EXPORT bool disconnect(const QVector<OrvSnBaseNode::Consumer>& Inputs);
/// Moves the end of a connection from one input to another.
ORVCOREMODULES_EXPORT bool reconnect(const OrvSnBaseNode::Consumer& From, const Link& To);

/// Takes the nodes out; what they passed on from their preferred inputs goes on without them. Channels, the
/// output of a graph, and nodes that are locked or cached stay. The wires are inputs that are freed in the
/// same step.
ORVCOREMODULES_EXPORT void remove(
    const QVector<OrvSnBaseNode*>& Nodes, const QVector<OrvSnBaseNode::Consumer>& Wires);
ORVCOREMODULES_EXPORT QVector<OrvSnBaseNode*> duplicate(const QVector<OrvSnBaseNode*>& Nodes);
ORVCOREMODULES_EXPORT void rename(OrvSnBaseNode* pNode, const QString& Name);
/// Disables them when all are enabled.
ORVCOREMODULES_EXPORT void toggleEnabled(const QVector<OrvSnBaseNode*>& Nodes);
ORVCOREMODULES_EXPORT void toggleLocked(const QVector<OrvSnBaseNode*>& Nodes);

using Places = QHash<OrvSnBaseNode*, QPointF>;
ORVCOREMODULES_EXPORT void move(const Places& NewPlaces);
/// Gives up the places of all nodes of the network: they stand where their connections put them again.
ORVCOREMODULES_EXPORT void arrangeAll(OrvShaderNetwork* pNetwork);

/// An edit at the node is forbidden by a lock or a cache, its own or one that holds it.
ORVCOREMODULES_EXPORT bool isFrozen(const OrvSnBaseNode* pNode);
/// Says in the status line why nothing was done.
void refuse(const QString& Reason);

} // namespace OrvNodeGraphCommands
