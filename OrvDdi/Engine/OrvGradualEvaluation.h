#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

/// Brings results that steps of a graph keep up to date in small pieces, sources first, so that the engine's
/// lock is free in between: what is costly, or reads whole rows and columns of what lies below it, would
/// otherwise be computed in one go for the first pixel that is asked for. Used under the engine's lock; it
/// never delivers pixels.
namespace OrvGradualEvaluation {

/// Computes one piece of what is lacking for a region of the node, in pixels of the whole picture; false when
/// nothing is: evaluating the region is then quick.
bool advance(GeglNode* pTarget, const GeglRectangle& Region);

} // namespace OrvGradualEvaluation
