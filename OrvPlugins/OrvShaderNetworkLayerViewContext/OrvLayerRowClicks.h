#pragma once

class OrvLayerViewItemRowWidget;

/// What clicks on a layer's row do: each is an edit of the host in one undo step, or opens what the clicked
/// component stands for. The row, whose layer must be there, passes its clicks on; nothing is kept.
namespace OrvLayerRowClicks {

/// The eye: plainly for the layer and those selected with it, with Alt for the layer alone, with Shift for
/// the stack's channel alone.
void pressEye(OrvLayerViewItemRowWidget* pRow);

/// The component becomes the one that is painted on, and the row the palette's current one; what is made of
/// nodes opens in the graph.
void choosePaint(OrvLayerViewItemRowWidget* pRow);
/// With Shift, the mask is switched on or off instead.
void chooseMask(OrvLayerViewItemRowWidget* pRow);
void chooseMaskStack(OrvLayerViewItemRowWidget* pRow);
/// With Shift, the stack is switched on or off instead.
void chooseAdjustmentStack(OrvLayerViewItemRowWidget* pRow);

/// A list of what shares the layer's content, to go there.
void showSharers(OrvLayerViewItemRowWidget* pRow);

} // namespace OrvLayerRowClicks
