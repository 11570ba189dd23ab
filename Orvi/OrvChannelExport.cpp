#include "Orvi/OrvChannelExport.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Files/OrvImageFiles.h"
#include "OrvDdi/Files/OrvUdimSet.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <vector>

namespace {

constexpr int StripHeight = 256; // rows evaluated at once

/// Evaluates a rectangle strip by strip, so that cancelling is heard in time, and makes linear light of a space's
/// colours.
bool evaluate(OrvEngineNode& Result, const QString& Space, OrvImageBuffer& Buffer, const QRect& Rect,
    const OrvProgress& Progress, QString& Error)
{
    const OrvPixelFormat Format{GL_FLOAT, Buffer.format().Kind, OrvPixelFormat::Linear};
    std::vector<float> Pixels(std::size_t(Rect.width()) * StripHeight * std::size_t(Format.componentCount()));
    for (int Top = Rect.top(); Top <= Rect.bottom(); Top += StripHeight) {
        if (!Progress(Top - Rect.top(), Rect.height()))
            return false;
        const QRect Strip(Rect.left(), Top, Rect.width(), std::min(StripHeight, Rect.bottom() + 1 - Top));
        Result.render(Strip, 1.0, Format, Pixels.data());
        if (Format.Kind == OrvPixelFormat::Rgba
            && !OrvColorManager::transformPixels(
                Pixels.data(), Strip.width(), Strip.height(), 0, Space, OrvColorManager::linear(), Error))
            return false;
        Buffer.write(Strip, Format, Pixels.data());
    }
    return true;
}

} // namespace

QList<OrvShaderInput*> OrvChannelExport::channelsOf(const OrvGeoEntity* pEntity)
{
    QList<OrvShaderInput*> Channels
        = OrvShaderInputManager::instance().getShaderInputsFromNetwork(pEntity->shaderNetwork());
    Channels.erase(std::remove_if(Channels.begin(), Channels.end(),
                       [](const OrvShaderInput* pChannel) { return pChannel->isMaterialStack(); }),
        Channels.end());
    return Channels;
}

QStringList OrvChannelExport::filesOf(const OrvShaderInput* pChannel, const QString& Path)
{
    const QVector<int> Tiles = pChannel->layout().tiles();
    if (Tiles.size() == 1
        && !QFileInfo(Path).fileName().contains(QLatin1String("<UDIM>"), Qt::CaseInsensitive))
        return {Path};
    QStringList Files;
    for (const int Tile : Tiles)
        Files.append(OrvUdimSet::pathForTile(Path, Tile));
    return Files;
}

QString OrvChannelExport::suggestedPath(
    const OrvShaderInput* pChannel, const QString& Directory, const QString& Name, const QString& Suffix)
{
    QString FileName = Name;
    FileName.replace(QLatin1Char('/'), QLatin1Char('_'));
    if (pChannel->layout().tiles().size() > 1)
        FileName += QStringLiteral(".<UDIM>");
    return QDir(Directory).filePath(FileName + QLatin1Char('.') + Suffix);
}

bool OrvChannelExport::writeChannel(
    OrvShaderInput* pChannel, const QString& Path, const OrvProgress& Progress, QString& Error)
{
    return writeNode(pChannel ? pChannel->node() : nullptr, pChannel, Path, Progress, Error);
}

bool OrvChannelExport::writeNode(const OrvSnBaseNode* pNode, OrvShaderInput* pChannel, const QString& Path,
    const OrvProgress& Progress, QString& Error)
{
    if (!pNode || !pChannel) {
        OrvDebug("OrvChannelExport", __LINE__, QStringLiteral("pNode is NULL"), false, false);
        return false;
    }
    const QString Suffix = QFileInfo(Path).suffix().toLower();
    if (!OrvImageFiles::writableSuffixes().contains(Suffix)) {
        Error = tr("'%1' cannot be written: its type is none of %2")
                    .arg(Path, OrvImageFiles::writableSuffixes().join(QLatin1String(", ")));
        return false;
    }
    OrvEngineNode* pResult = OrvNodeEvaluation::result(pNode);
    if (!pResult) {
        Error = tr("\"%1\" holds nothing to export").arg(pNode->name());
        return false;
    }
    OrvPixelFormat Format;
    Format.Depth = pChannel->imageSetDepth();
    Format.Kind = pChannel->isScalar() ? OrvPixelFormat::Scalar : OrvPixelFormat::Rgba;
    const bool Raw = pChannel->colorSpaceConfig().colorSpace() == OrvColorManager::raw();
    const bool Curved = Format.Depth == GL_UNSIGNED_BYTE && Format.Kind == OrvPixelFormat::Rgba && !Raw;
    Format.Curve = Curved ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear;
    OrvImageWriteOptions Options;
    Options.Depth = OrvImageFiles::precisionForDepth(Suffix, Format.Depth);
    Options.Scalar = pChannel->isScalar();
    if (Raw)
        Options.FileSpace = Options.BufferSpace = OrvColorManager::raw();

    const QString Space = OrvChannelSpace::ofNode(pNode);
    const OrvUdimLayout Layout = pChannel->layout();
    const QStringList Files = filesOf(pChannel, Path);
    for (int Index = 0; Index < Files.size(); ++Index) {
        // Evaluating and writing count alike.
        const auto half = [&](int Which) {
            return [&, Which](int Done, int Total) {
                const int Share = Total > 0 ? 50 * Done / Total : 0;
                return !Progress || Progress(100 * Index + 50 * Which + Share, 100 * Files.size());
            };
        };
        const QRect Rect = Layout.tileRect(Layout.tiles().at(Index));
        OrvImageBuffer Buffer(Rect, Format);
        if (!evaluate(*pResult, Space, Buffer, Rect, half(0), Error)
            || !OrvImageFiles::write(Files[Index], Buffer, Rect, Options, half(1), Error))
            return false;
    }
    return !Progress || Progress(100 * Files.size(), 100 * Files.size());
}
