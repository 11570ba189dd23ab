#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowComponents.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerComponentPushButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowContents.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowIcons.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewUtils.h"

using namespace OrvLayerViewContext;
using Row = OrvLayerViewItemRowWidget;

namespace {

QString bakeStyle(const OrvSnBakePointNode* pNode)
{
    if (!pNode->hasBakedResult())
        return QStringLiteral("QPushButton:flat { border: none; }");
    return pNode->isBakedResultUpToDate(false)
        ? QStringLiteral("QPushButton:flat { background-color: green; border: none; }")
        : QStringLiteral("QPushButton:flat { background-color: red; border: none; }");
}

QString bakeText(const OrvSnBakePointNode* pNode)
{
    if (!pNode->hasBakedResult())
        return Row::tr("Not baked: what lies below is computed live");
    return pNode->isBakedResultUpToDate(false) ? Row::tr("Baked, and up to date")
                                               : Row::tr("Baked, but what lies below has changed since");
}

QString switchText(bool Enabled)
{
    return Enabled ? Row::tr("Shift + Click to Disable") : Row::tr("Shift + Click to Enable");
}

/// What is switched off is shown pale.
QIcon switchIcon(bool Enabled, const QIcon& Icon, const QAbstractButton* pButton)
{
    return Enabled ? Icon : OrvLayerRowIcons::paled(Icon, pButton);
}

} // namespace

void OrvLayerRowComponents::showBakePoint(const OrvLayerRowContents& Contents, const OrvLayer* pLayer)
{
    OrvLayerComponentPushButton* pButton = Contents.pBakePointButton;
    const bool IsBakePoint = OrvLayerUtils::isBakePointLayerFeatureEnabled() && pLayer->isBakePointLayer();
    pButton->setVisible(IsBakePoint);
    Contents.pPaintButton->setVisible(!IsBakePoint);
    if (!IsBakePoint)
        return;
    const OrvSnBakePointNode* pNode = pLayer->bakePointNode();
    if (!pNode) {
        OrvDebug(
            "OrvLayerViewItemRowWidget", __LINE__, QStringLiteral("BakePointNode is NULL"), false, false);
        return;
    }
    pButton->setComponentNode(pLayer->blendNode());
    pButton->setComponentIcon(layerKindIcon(LayerKindIcon::Bake));
    OrvLayerViewUtils::setStyleSheet(pButton, bakeStyle(pNode));
    pButton->setToolTip(bakeText(pNode) + QLatin1Char('\n') + OrvLayerComponentPushButton::dragHint(pLayer));
}

void OrvLayerRowComponents::showPaint(
    const OrvLayerRowContents& Contents, const OrvLayer* pLayer, const OrvLayerStack* pStack)
{
    OrvLayerComponentPushButton* pButton = Contents.pPaintButton;
    pButton->setComponentIcon(OrvLayerRowIcons::content(pLayer, pStack));
    pButton->setImageSet(pLayer->paintImageSet());
    pButton->setComponentNode(pLayer->blendNode());
    pButton->setToolTip(OrvLayerComponentPushButton::dragHint(pLayer));
}

void OrvLayerRowComponents::showMask(const OrvLayerRowContents& Contents, const OrvLayer* pLayer)
{
    const bool IsStack = pLayer->hasMaskStack();
    const bool Enabled = pLayer->isMaskEnabled();
    OrvLayerStackPopupButton* pStackButton = Contents.pMaskStackButton;
    pStackButton->setVisible(IsStack);
    pStackButton->setPopupStack(pLayer->maskStack());
    pStackButton->setIcon(switchIcon(Enabled, OrvLayerRowIcons::maskStack(), pStackButton));
    pStackButton->setToolTip(switchText(Enabled));

    OrvLayerComponentPushButton* pMaskButton = Contents.pMaskButton;
    pMaskButton->setVisible(pLayer->hasMask() && !IsStack);
    pMaskButton->setComponentNode(pLayer->maskNode());
    pMaskButton->setComponentIcon(switchIcon(Enabled, OrvLayerRowIcons::mask(pLayer), pMaskButton));
    // A mask that is switched off shows its pale icon: its pixels count for nothing.
    pMaskButton->setImageSet(Enabled ? pLayer->maskImageSet() : nullptr);
    pMaskButton->setToolTip(QStringList{
        Row::tr("Mask"), switchText(Enabled), QString(), OrvLayerComponentPushButton::dragHint(pLayer)}
                                .join(QLatin1Char('\n')));
}

void OrvLayerRowComponents::showAdjustmentStack(const OrvLayerRowContents& Contents, const OrvLayer* pLayer)
{
    const bool Enabled = pLayer->isAdjustmentStackEnabled();
    OrvLayerStackPopupButton* pButton = Contents.pAdjustmentStackButton;
    pButton->setPopupStack(pLayer->adjustmentStack());
    pButton->setVisible(pLayer->hasAdjustmentStack());
    pButton->setIcon(switchIcon(Enabled, OrvLayerRowIcons::adjustmentStack(), pButton));
    pButton->setToolTip(switchText(Enabled));
}

void OrvLayerRowComponents::highlightCurrent(const OrvLayerRowContents& Contents, const OrvLayer* pLayer)
{
    const OrvSnBaseNode* pCurrent = OrvLayerManager::instance().currentComponent();
    Contents.pPaintButton->setHighlighted(pCurrent && pCurrent == pLayer->paintNode());
    Contents.pMaskButton->setHighlighted(pCurrent && pCurrent == pLayer->maskPaintNode());
}

void OrvLayerRowComponents::showSharing(const OrvLayerRowContents& Contents, const OrvLayer* pLayer)
{
    Contents.pSharedButton->setVisible(
        pLayer->isPaintComponentShared() || pLayer->isMaskComponentShared() || pLayer->isDownstreamShared());
    Contents.pSharedChannelButton->setVisible(
        pLayer->isSharedShaderInput() || pLayer->isTaggedForCrossChannelSharing());
}
