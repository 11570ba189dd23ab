#include "Orvi/OrvImageImport.h"

#include "Orvi/OrvImageScaling.h"
#include "Orvi/OrvTileExtension.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvEditObstacle.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Files/OrvImageFiles.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

namespace {

constexpr int CommandFlags = OrvLayerMakeCurrent | OrvLayerUniqueName | OrvLayerSelectAlone;

/// Numbers for shading rather than a colour to be seen.
bool isNamedAfterNumbers(const QString& Name)
{
    static const QRegularExpression Pattern(
        QStringLiteral(
            "(^|[^a-z])(normals?|nrm|bump|height|heightmap|displacement|disp|vector|roughness|rough|gloss|"
            "metal(ness|lic)?|occlusion|ao|mask|opacity|specular)([^a-z]|$)"),
        QRegularExpression::CaseInsensitiveOption);
    return Pattern.match(Name).hasMatch();
}

bool isNumbers(OrvShaderInput* pChannel)
{
    return pChannel->isScalar() || pChannel->colorSpaceConfig().colorSpace() == OrvColorManager::raw();
}

} // namespace

QStringList OrvImageImport::imagePaths(const QStringList& Paths)
{
    const QStringList Suffixes = OrvImageFiles::readableSuffixes();
    QStringList Images;
    for (const QString& Path : Paths) {
        const QFileInfo File(Path);
        if (File.isFile() && Suffixes.contains(File.suffix().toLower()))
            Images.append(Path);
    }
    return Images;
}

QList<OrvUdimSet> OrvImageImport::imageSets(const QStringList& Paths)
{
    QStringList Files;
    for (const QString& Path : Paths) {
        const QString Absolute = QFileInfo(Path).absoluteFilePath();
        // A file that was named must exist for its own message; its brothers come only if it does.
        const QStringList Set
            = QFileInfo::exists(Absolute) ? OrvUdimSet::brothersOf(Absolute) : QStringList{Absolute};
        for (const QString& File : Set) {
            if (!Files.contains(File))
                Files.append(File);
        }
    }
    return OrvUdimSet::fromPaths(Files);
}

void OrvImageImport::takeTiles(OrvGeoEntity* pEntity, const QList<OrvUdimSet>& Sets)
{
    if (!pEntity || pEntity->isPtex()
        || !OrvShaderInputManager::instance().getShaderInputsFromNetwork(pEntity->shaderNetwork()).isEmpty())
        return;
    QVector<int> Tiles;
    for (const OrvUdimSet& Set : Sets) {
        if (Set.isUdim())
            Tiles += Set.Paths.keys().toVector();
    }
    pEntity->setUdimTiles(OrvUdimLayout(QSize(1, 1), Tiles).tiles());
}

void OrvImageImport::addMissingTiles(const OrvShaderNetwork* pNetwork, const OrvUdimSet& Files)
{
    OrvGeoEntity* pEntity = pNetwork ? pNetwork->geoEntity() : nullptr;
    if (pEntity && !pEntity->isPtex() && Files.isUdim())
        OrvTileExtension::extend(pEntity, Files.Paths.keys().toVector());
}

bool OrvImageImport::fillImages(
    OrvImageSet& Images, bool Numbers, const OrvUdimSet& Files, const OrvProgress& Progress, QString& Error)
{
    const OrvUdimLayout& Layout = Images.layout();
    OrvImageReadOptions Options;
    Options.BufferSpace = OrvChannelSpace::ofImages(Images);
    if (Numbers)
        Options.FileSpace = Options.BufferSpace = OrvColorManager::raw();
    int Done = 0;
    for (auto File = Files.Paths.begin(); File != Files.Paths.end(); ++File, ++Done) {
        const QRect Rect = Layout.tileRect(Files.isUdim() ? File.key() : Layout.tiles().first());
        if (Rect.isEmpty()) {
            Error = tr("'%1' is tile %2, which the object does not have").arg(File.value()).arg(File.key());
            return false;
        }
        const auto partOfAll = [&](int Step, int Steps) {
            const int Share = Steps > 0 ? 100 * Step / Steps : 0;
            return !Progress || Progress(100 * Done + Share, 100 * Files.Paths.size());
        };
        OrvImageFileProperties Properties;
        if (!OrvImageFiles::probe(File.value(), Properties, Error))
            return false;
        OrvImageBuffer Buffer = Images.buffer();
        if (Properties.Size == Rect.size()) {
            if (!OrvImageFiles::read(File.value(), Buffer, Rect.topLeft(), partOfAll, Error, Options))
                return false;
        } else {
            OrvPixelFormat Format = Images.format();
            Format.Depth = Properties.pixelFormat().Depth;
            OrvImageBuffer Whole(QRect(QPoint(0, 0), Properties.Size), Format);
            if (!OrvImageFiles::read(File.value(), Whole, QPoint(0, 0), partOfAll, Error, Options)
                || !OrvImageScaling::fill(Buffer, Rect, Whole, partOfAll))
                return false;
        }
        Images.pixelsWritten(Rect);
    }
    return true;
}

