#include "Orvi/OrvLayerImageExport.h"

#include "Orvi/OrvChannelExport.h"
#include "Orvi/OrvExportNames.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvSnMergeNode.h"

#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Files/OrvImageFiles.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QFileInfo>
#include <QtCore/QPointer>

namespace {

/// The jobs of one channel.
class JobList {
public:
    JobList(OrvShaderInput* pChannel, const QString& Prefix, const QString& Suffix, OrvExportNames& Names)
        : m_pChannel(pChannel)
        , m_Prefix(Prefix)
        , m_Suffix(Suffix)
        , m_Names(Names)
    {
    }

    void addImages(const QString& Name, OrvImageSet* pImages, bool Numbers)
    {
        const QStringList Files = filesFor(Name, pImages->format().Depth);
        const QPointer<OrvImageSet> pSource(pImages);
        m_Jobs.append({Name, Files, [=](const OrvProgress& Progress, QString& Error) {
                           return pSource
                               && OrvLayerImageExport::writeImages(*pSource, Files, Numbers, Progress, Error);
                       }});
    }
    void addResult(const QString& Name, OrvSnBaseNode* pNode)
    {
        const QString Path = pathFor(Name, m_pChannel->imageSetDepth());
        const QPointer<OrvSnBaseNode> pSource(pNode);
        const QPointer<OrvShaderInput> pChannel(m_pChannel);
        m_Jobs.append({Name, OrvChannelExport::filesOf(m_pChannel, Path),
            [=](const OrvProgress& Progress, QString& Error) {
                return OrvChannelExport::writeNode(pSource, pChannel, Path, Progress, Error);
            }});
    }
    void add(const OrvLayer* pLayer, const OrvLayerStack* pStack, OrvLayerImageExport::Part What, bool Results)
    {
        const QString Name = m_Prefix + m_pChannel->name() + QLatin1Char('.') + pLayer->name();
        const bool Numbers = pStack && pStack->isWithinMask();
        if (What & OrvLayerImageExport::Paint) {
            OrvSnBaseNode* pContent = pLayer->overNode();
            if (OrvImageSet* pImages = pLayer->paintImageSet())
                addImages(Name, pImages, Numbers || isNumbers());
            else if (Results && pContent && !pLayer->isShaderLayer())
                addResult(Name, pContent);
        }
        if (What & OrvLayerImageExport::Masks) {
            const QString MaskName = Name + QStringLiteral(".Mask");
            OrvSnBaseNode* pMask = pLayer->maskNode();
            if (OrvImageSet* pImages = pLayer->maskImageSet())
                addImages(MaskName, pImages, true);
            else if (Results && pMask)
                addResult(MaskName, pMask);
        }
    }
    const QVector<OrvExportJob>& jobs() const { return m_Jobs; }

private:
    bool isNumbers() const
    {
        return m_pChannel->isScalar()
            || m_pChannel->colorSpaceConfig().colorSpace() == OrvColorManager::raw();
    }
    QString pathFor(const QString& Name, GLenum Depth)
    {
        const QString Deep = Depth == GL_UNSIGNED_BYTE ? QStringLiteral("png") : QStringLiteral("exr");
        return m_Names.take(m_pChannel, Name, m_Suffix.isEmpty() ? Deep : m_Suffix);
    }
    QStringList filesFor(const QString& Name, GLenum Depth)
    {
        return OrvChannelExport::filesOf(m_pChannel, pathFor(Name, Depth));
    }

    OrvShaderInput* m_pChannel;
    QString m_Prefix, m_Suffix;
    OrvExportNames& m_Names;
    QVector<OrvExportJob> m_Jobs;
};

/// Also those inside masks.
void addAll(JobList& Jobs, const OrvLayerStack* pStack)
{
    for (const OrvLayer* pLayer : pStack->allLayers()) {
        Jobs.add(pLayer, pStack, OrvLayerImageExport::Everything, false);
        if (const OrvLayerStack* pMask = pLayer->hasMaskStack() ? pLayer->maskStack() : nullptr)
            addAll(Jobs, pMask);
    }
}

} // namespace

QVector<OrvExportJob> OrvLayerImageExport::jobsOf(
    OrvShaderInput* pChannel, const QString& Prefix, const QString& Suffix, OrvExportNames& Names)
{
    JobList Jobs(pChannel, Prefix, Suffix, Names);
    addAll(Jobs, pChannel);
    return Jobs.jobs();
}

QVector<OrvExportJob> OrvLayerImageExport::jobsOf(const QList<OrvLayer*>& Layers, OrvShaderInput* pChannel,
    Part What, const QString& Suffix, OrvExportNames& Names)
{
    JobList Jobs(pChannel, QString(), Suffix, Names);
    for (const OrvLayer* pLayer : Layers) {
        const QList<OrvLayerStack*> Stacks = pLayer->stacks();
        Jobs.add(pLayer, Stacks.isEmpty() ? nullptr : Stacks.first(), What, true);
    }
    return Jobs.jobs();
}

bool OrvLayerImageExport::writeImages(const OrvImageSet& Images, const QStringList& Files, bool Numbers,
    const OrvProgress& Progress, QString& Error)
{
    OrvImageBuffer Pixels = Images.snapshot();
    if (Pixels.isNull()) {
        Pixels = OrvImageBuffer(Images.extent(), Images.format());
        Pixels.fill(Images.fillColor());
    }
    OrvImageWriteOptions Options;
    Options.BufferSpace = OrvChannelSpace::ofImages(Images);
    Options.Scalar = Images.format().Kind == OrvPixelFormat::Scalar;
    if (Numbers)
        Options.FileSpace = Options.BufferSpace = OrvColorManager::raw();
    const QVector<int>& Tiles = Images.layout().tiles();
    for (int Index = 0; Index < qMin(Files.size(), Tiles.size()); ++Index) {
        const auto partOfAll = [&](int Done, int Total) {
            const int Share = Total > 0 ? 100 * Done / Total : 0;
            return !Progress || Progress(100 * Index + Share, 100 * Files.size());
        };
        const QString Suffix = QFileInfo(Files[Index]).suffix().toLower();
        Options.Depth = OrvImageFiles::precisionForDepth(Suffix, Images.format().Depth);
        const QRect Rect = Images.layout().tileRect(Tiles[Index]);
        if (!OrvImageFiles::write(Files[Index], Pixels, Rect, Options, partOfAll, Error))
            return false;
    }
    return true;
}
