#include "Tests/Support/OrvTestProject.h"

#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Network/OrvContentScale.h"
#include "OrvCore/Network/OrvSnOperationNode.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvSnCustomProceduralNode.h"

#include <QtTest/QtTest>

namespace {

using Pixels = std::vector<float>;

constexpr int Reference = 2048;
/// Where pictures are compared, in pixels of the reference; not at the origin, where all sizes agree.
const QRect Place(1024, 768, 256, 256);

const QString Checkerboard = QStringLiteral("Procedural/Pattern/Checkerboard");
const QString Simplex = QStringLiteral("Procedural/Noise/Simplex Noise");

/// What stands at the place in a channel of that edge, the color's parts one after the other.
Pixels shown(const OrvSnBaseNode* pNode, int Edge, const QRect& Where = Place)
{
    const double Scale = double(Edge) / Reference;
    const QRect Region(qRound(Where.x() * Scale), qRound(Where.y() * Scale), qRound(Where.width() * Scale),
        qRound(Where.height() * Scale));
    Pixels Result(size_t(Region.width()) * Region.height() * 4);
    OrvNodeEvaluation::result(pNode)->render(
        Region, 1.0, {GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear}, Result.data());
    return Result;
}

/// A square picture brought to fewer pixels by averages.
Pixels averaged(const Pixels& Picture, int Edge)
{
    const int From = qRound(std::sqrt(double(Picture.size() / 4)));
    const int Step = From / Edge;
    Pixels Result(size_t(Edge) * Edge * 4, 0.0f);
    for (int Y = 0; Y < Edge * Step; ++Y) {
        for (int X = 0; X < Edge * Step; ++X) {
            for (int Part = 0; Part < 4; ++Part)
                Result[(size_t(Y / Step) * Edge + X / Step) * 4 + Part]
                    += Picture[(size_t(Y) * From + X) * 4 + Part] / (Step * Step);
        }
    }
    return Result;
}

/// How unlike two pictures are: 0 for the same one, about 1.4 for two that have nothing to do with each
/// other. Fine lines and hard edges come out softer where pixels are brought to another size.
double unlikeness(const Pixels& A, const Pixels& B)
{
    double Sum = 0.0, Squares = 0.0, Differences = 0.0;
    for (size_t Index = 0; Index < A.size(); Index += 4) {
        Sum += double(A[Index]);
        Squares += double(A[Index]) * A[Index];
        Differences += double(A[Index] - B[Index]) * (A[Index] - B[Index]);
    }
    const double Count = A.size() / 4.0;
    return std::sqrt(Differences / Count / std::max(1e-12, Squares / Count - Sum * Sum / Count / Count));
}

} // namespace

