#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

/// The engine's operation behind every operation of the registry: crops what has no bounds of its own and
/// keeps results where that is asked for. Without either it passes its input on.
namespace OrvOutputOperation {

constexpr char Name[] = "orv:output";

void registerType();
/// The node is of this operation, and hands on what it is given, whatever that is.
bool passesOn(GeglNode* pNode);
/// An empty extent lifts the crop.
void setExtent(GeglNode* pNode, const GeglRectangle& Extent);
GeglRectangle extent(GeglNode* pNode);
/// Computes reduced views from the result at full scale.
void setFullScale(GeglNode* pNode, bool FullScale);
void setCached(GeglNode* pNode, bool Cached);
/// The node is of this operation, and keeps a result that is always computed at full scale.
bool keepsFullScale(GeglNode* pNode);
/// Whether whoever reads the output understands descriptions (see OrvPicture).
void setDeferred(GeglNode* pNode, bool Deferred);

} // namespace OrvOutputOperation
