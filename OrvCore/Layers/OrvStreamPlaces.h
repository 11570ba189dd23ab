#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QString>

class OrvLayer;
class OrvShaderInput;
class OrvSnBaseNode;

/// Where the streams of a layer in several channels go when one of them goes somewhere. It changes nothing
/// but that a channel without a bottom gets one.
namespace OrvStreamPlaces {

/// The place in another channel that is like the given one in its own: above the same layer, in the same
/// group; else on top. The node above which a layer is put, or null, with the obstacle, where none may be
/// put. A null place is like no other.
ORVCORE_EXPORT OrvSnBaseNode* alike(
    const OrvSnBaseNode* pPlace, OrvShaderInput* pChannel, QString* pObstacle = nullptr);
/// A copy of the layer above that node stands in several channels too: the node is in the channel of the
/// layer.
ORVCORE_EXPORT bool isForAllStreams(const OrvLayer* pLayer, const OrvSnBaseNode* pPlace);

} // namespace OrvStreamPlaces
