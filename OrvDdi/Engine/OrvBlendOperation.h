#pragma once

#include "OrvDdi/Engine/OrvBlendParameters.h"
#include "OrvDdi/Engine/OrvGegl.h"

/// The engine's operation behind a blend step: pads "input" (base), "aux" (over) and "aux2" (mask). Where its
/// only reader is another blend step it yields a description of the blend instead of pixels (see OrvPicture).
namespace OrvBlendOperation {

constexpr char Name[] = "orv:blend";

void registerType();
const OrvBlendParameters& parameters(GeglNode* pNode);
void setParameters(GeglNode* pNode, const OrvBlendParameters& Parameters);
/// Whether descriptions are understood by whoever reads the output.
void setDeferred(GeglNode* pNode, bool Deferred);
/// Keeps the result.
void setCached(GeglNode* pNode, bool Cached);

} // namespace OrvBlendOperation
