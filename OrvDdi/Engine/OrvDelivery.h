#pragma once

#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"

/// The one way by which computed pixels leave the engine: a node of ours above whatever is rendered, which
/// writes the caller's memory directly, in the caller's format. Used under the engine's lock.
namespace OrvDelivery {

void registerType();
void release();

/// Fills a region (in pixels of the scale) of what the node yields.
void render(GeglNode* pTarget, const GeglRectangle& Region, double Scale, OrvPixelLayout Layout,
    void* pPixels, int Stride);
/// True while the node is what is being rendered: its output goes nowhere else then.
bool isTarget(const GeglNode* pNode);
/// True while all that becomes of the node's output is that it is delivered, as it is or through a step that
/// passes it on: whatever picture it yields is rendered into the caller's memory.
bool delivers(const GeglNode* pNode);
/// The node is about to go.
void forget(const GeglNode* pNode);

/// The mipmap level at which the engine computes just now.
int currentLevel();

/// While it lives, an evaluation at full scale takes place within a reduced one.
class FullScale {
public:
    FullScale();
    ~FullScale();
    FullScale(const FullScale&) = delete;
    FullScale& operator=(const FullScale&) = delete;

private:
    const int m_Outer;
};

} // namespace OrvDelivery
