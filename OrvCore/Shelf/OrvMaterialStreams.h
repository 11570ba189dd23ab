#pragma once

#include "OrvCore/Shelf/OrvMaterialDescription.h"

#include <memory>

class OrvSnBaseNode;
struct OrvImageSettings;

/// Nodes that show what a material has for an input of a shader. They belong to whoever asked, and to no
/// network yet.
namespace OrvMaterialStreams {

/// One that fills every tile of images that are stored so; scalar images take numbers as they stand in files.
/// Null, with a reason, for an image that cannot be read.
ORVCORE_EXPORT std::unique_ptr<OrvSnBaseNode> makeNode(const OrvMaterialDescription::Stream& Stream,
    const OrvImageSettings& Settings, bool Scalar, QString& Error);

} // namespace OrvMaterialStreams
