#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QStringList>

class OrvLayer;
class OrvShaderInput;
class OrvSnBaseNode;

/// What keeps a place, a layer or a channel from being edited, in words for the user: which lock or cache it
/// is, and whose. A text is empty exactly where the edit is allowed; sentences have no full stop, so that
/// they can follow a colon.
namespace OrvEditObstacle {

/// As OrvLayerUtils::isModificationAllowedAt.
ORVCORE_EXPORT QString at(const OrvSnBaseNode* pNode);
/// As OrvLayerUtils::isLayerModifiable.
ORVCORE_EXPORT QString of(const OrvLayer* pLayer);
/// As OrvLayer::isModifiable: who shares its content may forbid the edit too.
ORVCORE_EXPORT QString ofSharers(const OrvLayer* pLayer);
ORVCORE_EXPORT QString of(const OrvShaderInput* pChannel);
/// Of any node, its own lock and cache included, under the name that the user sees.
ORVCORE_EXPORT QString ofNode(const OrvSnBaseNode* pNode, const QString& Title);
/// As many obstacles as a line has room for; those that are empty are passed over.
ORVCORE_EXPORT QString several(const QStringList& Obstacles);

} // namespace OrvEditObstacle
