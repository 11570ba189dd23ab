#pragma once

#include "OrvCore/Layers/OrvLayerCreateFlags.h"

#include <QtCore/QRegExp>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtGui/QIcon>

/// What several classes of the module must agree on: menu and action paths, action sets, formats of dragged
/// data, where new layers go, icons of layer kinds. Plain values, made when the module is loaded; the icons
/// are made when they are first asked for.
namespace OrvLayerViewContext {

/// For so long palettes gather changes before they refresh.
constexpr int RefreshInterval = 125; // ms

// Layers: paths of actions, and of menus of the main window.
extern const QString LayersPath, LayersMenu;
extern const QString AdjustmentPath, AddAdjustmentLayerMenu;
extern const QString AdjustmentStackPath, AdjustmentStackMenu, AddAdjustmentStackMenu;
extern const QString MaskPath, ConvertMaskPath, ResizeMaskPath;
extern const QString LayerMaskMenu, ConvertMaskMenu, ResizeMaskMenu;
extern const QString ProceduralPath, AddProceduralLayerMenu;
extern const QString SecondaryAdjustmentPath, SecondaryAdjustmentMenu, AddSecondaryAdjustmentMenu;
extern const QString SharingMenu, CachingMenu;
extern const QString ExportFlattenedLayerMenu, ExportLayerMenu, ImportLayerMenu;

extern const QString LayersOnlySet, LayersAdjustmentOnlySet, LayersAdjustmentStackOnlySet, CacheLayersOnlySet,
    ConvertLayerMasksOnlySet, ResizeLayerMasksOnlySet, LayersProceduralOnlySet,
    LayersSecondaryAdjustmentOnlySet;

/// Attribute of a group's blend node: whether its row is unfolded.
extern const QString ExpandLayerGroupKey;

/// Of what a command makes: it stands above the current layer and takes its place.
constexpr int NewLayerFlags
    = OrvLayerAboveCurrent | OrvLayerMakeCurrent | OrvLayerUniqueName | OrvLayerSelectAlone;

// Dragged data.
extern const QString LayerMimeType, LayerStackNodeMimeType, LayerStackTargetInputMimeType;

// Channels.
extern const QString ChannelsPath, ChannelsMenu, ChannelsMenuTitle;
extern const QString ExportFlattenedChannelMenu, ExportChannelMenu, ImportChannelMenu;
extern const QString ResizeChannelPath, ResizeChannelMenu;
extern const QString ShaderInputOnlySet, PatchOnlySet;
extern const QStringList DisplacementInputNames;
/// Channel names in the order in which they are offered.
extern const QVector<QRegExp> ChannelNamePatterns;

// Shaders.
extern const QString ShadersPath, AddShaderPath;
extern const QString AddShaderLayerAction;
extern const QString AddShaderKey;
/// What the canvas can show.
extern const QString ViewsPath;
extern const QString MainWindowName, ShadersMenuTitle;
extern const QString LayerShaderNodeType, LayerOfLayerShaderNodeType;

/// Style sheet of a widget in a frame whose labels have none.
extern const QString FramedWidgetStyleSheet;

enum class LayerKindIcon {
    Adjustment,
    Bake,
    CustomProceduralColor,
    CustomProceduralColorMissingGeoChannel,
    Graph,
    Group,
    Material,
    MaterialMissingGeoChannel,
    MultiChannelGroup,
    Paintable,
    Procedural,
    CustomProceduralMask,
    CustomProceduralMaskMissingGeoChannel,
    CustomProceduralScalar,
    CustomProceduralScalarMissingGeoChannel,
    Shader
};
const QIcon& layerKindIcon(LayerKindIcon Kind);

} // namespace OrvLayerViewContext