/// The same layers in channels of another size are the same picture.
class TstContentScale : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aResizedChannelShowsTheSame_data()
    {
        QTest::addColumn<QString>("Content");
        QTest::addColumn<QVariantMap>("Values");
        QTest::addColumn<int>("Edge");
        QTest::addColumn<double>("Within");
        const auto row = [](const char* pName, const QString& Content, const QVariantMap& Values, int Edge,
                             double Within) { QTest::newRow(pName) << Content << Values << Edge << Within; };
        row("simplex noise", Simplex, {{"scale", 0.3}, {"iterations", 3}}, 512, 0.2);
        row("larger simplex noise", Simplex, {{"scale", 0.3}, {"iterations", 3}}, 4096, 0.2);
        row("cell noise", "Procedural/Noise/Cell Noise", {{"scale", 0.3}}, 1024, 0.2);
        row("perlin noise", "Procedural/Noise/Perlin Noise", {}, 512, 0.1);
        row("larger perlin noise", "Procedural/Noise/Perlin Noise", {}, 4096, 0.05);
        row("checkers of whole pixels", Checkerboard, {{"x", 32}, {"y", 16}, {"x-offset", 4}}, 512, 0.01);
        row("checkers of parts of pixels", Checkerboard, {{"x", 30}, {"y", 29}, {"y-offset", 3}}, 512, 0.2);
        row("larger checkers", Checkerboard, {{"x", 30}, {"y", 29}}, 4096, 0.01);
        row("radial gradient", "Procedural/Gradient/Radial Gradient",
            {{"start-x", 1100.0}, {"start-y", 900.0}, {"end-x", 1150.0}, {"end-y", 900.0}}, 512, 0.1);
        row("text that is not wrapped", "Procedural/Basic/Text", {{"string", "MMMM"}, {"size", 1200.0}}, 512,
            0.2);
        row("rust", "Metal/Rust", {}, 512, 0.1);
        row("scratches", "Masks/Scratches", {}, 512, 0.4);
        row("concrete", "Surfaces/Concrete", {}, 1024, 0.3);
    }
    void aResizedChannelShowsTheSame()
    {
        QFETCH(QString, Content);
        QFETCH(QVariantMap, Values);
        QFETCH(int, Edge);
        QFETCH(double, Within);
        OrvTestProject Project(QSize(Reference, Reference));
        QString Error;
        OrvLayer* pLayer = Content.startsWith("Procedural/")
            ? Project.channel()->createProceduralLayer(Content, 0, nullptr)
            : Project.channel()->createCustomProceduralLayer(Content, nullptr, 0, Error);
        QVERIFY2(pLayer, qPrintable(Error));
        OrvSnBaseNode* pContent = Project.channel()->layerList().first()->contentNode();
        for (auto Value = Values.begin(); Value != Values.end(); ++Value)
            pContent->setUserAttributeValue(Value.key(), Value.value());
        const Pixels Before = shown(Project.channel()->node(), Reference);
        QVERIFY(Project.channel()->resizeLayers(Edge));
        const Pixels After = shown(Project.channel()->node(), Edge);
        const int Compared = Place.width() * std::min(Edge, Reference) / Reference;
        const double Found = unlikeness(averaged(Before, Compared), averaged(After, Compared));
        QVERIFY2(Found < Within, qPrintable(QString::number(Found)));
        Project.undo();
        QCOMPARE(shown(Project.channel()->node(), Reference), Before);
    }

    void adjustmentsReachAsFar_data()
    {
        QTest::addColumn<QString>("Filter");
        QTest::addColumn<QVariantMap>("Values");
        QTest::newRow("gaussian blur")
            << "Filter/Blur/Gaussian Blur" << QVariantMap{{"std-dev-x", 24.0}, {"std-dev-y", 12.0}};
        QTest::newRow("box blur") << "Filter/Blur/Box Blur" << QVariantMap{{"radius", 24}};
        QTest::newRow("translation") << "Filter/Transform/Translate"
                                     << QVariantMap{{"x", 40.0}, {"y", -24.0}};
        QTest::newRow("pixels") << "Filter/Stylize/Pixelize" << QVariantMap{{"size-x", 32}, {"size-y", 16}};
    }
    void adjustmentsReachAsFar()
    {
        QFETCH(QString, Filter);
        QFETCH(QVariantMap, Values);
        for (const bool OfLayer : {true, false}) {
            OrvTestProject Project(QSize(Reference, Reference), GL_UNSIGNED_BYTE);
            OrvLayer* pPaint = Project.paint("Paint", OrvColor(0.0f, 0.0f, 0.0f));
            for (int Square = 0; Square < 4; ++Square)
                Project.fill(pPaint->paintImageSet(),
                    QRect(1040 + Square * 64, 784 + Square % 2 * 96, 32, 64), OrvColor::white());
            OrvSnBaseNode* pFilter = nullptr;
            if (OfLayer) {
                pPaint->addLayerAdjustmentLayerFromKey(Filter);
                pFilter = pPaint->blendNode()->inputNode(OrvSnNames::Over);
                while (pFilter && !qobject_cast<OrvSnOperationNode*>(pFilter))
                    pFilter = pFilter->hasInput(OrvSnNames::Over) ? pFilter->inputNode(OrvSnNames::Over)
                                                                  : pFilter->preferredInputNode();
            } else {
                pFilter = Project.channel()->createAdjustmentLayer(Filter, 0)->contentNode();
            }
            QVERIFY(qobject_cast<OrvSnOperationNode*>(pFilter));
            for (auto Value = Values.begin(); Value != Values.end(); ++Value)
                pFilter->setUserAttributeValue(Value.key(), Value.value());
            const Pixels Before = shown(Project.channel()->node(), Reference);
            QVERIFY(Project.channel()->resizeLayers(512));
            const double Found = unlikeness(averaged(Before, 64), shown(Project.channel()->node(), 512));
            QVERIFY2(Found < 0.15, qPrintable(QString::number(Found)));
            Project.undo();
            QCOMPARE(shown(Project.channel()->node(), Reference), Before);
        }
    }

    /// A procedural that channels share is one picture, whatever sizes they have, and whoever shows it first.
    void channelsOfOtherSizesShareAProcedural_data()
    {
        QTest::addColumn<QString>("Content");
        QTest::newRow("checkers") << Checkerboard;
        QTest::newRow("rust") << "Metal/Rust";
    }
    void channelsOfOtherSizesShareAProcedural()
    {
        QFETCH(QString, Content);
        OrvTestProject Project(QSize(512, 512));
        OrvShaderInput* pLarge = Project.addChannel("Large", QSize(Reference, Reference), GL_FLOAT);
        QString Error;
        if (Content == Checkerboard)
            Project.channel()->createProceduralLayer(Content, 0, nullptr);
        else
            Project.channel()->createCustomProceduralLayer(Content, nullptr, 0, Error);
        OrvLayer* pSmallLayer = Project.channel()->layerList().first();
        OrvSnBaseNode* pContent = pSmallLayer->contentNode();
        if (Content == Checkerboard)
            pContent->setUserAttributeValue("x", 64);
        OrvLayer* pLargeLayer = Project.paint("Shown", OrvColor::clear(), pLarge);
        const Pixels Small = shown(Project.channel()->node(), 512);
        QVERIFY(pLargeLayer->blendNode()->connectInput(OrvSnNames::Over, pContent));
        QCOMPARE(shown(Project.channel()->node(), 512), Small);
        QVERIFY(unlikeness(Small, averaged(shown(pLarge->node(), Reference), 64)) < 0.25);
        Project.channel()->deleteLayers({pSmallLayer});
        QVERIFY(unlikeness(Small, averaged(shown(pLarge->node(), Reference), 64)) < 0.25);
        // Now that it stands there alone, its pixels follow the channel.
        QVERIFY(pLarge->resizeLayers(1024));
        QVERIFY(unlikeness(Small, averaged(shown(pLarge->node(), 1024), 64)) < 0.25);
    }

    void copiesInAChannelOfAnotherSizeLookTheSame()
    {
        OrvTestProject Project(QSize(Reference, Reference));
        OrvShaderInput* pSmall = Project.addChannel("Small", QSize(512, 512));
        OrvLayer* pNoise = Project.channel()->createProceduralLayer(Simplex, 0, nullptr);
        pNoise->contentNode()->setUserAttributeValue("scale", 0.3);
        OrvLayer* pChecker = Project.channel()->createProceduralLayer(Checkerboard, 0, nullptr);
        pChecker->contentNode()->setUserAttributeValue("x", 64);
        pChecker->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.5);
        OrvLayer* pBlur = Project.channel()->createAdjustmentLayer("Filter/Blur/Gaussian Blur", 0);
        pBlur->contentNode()->setUserAttributeValue("std-dev-x", 12.0);
        Project.select(Project.channel()->layerList());
        Project.channel()->copyToClipboard();
        OrvShaderInputManager::instance().makeShaderInputCurrent(pSmall, true);
        QString Error;
        QCOMPARE(pSmall->pasteFromClipboard(0, Error).size(), 3);
        const double Found = unlikeness(
            averaged(shown(Project.channel()->node(), Reference), 64), shown(pSmall->node(), 512));
        QVERIFY2(Found < 0.2, qPrintable(QString::number(Found)));
    }

    void aPtexFaceCountsAsATile()
    {
        OrvTestProject Project;
        OrvGeoEntity* pEntity = OrvProjectManager::instance().currentProject()->currentGeoEntity();
        pEntity->setPtex(true);
        pEntity->setFaceResolution(QSize(512, 512));
        OrvShaderInput* pFaces = Project.addChannel("Faces", QSize(64, 64));
        QCOMPARE(
            OrvContentScale::at(pFaces->createProceduralLayer(Simplex, 0, nullptr)->contentNode()).Lengths,
            0.25);
    }
};

QTEST_MAIN(TstContentScale)

#include "TstContentScale.moc"
