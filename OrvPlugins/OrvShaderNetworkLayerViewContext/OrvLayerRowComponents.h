#pragma once

class OrvLayer;
class OrvLayerStack;
struct OrvLayerRowContents;

/// What the component buttons and sharing markers of a row show of the row's layer. The row asks for it when
/// something changed; clicks are the row's affair.
namespace OrvLayerRowComponents {

/// The button of a bake point takes the place of the paint's, and tells whether its result can be trusted.
void showBakePoint(const OrvLayerRowContents& Contents, const OrvLayer* pLayer);
void showPaint(const OrvLayerRowContents& Contents, const OrvLayer* pLayer, const OrvLayerStack* pStack);
/// As a painted mask, a stack, a procedural, or none.
void showMask(const OrvLayerRowContents& Contents, const OrvLayer* pLayer);
void showAdjustmentStack(const OrvLayerRowContents& Contents, const OrvLayer* pLayer);
/// The button of the component that is painted on stands out.
void highlightCurrent(const OrvLayerRowContents& Contents, const OrvLayer* pLayer);
void showSharing(const OrvLayerRowContents& Contents, const OrvLayer* pLayer);

} // namespace OrvLayerRowComponents
