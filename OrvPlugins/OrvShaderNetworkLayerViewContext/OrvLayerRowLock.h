#pragma once

#include <QtCore/QList>

class OrvLayer;

/// The lock of a layer as its row shows it: closed as soon as anything keeps the layer from being changed, a
/// lock or cache of its own, of what holds it, or of a layer that shares its content.
namespace OrvLayerRowLock {

bool isShownLocked(const OrvLayer* pLayer);
/// Those that are not shown so yet, all in one undo step. Unlocking takes away everything that keeps a layer
/// from being changed. The user is asked first, and once, where that touches more than a layer's own lock,
/// and may leave everything as it was.
void setLocked(const QList<OrvLayer*>& Layers, bool Locked);

} // namespace OrvLayerRowLock
