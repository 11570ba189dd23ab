#pragma once

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtGui/QIcon>

class OrvLayerView;
class QMenu;

/// The popup menus of a Layers palette from which the user chooses what kind of layer to add. They open at
/// the cursor, destroy themselves when they close, and call back a slot of the palette, which reads the
/// choice from the action.
namespace OrvLayerCreationMenus {

/// The slot is written with SLOT().
void popupAdjustments(OrvLayerView* pLayerView, const char* pSlot);
void popupProcedurals(OrvLayerView* pLayerView);
/// Adds entries for custom procedurals, by their paths, to a menu and its sub-menus.
void addCustomProcedurals(OrvLayerView* pLayerView, QMenu* pRoot, QHash<QString, QMenu*>& SubMenus,
    const QMap<QString, QPair<QString, QIcon>>& Procedurals);

} // namespace OrvLayerCreationMenus
