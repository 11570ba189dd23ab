#pragma once

#include "OrvDdi/Engine/OrvGegl.h"

/// The engine's operations at the bottom of a graph: one shows a buffer (and, unlike the engine's own, does
/// not watch it: who writes says so), one is a colour within a rectangle that takes no memory while only
/// blend steps read it.
namespace OrvSourceOperations {

constexpr char BufferName[] = "orv:buffer";
constexpr char UniformName[] = "orv:uniform";

void registerTypes();
/// Null for nothing.
void setBuffer(GeglNode* pNode, GeglBuffer* pBuffer);
/// Four floats, linear, premultiplied.
void setUniform(GeglNode* pNode, const float* pColor, const GeglRectangle& Extent);
/// Whether whoever reads the node understands descriptions (see OrvPicture).
void setBufferDeferred(GeglNode* pNode, bool Deferred);
void setUniformDeferred(GeglNode* pNode, bool Deferred);

} // namespace OrvSourceOperations
