#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

class OrvUdimLayout;

/// The engine's operation that brings pixels from one layout of tiles to another of the same tiles in another
/// size, or enlarges a plane without tiles. Computes at full scale only.
namespace OrvFitOperation {

constexpr char Name[] = "orv:fit";

void registerType();
/// Returns how many pixels of the one layout become one of the other, at least 1.
double setLayouts(GeglNode* pNode, const OrvUdimLayout& From, const OrvUdimLayout& To);
/// Enlarges by a factor about the origin what becomes a region; an empty one is everywhere. Returns the same.
double setFactor(GeglNode* pNode, double Factor, const GeglRectangle& To);

} // namespace OrvFitOperation
