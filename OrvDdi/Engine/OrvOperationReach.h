#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

/// What can be told of the engine's operations about which pixels their results depend on.
namespace OrvOperationReach {

/// Reach of operations that look at the whole image.
constexpr int Unlimited = 1 << 20;

/// How far away from a pixel an operation looks, measured with a rectangle where something changed. The node
/// has been prepared by the engine.
int of(GeglNode* pNode, const GeglRectangle& Rect);

/// Operations that compute more than they are asked for, mostly the whole image, because any pixel may depend
/// on any.
bool computesMoreThanAsked(GeglNode* pNode);

} // namespace OrvOperationReach
