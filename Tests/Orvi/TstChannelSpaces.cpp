#include "Tests/Orvi/OrvTestCanvas.h"
#include "Tests/Orvi/OrvTestDocument.h"

#include "Orvi/OrvBrushTool.h"
#include "Orvi/OrvCanvasTools.h"
#include "Orvi/OrvChannelExport.h"
#include "Orvi/OrvImageImport.h"
#include "Orvi/OrvLayerImageExport.h"

#include "OrvCore/Channels/OrvChannelSpace.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvSnBakePointNode.h"
#include "OrvCore/Shaders/OrvFlatShading.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Files/OrvImageFiles.h"
#include "OrvDdi/Files/OrvUdimSet.h"

#include <QtTest/QSignalSpy>

using namespace OrvTestCanvas;

namespace {

constexpr int Edge = 32;
constexpr int BlendedRows = 6;
const OrvColor Plain(0.3f, 0.5f, 0.2f), Multiplied(0.8f, 0.25f, 0.5f);
constexpr int Free = OrvShaderInput::FreeImages, All = OrvShaderInput::AllImages;
const QRect Plane(0, 0, Edge, Edge);
const QString BaseColor = QStringLiteral("Base Color");
const OrvPixelFormat LinearColor{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};

using Pixels = std::vector<float>;

const char Studio[]
    = "ocio_profile_version: 2\nroles:\n  default: house\n  scene_linear: house\ndisplays:\n"
      "  d:\n    - !<View> {name: v, colorspace: house}\ncolorspaces:\n"
      "  - !<ColorSpace>\n    name: house\n"
      "  - !<ColorSpace>\n    name: wide\n    to_scene_reference: !<MatrixTransform> {matrix: [1.6, -0.5, -0.1, 0, "
      "-0.1, 1.2, -0.1, 0, 0, -0.2, 1.2, 0, 0, 0, 0, 1]}\n"
      "  - !<ColorSpace>\n    name: film\n    to_scene_reference: !<LogAffineTransform> {base: 10, log_side_slope: "
      "0.25, log_side_offset: 0.6, lin_side_slope: 1, lin_side_offset: 0.01, direction: inverse}\n"
      "  - !<ColorSpace>\n    name: video\n    to_scene_reference: !<ExponentTransform> {value: [2.4, 2.4, 2.4, 1]}\n";

Pixels rendered(OrvEngineNode* pResult)
{
    Pixels Made(Edge * Edge * 4);
    pResult->render(Plane, 1.0, LinearColor, Made.data());
    return Made;
}

Pixels ofFile(const QString& Path)
{
    OrvImageBuffer Buffer(Plane, LinearColor);
    Pixels Read(Edge * Edge * 4);
    QString Error;
    if (!OrvImageFiles::read(Path, Buffer, QPoint(), {}, Error))
        qWarning("%s", qUtf8Printable(Error));
    Buffer.read(Plane, LinearColor, Read.data());
    return Read;
}

/// Of colours that can be seen.
float difference(const Pixels& One, const Pixels& Other)
{
    float Greatest = One.size() == Other.size() ? 0.0f : 1e9f;
    for (std::size_t Index = 0; Index < std::min(One.size(), Other.size()); ++Index) {
        const float Alpha = One[Index | 3];
        const float Apart = std::abs(One[Index] - Other[Index]) * (Index % 4 == 3 ? 1.0f : Alpha);
        Greatest = std::isnan(Apart) ? 1e9f : std::max(Greatest, Apart);
    }
    return Greatest;
}

OrvColor pixel(const Pixels& Of, int X, int Y)
{
    const float* pPixel = Of.data() + (Y * Edge + X) * 4;
    return OrvColor(pPixel[0], pPixel[1], pPixel[2], pPixel[3]);
}

void setSpace(OrvShaderInput* pChannel, const QString& Space, int Role = OrvColorSpaceConfig::NativeSpace)
{
    OrvColorSpaceConfig Config = pChannel->colorSpaceConfig();
    Config.setColorSpace(Role, Space);
    pChannel->setColorSpaceConfig(Config, true);
}

void setWorkingSpace(OrvShaderInput* pChannel, const QString& Space)
{
    setSpace(pChannel, Space, OrvColorSpaceConfig::WorkingSpace);
}

} // namespace

