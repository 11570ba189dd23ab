// What becomes of layers in several channels when a channel leaves their shader: ordinary layers, or nothing.

#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Network/OrvSnMultiChannelMergeNode.h"
#include "OrvCore/Shaders/OrvShadingModel.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QCoreApplication>

namespace {

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvMultiChannelLayerUtils", pText);
}

/// On all levels.
QList<OrvLayer*> layersIn(const OrvShaderInput* pChannel, const OrvShadingModel* pModel)
{
    QList<OrvLayer*> Found;
    for (OrvLayer* pLayer : pChannel->allLayers()) {
        const OrvSnMultiChannelMergeNode* pCommon = pLayer->blendNode()->multiChannelNode();
        if (pCommon && (!pModel || pCommon->shaderModelKey() == pModel->key()))
            Found.append(pLayer);
    }
    return Found;
}

/// The pixels that take the place of what is computed; null buffers where nothing is.
struct Replacement {
    OrvImageSettings Settings;
    OrvImageBuffer Paint, Mask;
};

/// False when it was cancelled.
bool render(const OrvLayer& Layer, Replacement& Pixels)
{
    const OrvSnMergeNode* pMerge = Layer.blendNode();
    Pixels.Settings = OrvImageSettings::ofLayer(pMerge);
    const OrvUdimLayout& Layout = Pixels.Settings.Layout;
    const bool NeedsPaint = pMerge->multiChannelNode()->isMaterial() && !Layer.isPaintableLayer();
    if (NeedsPaint) {
        Pixels.Paint = OrvLayerRendering::render(
            Layer.contentNode(), Layout, Pixels.Settings.Paint, OrvChannelSpace::storedAround(pMerge));
        if (Pixels.Paint.isNull())
            return false;
    }
    if (!Layer.hasMask())
        return true;
    Pixels.Mask = OrvLayerRendering::renderMask(pMerge, Layout, Pixels.Settings.Mask);
    return !Pixels.Mask.isNull();
}

/// Within the caller's macro. Null when that closes a cycle, which no stream can.
OrvSnMergeNode* replaceStream(OrvLayer& Layer, const Replacement& Pixels)
{
    OrvSnMergeNode* pMerge = Layer.blendNode();
    OrvShaderNetwork* pNetwork = pMerge->network();
    OrvSnMultiChannelMergeNode* pCommon = pMerge->multiChannelNode();
    const QString Name = Layer.name();
    const auto addImages = [&](const QString& ImagesName, const OrvPixelFormat& Format, int Rows,
                               const OrvImageBuffer& Stored) {
        return OrvChainEditing::addImageNode(
            pNetwork, Pixels.Settings.Layout, Format, OrvColor::clear(), ImagesName, pMerge, 0, Rows, Stored);
    };
    if (!Pixels.Paint.isNull()
        && !OrvChainEditing::replaceContent(
            Layer.contentNode(), addImages(Name, Pixels.Settings.Paint, 1, Pixels.Paint)))
        return nullptr;
    OrvSnMergeNode* pOrdinary
        = OrvChainEditing::addNode(pNetwork, std::make_unique<OrvSnMergeNode>(), Name, pMerge, 0, 0);
    OrvChainEditing::copyAppearance(*pMerge, *pOrdinary);
    pOrdinary->setEnabledAsBool(pMerge->isShown());
    pOrdinary->setLocked(pCommon->locked());
    const bool Done = pOrdinary->connectInput(OrvSnNames::Over, pMerge->inputNode(OrvSnNames::Over))
        && (Pixels.Mask.isNull()
            || pOrdinary->connectInput(
                OrvSnNames::Mask, addImages(tr("%1 Mask").arg(Name), Pixels.Settings.Mask, 2, Pixels.Mask)))
        && OrvChainEditing::insertAbove(pOrdinary, pMerge);
    if (!Done)
        return nullptr;
    OrvChainEditing::takeOut(pMerge);
    OrvChainEditing::removeUnused(pMerge);
    return pOrdinary;
}

/// What was current or selected goes on as the ordinary layer.
void succeed(OrvLayer* pFormer, OrvLayer* pOrdinary, bool WasCurrent, bool WasSelected)
{
    OrvShaderNetwork* pNetwork = pOrdinary->blendNode()->network();
    OrvLayerManager& Manager = OrvLayerManager::instance();
    if (WasSelected) {
        pFormer->setSelected(false);
        pOrdinary->setSelected(true);
    }
    if (WasCurrent)
        Manager.setCurrentLayer(pNetwork, pOrdinary, true);
}

} // namespace

QList<OrvLayer*> OrvMultiChannelLayerUtils::convertToStandardLayers(const QList<OrvLayer*>& Layers)
{
    OrvUndoManager::AutoMacro Macro(tr("Convert To Standard Layers"));
    OrvLayerManager& Manager = OrvLayerManager::instance();
    QList<OrvLayer*> Made, Gone;
    for (OrvLayer* pLayer : Layers) {
        if (!pLayer->isMultiChannelLayer()) {
            Made.append(pLayer);
            continue;
        }
        const bool WasCurrent = pLayer->isCurrent(), WasSelected = pLayer->isSelected();
        Replacement Pixels;
        OrvSnMergeNode* pOrdinary = render(*pLayer, Pixels) ? replaceStream(*pLayer, Pixels) : nullptr;
        if (!pOrdinary) {
            Macro.cancel();
            return {};
        }
        OrvLayer* pMade = Manager.getLayer(pOrdinary, true);
        succeed(pLayer, pMade, WasCurrent, WasSelected);
        Made.append(pMade);
        Gone.append(pLayer);
    }
    OrvLayerStack::tellRemoved(Gone);
    return Made;
}

bool OrvMultiChannelLayerUtils::convertToStandardLayers(
    const QList<OrvShaderInput*>& Channels, const OrvShadingModel* pModel)
{
    QList<OrvLayer*> Layers;
    for (const OrvShaderInput* pChannel : Channels) {
        for (OrvLayer* pLayer : layersIn(pChannel, pModel)) {
            if (!Layers.contains(pLayer))
                Layers.append(pLayer);
        }
    }
    return Layers.isEmpty() || !convertToStandardLayers(Layers).isEmpty();
}

void OrvMultiChannelLayerUtils::removeFromChannels(
    const QList<OrvShaderInput*>& Channels, const OrvShadingModel* pModel)
{
    OrvUndoManager::AutoMacro Macro(tr("Remove Multi-Channel Layers"));
    for (OrvShaderInput* pChannel : Channels) {
        const QList<OrvLayer*> Going = layersIn(pChannel, pModel);
        if (Going.isEmpty())
            continue;
        const QList<OrvLayer*> Before = pChannel->allLayers();
        pChannel->leaveCurrentLayer(Going);
        for (OrvLayer* pLayer : Going) {
            // One inside another went with that.
            if (!pLayer->blendNode()->network())
                continue;
            OrvChainEditing::takeOut(pLayer->blendNode());
            OrvChainEditing::removeUnused(pLayer->blendNode());
        }
        OrvLayerStack::tellRemoved(Before);
    }
}
