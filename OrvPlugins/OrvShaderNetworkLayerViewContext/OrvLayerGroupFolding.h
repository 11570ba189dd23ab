#pragma once

class OrvLayer;

/// Whether the row of a group is unfolded: kept with the group, so that it is the same in every palette and
/// after the project was closed. It is no edit, and undo leaves it alone. Only to be asked of groups.
namespace OrvLayerGroupFolding {

/// As long as nobody has folded it, a group is unfolded.
bool isUnfolded(const OrvLayer* pGroup);
void setUnfolded(const OrvLayer* pGroup, bool Unfolded);

} // namespace OrvLayerGroupFolding