/// Channels that store or blend colours in a space of their own: whoever takes pixels out of them, or puts some in, sees
/// the same colours as before.
class TstChannelSpaces : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QFile File(m_Document.filePath("studio.ocio"));
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write(Studio);
        File.close();
        qputenv("OCIO", QFile::encodeName(File.fileName()));
        OrvColorManager::reloadConfiguration();
        QVERIFY2(OrvColorManager::configurationError().isEmpty(), qPrintable(OrvColorManager::configurationError()));
        m_pTools = std::make_unique<OrvCanvasTools>();
        m_pCanvas = newCanvas(m_pTools.get());
    }
    void cleanup()
    {
        m_pCanvas.reset();
        m_pTools.reset();
        OrvProjectManager::instance().closeProject();
        qunsetenv("OCIO");
        OrvColorManager::reloadConfiguration();
    }

    void conversionsKeepThePicture_data()
    {
        QTest::addColumn<QString>("Space");
        QTest::addColumn<int>("Depth");
        QTest::addColumn<float>("Within");
        QTest::addColumn<bool>("Shared");
        QTest::addColumn<int>("Option");
        for (const char* pSpace : {"wide", "film", "video", "ACEScg", "sRGB"}) {
            QTest::newRow(qPrintable(QString("%1 float").arg(pSpace))) << QString(pSpace) << int(GL_FLOAT) << 2e-4f
                << true << All;
            QTest::newRow(qPrintable(QString("%1 half").arg(pSpace)))
                << QString(pSpace) << int(GL_HALF_FLOAT) << 6e-3f << false << Free;
        }
        QTest::newRow("wide, images left out") << "wide" << int(GL_FLOAT) << 2e-4f << true << Free;
        QTest::newRow("film, curved images left out")
            << "film" << int(GL_UNSIGNED_BYTE) << 2e-4f << true << Free;
        // A step of 8 bits where the curve is steepest; colours outside the wide space are none of its bytes.
        QTest::newRow("video bytes") << "video" << int(GL_UNSIGNED_BYTE) << 0.01f << true << All;
        QTest::newRow("ACEScg bytes") << "ACEScg" << int(GL_UNSIGNED_BYTE) << 0.012f << false << Free;
    }
    void conversionsKeepThePicture()
    {
        QFETCH(QString, Space);
        QFETCH(int, Depth);
        QFETCH(float, Within);
        QFETCH(bool, Shared);
        QFETCH(int, Option);
        makeDocument(GLenum(Depth), Shared);
        const QString Own = m_pChannel->colorSpaceConfig().colorSpace();
        const Views Before = views();
        QVERIFY2(m_Error.isEmpty(), qPrintable(m_Error));

        QVERIFY(m_pChannel->convertColorSpaceTo(Space, Option));
        QCOMPARE(m_pChannel->colorSpaceConfig().colorSpace(), Space);
        const Views Converted = views();
        QCOMPARE(differences(Converted, Before, Within), QString());
        QVERIFY(m_pChannel->convertColorSpaceTo(Own, Option));
        QCOMPARE(differences(views(), Before, Within), QString());

        OrvUndoManager::instance().undo();
        QCOMPARE(differences(views(), Converted, 1e-6f), QString());
        OrvUndoManager::instance().undo();
        QCOMPARE(differences(views(), Before, 0.0f), QString());
    }

    /// What nearly every channel is in costs nothing: there is no step to be done.
    void usualSpacesNeedNoSteps()
    {
        for (const GLenum Depth : {GLenum(GL_UNSIGNED_BYTE), GLenum(GL_FLOAT)}) {
            makeDocument(Depth);
            OrvEngineNode* pResult = OrvNodeEvaluation::result(m_pChannel->node());
            const auto read = [](const OrvSnBaseNode* pNode, const QString& Input) {
                return OrvNodeEvaluation::inputResult(pNode, Input);
            };
            QVERIFY(read(m_pShader->node(), BaseColor) == pResult);
            QVERIFY(read(m_pSharer->blendNode(), OrvSnNames::Over) == pResult);
            for (const OrvLayer* pLayer : {m_pSolid, m_pBase})
                QVERIFY(read(pLayer->blendNode(), OrvSnNames::Over)
                    == OrvNodeEvaluation::result(pLayer->overNode()));
            setSpace(m_pChannel, OrvColorManager::raw());
            QVERIFY(read(m_pShader->node(), BaseColor) == pResult);
            QVERIFY(read(m_pBase->blendNode(), OrvSnNames::Over)
                == OrvNodeEvaluation::result(m_pBase->paintNode()));
            setSpace(m_pChannel, "wide");
            QVERIFY(read(m_pShader->node(), BaseColor) == pResult);
            QVERIFY(read(m_pBase->blendNode(), OrvSnNames::Over)
                != OrvNodeEvaluation::result(m_pBase->paintNode()));
            setWorkingSpace(m_pChannel, "wide");
            QVERIFY(read(m_pShader->node(), BaseColor) != pResult);
            QVERIFY(read(m_pBase->blendNode(), OrvSnNames::Over)
                == OrvNodeEvaluation::result(m_pBase->paintNode()));
        }
    }

    /// The same numbers mean other colours.
    void configurationAloneChangesWhatIsShown()
    {
        makeDocument(GL_FLOAT);
        const Views Before = views();
        setSpace(m_pChannel, "wide");
        const Views After = views();
        QVERIFY(difference(After.Exported, Before.Exported) > 0.05f);
        QVERIFY(difference(After.Lit, Before.Lit) > 0.02f);
        QVERIFY(difference(After.Shared, Before.Shared) > 0.05f);
        QVERIFY(!areAlike(After.Canvas, Before.Canvas));
        OrvUndoManager::instance().undo();
        QCOMPARE(differences(views(), Before, 0.0f), QString());
    }

    void paintAndFilesComeInWithTheirColors()
    {
        const QColor Orange(230, 120, 40);
        QImage Picture(Edge, Edge, QImage::Format_RGB888);
        Picture.fill(Orange);
        const QString Path = m_Document.filePath("orange.png");
        QVERIFY(Picture.save(Path));
        for (const QString& Space : {QStringLiteral("wide"), QStringLiteral("film"), OrvColorManager::acesCg()}) {
            OrvShaderInput* pChannel = m_Document.newChannel(QSize(Edge, Edge), GL_FLOAT);
            setSpace(pChannel, Space);
            setWorkingSpace(pChannel, "video");
            m_Document.newPaintLayer(pChannel);
            OrvBrush Brush;
            Brush.setSize(20);
            Brush.setHardness(1.0);
            Brush.setColor(Orange);
            m_pTools->brushTool()->setBrush(Brush);
            QVERIFY(isSettled(m_pCanvas.get()));
            QTest::mouseClick(
                m_pCanvas.get(), Qt::LeftButton, Qt::NoModifier, m_pCanvas->toWidget({16, 16}).toPoint());
            QVERIFY2(isNear(shownAt(m_pCanvas.get(), {16, 16}), Orange), qPrintable(Space));

            OrvLayer* pLayer = OrvImageImport::importPaintLayer(pChannel, nullptr, OrvImageImport::AboveCurrent,
                OrvUdimSet::fromPaths({Path}).first(), {}, m_Error);
            QVERIFY2(pLayer, qPrintable(m_Error));
            QVERIFY2(isNear(shownAt(m_pCanvas.get(), {4, 4}), Orange), qPrintable(Space));
            const QString Out = m_Document.filePath("layer.exr");
            QVERIFY(OrvLayerImageExport::writeImages(*pLayer->paintImageSet(), {Out}, false, {}, m_Error));
            QVERIFY(difference(ofFile(Out), ofFile(Path)) < 2e-3f);
        }
    }

    void workingSpaceChangesBlendsAlone_data()
    {
        QTest::addColumn<QString>("Stored");
        QTest::addColumn<QString>("Working");
        QTest::addColumn<int>("Depth");
        QTest::addColumn<float>("Within");
        QTest::newRow("linear in ACEScg") << OrvColorManager::linear() << "ACEScg" << int(GL_FLOAT) << 2e-4f;
        QTest::newRow("sRGB bytes in wide") << OrvColorManager::srgb() << "wide" << int(GL_UNSIGNED_BYTE) << 0.012f;
        QTest::newRow("wide in film") << "wide" << "film" << int(GL_FLOAT) << 2e-4f;
        QTest::newRow("film in wide") << "film" << "wide" << int(GL_HALF_FLOAT) << 6e-3f;
        QTest::newRow("film as it is") << "film" << OrvColorManager::raw() << int(GL_FLOAT) << 2e-4f;
    }
    void workingSpaceChangesBlendsAlone()
    {
        QFETCH(QString, Stored);
        QFETCH(QString, Working);
        QFETCH(int, Depth);
        QFETCH(float, Within);
        makeDocument(GLenum(Depth));
        QVERIFY(m_pChannel->convertColorSpaceTo(Stored, Free));
        const Views Before = views();
        const auto opaque = [](const Pixels& Of) {
            Pixels Part;
            for (int Y = BlendedRows; Y < Edge; ++Y)
                Part.insert(Part.end(), Of.begin() + (Y * Edge + Edge / 2) * 4, Of.begin() + (Y + 1) * Edge * 4);
            return Part;
        };
        const auto isRight = [&](const Views& Seen) {
            const QString Space = Working == OrvColorManager::raw() ? Stored : Working;
            OrvColor Below = Plain, Above = Multiplied, Made;
            OrvColorManager::transform(Below, Below, OrvColorManager::linear(), Space);
            OrvColorManager::transform(Above, Above, OrvColorManager::linear(), Space);
            const auto blended = [](float Lower, float Upper) { return 0.5f * Lower + 0.5f * Lower * Upper; };
            Made = OrvColor(blended(Below.red(), Above.red()), blended(Below.green(), Above.green()),
                blended(Below.blue(), Above.blue()));
            OrvColorManager::transform(Made, Made, Space, OrvColorManager::linear());
            const OrvColor Shown = pixel(Seen.Exported, 20, 2);
            return std::abs(Shown.red() - Made.red()) < Within && std::abs(Shown.green() - Made.green()) < Within
                && std::abs(Shown.blue() - Made.blue()) < Within;
        };
        QVERIFY(!isRight(Before));
        setWorkingSpace(m_pChannel, Working);
        const Views After = views();
        QVERIFY(isRight(After));
        for (const auto Part : {&Views::Exported, &Views::Shared, &Views::Lit})
            QVERIFY(difference(opaque(After.*Part), opaque(Before.*Part)) < Within);
        // The pixels are those that were there.
        setWorkingSpace(m_pChannel, QString());
        QCOMPARE(differences(views(), Before, 0.0f), QString());
        OrvUndoManager::instance().undo();
        QCOMPARE(differences(views(), After, 0.0f), QString());

        // Another way of storing them leaves the blends alone, too.
        if (Working != OrvColorManager::raw()) {
            QVERIFY(m_pChannel->convertColorSpaceTo("video", All));
            QCOMPARE(differences(views(), After, std::max(Within, 0.012f)), QString());
            OrvUndoManager::instance().undo();
        }
        const QString Path = m_Document.filePath("working.orvi"), Out = m_Document.filePath("opened.exr");
        QVERIFY2(OrvProjectManager::instance().saveProjectAs(Path, m_Error), qPrintable(m_Error));
        OrvProjectManager::instance().closeProject();
        QVERIFY2(OrvProjectManager::instance().openProject(Path, m_Error), qPrintable(m_Error));
        const OrvProject* pProject = OrvProjectManager::instance().currentProject();
        for (OrvShaderInput* pChannel : OrvShaderInputManager::instance().getShaderInputsFromNetwork(
                 pProject->currentGeoEntity()->shaderNetwork())) {
            if (pChannel->name() != "Color")
                continue;
            QCOMPARE(pChannel->colorSpaceConfig().colorSpace(OrvColorSpaceConfig::WorkingSpace), Working);
            QVERIFY2(OrvChannelExport::writeChannel(pChannel, Out, {}, m_Error), qPrintable(m_Error));
        }
        QCOMPARE(difference(ofFile(Out), After.Exported), 0.0f);
    }

    /// Whatever is computed once and kept looks as before, and goes on to do so.
    void whatIsMadeOfLayersKeepsThePicture()
    {
        makeDocument(GL_FLOAT);
        QVERIFY(m_pChannel->convertColorSpaceTo("film", Free));
        setWorkingSpace(m_pChannel, "wide");
        OrvSnBakePointNode* pBakePoint
            = m_pChannel->createBakePointLayer(OrvTestDocument::LayerFlags)->bakePointNode();
        QString Error;
        const auto group = [&] {
            return m_pChannel->groupLayers(Error, OrvTestDocument::LayerFlags, {m_pMultiplied, m_pSolid, m_pImages});
        };
        const std::vector<std::pair<const char*, std::function<bool()>>> Ways{
            {"flattened channel", [&] { return m_pChannel->flattenUI(); }},
            {"merged layers",
                [&] {
                    m_pChannel->network()->selectNone();
                    for (OrvLayer* pLayer : {m_pMultiplied, m_pSolid, m_pImages})
                        pLayer->setSelected(true);
                    return m_pChannel->mergeLayers() != nullptr;
                }},
            {"group",
                [&] {
                    OrvLayer* pGroup = group();
                    OrvLayerStreamUtils::setLayerGroupPassThrough(pGroup->blendNode(), true);
                    return OrvLayerStreamUtils::flattenLayer(pGroup, nullptr) != nullptr;
                }},
            {"procedural", [&] { return m_pSolid->convertPayloadToImageSet(); }},
            {"adjustments", [&] { return m_pImages->convertAdjustmentStackToImageSet(); }},
            {"mask",
                [&] {
                    return m_pSolid->convertPayloadToImageSet() && m_pSolid->applyMask()
                        && m_pSolid->paintImageSet();
                }},
            {"bake point", [&] { return pBakePoint->bake(); }}};
        const Views Before = views();
        for (const auto& Way : Ways) {
            QUndoStack* pHistory = OrvUndoManager::instance().stack();
            const int Start = pHistory->index();
            QVERIFY2(Way.second(), Way.first);
            QVERIFY2(differences(views(), Before, 5e-4f).isEmpty(),
                qPrintable(QString(Way.first) + ": " + differences(views(), Before, 5e-4f)));
            QVERIFY2(m_pChannel->convertColorSpaceTo("ACEScg", Free), Way.first);
            QVERIFY2(differences(views(), Before, 5e-4f).isEmpty(),
                qPrintable(QString(Way.first) + ", converted: " + differences(views(), Before, 5e-4f)));
            pHistory->setIndex(Start);
            QCOMPARE(differences(views(), Before, 0.0f), QString());
        }
        QVERIFY(pBakePoint->bake() && pBakePoint->isBakedResultUpToDate(true));
        setWorkingSpace(m_pChannel, "ACEScg");
        QVERIFY(!pBakePoint->isBakedResultUpToDate(true));
    }

    /// What a custom procedural is made of is light, blended as such, wherever the procedural stands.
    void customProceduralsAreConvertedOnce()
    {
        QFile File(m_Document.filePath("two.orvproc"));
        QVERIFY(File.open(QIODevice::WriteOnly));
        File.write(R"({"orvproc": 1, "name": "Two", "type": "color", "nodes": [
            {"id": "below", "operation": "Procedural/Basic/Solid Color", "values": {"value": [0.2, 0.5, 0.3]}},
            {"id": "above", "operation": "Procedural/Basic/Solid Color", "values": {"value": [0.9, 0.1, 0.4]}},
            {"id": "both", "blend": "Multiply", "amount": 0.7, "base": "below", "over": "above"}],
            "output": "both"})");
        File.close();
        makeDocument(GL_FLOAT);
        QVERIFY2(m_pChannel->createCustomProceduralLayer(
                     File.fileName(), m_pMultiplied->blendNode(), OrvTestDocument::LayerFlags, m_Error),
            qPrintable(m_Error));
        const Views Before = views();
        for (const char* pSpace : {"ACEScg", "film"}) {
            setWorkingSpace(m_pChannel, pSpace);
            QCOMPARE(differences(views(), Before, 2e-4f), QString());
        }
    }

    /// Layers that several channels show are blended as one of them does; the others show the same.
    void sharedGroupsLookTheSameEverywhere()
    {
        makeDocument(GL_FLOAT, false);
        for (OrvShaderInput* pChannel : {m_pChannel, m_pOther})
            setWorkingSpace(pChannel, "ACEScg");
        QString Error;
        OrvLayer* pGroup = m_pChannel->groupLayers(
            Error, OrvTestDocument::LayerFlags, {m_pMultiplied, m_pSolid, m_pImages, m_pBase});
        QVERIFY2(pGroup, qPrintable(Error));
        QVERIFY(pGroup->addSharedLayerAfter(m_pOther->bottomNode(), QString(), true));
        const auto isSame = [&] {
            const Views Seen = views();
            return difference(Seen.Shared, Seen.Exported) < 2e-4f;
        };
        QVERIFY(isSame());
        const Pixels Before = views().Shared;
        for (OrvShaderInput* pChannel : {m_pChannel, m_pOther}) {
            setWorkingSpace(pChannel, "film");
            QVERIFY(isSame());
        }
        const Pixels InFilm = views().Shared;
        QVERIFY(difference(InFilm, Before) > 0.01f);
        setWorkingSpace(m_pOther, "ACEScg");
        QVERIFY(isSame());
        const Pixels Mixed = views().Shared;
        // Alone, each of them blends in its own space.
        m_pChannel->deleteLayers({pGroup});
        QVERIFY(difference(views().Shared, Before) < 2e-4f);
        OrvUndoManager::instance().undo();
        QVERIFY(isSame() && difference(views().Shared, Mixed) == 0.0f);
        m_pOther->deleteLayers(m_pOther->layerList());
        QVERIFY(difference(views().Exported, InFilm) < 2e-4f);
        OrvUndoManager::instance().undo();
        QVERIFY(isSame() && difference(views().Shared, Mixed) == 0.0f);
    }

    void otherSizesAreScaledAndConverted()
    {
        const OrvColor Color(0.6f, 0.4f, 0.25f);
        for (const QString& Space : {QStringLiteral("wide"), QStringLiteral("film")}) {
            OrvShaderInput* pSmall = m_Document.newChannel(QSize(Edge / 2, Edge / 2), GL_FLOAT);
            m_Document.newPaintLayer(pSmall, Color);
            QVERIFY(pSmall->convertColorSpaceTo(Space, Free));
            OrvShaderInput* pLarge = OrvShaderInputUtils::create(
                pSmall->network(), QStringLiteral("Large"), QSize(Edge, Edge), GL_FLOAT);
            const OrvLayer* pSharer = pLarge->createPaintableLayer(OrvColor::clear(), 0);
            QVERIFY(pSharer->blendNode()->connectInput(OrvSnNames::Over, pSmall->node()));
            Pixels Wanted;
            for (int Index = 0; Index < Edge * Edge; ++Index)
                Wanted.insert(Wanted.end(), Color.components(), Color.components() + 4);
            QVERIFY(difference(rendered(OrvNodeEvaluation::result(pLarge->node())), Wanted) < 1e-4f);
        }
    }

    void layersTakenElsewhereKeepTheirColors_data()
    {
        QTest::addColumn<QString>("From");
        QTest::addColumn<QString>("To");
        QTest::addColumn<int>("Depth");
        QTest::newRow("film to wide") << "film"
                                      << "wide" << int(GL_FLOAT);
        QTest::newRow("linear to film") << OrvColorManager::linear() << "film" << int(GL_HALF_FLOAT);
        QTest::newRow("bytes to wide") << OrvColorManager::srgb() << "wide" << int(GL_UNSIGNED_BYTE);
    }
    void layersTakenElsewhereKeepTheirColors()
    {
        QFETCH(QString, From);
        QFETCH(QString, To);
        QFETCH(int, Depth);
        const OrvColor Color(0.6f, 0.4f, 0.25f);
        Pixels Wanted;
        for (int Index = 0; Index < Edge * Edge; ++Index)
            Wanted.insert(Wanted.end(), Color.components(), Color.components() + 4);
        const auto shows = [&](const OrvShaderInput* pChannel) {
            Pixels Shown = rendered(OrvNodeEvaluation::result(pChannel->node()));
            return OrvColorManager::transformPixels(Shown.data(), Edge, Edge, 0,
                       OrvChannelSpace::ofChannel(pChannel), OrvColorManager::linear(), m_Error)
                && difference(Shown, Wanted) < 0.01f;
        };
        OrvShaderInput* pFrom = m_Document.newChannel(QSize(Edge, Edge), GLenum(Depth));
        OrvLayer* pLayer = m_Document.newPaintLayer(pFrom, Color);
        QVERIFY(pFrom->convertColorSpaceTo(From, Free));
        OrvShaderInput* pTo
            = OrvShaderInputUtils::create(pFrom->network(), "Elsewhere", QSize(Edge, Edge), GL_FLOAT);
        QVERIFY(pTo->convertColorSpaceTo(To, Free));
        using namespace OrvLayerStreamUtils;
        const std::vector<std::pair<const char*, std::function<bool()>>> Ways{
            {"copied", [&] { return addDuplicateLayerAbove(pLayer, pTo->bottomNode(), pTo) != nullptr; }},
            {"shared",
                [&] { return pLayer->addSharedLayerAfter(pTo->bottomNode(), QString(), true) != nullptr; }},
            {"pasted",
                [&] {
                    pFrom->network()->selectNone();
                    pLayer->setSelected(true);
                    pFrom->copyToClipboard();
                    QString Error;
                    return pTo->pasteFromClipboard(0, Error).size() == 1;
                }},
            {"moved", [&] { return insertLayersAfter({pLayer}, pTo->bottomNode(), pTo); }}};
        for (const auto& Way : Ways) {
            QVERIFY2(Way.second(), Way.first);
            QVERIFY2(shows(pTo), Way.first);
            QVERIFY2(pFrom->isEmpty() || shows(pFrom), Way.first);
            OrvUndoManager::instance().undo();
            QVERIFY2(pTo->isEmpty() && shows(pFrom), Way.first);
        }
        // There and back again it is what it was.
        QVERIFY(insertLayersAfter({pLayer}, pTo->bottomNode(), pTo));
        QVERIFY(insertLayersAfter({pLayer}, pFrom->bottomNode(), pFrom));
        QVERIFY(shows(pFrom));
        QCOMPARE(OrvChannelSpace::keptSpace(pLayer->paintNode()), QString());
    }

    void linearSpacesAreMatrices()
    {
        float Factors[9];
        for (const QString& Space : {QStringLiteral("wide"), OrvColorManager::acesCg()}) {
            QVERIFY(OrvColorManager::matrix(Space, OrvColorManager::linear(), Factors));
            QVERIFY(OrvColorManager::matrix(OrvColorManager::linear(), Space, Factors));
        }
        QVERIFY(!OrvColorManager::matrix("film", OrvColorManager::linear(), Factors));
        QVERIFY(!OrvColorManager::matrix("video", OrvColorManager::linear(), Factors));
    }

    void lostSpaceCountsAsLinear()
    {
        makeDocument(GL_FLOAT);
        const Views Linear = views();
        const QString Lost = QStringLiteral("wide");
        setSpace(m_pChannel, Lost);
        qunsetenv("OCIO");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("There is no color space 'wide'"));
        OrvColorManager::reloadConfiguration();
        QSignalSpy Told(&OrvLayerManager::instance(), &OrvLayerManager::refused);
        setSpace(m_pChannel, "ACEScg");
        setSpace(m_pChannel, Lost);
        QCOMPARE(differences(views(), Linear, 0.0f), QString());
        QCoreApplication::processEvents();
        QCOMPARE(Told.size(), 1);
        QVERIFY(Told.first().first().toString().contains("'wide' of 'Color'"));
        QCOMPARE(m_pChannel->colorSpaceConfig().colorSpace(), Lost);
    }

