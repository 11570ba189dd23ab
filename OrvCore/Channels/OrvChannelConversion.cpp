#include "OrvCore/Channels/OrvChannelConversion.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvChainEditing.h"
#include "OrvCore/Layers/OrvChainTargets.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Image/OrvImage.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QByteArray>

#include <algorithm>

namespace {

const OrvPixelFormat LinearColor{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
/// Pixels that are converted between two reports of progress.
constexpr int PixelsAtOnce = 1024 * 1024;

OrvPixelFormat::Encoding curveOf(const QString& Space)
{
    return Space == OrvColorManager::srgb() ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear;
}

/// The space of colour values once the sRGB curve, which formats know of, is undone.
QString withoutCurve(const QString& Space)
{
    return Space == OrvColorManager::srgb() ? OrvColorManager::linear() : Space;
}

QString spaceWithCurve(OrvPixelFormat::Encoding Curve)
{
    return Curve == OrvPixelFormat::Srgb ? OrvColorManager::srgb() : OrvColorManager::linear();
}

OrvColorSpaceConfig following(OrvColorSpaceConfig Config, GLenum Depth)
{
    for (int Role = 0; Role < OrvColorSpaceConfig::RoleCount; ++Role)
        Config.setAutomaticType(Role, Depth);
    return Config;
}

OrvColorSpaceConfig naming(OrvColorSpaceConfig Config, const QString& Space)
{
    if (Config.colorSpace() != Space)
        Config.setColorSpace(OrvColorSpaceConfig::NativeSpace, Space);
    return Config;
}

/// A node of the layer is part of its mask, or of the mask of a layer in it. What lies around the layer is
/// not asked: there may be thousands.
bool isInMaskOf(const OrvSnMergeNode* pMerge, const OrvSnBaseNode* pNode)
{
    OrvChainTargets::Target At = OrvChainTargets::of(pNode).Targets.value(0);
    while (At.pNode && At.InputName != OrvSnNames::Mask) {
        const QVector<OrvSnMergeNode*> Layers = OrvChainTargets::owners(At);
        if (Layers.isEmpty() || Layers.first() == pMerge)
            return false;
        At = OrvChainTargets::of(Layers.first()).Targets.value(0);
    }
    return At.pNode;
}

} // namespace

OrvChannelConversion::OrvChannelConversion(OrvShaderInput* pChannel, OrvShaderInput::ConversionOption Option)
    : m_pChannel(pChannel)
    , m_Option(Option)
{
}

bool OrvChannelConversion::refuse(const QString& Reason) const
{
    Q_EMIT OrvLayerManager::instance().refused(Reason);
    return false;
}

bool OrvChannelConversion::checkUnlocked() const
{
    if (!m_pChannel->network())
        return false;
    return m_Option == OrvShaderInput::AllImages || m_pChannel->isModifiable()
        || refuse(OrvEditObstacle::of(m_pChannel));
}

bool OrvChannelConversion::isSpaceUsable(const QString& From, const QString& To) const
{
    QString Error;
    float Pixel[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    if (!OrvColorManager::isColorSpace(To))
        Error = tr("There is no color space '%1'").arg(To);
    else if (OrvColorManager::transformPixels(Pixel, 1, 1, 0, From, To, Error))
        return true;
    const QString Trouble = OrvColorManager::configurationError();
    return refuse(Trouble.isEmpty() ? Error : Error + QLatin1String(". ") + Trouble);
}

bool OrvChannelConversion::isData(const OrvSnChannelInputNode* pNode) const
{
    const auto& Targets = OrvChainTargets::of(pNode).Targets;
    return pNode->imageSet()->format().Kind == OrvPixelFormat::Scalar || m_pChannel->isScalar()
        || (!Targets.isEmpty() && OrvChainTargets::isWithinMask(Targets.first()));
}

QVector<OrvSnChannelInputNode*> OrvChannelConversion::images(
    bool Data, OrvShaderInput::ConversionOption Option) const
{
    const auto ByStatus = m_pChannel->allImageSetsByStatus();
    QVector<OrvSnChannelInputNode*> Nodes;
    for (auto Images = ByStatus.begin(); Images != ByStatus.end(); ++Images) {
        if (Option == OrvShaderInput::FreeImages && Images.key() != OrvLayerStack::FreeImageSets)
            continue;
        for (const OrvImageSet* pImages : Images.value()) {
            auto* pNode = qobject_cast<OrvSnChannelInputNode*>(pImages->parent());
            if (pNode && isData(pNode) == Data)
                Nodes.append(pNode);
        }
    }
    return Nodes;
}

OrvChannelConversion::Step OrvChannelConversion::depthStep(
    const OrvSnChannelInputNode* pNode, GLenum Depth) const
{
    const OrvPixelFormat Format = pNode->imageSet()->format();
    OrvPixelFormat Target = Format;
    Target.Depth = Depth;
    if (!isData(pNode) && OrvChannelSpace::keptSpace(pNode).isEmpty())
        Target.Curve = m_pChannel->colorSpaceConfig().encoding(Depth);
    return {Target, Format, Format, QString(), QString()};
}

OrvChannelConversion::Step OrvChannelConversion::colorStep(
    const OrvImageSet& Images, const QString& Stored, const QString& To) const
{
    const OrvPixelFormat Format = Images.format();
    OrvPixelFormat Target = Format;
    Target.Curve = curveOf(To);
    if (Stored != To && OrvColorManager::isIdentity(Stored, To))
        return {Target, Format, Target, QString(), QString()};
    return {Target, LinearColor, LinearColor, withoutCurve(Stored), withoutCurve(To)};
}

OrvChannelConversion::Step OrvChannelConversion::dataStep(
    const OrvImageSet& Images, const QString& From, const QString& To) const
{
    const OrvPixelFormat Format = Images.format();
    const OrvPixelFormat Numbers{GL_FLOAT, OrvPixelFormat::Rgba, Format.Curve};
    return {Format, Numbers, Numbers, From, To};
}

QString OrvChannelConversion::spaceOf(const OrvSnChannelInputNode* pNode, const QString& ChannelSpace)
{
    const OrvPixelFormat::Encoding Curve = pNode->imageSet()->format().Curve;
    const QString Kept = OrvChannelSpace::keptSpace(pNode);
    if (!Kept.isEmpty() && Curve == OrvPixelFormat::Linear)
        return Kept;
    // Images that an earlier conversion left out are what their curve says.
    return Curve == curveOf(ChannelSpace) ? ChannelSpace : spaceWithCurve(Curve);
}

void OrvChannelConversion::keepSpaces(const QString& From, const QString& To) const
{
    const QVector<OrvSnChannelInputNode*> Taken = images(false);
    const QVector<OrvSnChannelInputNode*> OfThisChannel = images(false, OrvShaderInput::FreeImages);
    for (OrvSnChannelInputNode* pNode : images(false, OrvShaderInput::AllImages)) {
        const QString Now = withoutCurve(spaceOf(pNode, From)), Wanted = withoutCurve(To);
        const bool Converted = Taken.contains(pNode);
        const bool Differs = !OrvColorManager::isIdentity(Now, Wanted);
        if (!OrvChannelSpace::keptSpace(pNode).isEmpty() || (Differs && !OfThisChannel.contains(pNode)))
            OrvChannelSpace::keepSpace(pNode, Converted ? Wanted : Now);
    }
}

QString OrvChannelConversion::paintSpaceAt(const OrvSnBaseNode* pNode)
{
    OrvShaderInput* pChannel = OrvShaderInputUtils::getShaderInput(OrvChainTargets::channel(pNode));
    const bool IsColor = pChannel && !pChannel->isScalar()
        && !OrvChainTargets::isWithinMask(OrvChainTargets::of(pNode).Targets.value(0));
    return IsColor ? pChannel->colorSpaceConfig().colorSpace() : QString();
}

void OrvChannelConversion::keepColors(
    OrvSnMergeNode* pMerge, const QString& FormerSpace, const QString& Space)
{
    if (Space.isEmpty() || FormerSpace.isEmpty() || Space == FormerSpace)
        return;
    for (OrvSnBaseNode* pNode : OrvChainEditing::nodesOf({pMerge}, OrvChainEditing::Channels::AreLimits)) {
        const auto* pImages = qobject_cast<const OrvSnChannelInputNode*>(pNode);
        if (!pImages || pImages->imageSet()->format().Kind == OrvPixelFormat::Scalar
            || isInMaskOf(pMerge, pNode))
            continue;
        const QString Now = withoutCurve(spaceOf(pImages, FormerSpace));
        const bool Differs = !OrvColorManager::isIdentity(Now, withoutCurve(Space));
        OrvChannelSpace::keepSpace(pNode, Differs ? Now : QString());
    }
}

void OrvChannelConversion::plan(OrvSnChannelInputNode* pNode, const Step& Wanted)
{
    const OrvImageSet& Images = *pNode->imageSet();
    if (Wanted.Target == Images.format() && Wanted.ReadAs == Wanted.WriteAs && Wanted.From == Wanted.To)
        return;
    m_Steps.append(Wanted);
    m_Results.append({pNode, Wanted.Target, Images.fillColor(), OrvImageBuffer()});
    if (!Images.isUniform())
        m_Rows += Images.layout().tiles().size() * Images.layout().tileSize().height();
}

bool OrvChannelConversion::computePixels(
    const OrvImageSet& Images, const Step& Wanted, OrvImageBuffer& Pixels)
{
    const OrvImageBuffer Source = Images.snapshot();
    const OrvUdimLayout Layout = Images.layout();
    Pixels = OrvImageBuffer(Layout.extent(), Wanted.Target);
    const int Rows = std::max(1, PixelsAtOnce / Layout.tileSize().width());
    QByteArray Band;
    for (const int Tile : Layout.tiles()) {
        const QRect Whole = Layout.tileRect(Tile);
        for (int Top = Whole.top(); Top <= Whole.bottom(); Top += Rows) {
            const QRect Rect = Whole & QRect(Whole.left(), Top, Whole.width(), Rows);
            Band.resize(Rect.width() * Rect.height() * Wanted.ReadAs.bytesPerPixel());
            Source.read(Rect, Wanted.ReadAs, Band.data());
            if (Wanted.From != Wanted.To
                && !OrvColorManager::transformPixels(reinterpret_cast<float*>(Band.data()), Rect.width(),
                    Rect.height(), 0, Wanted.From, Wanted.To, m_Error))
                return false;
            Pixels.write(Rect, Wanted.WriteAs, Band.constData());
            m_RowsDone += Rect.height();
            if (!OrvLayerRendering::step(m_RowsDone, m_Rows))
                return false;
        }
    }
    return true;
}

bool OrvChannelConversion::compute()
{
    for (int Index = 0; Index < m_Steps.size(); ++Index) {
        const Step& Wanted = m_Steps[Index];
        Result& Made = m_Results[Index];
        const OrvImageSet& Images = *Made.pNode->imageSet();
        // Fill colours are told in linear light, whatever the curve of the pixels.
        if (Wanted.ReadAs != Wanted.WriteAs)
            OrvColorManager::transform(Made.Fill, Made.Fill, spaceWithCurve(Wanted.WriteAs.Curve),
                spaceWithCurve(Wanted.ReadAs.Curve));
        else
            OrvColorManager::transform(Made.Fill, Made.Fill, Wanted.From, Wanted.To);
        if (!Images.isUniform() && !computePixels(Images, Wanted, Made.Pixels))
            return m_Error.isEmpty() ? false : refuse(m_Error);
    }
    return true;
}

void OrvChannelConversion::apply()
{
    for (const Result& Made : qAsConst(m_Results)) {
        Made.pNode->replaceImages(
            Made.pNode->imageSet()->layout(), Made.Format, Made.Fill, Made.Pixels);
    }
}

bool OrvChannelConversion::convertDepth(GLenum Depth)
{
    if (OrvImage::depthName(Depth).isEmpty())
        return refuse(tr("Images cannot have the depth 0x%1").arg(Depth, 0, 16));
    if (!checkUnlocked())
        return false;
    for (const bool Data : {false, true}) {
        for (OrvSnChannelInputNode* pNode : images(Data))
            plan(pNode, depthStep(pNode, Depth));
    }
    if (!compute())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Convert Channel : %1").arg(m_pChannel->path()));
    m_pChannel->channelNode()->setDepth(int(Depth));
    apply();
    const OrvColorSpaceConfig Color = following(m_pChannel->colorSpaceConfig(), Depth);
    if (Color != m_pChannel->colorSpaceConfig())
        m_pChannel->setColorSpaceConfig(Color, true);
    const OrvColorSpaceConfig Scalar = following(m_pChannel->scalarColorSpaceConfig(), Depth);
    if (Scalar != m_pChannel->scalarColorSpaceConfig())
        m_pChannel->setScalarColorSpaceConfig(Scalar, true);
    return true;
}

bool OrvChannelConversion::convertColorSpace(const QString& Space)
{
    const OrvColorSpaceConfig Config = m_pChannel->colorSpaceConfig();
    const QString From = Config.colorSpace();
    if (!checkUnlocked() || !isSpaceUsable(From, Space))
        return false;
    for (OrvSnChannelInputNode* pNode : images(false))
        plan(pNode, colorStep(*pNode->imageSet(), spaceOf(pNode, From), Space));
    if (!compute())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Convert Channel : %1").arg(m_pChannel->path()));
    keepSpaces(From, Space);
    apply();
    if (naming(Config, Space) != Config)
        m_pChannel->setColorSpaceConfig(naming(Config, Space), true);
    return true;
}

bool OrvChannelConversion::convertScalarColorSpace(const QString& Space)
{
    const OrvColorSpaceConfig Config = m_pChannel->scalarColorSpaceConfig();
    const QString From = Config.colorSpace();
    if (!checkUnlocked() || !isSpaceUsable(From, Space))
        return false;
    for (OrvSnChannelInputNode* pNode : images(true))
        plan(pNode, dataStep(*pNode->imageSet(), From, Space));
    if (!compute())
        return false;
    const OrvUndoManager::AutoMacro Macro(tr("Convert Channel : %1").arg(m_pChannel->path()));
    apply();
    if (naming(Config, Space) != Config)
        m_pChannel->setScalarColorSpaceConfig(naming(Config, Space), true);
    return true;
}

bool OrvChannelConversion::resize(int EdgeLength)
{
    constexpr int Least = 1, Greatest = 32768;
    if (!m_pChannel->network())
        return false;
    if (!m_pChannel->isModifiable())
        return refuse(OrvEditObstacle::of(m_pChannel));
    const OrvGeoEntity* pEntity = m_pChannel->network()->geoEntity();
    if (pEntity && pEntity->isPtex())
        return refuse(tr("The channels of '%1' are as large as its faces").arg(pEntity->name()));
    if (EdgeLength < Least || EdgeLength > Greatest)
        return refuse(tr("Images cannot be %1 x %1 pixels large").arg(EdgeLength));
    const OrvUdimLayout Layout = m_pChannel->layout().resized(QSize(EdgeLength, EdgeLength));
    OrvUndoManager::AutoMacro Macro(tr("Resize Channel : %1").arg(m_pChannel->path()));
    m_pChannel->channelNode()->setLayoutOfImages(Layout);
    const QList<OrvLayer*> Layers = m_pChannel->layerList();
    for (int Index = 0; Index < Layers.size(); ++Index) {
        OrvChainEditing::fitImages(Layers[Index]->blendNode(), Layout);
        if (!OrvLayerRendering::step(Index + 1, Layers.size())) {
            Macro.cancel();
            return false;
        }
    }
    return true;
}
