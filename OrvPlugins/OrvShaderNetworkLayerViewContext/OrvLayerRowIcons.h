#pragma once

class OrvLayer;
class OrvLayerStack;
class QAbstractButton;
class QIcon;

/// The pictures by which a layer row says what its layer is made of.
namespace OrvLayerRowIcons {

/// What feeds the layer: paint, an adjustment, a procedural, a group, …
QIcon content(const OrvLayer* pLayer, const OrvLayerStack* pStack);
/// The layer's mask, where it is no stack.
QIcon mask(const OrvLayer* pLayer);
QIcon maskStack();
QIcon adjustmentStack();
QIcon visibility(bool Visible);
QIcon shared();
QIcon sharedChannel();
QIcon lock(bool Locked);
/// The icon of a component that is switched off: pale, though its button can be clicked.
QIcon paled(const QIcon& Icon, const QAbstractButton* pButton);
/// The icon on the light ground of a highlighted button.
QIcon darkened(const QIcon& Icon, const QAbstractButton* pButton);

} // namespace OrvLayerRowIcons
