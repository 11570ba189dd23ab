#include "Orvi/OrvSampleProject.h"

#include "Orvi/OrvSamplePainting.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectFile.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCore/Undo/OrvUndoManager.h"

#include "OrvDdi/Engine/OrvOperationRegistry.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

namespace {

const OrvPixelFormat EightBitColor{GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb};
const OrvPixelFormat EightBitNumbers{GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};
const OrvPixelFormat FloatNumbers{GL_FLOAT, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};
constexpr int PlacementFlags = OrvLayerAboveCurrent | OrvLayerMakeCurrent;

QString tr(const char* pText)
{
    return QCoreApplication::translate("OrvSampleProject", pText);
}

QString menuPathOf(const char* pOperation)
{
    const OrvOperation* pFound = OrvOperationRegistry::instance().find(QString::fromLatin1(pOperation));
    return pFound ? pFound->MenuPath : QString();
}

void writePixels(OrvImageSet* pImages, const QImage& Picture)
{
    if (!pImages || Picture.isNull())
        return;
    if (Picture.format() == QImage::Format_Grayscale8) {
        pImages->buffer().write(
            pImages->extent(), EightBitNumbers, Picture.constBits(), Picture.bytesPerLine());
    } else {
        const QImage Straight = Picture.convertToFormat(QImage::Format_RGBA8888);
        pImages->buffer().write(
            pImages->extent(), EightBitColor, Straight.constBits(), Straight.bytesPerLine());
    }
    pImages->pixelsWritten(pImages->extent());
}

void setAttribute(OrvSnBaseNode* pNode, const QString& Name, const QVariant& Value)
{
    if (pNode)
        pNode->setUserAttributeValue(Name, Value);
}

void blend(OrvLayer* pLayer, const char* pMode, double Amount = 1.0)
{
    if (!pLayer)
        return;
    setAttribute(pLayer->blendNode(), OrvMergeAttributes::BlendMode, QString::fromLatin1(pMode));
    setAttribute(pLayer->blendNode(), OrvMergeAttributes::Amount, Amount);
}

void tag(OrvLayer* pLayer, const char* pColorName)
{
    if (pLayer)
        pLayer->setColor(OrvLayerUtils::validLayerColors().value(QString::fromLatin1(pColorName)));
}

void maskWith(OrvLayer* pLayer, const QImage& Mask)
{
    if (pLayer && pLayer->addMaskImageSet(OrvLayer::FilledMask, OrvColor::white()))
        writePixels(pLayer->maskImageSet(), Mask);
}

/// Builds one stack from the bottom up.
class StackBuilder {
public:
    explicit StackBuilder(OrvLayerStack* pStack)
        : m_pStack(pStack)
    {
    }

    OrvLayer* fill(const QString& Name, const OrvColor& Color)
    {
        return m_pStack ? take(m_pStack->createPaintableLayer(Color, PlacementFlags, m_pLast, Name))
                        : nullptr;
    }
    OrvLayer* paint(const QString& Name, const QImage& Picture)
    {
        OrvLayer* pLayer = fill(Name, OrvColor::clear());
        if (pLayer)
            writePixels(pLayer->paintImageSet(), Picture);
        return pLayer;
    }
    OrvLayer* procedural(const QString& Name, const char* pOperation)
    {
        return m_pStack
            ? take(m_pStack->createProceduralLayer(menuPathOf(pOperation), PlacementFlags, m_pLast, Name))
            : nullptr;
    }
    OrvLayer* adjustment(const QString& Name, const char* pOperation)
    {
        return m_pStack
            ? take(m_pStack->createAdjustmentLayer(menuPathOf(pOperation), PlacementFlags, m_pLast, Name))
            : nullptr;
    }
    OrvLayer* group(const QString& Name)
    {
        if (m_pLast)
            m_pLast->makeCurrent(false, false);
        OrvLayer* pLayer = m_pStack ? take(m_pStack->createGroupLayer(PlacementFlags)) : nullptr;
        if (pLayer)
            pLayer->setName(Name);
        return pLayer;
    }
    OrvLayer* share(OrvLayer* pShared, const QString& Name)
    {
        OrvLayer* pLayer
            = m_pStack && pShared ? take(m_pStack->shareLayer(pShared, PlacementFlags)) : nullptr;
        if (pLayer)
            pLayer->setName(Name);
        return pLayer;
    }

private:
    OrvLayer* take(OrvLayer* pLayer)
    {
        if (pLayer)
            m_pLast = pLayer;
        else
            OrvDebug("OrvSampleProject", __LINE__, QStringLiteral("pLayer is NULL"), false, false);
        return pLayer;
    }

