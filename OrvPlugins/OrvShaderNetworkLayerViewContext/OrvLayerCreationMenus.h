#pragma once

class OrvLayerView;

/// The popup menus of a Layers palette from which the user chooses what kind of layer to add. They open at
/// the cursor, destroy themselves when they close, and call back a slot of the palette, which reads the
/// choice from the action.
namespace OrvLayerCreationMenus {

/// The slot is written with SLOT().
void popupAdjustments(OrvLayerView* pLayerView, const char* pSlot);
void popupProcedurals(OrvLayerView* pLayerView);

} // namespace OrvLayerCreationMenus