private:
    struct Views {
        QImage Canvas;
        Pixels Exported, Lit, Shared;
    };

    /// Opaque everywhere: a ramp in stored pixels under an adjustment on the left, a plane of one colour, a procedural
    /// in a corner. The topmost rows are multiplied by half.
    void makeDocument(GLenum Depth, bool Shared = true)
    {
        m_pChannel = m_Document.newChannel(QSize(Edge, Edge), Depth);
        m_pBase = m_Document.newPaintLayer(m_pChannel, Plain);
        m_pImages = m_Document.newPaintLayer(m_pChannel);
        OrvImageSet* pPaint = m_pImages->paintImageSet();
        Pixels Ramp;
        const int Width = Edge / 2;
        for (int Index = 0; Index < Width * Edge; ++Index) {
            const float Across = float(Index % Width) / (Width - 1), Down = float(Index / Width) / (Edge - 1);
            Ramp.insert(Ramp.end(), {0.3f + 0.3f * Across, 0.3f + 0.3f * Down, 0.5f - 0.2f * Across, 1.0f});
        }
        const QRect Left(0, 0, Width, Edge);
        pPaint->buffer().write(Left, LinearColor, Ramp.data());
        pPaint->pixelsWritten(Left);
        m_pSolid = m_pChannel->createProceduralLayer(
            QStringLiteral("Procedural/Basic/Solid Color"), OrvTestDocument::LayerFlags, m_pImages);
        QVERIFY(m_pSolid);
        m_pSolid->overNode()->setUserAttributeValue(
            QStringLiteral("value"), QVariant::fromValue(OrvColor(0.6f, 0.4f, 0.25f)));
        QVERIFY(m_pSolid->addMaskImageSet(OrvLayer::EmptyMask, OrvColor::clear()));
        m_pSolid->maskImageSet()->buffer().fill(OrvColor::white(), QRect(24, 24, 8, 8));
        m_pSolid->maskImageSet()->pixelsWritten(Plane);
        m_pImages->addLayerAdjustmentLayerFromKey("Filter/Adjust/Invert Linear");
        m_pMultiplied = m_Document.newPaintLayer(m_pChannel);
        m_pMultiplied->blendNode()->setUserAttributeValue(OrvMergeAttributes::BlendMode, "Multiply");
        m_pMultiplied->paintImageSet()->buffer().fill(
            OrvColor(Multiplied.red(), Multiplied.green(), Multiplied.blue(), 0.5f),
            QRect(0, 0, Edge, BlendedRows));
        m_pMultiplied->paintImageSet()->pixelsWritten(Plane);

        OrvShaderInput* pOther = OrvShaderInputUtils::create(
            m_pChannel->network(), QStringLiteral("Other"), QSize(Edge, Edge), GL_FLOAT);
        m_pSharer = pOther->createPaintableLayer(OrvColor::clear(), 0);
        if (Shared)
            QVERIFY(m_pSharer->blendNode()->connectInput(OrvSnNames::Over, m_pChannel->node()));
        m_pOther = pOther;
        m_pShader
            = OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), false);
        QVERIFY(m_pShader && m_pShader->setInputShaderInput(BaseColor, m_pChannel));
        OrvShaderInputManager::instance().makeShaderInputCurrent(m_pChannel, true);
        OrvUndoManager::instance().clear();
    }

    Views views()
    {
        Views Seen;
        isSettled(m_pCanvas.get());
        Seen.Canvas = m_pCanvas->grab().toImage();
        const QString Path = m_Document.filePath("channel.exr");
        if (!OrvChannelExport::writeChannel(m_pChannel, Path, {}, m_Error))
            return Seen;
        Seen.Exported = ofFile(Path);
        Seen.Lit = rendered(OrvFlatShading::result(m_pShader));
        Seen.Shared = rendered(OrvNodeEvaluation::result(m_pOther->node()));
        OrvColorManager::transformPixels(Seen.Shared.data(), Edge, Edge, 0, OrvChannelSpace::ofChannel(m_pOther),
            OrvColorManager::linear(), m_Error);
        return Seen;
    }

    /// What differs by more than that; empty when all is the same.
    static QString differences(const Views& One, const Views& Other, float Within)
    {
        QStringList Found;
        const auto look = [&](const Pixels& First, const Pixels& Second, const char* pWhere) {
            const float Apart = difference(First, Second);
            if (Apart > Within)
                Found.append(QString("%1 by %2").arg(pWhere).arg(double(Apart)));
        };
        look(One.Exported, Other.Exported, "export");
        look(One.Lit, Other.Lit, "lit");
        look(One.Shared, Other.Shared, "shared");
        if (!areAlike(One.Canvas, Other.Canvas))
            Found.append("canvas");
        return Found.join(", ");
    }

    const OrvTestDocument m_Document;
    std::unique_ptr<OrvCanvasTools> m_pTools;
    std::unique_ptr<OrvCanvas> m_pCanvas;
    OrvShaderInput* m_pChannel = nullptr;
    OrvShaderInput* m_pOther = nullptr;
    OrvLayer* m_pBase = nullptr;
    OrvLayer* m_pImages = nullptr;
    OrvLayer* m_pMultiplied = nullptr;
    OrvLayer* m_pSolid = nullptr;
    OrvLayer* m_pSharer = nullptr;
    OrvLayerShader* m_pShader = nullptr;
    QString m_Error;
};

QTEST_MAIN(TstChannelSpaces)

#include "TstChannelSpaces.moc"
