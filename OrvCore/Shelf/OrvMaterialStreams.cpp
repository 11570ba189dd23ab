#include "OrvCore/Shelf/OrvMaterialStreams.h"

#include "OrvCore/Channels/OrvImageSettings.h"
#include "OrvCore/Network/OrvNodeRegistry.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Files/OrvImageFiles.h"
#include "OrvDdi/Image/OrvImageResampling.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

namespace {

/// The same picture in every tile.
OrvImageBuffer readPicture(const QString& Path, const OrvImageSettings& Settings, bool Scalar, QString& Error)
{
    OrvImageFileProperties Properties;
    if (!OrvImageFiles::probe(Path, Properties, Error))
        return {};
    OrvPixelFormat Format = Settings.Paint;
    Format.Depth = Properties.pixelFormat().Depth;
    const OrvUdimLayout AsStored(Properties.Size, Settings.Layout.tiles());
    OrvImageBuffer Pixels(AsStored.extent(), Format);
    OrvImageReadOptions Options;
    Options.BufferSpace = Settings.PaintSpace;
    if (Scalar)
        Options.FileSpace = Options.BufferSpace = OrvColorManager::raw();
    for (const int Tile : AsStored.tiles()) {
        if (!OrvImageFiles::read(
                Path, Pixels, AsStored.tileRect(Tile).topLeft(), OrvProgress(), Error, Options))
            return {};
    }
    return OrvImageResampling::fitted(Pixels, AsStored, Settings.Layout).converted(Settings.Paint);
}

std::unique_ptr<OrvSnBaseNode> makeImages(
    const QString& Path, const OrvImageSettings& Settings, bool Scalar, QString& Error)
{
    const OrvImageBuffer Pixels = readPicture(Path, Settings, Scalar, Error);
    if (Pixels.isNull())
        return nullptr;
    auto pImages = std::make_unique<OrvImageSet>(Settings.Layout, Settings.Paint, OrvColor::clear());
    pImages->replace(Settings.Layout, Settings.Paint, OrvColor::clear(), Pixels);
    auto pNode = std::make_unique<OrvSnChannelInputNode>();
    pNode->setImageSet(std::move(pImages));
    pNode->setName(QFileInfo(Path).completeBaseName());
    return pNode;
}

std::unique_ptr<OrvSnBaseNode> makeUniform(
    const OrvColor& Color, const OrvImageSettings& Settings, QString& Error)
{
    std::unique_ptr<OrvSnBaseNode> pNode
        = OrvNodeRegistry::instance().createFromMenuPath(QStringLiteral("Procedural/Basic/Solid Color"));
    if (!pNode) {
        Error = QCoreApplication::translate("OrvMaterialStreams", "The image engine lacks uniform colors");
        return nullptr;
    }
    OrvCustomAttribute Extent(OrvSnOperationNode::ExtentAttribute, Settings.Layout.extent().size());
    Extent.setVisible(false);
    pNode->createUserAttribute(Extent);
    pNode->setUserAttributeValue(QStringLiteral("value"), QVariant::fromValue(Color));
    pNode->setName(pNode->typeLabel());
    return pNode;
}

std::unique_ptr<OrvSnBaseNode> makeProcedural(
    const OrvMaterialDescription::Stream& Stream, const OrvImageSettings& Settings, QString& Error)
{
    std::unique_ptr<OrvSnCustomProceduralNode> pNode
        = OrvSnCustomProceduralNode::create(Stream.ProceduralText, Settings.Layout.extent().size(), Error);
    if (!pNode)
        return nullptr;
    for (auto Value = Stream.ProceduralValues.begin(); Value != Stream.ProceduralValues.end(); ++Value)
        pNode->setUserAttributeValue(Value.key(), Value.value());
    return pNode;
}

} // namespace

std::unique_ptr<OrvSnBaseNode> OrvMaterialStreams::makeNode(const OrvMaterialDescription::Stream& Stream,
    const OrvImageSettings& Settings, bool Scalar, QString& Error)
{
    switch (Stream.What) {
    case OrvMaterialDescription::Stream::Image:
        return makeImages(Stream.ImagePath, Settings, Scalar, Error);
    case OrvMaterialDescription::Stream::Procedural:
        return makeProcedural(Stream, Settings, Error);
    case OrvMaterialDescription::Stream::Color:
    case OrvMaterialDescription::Stream::Value:
        break;
    }
    return makeUniform(Stream.Fill, Settings, Error);
}
