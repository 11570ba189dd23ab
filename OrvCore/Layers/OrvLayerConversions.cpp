// What a layer's content becomes: paint instead of something computed, other depths and sizes.

#include "OrvCore/Layers/OrvLayer.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImage.h"
#include "OrvDdi/Image/OrvImageResampling.h"
#include "OrvDdi/Image/OrvImageSet.h"

bool OrvLayer::refuse(const QString& Reason) const
{
    Q_EMIT OrvLayerManager::instance().refused(Reason);
    return false;
}

bool OrvLayer::checkModifiable() const
{
    return isModifiable() || refuse(OrvEditObstacle::ofSharers(this));
}

void OrvLayer::replacePaint(const OrvImageBuffer& Pixels)
{
    auto* pPaint = static_cast<OrvSnChannelInputNode*>(paintNode());
    const OrvPixelFormat Format = pPaint->imageSet()->format();
    const OrvUdimLayout Layout = OrvImageSettings::ofLayer(m_pBlendNode).Layout;
    OrvLayerManager& Manager = OrvLayerManager::instance();
    const bool WasPainted = Manager.currentComponent() == pPaint;
    OrvSnBaseNode* pOver = overNode();
    const OrvLayerStack* pStack = adjustmentStack();
    const QList<OrvLayer*> Adjustments = pStack ? pStack->allLayers() : QList<OrvLayer*>();
    OrvSnChannelInputNode* pNew = pPaint;
    if (isPaintComponentShared()) {
        pNew = OrvChainEditing::addImageNode(
            m_pBlendNode->network(), Layout, Format, OrvColor::clear(), pPaint->name(), pPaint, 0, 1, Pixels);
        OrvChannelSpace::keepSpace(pNew, OrvChannelSpace::keptSpace(pPaint));
    } else {
        pPaint->replaceImages(Layout, Format, OrvColor::clear(), Pixels);
    }
    m_pBlendNode->connectInput(OrvSnNames::Over, pNew);
    OrvChainEditing::removeUnused(pOver);
    OrvLayerStack::tellRemoved(Adjustments);
    if (WasPainted && isCurrent())
        Manager.setCurrentComponent(pNew);
}

bool OrvLayer::convertAdjustmentStackToImageSet()
{
    if (!checkModifiable())
        return false;
    if (!hasAdjustmentStack() || !isPaintableLayer())
        return refuse(tr("'%1' has no adjustment stack, or no paint to bake it into").arg(name()));
    const OrvImageBuffer Pixels = OrvLayerRendering::renderInput(m_pBlendNode, OrvSnNames::Over,
        OrvImageSettings::ofLayer(m_pBlendNode).Layout, paintImageSet()->format(),
        OrvChannelSpace::ofNode(paintNode()));
    if (Pixels.isNull())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Bake Adjustment Stack : %1").arg(name()));
    replacePaint(Pixels);
    return true;
}

bool OrvLayer::convertPayloadToImageSet()
{
    if (!checkModifiable())
        return false;
    if (OrvLayerStreamUtils::isMaterialLayer(this)) {
        const OrvUndoManager::AutoMacro Macro(tr("Convert To Paintable : %1").arg(name()));
        return !OrvMultiChannelLayerUtils::convertToStandardLayers(inAllChannels()).isEmpty();
    }
    if (!isProceduralLayer() && !isCustomProceduralLayer() && !isGraphLayer())
        return refuse(tr("'%1' is no procedural and no graph").arg(name()));
    const OrvImageSettings Settings = OrvImageSettings::ofLayer(m_pBlendNode);
    const OrvImageBuffer Pixels = OrvLayerRendering::render(
        contentNode(), Settings.Layout, Settings.Paint, OrvChannelSpace::storedAround(m_pBlendNode));
    if (Pixels.isNull())
        return false;
    OrvUndoManager::AutoMacro Macro(tr("Convert To Paintable : %1").arg(name()));
    OrvSnBaseNode* pPaint = OrvChainEditing::addImageNode(m_pBlendNode->network(), Settings.Layout,
        Settings.Paint, OrvColor::clear(), name(), contentNode(), 0, 1, Pixels);
    if (!OrvChainEditing::replaceContent(contentNode(), pPaint)) {
        Macro.cancel();
        return false;
    }
    if (isCurrent())
        OrvLayerManager::instance().setCurrentComponent(pPaint);
    return true;
}

bool OrvLayer::convertMask(unsigned Depth)
{
    if (!checkModifiable())
        return false;
    auto* pImages = qobject_cast<OrvSnChannelInputNode*>(maskPaintNode());
    if (!pImages || OrvImage::depthName(Depth).isEmpty())
        return refuse(tr("'%1' has no mask that is an image").arg(name()));
    const OrvImageSet& Images = *pImages->imageSet();
    OrvPixelFormat Format = Images.format();
    if (Format.Depth == Depth)
        return true;
    Format.Depth = Depth;
    const OrvUndoManager::AutoMacro Macro(tr("Convert Mask : %1").arg(name()));
    pImages->replaceImages(Images.layout(), Format, Images.fillColor(),
        Images.isUniform() ? OrvImageBuffer() : Images.snapshot().converted(Format));
    return true;
}

bool OrvLayer::resize(OrvSnBaseNode* pNode, int Size, const QString& MacroText)
{
    constexpr int Half = -1, Double = -2;
    constexpr int Least = 1, Greatest = 32768;
    auto* pImages = qobject_cast<OrvSnChannelInputNode*>(pNode);
    if (!checkModifiable())
        return false;
    if (!pImages)
        return refuse(tr("'%1' has no image of that kind").arg(name()));
    const OrvImageSet& Images = *pImages->imageSet();
    const QSize Before = Images.layout().tileSize();
    const QSize After = Size == Half ? Before / 2 : Size == Double ? Before * 2 : QSize(Size, Size);
    if (qMin(After.width(), After.height()) < Least || qMax(After.width(), After.height()) > Greatest)
        return refuse(tr("Images cannot be %1 x %2 pixels large").arg(After.width()).arg(After.height()));
    if (After == Before)
        return true;
    const OrvUndoManager::AutoMacro Macro(MacroText.arg(name()));
    const OrvUdimLayout Layout = Images.layout().resized(After);
    pImages->replaceImages(Layout, Images.format(), Images.fillColor(),
        OrvImageResampling::fitted(Images.snapshot(), Images.layout(), Layout));
    return true;
}

bool OrvLayer::resizeMaskImageSets(int, int Size, bool, bool)
{
    return resize(maskPaintNode(), Size, tr("Resize Mask : %1"));
}

bool OrvLayer::resizeImageSets(int, int Size, bool, bool)
{
    return resize(paintNode(), Size, tr("Resize Layer : %1"));
}

bool OrvLayer::bake()
{
    OrvSnBakePointNode* pNode = bakePointNode();
    if (!pNode)
        return refuse(tr("'%1' is no bake point").arg(name()));
    if (!checkModifiable())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Bake '%1'").arg(name()));
    return pNode->bake();
}

bool OrvLayer::unbake()
{
    OrvSnBakePointNode* pNode = bakePointNode();
    if (!pNode || !pNode->hasBakedResult())
        return refuse(tr("'%1' is not baked").arg(name()));
    if (!checkModifiable())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Unbake '%1'").arg(name()));
    pNode->unbake();
    return true;
}
