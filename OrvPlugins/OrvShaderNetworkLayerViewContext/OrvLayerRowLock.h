#pragma once

class OrvLayer;

/// The lock of a layer as its row shows it: closed as soon as anything keeps the layer from being changed, a
/// lock or cache of its own, of what holds it, or of a layer that shares its content.
namespace OrvLayerRowLock {

bool isShownLocked(const OrvLayer* pLayer);
void lock(OrvLayer* pLayer);
/// Takes away everything that keeps the layer from being changed, in one undo step. The user is asked first
/// where that touches more than the layer's own lock, and may leave everything as it was.
void unlock(OrvLayer* pLayer);

} // namespace OrvLayerRowLock
