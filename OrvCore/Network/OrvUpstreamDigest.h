#pragma once

#include "OrvCore/OrvCoreExport.h"

#include <QtCore/QByteArray>

class OrvSnBaseNode;

/// Says in few bytes what a node's result is made of: all that lies upstream of it and has a share in the
/// picture, parameters, connections and pixels, but neither names, places nor identities. Equal digests mean
/// equal pictures.
namespace OrvUpstreamDigest {

ORVCORE_EXPORT QByteArray of(const OrvSnBaseNode* pNode);

} // namespace OrvUpstreamDigest
