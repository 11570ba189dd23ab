#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"

#include "OrvCoreModules/Window/OrvIcon.h"

namespace OrvLayerViewContext {

const QString LayersPath = QStringLiteral("/Orvi/Layers");
const QString LayersMenu = QStringLiteral("MainWindow/&Layers");
const QString AdjustmentPath = LayersPath + QStringLiteral("/Adjustment");
const QString AddAdjustmentLayerMenu = LayersMenu + QStringLiteral("/Add Adjustment Layer");
const QString AdjustmentStackPath = LayersPath + QStringLiteral("/Adjustment Stack");
const QString AdjustmentStackMenu = LayersMenu + QStringLiteral("/Adjustment Stack");
const QString AddAdjustmentStackMenu = AdjustmentStackMenu + QStringLiteral("/Add Adjustment Stack");
const QString MaskPath = LayersPath + QStringLiteral("/Mask");
const QString ConvertMaskPath = MaskPath + QStringLiteral("/Convert Mask");
const QString ResizeMaskPath = MaskPath + QStringLiteral("/Resize Mask");
const QString LayerMaskMenu = LayersMenu + QStringLiteral("/Layer Mask");
const QString ConvertMaskMenu = LayerMaskMenu + QStringLiteral("/Convert Mask");
const QString ResizeMaskMenu = LayerMaskMenu + QStringLiteral("/Resize Mask");
const QString ProceduralPath = LayersPath + QStringLiteral("/Procedural");
const QString AddProceduralLayerMenu = LayersMenu + QStringLiteral("/Add Procedural Layer");
const QString SecondaryAdjustmentPath = LayersPath + QStringLiteral("/Secondary Adjustment");
const QString SecondaryAdjustmentMenu = LayersMenu + QStringLiteral("/Secondary Adjustment");
const QString AddSecondaryAdjustmentMenu
    = SecondaryAdjustmentMenu + QStringLiteral("/Add Secondary Adjustment");
const QString SharingMenu = LayersMenu + QStringLiteral("/Sharing");
const QString CachingMenu = LayersMenu + QStringLiteral("/Caching");
const QString ExportFlattenedLayerMenu = LayersMenu + QStringLiteral("/Export &Flattened");
const QString ExportLayerMenu = LayersMenu + QStringLiteral("/&Export");
const QString ImportLayerMenu = LayersMenu + QStringLiteral("/&Import");

const QString LayersOnlySet = QStringLiteral("LayersOnly");
const QString LayersAdjustmentOnlySet = QStringLiteral("LayersAdjustmentOnly");
const QString LayersAdjustmentStackOnlySet = QStringLiteral("LayersAdjustmentStackOnly");
const QString CacheLayersOnlySet = QStringLiteral("CacheLayersOnly");
const QString ConvertLayerMasksOnlySet = QStringLiteral("ConvertLayerMasksOnly");
const QString ResizeLayerMasksOnlySet = QStringLiteral("ResizeLayerMasksOnly");
const QString LayersProceduralOnlySet = QStringLiteral("LayersProceduralOnly");
const QString LayersSecondaryAdjustmentOnlySet = QStringLiteral("LayersSecondaryAdjustmentOnly");

const QString ExpandLayerGroupKey = QStringLiteral("_ExpandLayerGroup");

const QString LayerMimeType = QStringLiteral("application/x-orvi-layer");
const QString LayerStackNodeMimeType = QStringLiteral("application/x-orvi-layer-stack-node");
const QString LayerStackTargetInputMimeType = QStringLiteral("application/x-orvi-layer-stack-target-input");

const QString ChannelsPath = QStringLiteral("/Orvi/Channels");
const QString ChannelsMenuTitle = QStringLiteral("&Channels");
const QString ChannelsMenu = QStringLiteral("MainWindow/") + ChannelsMenuTitle;
const QString ExportFlattenedChannelMenu = ChannelsMenu + QStringLiteral("/Export &Flattened");
const QString ExportChannelMenu = ChannelsMenu + QStringLiteral("/&Export");
const QString ImportChannelMenu = ChannelsMenu + QStringLiteral("/&Import");
const QString ResizeChannelPath = ChannelsPath + QStringLiteral("/Resize Channel");
const QString ResizeChannelMenu = ChannelsMenu + QStringLiteral("/Resi&ze");
const QString ShaderInputOnlySet = QStringLiteral("ShaderInputOnly");
const QString PatchOnlySet = QStringLiteral("PatchOnly");
const QStringList DisplacementInputNames{QStringLiteral("Displacement")};
const QVector<QRegExp> ChannelNamePatterns{
    QRegExp(QStringLiteral("Diffuse.*")),
    QRegExp(QStringLiteral("Specular.*")),
    QRegExp(QStringLiteral("Environment.*")),
    QRegExp(QStringLiteral("Ambient.*")),
    QRegExp(QStringLiteral("Emissive.*")),
    QRegExp(QStringLiteral("Bump.*")),
    QRegExp(QStringLiteral("Normal.*")),
    QRegExp(QStringLiteral("Vector.*")),
    QRegExp(QStringLiteral("Displacement.*")),
};

const QString ShadersPath = QStringLiteral("/Orvi/Layers/Shaders");
const QString AddShaderPath = ShadersPath + QStringLiteral("/AddShader");
const QString AddShaderLayerAction = ShadersPath + QStringLiteral("/Add New Shader Layer");
const QString AddShaderKey = QStringLiteral("AddShader");
const QString ViewsPath = ChannelsPath + QStringLiteral("/Views");
const QString MainWindowName = QStringLiteral("MainWindow");
const QString ShadersMenuTitle = QStringLiteral("&Shaders");
const QString LayerShaderNodeType = QStringLiteral("OrvLayerShader");
const QString LayerOfLayerShaderNodeType = QStringLiteral("OrvLayer_OrvLayerShader");

const QString FramedWidgetStyleSheet = QStringLiteral(
    "QFrame {    border: 1px solid #5b5b5b;    border-radius: 3px;}QFrame QLabel {    border-width: 0;}");

const QIcon& layerKindIcon(LayerKindIcon Kind)
{
    // In the order of the enumeration. Not made before the first use: icons need the application.
    static const QVector<QIcon> Icons = [] {
        QVector<QIcon> Made;
        for (const char* pFileName : {"ColorCurves.16x16.png", "Bake.16x16.png",
                 "CustomProceduralColor.16x16.svg", "CustomProceduralColor_MissingGeoChannel.svg",
                 "NodeGraph.16x16.png", "FolderClosed.16x16.png", "Material.16x16.png",
                 "MaterialWithMissingGeoChannel.png", "Multi_Channel_Group.16x16.png", "Painting.16x16.png",
                 "AddNoise.16x16.png", "CustomProceduralMask.16x16.svg",
                 "CustomProceduralMask_MissingGeoChannel.svg", "CustomProceduralScalar.16x16.svg",
                 "CustomProceduralScalar_MissingGeoChannel.svg", "lighting_flat.16x16.png"})
            Made.append(OrvIcon::createIconFromFilename(QString::fromLatin1(pFileName)));
        return Made;
    }();
    return Icons.at(int(Kind));
}

} // namespace OrvLayerViewContext
