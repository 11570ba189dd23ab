#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowClicks.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerStackPopupButton.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerTreeView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewItemRowWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerVisibilityGesture.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvMultiChannelLayerCommands.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvSharerListPopup.h"

#include <QtCore/QElapsedTimer>
#include <QtGui/QGuiApplication>

namespace {

using Row = OrvLayerViewItemRowWidget;

constexpr int ShiftClickInterval = 100; // ms

enum class Click { Plain, Shift, RepeatedShift };

Click clickNow()
{
    // One gesture can reach two rows, when the first click moves the second row under the cursor.
    static QElapsedTimer LastShiftClick;
    if (!(QGuiApplication::keyboardModifiers() & Qt::ShiftModifier))
        return Click::Plain;
    const bool Repeated = LastShiftClick.isValid() && LastShiftClick.elapsed() < ShiftClickInterval;
    LastShiftClick.start();
    return Repeated ? Click::RepeatedShift : Click::Shift;
}

void report(int Line, const char* pMessage)
{
    OrvDebug("OrvLayerViewItemRowWidget", Line, QString::fromLatin1(pMessage), false, false);
}

QString quotedName(const OrvLayer* pLayer)
{
    return QStringLiteral(" '%1'").arg(pLayer->name());
}

/// Selects the layer alone unless it is selected already: then it keeps those selected with it.
void makeRowCurrent(Row* pRow)
{
    report(__LINE__, "[ -- ] About to manually change current index of layer palette");
    OrvLayer* pLayer = pRow->layer();
    OrvSnMergeNode* pLayerNode = pLayer->blendNode();
    if (!pLayerNode || !pLayerNode->network()) {
        report(__LINE__, "LayerNode is NULL");
        return;
    }
    OrvLayerView* pLayerView = pRow->layerView();
    OrvLayerTreeView* pTreeView = pLayerView->treeView();
    const QModelIndex Index = pTreeView->indexAt(pRow->geometry().center());
    if (!pLayer->isSelected() && pLayerView->layerFromIndex(Index) == pLayer) {
        pTreeView->disconnectSelectionRelay();
        pTreeView->selectionModel()->select(
            Index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        pTreeView->connectSelectionRelay();
        pLayer->setSelected(true, true);
        pLayerNode->network()->selectNone({pLayerNode});
    }
    pLayerView->changeCurrentIndex(pLayer);
}

void makeMaskCurrent(Row* pRow)
{
    OrvUndoManager::AutoMacro Macro(Row::tr("Make%1 Mask Current").arg(quotedName(pRow->layer())));
    pRow->layer()->makeMaskComponentCurrent();
    makeRowCurrent(pRow);
}

void toggleMask(OrvLayer* pLayer)
{
    const bool Enabled = !pLayer->isMaskEnabled();
    OrvUndoManager::AutoMacro Macro(
        (Enabled ? Row::tr("Enable Mask of '%1'") : Row::tr("Disable Mask of '%1'")).arg(pLayer->name()));
    pLayer->setMaskEnabled(Enabled);
}

void toggleAdjustmentStack(OrvLayer* pLayer)
{
    const bool Enabled = !pLayer->isAdjustmentStackEnabled();
    OrvUndoManager::AutoMacro Macro(
        (Enabled ? Row::tr("Enable Adjustment Stack of '%1'") : Row::tr("Disable Adjustment Stack of '%1'"))
            .arg(pLayer->name()));
    pLayer->setAdjustmentStackEnabled(Enabled);
}

} // namespace

void OrvLayerRowClicks::pressEye(Row* pRow)
{
    if (clickNow() == Click::RepeatedShift)
        return;
    OrvLayer* pLayer = pRow->layer();
    OrvLayerView* pLayerView = pRow->layerView();
    OrvLayerVisibilityGesture* pGesture = pLayerView->visibilityGesture();
    if (QGuiApplication::keyboardModifiers() == Qt::ShiftModifier && pLayer->isVisible()
        && OrvLayerStreamUtils::isMultiChannelMergeLayer(pLayer))
        OrvMultiChannelLayerCommands::toggleInChannel(pLayer, pLayerView->layerStack());
    else if (QGuiApplication::keyboardModifiers() == Qt::AltModifier)
        pGesture->toggleAlone(pLayer);
    else if (pRow->isEyeDown())
        pGesture->press(pLayer, pRow->mapToGlobal(pRow->eyeGeometry().center()));
    else
        pGesture->toggle(pLayer);
}

void OrvLayerRowClicks::choosePaint(Row* pRow)
{
    OrvLayer* pLayer = pRow->layer();
    {
        OrvUndoManager::AutoMacro Macro(Row::tr("Make%1 Current").arg(quotedName(pLayer)));
        OrvLayerStreamUtils::makePaintComponentCurrent(pLayer, pRow->layerView()->layerStack());
        makeRowCurrent(pRow);
    }
    if (pLayer->isGraphLayer())
        OrvLayerStreamUtils::openLayerContentsInNodeGraph(pLayer);
}

void OrvLayerRowClicks::chooseMask(Row* pRow)
{
    OrvLayer* pLayer = pRow->layer();
    const Click Now = clickNow();
    if (Now == Click::Shift)
        toggleMask(pLayer);
    if (Now != Click::Plain)
        return;
    makeMaskCurrent(pRow);
    if (pLayer->maskNode() && pLayer->maskNode()->nestedNetwork())
        OrvLayerStreamUtils::openLayerMaskContentsInNodeGraph(pLayer);
}

void OrvLayerRowClicks::chooseMaskStack(Row* pRow)
{
    const Click Now = clickNow();
    if (Now == Click::Shift)
        toggleMask(pRow->layer());
    if (Now != Click::Plain)
        return;
    makeMaskCurrent(pRow);
    OrvLayerStackPopupButton::popup(pRow->layer()->maskStack());
}

void OrvLayerRowClicks::chooseAdjustmentStack(Row* pRow)
{
    const Click Now = clickNow();
    if (Now == Click::Shift)
        toggleAdjustmentStack(pRow->layer());
    if (Now == Click::Plain)
        OrvLayerStackPopupButton::popup(pRow->layer()->adjustmentStack());
}

void OrvLayerRowClicks::showSharers(Row* pRow)
{
    const OrvLayer* pLayer = pRow->layer();
    OrvSharerListPopup* pPopup = new OrvSharerListPopup(pRow);
    const auto addLayers = [pPopup](const QString& Heading, const QList<OrvLayer*>& Layers) {
        if (!Layers.isEmpty())
            pPopup->addHeading(Heading);
        for (const OrvLayer* pSharer : Layers)
            pPopup->addSharer(pSharer->path(true), pSharer->blendNode());
    };
    addLayers(Row::tr("Shares Resources With:"), pLayer->getOtherSharers());
    addLayers(Row::tr("Part Of Shared Layer:"), pLayer->downstreamSharer());
    if (const OrvShaderInput* pShaderInput = pLayer->sharedShaderInput()) {
        pPopup->addHeading(Row::tr("Shares Channel :"));
        pPopup->addSharer(pShaderInput->path(), pShaderInput->node());
    }
    pPopup->popup();
}
