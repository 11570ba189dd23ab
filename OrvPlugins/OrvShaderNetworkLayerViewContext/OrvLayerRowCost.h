#pragma once

class OrvLayer;
class QString;

/// What evaluating a layer costs, as the colour at the end of its row.
namespace OrvLayerRowCost {

/// Green for a cheap layer, red for a costly one; blue where a cache saves the cost, greenish blue inside a
/// cached layer.
QString styleSheet(const OrvLayer* pLayer);

} // namespace OrvLayerRowCost
