#pragma once

#include "OrvCore/OrvCoreExport.h"

class OrvLayer;
class OrvSnBaseNode;
class OrvSnMergeNode;

/// Where layers that show shaders stand: in the stacks of material channels, which hold nothing else but
/// channels of the same kind and groups. Lit pictures and colours that are to be lit are not mixed.
namespace OrvShaderLayers {

/// Layers above the node hold lit pictures: it stands in material channels only, and in no mask or adjustment
/// stack of theirs.
ORVCORE_EXPORT bool isPlaceOfShaders(const OrvSnBaseNode* pNode);
/// The layer, with all that it holds, is of the kind that stands among shaders, or of the other. An empty
/// group and a layer of several channels are of both kinds.
ORVCORE_EXPORT bool fits(const OrvLayer* pLayer, bool AmongShaders);
ORVCORE_EXPORT bool fits(OrvSnMergeNode* pMerge, bool AmongShaders);

} // namespace OrvShaderLayers
