#pragma once

class OrvLayer;
class QDragMoveEvent;
class QDropEvent;

/// What is dropped on the button of a layer's mask goes into the mask, which becomes a stack for that. The
/// buttons of plain masks and of mask stacks hand their events on to here; a layer that is null takes
/// nothing.
namespace OrvLayerMaskDrop {

/// Accepts the event, with the action that the keys ask for, where a drop would be carried out.
void dragOver(const OrvLayer* pMasked, QDragMoveEvent* pEvent);
void drop(OrvLayer* pMasked, QDropEvent* pEvent);

} // namespace OrvLayerMaskDrop
