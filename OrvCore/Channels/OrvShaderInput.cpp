#include "OrvCore/Channels/OrvShaderInput.h"

#include "OrvCore/Channels/OrvChannelConversion.h"
#include "OrvCore/Channels/OrvChannelFlattening.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnNames.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Image/OrvImage.h"

namespace {

void storeConfig(OrvSnShaderInputNode& Node, const QString& AttributeName, const OrvColorSpaceConfig& Config,
    bool Undoable)
{
    if (Config == Node.storedConfig(AttributeName))
        return;
    const QVariantMap Map = Config.toJson().toVariantMap();
    if (Undoable) {
        const OrvUndoManager::AutoMacro Macro(OrvShaderInput::tr("Set Color Space : %1").arg(Node.name()));
        Node.setUserAttributeValue(AttributeName, Map);
    } else {
        const OrvUndoManager::NoRecording NoRecording;
        Node.setUserAttributeValue(AttributeName, Map);
    }
}

} // namespace

OrvShaderInput::OrvShaderInput(OrvSnShaderInputNode* pNode)
    : OrvLayerStack(pNode, OrvSnNames::Input)
    , m_ColorSpaceConfig(pNode->storedConfig(OrvSnShaderInputNode::ColorSpaceAttribute))
    , m_ScalarColorSpaceConfig(pNode->storedConfig(OrvSnShaderInputNode::ScalarColorSpaceAttribute))
{
}

OrvShaderInput::~OrvShaderInput() = default;

OrvSnShaderInputNode* OrvShaderInput::channelNode() const
{
    return static_cast<OrvSnShaderInputNode*>(node());
}

QString OrvShaderInput::path() const
{
    const OrvGeoEntity* pEntity = network() ? network()->geoEntity() : nullptr;
    return pEntity ? pEntity->name() + QLatin1Char('/') + name() : name();
}

bool OrvShaderInput::isMaterialStack() const
{
    return node() && node()->hasTag(OrvSnNames::MaterialShaderInputTag);
}

OrvLayer* OrvShaderInput::currentLayer() const
{
    return OrvShaderInputManager::instance().currentLayerOf(this);
}

bool OrvShaderInput::isLocked() const
{
    return node() && node()->locked();
}

void OrvShaderInput::setLocked(bool Locked)
{
    if (node())
        node()->setLocked(Locked);
}

bool OrvShaderInput::isModifiable() const
{
    return network() && !node()->locked() && !node()->blocked()
        && OrvLayerUtils::isModificationAllowedAt(node());
}

bool OrvShaderInput::isSharedLayers() const
{
    QList<OrvSnBaseNode*> Nodes;
    return isShared(Nodes);
}

bool OrvShaderInput::isShared(QList<OrvSnBaseNode*>& Nodes) const
{
    Nodes.clear();
    if (!node())
        return false;
    for (const OrvSnBaseNode::Consumer& Reader : node()->consumers()) {
        if (Reader.InputName == OrvSnNames::Over && OrvLayerStreamUtils::isMergeNode(Reader.pNode))
            Nodes.append(Reader.pNode);
    }
    return !Nodes.isEmpty();
}

OrvUdimLayout OrvShaderInput::layout() const
{
    return node() ? channelNode()->layout() : OrvUdimLayout();
}

GLenum OrvShaderInput::imageSetDepth() const
{
    return node() ? GLenum(channelNode()->depth()) : GLenum(GL_UNSIGNED_BYTE);
}

QString OrvShaderInput::imageSetDepthAsString() const
{
    return OrvImage::depthName(imageSetDepth());
}

QStringList OrvShaderInput::imageSetDepthList() const
{
    QStringList Names;
    for (const auto& Depth : OrvImage::sortedSupportedDepths())
        Names.append(Depth.first);
    return Names;
}

bool OrvShaderInput::isScalar() const
{
    return node() && channelNode()->isScalar();
}

OrvPixelFormat OrvShaderInput::paintFormat() const
{
    // Paint has alpha whatever the channel means; the values of a scalar channel are data.
    const GLenum Depth = imageSetDepth();
    return {Depth, OrvPixelFormat::Rgba,
        isScalar() ? OrvPixelFormat::Linear : m_ColorSpaceConfig.encoding(Depth)};
}

OrvPixelFormat OrvShaderInput::maskFormat() const
{
    return {imageSetDepth(), OrvPixelFormat::Scalar, OrvPixelFormat::Linear};
}

void OrvShaderInput::setColorSpaceConfig(const OrvColorSpaceConfig& Config, bool Undoable)
{
    if (node())
        storeConfig(*channelNode(), OrvSnShaderInputNode::ColorSpaceAttribute, Config, Undoable);
}

void OrvShaderInput::setScalarColorSpaceConfig(const OrvColorSpaceConfig& Config, bool Undoable)
{
    if (node())
        storeConfig(*channelNode(), OrvSnShaderInputNode::ScalarColorSpaceAttribute, Config, Undoable);
}

bool OrvShaderInput::containsMultiChannelLayerOfShaderModel(const OrvShadingModel* pShaderModel) const
{
    return OrvLayerStreamUtils::containsMultiChannelLayers(this, pShaderModel);
}

bool OrvShaderInput::convertDepthTo(GLenum Depth, int Option)
{
    return OrvChannelConversion(this, ConversionOption(Option)).convertDepth(Depth);
}

bool OrvShaderInput::convertColorSpaceTo(const QString& Space, int Option)
{
    return OrvChannelConversion(this, ConversionOption(Option)).convertColorSpace(Space);
}

bool OrvShaderInput::convertScalarColorSpaceTo(const QString& Space, int Option)
{
    return OrvChannelConversion(this, ConversionOption(Option)).convertScalarColorSpace(Space);
}

bool OrvShaderInput::resizeLayers(int Size, void*, bool, bool)
{
    return OrvChannelConversion(this, AllImages).resize(Size);
}

bool OrvShaderInput::flattenUI()
{
    return OrvChannelFlattening::flatten(this);
}

void OrvShaderInput::readNode(const QString& AttributeName)
{
    const OrvSnShaderInputNode& Node = *channelNode();
    if (AttributeName == OrvSnShaderInputNode::DepthAttribute)
        Q_EMIT imageSetDepthChanged(imageSetDepth());

    // The part of a configuration that only editors look at stays as they set it.
    const auto take = [](OrvColorSpaceConfig& Held, const OrvColorSpaceConfig& Stored) {
        if (Held == Stored)
            return false;
        OrvColorSpaceConfig Taken = Stored;
        for (int Role = 0; Role < OrvColorSpaceConfig::RoleCount; ++Role)
            Taken.setColorSpaceVisible(Role, Held.isColorSpaceVisible(Role));
        Taken.setDataPrettyNameDesignable(Held.isDataPrettyNameDesignable());
        Held = Taken;
        return true;
    };
    const bool ColorChanged
        = take(m_ColorSpaceConfig, Node.storedConfig(OrvSnShaderInputNode::ColorSpaceAttribute));
    const bool ScalarChanged
        = take(m_ScalarColorSpaceConfig, Node.storedConfig(OrvSnShaderInputNode::ScalarColorSpaceAttribute));
    if (ColorChanged || ScalarChanged)
        Q_EMIT colorSpaceConfigChanged(m_ColorSpaceConfig);
}

#include "moc_OrvShaderInput.cpp"