OrvShaderInput* OrvImageImport::importChannel(
    OrvShaderNetwork* pNetwork, const OrvUdimSet& Files, const OrvProgress& Progress, QString& Error)
{
    if (!pNetwork || Files.Paths.isEmpty()) {
        OrvDebug("OrvImageImport", __LINE__, QStringLiteral("pNetwork is NULL"), false, false);
        return nullptr;
    }
    OrvImageFileProperties Properties;
    if (!OrvImageFiles::probe(Files.Paths.first(), Properties, Error))
        return nullptr;
    const GLenum Depth = Properties.pixelFormat().Depth;
    OrvColorSpaceConfig Config(Properties.Scalar, Depth);
    if (!Properties.Scalar && isNamedAfterNumbers(Files.BaseName))
        Config.setColorSpace(OrvColorSpaceConfig::NativeSpace, OrvColorManager::raw());

    const QString Name = OrvShaderInputUtils::generateUniqueName(pNetwork, Files.BaseName);
    OrvUndoManager::AutoMacro Macro(tr("Import Channel : %1").arg(Name));
    addMissingTiles(pNetwork, Files);
    OrvShaderInput* pChannel
        = OrvShaderInputUtils::create(pNetwork, Name, Properties.Size, Depth, &Config, Properties.Scalar);
    OrvLayer* pLayer = pChannel
        ? pChannel->createPaintableLayer(OrvColor::clear(), OrvLayerAtBottom, nullptr, tr("Base"))
        : nullptr;
    if (!pLayer)
        Error = tr("No channel can be made of '%1'").arg(Files.Pattern);
    if (!pLayer || !fillImages(*pLayer->paintImageSet(), isNumbers(pChannel), Files, Progress, Error)) {
        Macro.cancel();
        return nullptr;
    }
    OrvShaderInputManager::instance().setCurrentLayerOf(pChannel, pLayer);
    OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
    return pChannel;
}

OrvLayer* OrvImageImport::importPaintLayer(OrvLayerStack* pStack, OrvLayer* pBelow, Place Where,
    const OrvUdimSet& Files, const OrvProgress& Progress, QString& Error)
{
    if (!pStack || Files.Paths.isEmpty()) {
        OrvDebug("OrvImageImport", __LINE__, QStringLiteral("pStack is NULL"), false, false);
        return nullptr;
    }
    OrvImageFileProperties Properties;
    if (!OrvImageFiles::probe(Files.Paths.first(), Properties, Error))
        return nullptr;
    OrvUndoManager::AutoMacro Macro(tr("Import Layer : %1").arg(Files.BaseName));
    addMissingTiles(pStack->network(), Files);
    const int PlaceFlag = Where == AtBottom ? OrvLayerAtBottom : OrvLayerAboveCurrent;
    OrvLayer* pLayer
        = pStack->createPaintableLayer(OrvColor::clear(), CommandFlags | PlaceFlag, pBelow, Files.BaseName);
    if (!pLayer) {
        Error = tr("No layer can be added to \"%1\"").arg(pStack->name());
        Macro.cancel();
        return nullptr;
    }
    OrvShaderInput* pChannel = pStack->ownerShaderInput();
    const bool Numbers = (pChannel && isNumbers(pChannel)) || pStack->isWithinMask();
    if (!fillImages(*pLayer->paintImageSet(), Numbers, Files, Progress, Error)) {
        Macro.cancel();
        return nullptr;
    }
    return pLayer;
}

bool OrvImageImport::importMask(
    OrvLayer* pLayer, const OrvUdimSet& Files, const OrvProgress& Progress, QString& Error)
{
    if (!pLayer || Files.Paths.isEmpty()) {
        OrvDebug("OrvImageImport", __LINE__, QStringLiteral("pLayer is NULL"), false, false);
        return false;
    }
    if (!pLayer->isModifiable()) {
        Error = OrvEditObstacle::ofSharers(pLayer);
        return false;
    }
    OrvUndoManager::AutoMacro Macro(tr("Import Mask : %1").arg(pLayer->name()));
    addMissingTiles(pLayer->blendNode()->network(), Files);
    if (pLayer->hasMask())
        pLayer->deleteMask();
    OrvImageSet* pImages
        = pLayer->addMaskImageSet(OrvLayer::EmptyMask, OrvColor::clear()) ? pLayer->maskImageSet() : nullptr;
    if (!pImages)
        Error = tr("\"%1\" takes no mask").arg(pLayer->name());
    if (!pImages || !fillImages(*pImages, true, Files, Progress, Error)) {
        Macro.cancel();
        return false;
    }
    return true;
}
