#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QList>
#include <QtCore/QString>

class OrvLayer;
class OrvLayerStack;
class OrvShaderInput;
class OrvShadingModel;
class OrvSnBaseNode;
class QColor;

/// Operations on chains of merge nodes.
namespace OrvLayerStreamUtils {

/// False for null.
ORVCORE_EXPORT bool isMergeNode(const OrvSnBaseNode* pNode);
/// The chain node below the layer: a merge node, the bottom node, or what else is connected there.
ORVCORE_EXPORT OrvSnBaseNode* layerNodeBelow(const OrvLayer* pLayer, const OrvLayerStack* pStack);
/// Name of the input that carries the content for a stream; "Over" for the plain one.
ORVCORE_EXPORT QString overInputName(const QString& StreamName = QString());
ORVCORE_EXPORT bool isValidBottomTransparencyNode(const OrvSnBaseNode* pNode);
/// The node ends a chain when it is walked downwards: a bottom-transparency node or an adjustment stack's
/// bottom.
ORVCORE_EXPORT bool isChainEnd(const OrvSnBaseNode* pNode);

/// Moves the layer to just above the target, out of its old place. False when that is not allowed.
ORVCORE_EXPORT bool insertLayerAfter(OrvLayer* pLayer, OrvSnBaseNode* pTarget, OrvLayerStack* pStack);
/// The same for many, the first on top: all or none. It takes hardly longer than for one.
ORVCORE_EXPORT bool insertLayersAfter(
    const QList<OrvLayer*>& Layers, OrvSnBaseNode* pTarget, OrvLayerStack* pStack);
/// Adds an independent copy of the layer above the target; works between networks.
ORVCORE_EXPORT OrvLayer* addDuplicateLayerAbove(
    OrvLayer* pLayer, OrvSnBaseNode* pTarget, OrvLayerStack* pStack);
/// A new merge node above the target with the node as content; null when that is not allowed.
ORVCORE_EXPORT OrvSnBaseNode* createLayerNodeAfter(OrvSnBaseNode* pTarget, OrvSnBaseNode* pContent,
    const QString& Name, const QString& StreamName, bool Undoable);

ORVCORE_EXPORT bool containsShaderLayers(const OrvLayer* pLayer, const OrvLayerStack* pStack);
ORVCORE_EXPORT bool containsMaterialShaderInputLayers(const OrvLayer* pLayer, const OrvLayerStack* pStack);

ORVCORE_EXPORT bool isLayerGroup(const OrvLayer* pLayer, const OrvLayerStack* pStack);
ORVCORE_EXPORT bool isLayerGroup(const OrvLayer* pLayer, const QString& StreamName);
ORVCORE_EXPORT OrvLayerStack* groupStack(const OrvLayer* pLayer, const QString& StreamName = QString());
/// Whether the layers can be shown inside that group; the node is a multi-channel merge node or null.
ORVCORE_EXPORT bool validateGroupSelection(
    const QList<OrvLayer*>& Layers, const OrvSnBaseNode* pMultiChannelNode);
ORVCORE_EXPORT bool isLayerGroupPassThrough(const OrvSnBaseNode* pBlendNode);
ORVCORE_EXPORT void setLayerGroupPassThrough(OrvSnBaseNode* pBlendNode, bool PassThrough);

/// The layer stands in several channels of a shader.
ORVCORE_EXPORT bool isMultiChannelMergeLayer(const OrvLayer* pLayer);
/// Such a layer that carries a material, not a group.
ORVCORE_EXPORT bool isMaterialLayer(const OrvLayer* pLayer);
/// A material layer whose connections no layer stack can show.
ORVCORE_EXPORT bool isInvalidMaterialLayer(const OrvLayer* pLayer);
/// What a material layer shows in its channel; null for another layer.
ORVCORE_EXPORT OrvSnBaseNode* materialNode(const OrvLayer* pLayer);
/// The channel holds, on any level, layers that stand in several channels of shaders of the model; null: of any.
ORVCORE_EXPORT bool containsMultiChannelLayers(const OrvShaderInput* pChannel, const OrvShadingModel* pModel);
/// The layer, or one inside it, stands in several channels.
ORVCORE_EXPORT bool containsMultiChannelLayers(const OrvLayer* pLayer);

/// Turns a group into one paintable layer in its place, undoable. The group's blending and mask stay, unless
/// its layers can only be seen together with what lies below it. Null when that is not allowed.
ORVCORE_EXPORT OrvLayer* flattenLayer(OrvLayer* pLayer, OrvLayerStack* pStack, bool Undoable = true);

/// Tags the layers and what is inside them; one undo step with the caller's macro.
ORVCORE_EXPORT void setColorRecursiveUndo(const QList<OrvLayer*>& Layers, const QColor& Color);
ORVCORE_EXPORT void makePaintComponentCurrent(OrvLayer* pLayer, OrvLayerStack* pStack);

ORVCORE_EXPORT void openLayerContentsInNodeGraph(OrvLayer* pLayer);
ORVCORE_EXPORT void openLayerMaskContentsInNodeGraph(OrvLayer* pLayer);

} // namespace OrvLayerStreamUtils
