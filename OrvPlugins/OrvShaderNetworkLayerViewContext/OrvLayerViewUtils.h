#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/Qt>

class OrvLayer;
class OrvLayerStack;
class OrvShaderNetwork;
class OrvSnBaseNode;
class QStandardItem;

/// What the parts of a Layers palette share: how a row names its layer, and questions about the graph below a
/// stack, and what the user is told.
namespace OrvLayerViewUtils {

/// Item data: the identity of the layer's blend node.
constexpr int NodeRole = Qt::UserRole + 2;

/// Null for no item and for a row without a layer; an identity that is no blend node's is reported.
OrvLayer* layerFromItem(const QStandardItem* pItem);

/// The node that stands for the given one in the network: itself, or the node whose nested networks hold it.
/// Null when it lies elsewhere.
const OrvSnBaseNode* nodeInNetwork(const OrvSnBaseNode* pNode, const OrvShaderNetwork* pNetwork);
/// Whether one of the nodes is the start or feeds it through any inputs.
bool isAnyUpstream(const QSet<const OrvSnBaseNode*>& Nodes, const OrvSnBaseNode* pStart);
/// Whether what the stack shows reaches a shader that the user made.
bool feedsUserShader(const OrvLayerStack* pLayerStack);

/// Shows the user why something failed; nothing to say shows nothing.
void warn(const QString& Title, const QString& Error);
/// Says in the status line, for some seconds, why a command did nothing.
void tell(const QString& Reason);

/// Writes to the debug channel in the palette's name.
void report(int Line, const QString& Message);
void report(int Line, const char* pMessage);

} // namespace OrvLayerViewUtils
