#pragma once

#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Engine/OrvShadingParameters.h"

/// The engine's operation behind a shading step: one pad for each slot of a shader, and the picture of the
/// flat texture under a light. Heights are read with one pixel around, of the same tile only.
namespace OrvShadingOperation {

constexpr char Name[] = "orv:shading";

void registerType();
/// Name of the pad of a slot.
const char* padName(int Slot);
const OrvShadingParameters& parameters(GeglNode* pNode);
void setParameters(GeglNode* pNode, const OrvShadingParameters& Parameters);
/// Keeps the result.
void setCached(GeglNode* pNode, bool Cached);

} // namespace OrvShadingOperation
