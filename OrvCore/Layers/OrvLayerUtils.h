#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtGui/QColor>

class OrvLayer;
class OrvSnBaseNode;

/// Questions about layers that no single layer or stack answers.
namespace OrvLayerUtils {

/// Every stack in which the merge node stands, as pairs of target node and input name.
ORVCORE_EXPORT void findLayerStackTargets(
    QSet<QPair<OrvSnBaseNode*, QString>>& Targets, OrvSnBaseNode* pNode);
/// False when a lock or cache downstream of the node forbids a change there. The node's own does not count: a
/// layer may be put above a locked one.
ORVCORE_EXPORT bool isModificationAllowedAt(const OrvSnBaseNode* pNode);
/// A cached layer holds the node, or lies above it in its stack and keeps all below.
ORVCORE_EXPORT bool isPartOfCache(const OrvSnBaseNode* pNode);
ORVCORE_EXPORT bool isLayer(const OrvSnBaseNode* pNode);
/// Whether a node's name is that of layers: a merge node's, or of what several of them have in common.
ORVCORE_EXPORT bool holdsLayerName(const OrvSnBaseNode* pNode);
/// As OrvLayer::isModifiable, without asking the layers that share content with it.
ORVCORE_EXPORT bool isLayerModifiable(const OrvLayer* pLayer);
/// A new shader layer above the target that shows the shader of the node; null when that is not allowed.
ORVCORE_EXPORT OrvSnBaseNode* createShaderLayerNodeAfter(
    OrvSnBaseNode* pTarget, OrvSnBaseNode* pShaderNode, const QString& Name);
/// Unlocks every locked layer and channel downstream of the node, in one undo step.
ORVCORE_EXPORT void unlockLockedAncestorLayers(OrvSnBaseNode* pNode);

/// First parts of the menu paths of procedural and of adjustment layer types.
ORVCORE_EXPORT QStringList getProceduralLayerGroups();
ORVCORE_EXPORT QStringList getAdjustmentLayerGroups();
/// Second parts of menu paths that menus leave out.
ORVCORE_EXPORT QStringList getTruncatedLayerRootMenuGroups();

/// Tag colours by name, in menu order by key; "none" is an invalid colour.
ORVCORE_EXPORT const QMap<QString, QColor>& validLayerColors();
ORVCORE_EXPORT bool isBakePointLayerFeatureEnabled();

} // namespace OrvLayerUtils
