#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Channels/OrvChannelFlattening.h"
#include "OrvCore/Channels/OrvSnShaderInputNode.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Layers/OrvLayerUtils.h"
#include "OrvCore/Network/OrvSnChannelInputNode.h"
#include "OrvDdi/Color/OrvColorManager.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>
#include <QtWidgets/QUndoStack>

#include <vector>

namespace {

const OrvPixelFormat LinearColor{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
const QString ChannelMimeType = QStringLiteral("application/x-orvi-channel-clipboard");
constexpr int Free = OrvShaderInput::FreeImages, All = OrvShaderInput::AllImages;

OrvShaderInputManager& channels()
{
    return OrvShaderInputManager::instance();
}

/// All 256 stored values of a component, in another order for each component.
std::vector<uchar> everyByte()
{
    std::vector<uchar> Pixels;
    for (int Value = 0; Value < 256; ++Value) {
        for (const int Byte : {Value, 255 - Value, (Value * 7) & 255, 255 - (Value & 127)})
            Pixels.push_back(uchar(Byte));
    }
    return Pixels;
}

std::vector<uchar> bytesOf(const OrvImageSet* pImages)
{
    std::vector<uchar> Pixels(256 * 4);
    pImages->snapshot().read(QRect(0, 0, 16, 16), pImages->format(), Pixels.data());
    return Pixels;
}

std::vector<float> lightOf(const OrvImageSet* pImages)
{
    std::vector<float> Pixels(256 * 4);
    pImages->snapshot().read(QRect(0, 0, 16, 16), LinearColor, Pixels.data());
    return Pixels;
}

float greatestDifference(const std::vector<float>& First, const std::vector<float>& Second)
{
    float Greatest = 0.0f;
    for (std::size_t Index = 0; Index < First.size(); ++Index)
        Greatest = std::max(Greatest, std::abs(First[Index] - Second[Index]));
    return Greatest;
}

/// Writes a whole image as a brush would.
void write(OrvImageSet* pImages, const OrvPixelFormat& Format, const void* pPixels)
{
    pImages->buffer().write(pImages->extent(), Format, pPixels);
    pImages->pixelsWritten(pImages->extent());
}

/// What another process would leave there.
void setClipboardBytes(const QByteArray& Bytes)
{
    auto* pData = new QMimeData;
    pData->setData(ChannelMimeType, Bytes);
    QGuiApplication::clipboard()->setMimeData(pData);
}

/// What was refused while it lives.
struct Refusals : QSignalSpy {
    Refusals()
        : QSignalSpy(&OrvLayerManager::instance(), &OrvLayerManager::refused)
    {
    }
    QString last() const { return isEmpty() ? QString() : at(size() - 1).at(0).toString(); }
};

void setSpace(OrvShaderInput* pChannel, OrvColorSpaceConfig::Role Role, const QString& Space)
{
    OrvColorSpaceConfig Config = pChannel->colorSpaceConfig();
    Config.setColorSpace(Role, Space);
    pChannel->setColorSpaceConfig(Config, true);
}

OrvColor inAcesCg(const OrvColor& Linear)
{
    OrvColor Converted;
    OrvColorManager::transform(Linear, Converted, OrvColorManager::linear(), OrvColorManager::acesCg());
    return Converted;
}

OrvLayer* groupOfOneColor(OrvTestProject& Project, const OrvColor& Color)
{
    OrvLayer* pSolid = Project.channel()->createProceduralLayer("Procedural/Basic/Solid Color", 0, nullptr);
    pSolid->contentNode()->setUserAttributeValue("value", QVariant::fromValue(Color));
    return Project.group("Group", {pSolid});
}

/// Stops work after that many steps.
struct Cancelling {
    explicit Cancelling(int Steps)
    {
        OrvLayerRendering::setProgress([Steps](int, int) mutable { return --Steps >= 0; });
    }
    ~Cancelling() { OrvLayerRendering::setProgress({}); }
};

} // namespace

/// Channels as a whole: other depths, colour spaces and sizes, one layer instead of many, the clipboard.
class TstChannelConversion : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        OrvLayerRendering::setProgress({});
        OrvChannelFlattening::setQuestion({});
    }

    void widerDepthsKeepEveryByte_data()
    {
        QTest::addColumn<int>("Depth");
        QTest::newRow("half") << int(GL_HALF_FLOAT);
        QTest::newRow("float") << int(GL_FLOAT);
    }
    void widerDepthsKeepEveryByte()
    {
        QFETCH(int, Depth);
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvShaderInput* pChannel = Project.channel();
        OrvImageSet* pPaint = Project.paint("Paint")->paintImageSet();
        const std::vector<uchar> Before = everyByte();
        write(pPaint, pPaint->format(), Before.data());
        const std::vector<float> Light = lightOf(pPaint);
        const QByteArray Document = OrvTestProject::document();
        QSignalSpy DepthChanges(pChannel, &OrvShaderInput::imageSetDepthChanged);

        QVERIFY(pChannel->convertDepthTo(GLenum(Depth), Free));
        QCOMPARE(pChannel->imageSetDepth(), GLenum(Depth));
        QCOMPARE(pPaint->format(), pChannel->paintFormat());
        QCOMPARE(pPaint->format().Curve, OrvPixelFormat::Linear); // as is usual for that depth
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), OrvColorManager::linear());
        QVERIFY(greatestDifference(lightOf(pPaint), Light) < (Depth == GL_FLOAT ? 1e-6f : 5e-4f));
        QVERIFY(pChannel->convertDepthTo(GL_UNSIGNED_BYTE, Free));
        QCOMPARE(pPaint->format().Curve, OrvPixelFormat::Srgb);
        QVERIFY(bytesOf(pPaint) == Before);
        QCOMPARE(DepthChanges.size(), 2);

        OrvTestProject::undo();
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
        QCOMPARE(pChannel->imageSetDepth(), GLenum(GL_UNSIGNED_BYTE));
        OrvTestProject::redo();
        QCOMPARE(pPaint->format().Depth, GLenum(Depth));
    }

    void narrowerDepthStaysWithinItsPrecision()
    {
        OrvTestProject Project(QSize(16, 16), GL_HALF_FLOAT);
        OrvImageSet* pPaint = Project.paint("Paint")->paintImageSet();
        std::vector<float> Ramp;
        for (int Index = 0; Index < 256; ++Index)
            Ramp.insert(Ramp.end(), {Index / 200.0f, 0.3f, 1e-4f * Index, Index / 255.0f});
        write(pPaint, LinearColor, Ramp.data());
        QVERIFY(Project.channel()->convertDepthTo(GL_UNSIGNED_BYTE, Free));
        const std::vector<float> Light = lightOf(pPaint);
        for (int Index = 0; Index < 256; ++Index) {
            for (int Component = 0; Component < 4; ++Component) {
                // Half a step of 8 bits where the sRGB curve has its greatest slope; above one there is none.
                const float Wanted = std::min(1.0f, Ramp[std::size_t(Index * 4 + Component)]);
                QVERIFY(std::abs(Light[std::size_t(Index * 4 + Component)] - Wanted) < 0.0048f);
            }
        }
    }

    void masksFillsAndUniformImagesAreConvertedToo()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvLayer* pLayer = Project.paint("Uniform", OrvColor(0.5f, 0.25f, 1.0f, 0.5f));
        QVERIFY(pLayer->addMaskImageSet(1, OrvColor(0.5f, 0.5f, 0.5f)));
        OrvTestProject::fill(pLayer->maskImageSet(), QRect(0, 0, 8, 16), OrvColor(0.25f, 0.25f, 0.25f));
        const OrvColor Left = Project.pixel(), Right = Project.pixel(QPoint(12, 4));

        QVERIFY(Project.channel()->convertDepthTo(GL_FLOAT, Free));
        QVERIFY(pLayer->paintImageSet()->isUniform());
        QCOMPARE(pLayer->paintImageSet()->fillColor(), OrvColor(0.5f, 0.25f, 1.0f, 0.5f));
        QCOMPARE(pLayer->maskImageSet()->format(), Project.channel()->maskFormat());
        QVERIFY(OrvTestProject::same(Project.pixel(), Left, 1e-3f));
        QVERIFY(OrvTestProject::same(Project.pixel(QPoint(12, 4)), Right, 1e-3f));
    }

    void paintInsideMasksStaysData()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvLayer* pLayer = Project.paint("Paint", OrvColor::white());
        QVERIFY(pLayer->addMaskImageSet(1, OrvColor::white()));
        QVERIFY(pLayer->convertMaskToMaskStack());
        OrvLayer* pInside = Project.paint("Inside", OrvColor(0.5f, 0.5f, 0.5f), pLayer->maskStack());
        OrvTestProject::fill(
            pInside->paintImageSet(), QRect(0, 0, 16, 16), OrvColor(0.25f, 0.25f, 0.25f));
        QVERIFY(Project.channel()->convertDepthTo(GL_HALF_FLOAT, Free));
        QVERIFY(Project.channel()->convertDepthTo(GL_UNSIGNED_BYTE, Free));
        QCOMPARE(pInside->paintImageSet()->format().Curve, OrvPixelFormat::Linear);
        QVERIFY(OrvTestProject::same(Project.pixel(), OrvColor(1.0f, 1.0f, 1.0f, 0.25f), 0.005f));
        // Colour conversions leave them alone, those of masks do not.
        QVERIFY(Project.channel()->convertColorSpaceTo(OrvColorManager::acesCg(), Free));
        QVERIFY(std::abs(Project.pixel().alpha() - 0.25f) < 0.005f);
        Project.channel()->convertScalarColorSpaceTo(OrvColorManager::linear(), Free);
        QVERIFY(Project.channel()->convertScalarColorSpaceTo(OrvColorManager::srgb(), Free));
        QVERIFY(std::abs(Project.pixel().alpha() - 0.537f) < 0.005f);
    }

    void groupsMovedIntoMasksYieldNumbers()
    {
        OrvTestProject Project(QSize(16, 16));
        for (const auto Role : {OrvColorSpaceConfig::NativeSpace, OrvColorSpaceConfig::WorkingSpace})
            setSpace(Project.channel(), Role, OrvColorManager::acesCg());
        const OrvColor Color(0.6f, 0.4f, 0.25f);
        OrvLayer* pGroup = groupOfOneColor(Project, Color);
        OrvLayer* pPaint = Project.paint("Paint", OrvColor::white());
        pPaint->addMaskImageSet();
        OrvLayerStack* pMask = pPaint->convertMaskToMaskStack();
        const auto yields = [&](const OrvColor& Wanted) {
            return OrvTestProject::same(Project.pixel(pGroup->contentNode()), Wanted, 1e-4f);
        };
        QVERIFY(yields(inAcesCg(Color)) && !yields(Color));
        OrvSnBaseNode* pTarget = pMask->layerList().first()->blendNode();
        QVERIFY(OrvLayerStreamUtils::insertLayerAfter(pGroup, pTarget, pMask));
        QVERIFY(yields(Color));
        Project.undo();
        QVERIFY(yields(inAcesCg(Color)));
    }

    void sharersAdjustASharedGroupInTheirOwnSpace()
    {
        OrvTestProject Project(QSize(16, 16));
        OrvShaderInput* pOther = Project.addChannel("Other", QSize(16, 16));
        setSpace(pOther, OrvColorSpaceConfig::WorkingSpace, OrvColorManager::acesCg());
        const OrvColor Color(0.6f, 0.4f, 0.25f), There = inAcesCg(Color);
        const auto inverted = [](const OrvColor& Of) {
            return OrvColor(1.0f - Of.red(), 1.0f - Of.green(), 1.0f - Of.blue());
        };
        const auto shows = [&](const OrvColor& Here, const OrvColor& Elsewhere) {
            return OrvTestProject::same(Project.pixel(), Here, 1e-4f)
                && OrvTestProject::same(Project.pixel(pOther->node()), Elsewhere, 1e-4f);
        };
        OrvLayer* pGroup = groupOfOneColor(Project, Color);
        QVERIFY(pGroup->addSharedLayerAfter(pOther->bottomNode(), QString(), true));
        OrvLayer* pSharer = pOther->layerList().first();
        QVERIFY(shows(Color, There));
        for (OrvLayer* pLayer : {pGroup, pSharer})
            QVERIFY(pLayer->addLayerAdjustmentLayerFromKey("Filter/Adjust/Invert Linear"));
        QVERIFY(shows(inverted(Color), inverted(There)));
        setSpace(pOther, OrvColorSpaceConfig::WorkingSpace, OrvColorManager::linear());
        QVERIFY(shows(inverted(Color), inverted(Color)));
        Project.undo();
        QVERIFY(shows(inverted(Color), inverted(There)));
        for (OrvLayer* pLayer : {pGroup, pSharer})
            pLayer->setAdjustmentStackEnabled(false);
        QVERIFY(shows(Color, There));
        Project.channel()->deleteLayers({pGroup});
        QVERIFY(shows(OrvColor::clear(), There));
    }

    void lockedAndSharedImagesComeAlongOnlyWhenAsked()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvShaderInput* pOther = OrvTestProject::addChannel("Other", QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvLayer* pFree = Project.paint("Free", OrvColor(0.2f, 0.2f, 0.2f));
        OrvLayer* pLocked = Project.paint("Locked", OrvColor(0.4f, 0.4f, 0.4f));
        OrvLayer* pShared = Project.paint("Shared", OrvColor(0.6f, 0.6f, 0.6f));
        QVERIFY(pShared->addSharedLayerAfter(pOther->bottomNode(), QString(), true));
        pLocked->setLocked(true);
        const auto depths = [&] {
            QList<GLenum> Depths;
            for (const OrvLayer* pLayer : {pFree, pLocked, pShared})
                Depths.append(pLayer->paintImageSet()->format().Depth);
            return Depths;
        };
        const GLenum Bytes = GL_UNSIGNED_BYTE, Half = GL_HALF_FLOAT;
        QVERIFY(Project.channel()->convertDepthTo(Half, Free));
        QCOMPARE(depths(), QList<GLenum>({Half, Bytes, Bytes}));
        QCOMPARE(Project.channel()->imageSetDepth(), Half);
        const QByteArray Document = OrvTestProject::document();
        QVERIFY(Project.channel()->convertDepthTo(Half, All));
        QCOMPARE(depths(), QList<GLenum>({Half, Half, Half}));
        QVERIFY(pLocked->isLocked());
        QCOMPARE(pOther->imageSetDepth(), Bytes);
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pOther->node()), OrvColor(0.6f, 0.6f, 0.6f)));
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
    }

    void colorSpacesThereAndBack_data()
    {
        QTest::addColumn<int>("Depth");
        QTest::addColumn<QString>("Space");
        QTest::addColumn<float>("Within");
        QTest::newRow("float to ACEScg") << int(GL_FLOAT) << OrvColorManager::acesCg() << 1e-5f;
        QTest::newRow("float to sRGB") << int(GL_FLOAT) << OrvColorManager::srgb() << 1e-5f;
        QTest::newRow("half to sRGB") << int(GL_HALF_FLOAT) << OrvColorManager::srgb() << 1e-3f;
        QTest::newRow("half to ACEScg") << int(GL_HALF_FLOAT) << OrvColorManager::acesCg() << 2e-3f;
        QTest::newRow("float to raw") << int(GL_FLOAT) << OrvColorManager::raw() << 0.0f;
        QTest::newRow("bytes to raw") << int(GL_UNSIGNED_BYTE) << OrvColorManager::raw() << 0.0f;
    }
    void colorSpacesThereAndBack()
    {
        QFETCH(int, Depth);
        QFETCH(QString, Space);
        QFETCH(float, Within);
        OrvTestProject Project(QSize(16, 16), GLenum(Depth));
        OrvShaderInput* pChannel = Project.channel();
        const QString Own = pChannel->colorSpaceConfig().colorSpace();
        OrvLayer* pUniform = Project.paint("Uniform", OrvColor(0.5f, 0.25f, 0.125f, 0.5f));
        OrvImageSet* pPaint = Project.paint("Paint")->paintImageSet();
        std::vector<float> Ramp;
        for (int Index = 0; Index < 256; ++Index)
            Ramp.insert(Ramp.end(), {Index / 255.0f, 0.3f, 1.0f - Index / 255.0f, 0.5f});
        pPaint->buffer().write(pPaint->extent(), LinearColor, Ramp.data());
        const std::vector<float> Before = lightOf(pPaint);
        const QByteArray Document = OrvTestProject::document();

        QVERIFY(pChannel->convertColorSpaceTo(Space, Free));
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), Space);
        QCOMPARE(pPaint->format(), pChannel->paintFormat());
        QVERIFY(pChannel->convertColorSpaceTo(Own, Free));
        QVERIFY(greatestDifference(lightOf(pPaint), Before) <= Within);
        QVERIFY(OrvTestProject::same(
            pUniform->paintImageSet()->fillColor(), OrvColor(0.5f, 0.25f, 0.125f, 0.5f), 1e-5f));
        OrvTestProject::undo();
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
    }

    void rawKeepsTheStoredNumbers()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvImageSet* pPaint = Project.paint("Paint")->paintImageSet();
        const std::vector<uchar> Bytes = everyByte();
        pPaint->buffer().write(pPaint->extent(), pPaint->format(), Bytes.data());
        QVERIFY(Project.channel()->convertColorSpaceTo(OrvColorManager::raw(), Free));
        QCOMPARE(pPaint->format().Curve, OrvPixelFormat::Linear);
        QVERIFY(bytesOf(pPaint) == Bytes);
    }

    void cancellingAndRefusingLeaveNothing()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        OrvShaderInput* pChannel = Project.channel();
        for (const char* pName : {"A", "B", "C"})
            OrvTestProject::fill(Project.paint(pName)->paintImageSet(), QRect(0, 0, 9, 9), OrvColor::white());
        const QByteArray Document = OrvTestProject::document();
        const int Steps = OrvUndoManager::instance().stack()->count();
        {
            const Cancelling Soon(1);
            QVERIFY(!pChannel->convertDepthTo(GL_FLOAT, Free));
            QVERIFY(!pChannel->convertColorSpaceTo(OrvColorManager::acesCg(), Free));
            QVERIFY(!pChannel->resizeLayers(8));
            QVERIFY(!pChannel->flattenUI());
        }
        const Refusals Told;
        QVERIFY(!pChannel->convertDepthTo(GL_INT, Free));
        QVERIFY(!pChannel->convertColorSpaceTo("Nowhere", Free));
        QVERIFY(Told.last().contains("Nowhere"));
        QVERIFY(!pChannel->resizeLayers(0));
        QVERIFY(!pChannel->resizeLayers(40000));
        QCOMPARE(Told.size(), 4);
        QCOMPARE(OrvUndoManager::instance().stack()->count(), Steps);
        QCOMPARE(OrvTestProject::document(), Document);

        pChannel->setLocked(true);
        const QByteArray Locked = OrvTestProject::document();
        QVERIFY(!pChannel->convertDepthTo(GL_FLOAT, Free));
        QVERIFY(!pChannel->resizeLayers(8));
        QVERIFY(!pChannel->flattenUI());
        QVERIFY(!OrvShaderInputUtils::cutToClipboard(pChannel, 0));
        QCOMPARE(Told.size(), 8);
        QCOMPARE(OrvTestProject::document(), Locked);
        QVERIFY(pChannel->convertDepthTo(GL_FLOAT, All));
        QVERIFY(!OrvUndoManager::instance().isInMacro());
    }

    /// A channel in a space of a configuration that is broken by now.
    void brokenColorConfiguration()
    {
        const QTemporaryDir Folder;
        OrvTestProject Project(QSize(16, 16), GL_FLOAT);
        OrvShaderInput* pChannel = Project.channel();
        OrvTestProject::fill(Project.paint("A")->paintImageSet(), QRect(0, 0, 16, 16), OrvColor::white());
        OrvColorSpaceConfig Config = pChannel->colorSpaceConfig();
        Config.setColorSpace(OrvColorSpaceConfig::NativeSpace, "Studio");
        pChannel->setColorSpaceConfig(Config, true);
        QFile File(Folder.filePath("broken.ocio"));
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write("ocio_profile_version: 2\nroles: [nonsense");
        File.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("broken\\.ocio"));
        qputenv("OCIO", QFile::encodeName(File.fileName()));
        OrvColorManager::reloadConfiguration();

        const QByteArray Document = OrvTestProject::document();
        const Refusals Told;
        QVERIFY(!pChannel->convertColorSpaceTo(OrvColorManager::srgb(), Free));
        QVERIFY2(Told.last().contains("Studio") && Told.last().contains("broken.ocio"), qPrintable(Told.last()));
        QCOMPARE(OrvTestProject::document(), Document);
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), QString("Studio"));
        // The depth has nothing to do with it.
        QVERIFY(pChannel->convertDepthTo(GL_HALF_FLOAT, Free));
        QCOMPARE(pChannel->colorSpaceConfig().colorSpace(), QString("Studio"));
        QVERIFY(OrvTestProject::same(Project.pixel(), OrvColor::white()));
        qunsetenv("OCIO");
        OrvColorManager::reloadConfiguration();
    }

    void resizingTakesAllLayersAndKeepsOtherChannels()
    {
        OrvTestProject Project(QSize(32, 32), GL_FLOAT);
        OrvShaderInput* pOther = OrvTestProject::addChannel("Other", QSize(32, 32));
        OrvLayer* pLocked = Project.paint("Locked", OrvColor(0.5f, 0.5f, 0.5f));
        OrvTestProject::fill(pLocked->paintImageSet(), QRect(0, 0, 16, 32), OrvColor::white());
        pLocked->setLocked(true);
        OrvLayer* pInside = Project.paint("Inside");
        pInside->addMaskImageSet();
        Project.group("Group", {pInside});
        OrvLayer* pShared = Project.paint("Shared");
        QVERIFY(pShared->addSharedLayerAfter(pOther->bottomNode(), QString(), true));
        const QByteArray Document = OrvTestProject::document();

        QVERIFY(Project.channel()->resizeLayers(64, nullptr, true, true));
        QCOMPARE(Project.channel()->imageSetSize(), QSize(64, 64));
        QCOMPARE(pLocked->paintImageSet()->imageSetSize(), QSize(64, 64));
        QCOMPARE(pInside->maskImageSet()->imageSetSize(), QSize(64, 64));
        QCOMPARE(pShared->paintImageSet()->imageSetSize(), QSize(32, 32));
        QVERIFY(OrvTestProject::same(Project.pixel(QPoint(20, 60)), OrvColor::white()));
        QVERIFY(OrvTestProject::same(Project.pixel(QPoint(50, 60)), OrvColor(0.5f, 0.5f, 0.5f)));
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
        QVERIFY(OrvTestProject::same(Project.pixel(QPoint(20, 20)), OrvColor(0.5f, 0.5f, 0.5f)));
    }

    void flattenedChannelLooksTheSame()
    {
        OrvTestProject Project(QSize(16, 16), GL_FLOAT);
        OrvShaderInput* pChannel = Project.channel();
        Project.paint("Base", OrvColor(0.2f, 0.4f, 0.6f));
        OrvLayer* pInside = Project.paint("Inside", OrvColor(1.0f, 0.0f, 0.0f, 0.5f));
        OrvLayer* pGroup = Project.group("Group", {pInside});
        pGroup->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.5);
        OrvLayerManager::instance().setCurrentLayer(OrvTestProject::network(), pInside);
        OrvTestProject::fill(
            Project.paint("Half")->paintImageSet(), QRect(0, 0, 8, 16), OrvColor(0.0f, 1.0f, 0.0f, 0.25f));
        const OrvColor Left = Project.pixel(), Right = Project.pixel(QPoint(12, 3));
        const QByteArray Document = OrvTestProject::document();
        QSignalSpy Removals(&OrvLayerManager::instance(), &OrvLayerManager::layersRemoved);

        QVERIFY(QMetaObject::invokeMethod(pChannel, "flattenUI"));
        QCOMPARE(Project.tree(), QString("Diffuse"));
        QVERIFY(OrvTestProject::same(Project.pixel(), Left, 1e-5f));
        QVERIFY(OrvTestProject::same(Project.pixel(QPoint(12, 3)), Right, 1e-5f));
        QCOMPARE(OrvUndoManager::instance().stack()->undoText(),
            QString("Flatten Channel : %1").arg(pChannel->path()));
        QCOMPARE(Removals.size(), 1);
        // Node, bottom, merge and paint: nothing stays behind.
        int Nodes = 0;
        for (const OrvSnBaseNode* pNode : OrvTestProject::network()->nodes())
            Nodes += pNode->hasTag("_shader") ? 0 : 1;
        QCOMPARE(Nodes, 4);
        QCOMPARE(OrvLayerManager::instance().currentLayer(), pChannel->layerList().first());

        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
        QVERIFY(OrvTestProject::same(Project.pixel(), Left, 1e-5f));
        OrvTestProject::redo();
        QCOMPARE(Project.tree(), QString("Diffuse"));
    }

    void flatteningAsksOnlyWhenSomethingIsLost()
    {
        OrvTestProject Project(QSize(16, 16), GL_FLOAT);
        OrvShaderInput* pChannel = Project.channel();
        const Refusals Told;
        QVERIFY(!pChannel->flattenUI());
        QCOMPARE(Told.size(), 1);

        QStringList Questions;
        bool Answer = false;
        OrvChannelFlattening::setQuestion([&](const QString&, const QString& Text) {
            Questions.append(Text);
            return Answer;
        });
        OrvLayer* pHidden = Project.paint("Hidden", OrvColor::white());
        Project.paint("Shown", OrvColor(0.5f, 0.5f, 0.5f, 0.5f));
        pHidden->blendNode()->setEnabledAsBool(false);
        QVERIFY(!pChannel->flattenUI());
        QCOMPARE(Questions.size(), 1);
        QVERIFY(Questions.first().contains("hidden"));
        QCOMPARE(Project.tree(), QString("Shown Hidden"));
        pHidden->blendNode()->setEnabledAsBool(true);
        pHidden->setLocked(true);
        Answer = true;
        QVERIFY(pChannel->flattenUI());
        QCOMPARE(Questions.size(), 2);
        QVERIFY(Questions.last().contains("locked"));
        QVERIFY(pChannel->flattenUI());
        QCOMPARE(Questions.size(), 2);
    }

    void copiedChannelsArePastedWithAllTheyHold()
    {
        OrvTestProject Project(QSize(16, 16), GL_HALF_FLOAT);
        OrvShaderInput* pChannel = Project.channel();
        OrvLayer* pLayer = Project.paint("Paint", OrvColor(0.5f, 0.5f, 0.5f));
        OrvTestProject::fill(pLayer->paintImageSet(), QRect(0, 0, 4, 4), OrvColor(1.0f, 0.0f, 0.0f));
        QVERIFY(OrvShaderInputUtils::copyToClipboard(pChannel));
        const QByteArray Document = OrvTestProject::document();

        QString Error;
        OrvShaderInput* pPasted = OrvShaderInputUtils::pasteFromClipboard(Error, OrvTestProject::network());
        QVERIFY2(pPasted, qPrintable(Error));
        QCOMPARE(pPasted->name(), QString("Diffuse 2"));
        QCOMPARE(pPasted->imageSetDepth(), GLenum(GL_HALF_FLOAT));
        QCOMPARE(channels().currentShaderInput(), pPasted);
        QCOMPARE(OrvTestProject::tree(pPasted), QString("Paint"));
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pPasted->node()), OrvColor(1.0f, 0.0f, 0.0f)));
        // A copy, not a view: what happens to it happens to it alone.
        OrvTestProject::fill(
            pPasted->layerList().first()->paintImageSet(), QRect(0, 0, 16, 16), OrvColor::white());
        QVERIFY(OrvTestProject::same(Project.pixel(), OrvColor(1.0f, 0.0f, 0.0f)));
        OrvTestProject::undo();
        QCOMPARE(OrvTestProject::document(), Document);
    }

    void cutChannelComesBackByUndoAndInAnotherProject()
    {
        QByteArray Bytes;
        {
            OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
            OrvShaderInput* pShared = OrvTestProject::addChannel("Dirt", QSize(16, 16), GL_UNSIGNED_BYTE);
            Project.paint("Grain", OrvColor(0.0f, 0.0f, 1.0f), pShared);
            Project.paint("Paint", OrvColor(1.0f, 0.0f, 0.0f, 0.5f));
            QVERIFY(Project.paint("Dirt")->blendNode()->connectInput(OrvSnNames::Over, pShared->node()));
            const QByteArray Document = OrvTestProject::document();
            QVERIFY(OrvShaderInputUtils::cutToClipboard(Project.channel(), 0));
            QVERIFY(!OrvTestProject::channel("Diffuse"));
            QCOMPARE(channels().currentShaderInput(), pShared);
            OrvTestProject::undo();
            QCOMPARE(OrvTestProject::document(), Document);
            Bytes = QGuiApplication::clipboard()->mimeData()->data(ChannelMimeType);
        }
        // As another process, which is told the bytes.
        setClipboardBytes(Bytes);
        OrvTestProject Project(QSize(32, 32));
        QString Error;
        OrvShaderInput* pPasted = OrvShaderInputUtils::pasteFromClipboard(Error, OrvTestProject::network());
        QVERIFY2(pPasted, qPrintable(Error));
        QCOMPARE(pPasted->imageSetSize(), QSize(16, 16));
        QCOMPARE(OrvTestProject::tree(pPasted), QString("Dirt[Grain] Paint"));
        QVERIFY(OrvTestProject::same(OrvTestProject::pixel(pPasted->node()), OrvColor(0.0f, 0.0f, 1.0f)));
    }

    void strangeClipboardContentsAreToldApart()
    {
        OrvTestProject Project(QSize(16, 16), GL_UNSIGNED_BYTE);
        Project.paint("Paint", OrvColor::white());
        const QByteArray Document = OrvTestProject::document();
        QString Error;
        QGuiApplication::clipboard()->clear();
        QVERIFY(!OrvShaderInputUtils::pasteFromClipboard(Error, OrvTestProject::network()));
        QVERIFY(Error.isEmpty());

        QVERIFY(OrvShaderInputUtils::copyToClipboard(Project.channel()));
        const QByteArray Good = QGuiApplication::clipboard()->mimeData()->data(ChannelMimeType);
        const auto textFor = [&](const QByteArray& Bytes) {
            setClipboardBytes(Bytes);
            Error.clear();
            return OrvShaderInputUtils::pasteFromClipboard(Error, OrvTestProject::network()) ? QString("pasted")
                                                                                               : Error;
        };
        QByteArray Newer = Good;
        Newer[7] = 9;
        QVERIFY(textFor(Newer).contains("newer version"));
        QVERIFY(textFor(QByteArray()).contains("damaged"));
        QVERIFY(textFor("rubbish").contains("damaged"));
        for (int Length = 0; Length < Good.size(); Length += 7)
            QVERIFY(!textFor(Good.left(Length)).isEmpty() && textFor(Good.left(Length)) != "pasted");
        QByteArray NoChannel = Good;
        NoChannel.replace("ShaderInput", "SomethingXY");
        QVERIFY(textFor(NoChannel).contains("damaged"));
        QCOMPARE(OrvTestProject::document(), Document);
        QCOMPARE(textFor(Good), QString("pasted"));
    }
};

QTEST_MAIN(TstChannelConversion)
#include "TstChannelConversion.moc"