    OrvLayerStack* m_pStack;
    OrvLayer* m_pLast = nullptr;
};

void buildMarkings(OrvLayerStack* pStack, const OrvSamplePainting& Painting)
{
    StackBuilder Markings(pStack);
    OrvLayer* pStripes = Markings.paint(tr("Hazard Stripes"), Painting.stripes());
    tag(pStripes, "yellow");
    maskWith(pStripes, Painting.stripeArea());
    OrvLayerStack* pMaskStack = pStripes ? pStripes->convertMaskToMaskStack() : nullptr;
    if (pMaskStack) {
        const QList<OrvLayer*> Area = pMaskStack->layerList();
        if (!Area.isEmpty())
            Area.first()->setName(tr("Area"));
        OrvLayer* pWear = pMaskStack->createPaintableLayer(
            OrvColor::clear(), PlacementFlags, Area.isEmpty() ? nullptr : Area.first(), tr("Wear"));
        if (pWear)
            writePixels(
                pWear->paintImageSet(), Painting.wornPaint().convertToFormat(QImage::Format_RGBA8888));
        blend(pWear, "Multiply");
        OrvLayer* pFading = pMaskStack->createProceduralLayer(
            menuPathOf("gegl:perlin-noise"), PlacementFlags, pWear, tr("Fading"));
        blend(pFading, "Multiply", 0.4);
    }

    OrvLayer* pLettering = Markings.paint(tr("Lettering"), Painting.lettering());
    tag(pLettering, "yellow");
    maskWith(pLettering, Painting.wornPaint());
}

void buildWeathering(OrvLayerStack* pStack, const OrvSamplePainting& Painting)
{
    StackBuilder Weathering(pStack);
    OrvLayer* pGrime = Weathering.procedural(tr("Grime"), "gegl:perlin-noise");
    if (pGrime) {
        setAttribute(pGrime->proceduralNode(), QStringLiteral("scale"), 1.2);
        setAttribute(pGrime->proceduralNode(), QStringLiteral("n"), 4);
    }
    maskWith(pGrime, Painting.dirtyCorners());
    blend(pGrime, "Multiply", 0.7);

    OrvLayer* pRust = Weathering.paint(tr("Rust"), Painting.rust());
    tag(pRust, "red");
    if (pRust) {
        OrvLayer* pExpose = pRust->addLayerAdjustmentLayerFromKey(menuPathOf("gegl:exposure"), tr("Expose"));
        if (pExpose)
            setAttribute(pExpose->adjustmentNode(), QStringLiteral("exposure"), 0.2);
        OrvLayer* pSaturate
            = pRust->addLayerAdjustmentLayerFromKey(menuPathOf("gegl:saturation"), tr("Saturate"));
        if (pSaturate)
            setAttribute(pSaturate->adjustmentNode(), QStringLiteral("scale"), 1.1);
    }
    blend(Weathering.paint(tr("Scratches"), Painting.scratches()), "Normal", 0.8);
    blend(Weathering.share(pRust, tr("Rust Shade")), "Multiply", 0.3);
}

/// Returns the layer to begin to paint on.
OrvLayer* buildColor(OrvShaderInput* pChannel, const OrvSamplePainting& Painting)
{
    StackBuilder Layers(pChannel);
    Layers.paint(tr("Bare Metal"), Painting.bareMetal());
    OrvLayer* pPlates = Layers.paint(tr("Plates"), Painting.plates());
    tag(pPlates, "blue");
    OrvLayer* pVents = Layers.paint(tr("Vents and Port"), Painting.vents());
    tag(pVents, "blue");

    // What ages the hull works on everything below it, so its group passes through.
    OrvLayer* pSurface = Layers.group(tr("Surface"));
    if (pSurface) {
        StackBuilder Surface(OrvLayerStreamUtils::groupStack(pSurface));
        if (OrvLayer* pMarkings = Surface.group(tr("Markings")))
            buildMarkings(OrvLayerStreamUtils::groupStack(pMarkings), Painting);
        if (OrvLayer* pWeathering = Surface.group(tr("Weathering"))) {
            buildWeathering(OrvLayerStreamUtils::groupStack(pWeathering), Painting);
            OrvLayerStreamUtils::setLayerGroupPassThrough(pWeathering->blendNode(), true);
        }
        OrvLayerStreamUtils::setLayerGroupPassThrough(pSurface->blendNode(), true);
        pSurface->makeCurrent(false, false);
    }
    OrvLayer* pRivets = Layers.paint(tr("Rivets"), Painting.rivets());
    tag(pRivets, "green");
    if (pRivets)
        pRivets->setLocked(true);
    OrvLayer* pSplashes = Layers.paint(tr("Splashes"), Painting.splashes());
    tag(pSplashes, "purple");
    OrvLayer* pSketch = Layers.paint(tr("Construction Lines"), Painting.sketch());
    if (pSketch)
        pSketch->setVisible(false);
    OrvLayer* pGrade = Layers.adjustment(tr("Grade"), "gegl:color-temperature");
    if (pGrade)
        setAttribute(pGrade->adjustmentNode(), QStringLiteral("intended-temperature"), 6900.0);
    return pSplashes;
}

void buildMetallic(OrvShaderInput* pChannel, const OrvSamplePainting& Painting)
{
    StackBuilder Layers(pChannel);
    Layers.paint(tr("Bare Metal"), Painting.metallic());
    Layers.paint(tr("Scratches"), Painting.scratches());
    OrvLayer* pRust = Layers.fill(tr("Rust"), OrvColor::black());
    tag(pRust, "red");
    maskWith(pRust, Painting.rustCover());
}

void buildRoughness(OrvShaderInput* pChannel, const OrvSamplePainting& Painting)
{
    StackBuilder Layers(pChannel);
    Layers.paint(tr("Base"), Painting.roughness());
    OrvLayer* pRust = Layers.fill(tr("Rust"), OrvColor(0.85f, 0.85f, 0.85f));
    tag(pRust, "red");
    maskWith(pRust, Painting.rustCover());
    OrvLayer* pDust = Layers.procedural(tr("Dust"), "gegl:simplex-noise");
    maskWith(pDust, Painting.dirtyCorners());
    blend(pDust, "Screen", 0.25);
    OrvLayer* pGrade = Layers.adjustment(tr("Contrast"), "gegl:brightness-contrast");
    if (pGrade)
        setAttribute(pGrade->adjustmentNode(), QStringLiteral("contrast"), 1.1);
}

void buildDisplacement(OrvShaderInput* pChannel, const OrvSamplePainting& Painting)
{
    StackBuilder Layers(pChannel);
    OrvLayer* pHeights = Layers.paint(tr("Heights"), QImage());
    OrvImageSet* pImages = pHeights ? pHeights->paintImageSet() : nullptr;
    if (!pImages)
        return;
    const std::vector<float> Heights = Painting.heights();
    pImages->buffer().write(pImages->extent(), FloatNumbers, Heights.data());
    pImages->pixelsWritten(pImages->extent());
}

/// The lit hull is what a fresh project shows.
void buildShader(const QList<OrvShaderInput*>& Channels)
{
    OrvLayerShader* pShader
        = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), true);
    if (!pShader) {
        OrvDebug("OrvSampleProject", __LINE__, QStringLiteral("pShader is NULL"), false, false);
        return;
    }
    pShader->node()->setName(tr("Hull"));
    // Each channel is called as the input that it is for.
    for (OrvShaderInput* pChannel : Channels)
        pShader->setInputShaderInput(pChannel->name(), pChannel);
}

} // namespace

