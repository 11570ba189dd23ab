#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerRowIcons.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"
#include "OrvCoreModules/Window/OrvIcon.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include <QtGui/QPainter>
#include <QtGui/QWindow>
#include <QtWidgets/QAbstractButton>

#include <algorithm>

using namespace OrvLayerViewContext;

namespace {

const QColor Shade(0, 0, 0, 190);

QIcon icon(const char* pFileName)
{
    return OrvIcon::createIconFromFilename(QString::fromLatin1(pFileName));
}

QPixmap pixmap(const QIcon& Icon, const QAbstractButton* pButton, QIcon::Mode Mode)
{
    return Icon.pixmap(pButton->window()->windowHandle(), pButton->iconSize(), Mode);
}

/// Of the content or the mask alone: either has an icon of its own.
bool isIncomplete(const OrvSnCustomProceduralNode* pProcedural)
{
    return pProcedural && !pProcedural->missingGeoChannels().isEmpty();
}

/// It needs what any of its streams needs.
bool isIncompleteMaterial(const OrvLayer* pLayer)
{
    const QList<OrvLayer*> Streams = pLayer->inAllChannels();
    return std::any_of(Streams.cbegin(), Streams.cend(),
        [](const OrvLayer* pStream) { return isIncomplete(pStream->customProceduralNode()); });
}

LayerKindIcon kindOfProcedural(OrvProceduralDescription::Kind Type, bool Incomplete)
{
    switch (Type) {
    case OrvProceduralDescription::Scalar:
        return Incomplete ? LayerKindIcon::CustomProceduralScalarMissingGeoChannel
                          : LayerKindIcon::CustomProceduralScalar;
    case OrvProceduralDescription::Mask:
        return Incomplete ? LayerKindIcon::CustomProceduralMaskMissingGeoChannel
                          : LayerKindIcon::CustomProceduralMask;
    case OrvProceduralDescription::Color:
        break;
    }
    return Incomplete ? LayerKindIcon::CustomProceduralColorMissingGeoChannel
                      : LayerKindIcon::CustomProceduralColor;
}

LayerKindIcon kind(const OrvLayer* pLayer, const OrvLayerStack* pStack)
{
    if (OrvLayerStreamUtils::isMaterialLayer(pLayer))
        return isIncompleteMaterial(pLayer) ? LayerKindIcon::MaterialMissingGeoChannel
                                            : LayerKindIcon::Material;
    if (OrvLayerStreamUtils::isMultiChannelMergeLayer(pLayer))
        return LayerKindIcon::MultiChannelGroup;
    if (const OrvSnCustomProceduralNode* pProcedural = pLayer->customProceduralNode())
        return kindOfProcedural(pProcedural->procedural().Type, isIncomplete(pProcedural));
    if (pStack && OrvLayerStreamUtils::isLayerGroup(pLayer, pStack))
        return LayerKindIcon::Group;
    if (pLayer->isPaintableLayer())
        return LayerKindIcon::Paintable;
    if (pLayer->isAdjustmentLayer())
        return LayerKindIcon::Adjustment;
    if (pLayer->isProceduralLayer())
        return LayerKindIcon::Procedural;
    if (pLayer->isShaderLayer())
        return LayerKindIcon::Shader;
    if (pLayer->isBakePointLayer())
        return LayerKindIcon::Bake;
    // Whatever else a user has wired there is to be looked at in the node graph.
    return LayerKindIcon::Graph;
}

} // namespace

QIcon OrvLayerRowIcons::content(const OrvLayer* pLayer, const OrvLayerStack* pStack)
{
    if (pLayer->isSharedShaderInput())
        return icon("Channel.16x16.png");
    return layerKindIcon(kind(pLayer, pStack));
}

QIcon OrvLayerRowIcons::mask(const OrvLayer* pLayer)
{
    if (!pLayer->isMaskProcedural() && !pLayer->hasMaskCustomProcedural())
        return icon("Mask.16x16.png");
    return icon(isIncomplete(pLayer->maskCustomProceduralNode())
            ? "CustomProceduralLayerMask_MissingGeoChannel.svg"
            : "CustomProceduralLayerMask.16x16.svg");
}

QIcon OrvLayerRowIcons::maskStack()
{
    return icon("AddMaskStack.16x16.png");
}
QIcon OrvLayerRowIcons::adjustmentStack()
{
    return icon("AddAdjustmentStack.16x16.png");
}
QIcon OrvLayerRowIcons::visibility(bool Visible)
{
    return icon(Visible ? "ShowAll.16x16.png" : "Hide.16x16.png");
}
QIcon OrvLayerRowIcons::shared()
{
    return icon("linked.16x16.png");
}
QIcon OrvLayerRowIcons::sharedChannel()
{
    return icon("SharedChannel.16x16.png");
}
QIcon OrvLayerRowIcons::lock(bool Locked)
{
    return icon(Locked ? "Lock.16x16.png" : "UnLock.16x16.png");
}

QIcon OrvLayerRowIcons::paled(const QIcon& Icon, const QAbstractButton* pButton)
{
    return QIcon(pixmap(Icon, pButton, QIcon::Disabled));
}

QIcon OrvLayerRowIcons::darkened(const QIcon& Icon, const QAbstractButton* pButton)
{
    QPixmap Dark = pixmap(Icon, pButton, QIcon::Normal);
    if (Dark.isNull())
        return {};
    QPainter Painter(&Dark);
    Painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    Painter.fillRect(QRect({}, pButton->iconSize()), Shade);
    return QIcon(Dark);
}
