#pragma once

#include <QtCore/QVector>

class OrvGeoEntity;

/// Gives an object more UDIM tiles. All of its channels gain them, and so do the images of their layers:
/// pixels stay on their tiles, the new ones show each image's fill colour. Stateless; undoable as part of the
/// open macro.
namespace OrvTileExtension {

void extend(OrvGeoEntity* pEntity, const QVector<int>& Tiles);

} // namespace OrvTileExtension