QString OrvSampleProject::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
        + QStringLiteral("/Hull Sample.orvi");
}

void OrvSampleProject::build(int Edge, const OrvProgress& Progress)
{
    OrvProject* pProject
        = OrvProjectManager::instance().newProject(tr("Hull Sample"), QStringLiteral("Hull"));
    OrvShaderNetwork* pNetwork = pProject->currentGeoEntity()->shaderNetwork();
    const OrvSamplePainting Painting(Edge);
    const QSize Size(Edge, Edge);
    constexpr int Steps = 5;
    int Done = 0;
    const auto stepDone = [&] {
        if (Progress)
            Progress(++Done, Steps);
    };
    stepDone();
    {
        const OrvUndoManager::NoRecording NoRecording;
        const auto create = [&](const QString& Name, GLenum Depth, bool Scalar) {
            return OrvShaderInputUtils::create(pNetwork, Name, Size, Depth, nullptr, Scalar);
        };
        OrvShaderInput* pColor = create(QStringLiteral("Base Color"), GL_UNSIGNED_BYTE, false);
        OrvLayer* pFirst = buildColor(pColor, Painting);
        stepDone();
        OrvShaderInput* pMetallic = create(QStringLiteral("Metallic"), GL_UNSIGNED_BYTE, true);
        buildMetallic(pMetallic, Painting);
        stepDone();
        OrvShaderInput* pRoughness = create(QStringLiteral("Roughness"), GL_UNSIGNED_BYTE, true);
        buildRoughness(pRoughness, Painting);
        stepDone();
        OrvShaderInput* pDisplacement = create(QStringLiteral("Displacement"), GL_HALF_FLOAT, true);
        buildDisplacement(pDisplacement, Painting);
        buildShader({pColor, pMetallic, pRoughness, pDisplacement});
        stepDone();
        if (pFirst)
            pFirst->makeCurrent(false, true);
    }
}

bool OrvSampleProject::open(QString& Error, const OrvProgress& Progress)
{
    OrvProjectManager& Projects = OrvProjectManager::instance();
    if (QFileInfo::exists(path() + QLatin1Char('/') + OrvProjectFile::ManifestName))
        return Projects.openProject(path(), Error, Progress);
    build(2048, Progress);
    return Projects.saveProjectAs(path(), Error);
}
