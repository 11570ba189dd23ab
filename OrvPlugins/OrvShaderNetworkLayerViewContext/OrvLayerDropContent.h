#pragma once

#include <QtCore/QList>
#include <QtCore/QVector>

class OrvLayer;
class OrvLayerStack;
class OrvSnBaseNode;

/// What dragged nodes are to layer stacks, wherever they are dropped. It changes nothing.
namespace OrvLayerDropContent {

enum class Kind { Layer, Channel, Shader, Image, Other };
/// An image is a mask where layers use it as one: maskedLayers().
Kind kindOf(OrvSnBaseNode* pNode);

/// Null for a node that blends no layer.
OrvLayer* layerOf(OrvSnBaseNode* pNode);

/// The layers whose mask the node is.
QList<OrvLayer*> maskedLayers(const OrvSnBaseNode* pNode);

/// The nodes of layers in the order in which the stack shows them, without those that a group among them
/// holds; nodes that are not all layers of the stack are left as they are.
QVector<OrvSnBaseNode*> inOrderOf(const OrvLayerStack* pSourceStack, const QVector<OrvSnBaseNode*>& Nodes);

/// Whether the node stands for shading results: those live in material stacks alone.
bool needsMaterialStack(OrvSnBaseNode* pNode, const OrvLayerStack* pStack);

} // namespace OrvLayerDropContent
