#include "OrvEngineFixture.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineRewiring.h"
#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Image/OrvImageResampling.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtTest/QtTest>

#include <atomic>
#include <functional>
#include <thread>

using namespace OrvEngineFixture;

namespace {

const QRect Canvas(0, 0, 300, 200);

/// The largest difference of premultiplied pixels at a reduced scale from the averages of those at full
/// scale.
float averagesOfFullScale(OrvEngineNode& Node, const QRect& Region, int Reduction)
{
    const QRect Full(Region.topLeft() * Reduction, Region.size() * Reduction);
    const std::vector<float> Pixels = rendered(Node, Full), Reduced = rendered(Node, Region, 1.0 / Reduction);
    const auto premultiplied = [](const std::vector<float>& From, int Pixel, int Component) {
        return From[size_t(Pixel * 4 + Component)] * (Component == 3 ? 1.0f : From[size_t(Pixel * 4 + 3)]);
    };
    float Largest = 0.0f;
    for (int Pixel = 0; Pixel < Region.width() * Region.height(); ++Pixel) {
        const QPoint First = QPoint(Pixel % Region.width(), Pixel / Region.width()) * Reduction;
        for (int Component = 0; Component < 4; ++Component) {
            float Sum = 0.0f;
            for (int Y = First.y(); Y < First.y() + Reduction; ++Y) {
                for (int X = First.x(); X < First.x() + Reduction; ++X)
                    Sum += premultiplied(Pixels, Y * Full.width() + X, Component);
            }
            const float Average = Sum / float(Reduction * Reduction);
            Largest = std::max(Largest, std::abs(premultiplied(Reduced, Pixel, Component) - Average));
        }
    }
    return Largest;
}

} // namespace

Q_DECLARE_METATYPE(OrvPixelFormat)

class TstEngine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsInTheBackground();
    void uniformIsLikePixels();
    void resultsInEveryFormat();
    void sharedContent();
    void connectionsChange();
    void nodesGoInAnyOrder();
    void extentsAndPasses();
    void fittedPictures_data();
    void fittedPictures();
    void zoomedPictures();
    void wholePicturesHideWhatIsBelow();
    void cachedResultsFollowEdits();
    void cachesSwitchedOffAndOn();
    void invalidatedRegions();
    void nothingIsToldOfEmptyLayers();
    void layersTellWhereTheyArePainted();
    void anyStacksTellWhatDiffers();
    void scaledViews();
    void highStacks();
    void smallerImages_data();
    void smallerImages();
    void hardEdges_data();
    void hardEdges();
    void reducedViewsFollowEdits();
    void operationsReadWhatIsNotComputed();
    void editsWhileRendering();
    void editsBetweenTurns();
    void nothingLeaks();
};

void TstEngine::startsInTheBackground()
{
    QVERIFY(!OrvEngine::isStarted());
    OrvEngine::warmUp();
    OrvEngine::warmUp();
    const OrvEngine::Lock Outer;
    const OrvEngine::Lock Inner;
    QVERIFY(OrvEngine::isStarted());
}

void TstEngine::uniformIsLikePixels()
{
    const OrvColor Color(2.0f, 0.25f, 0.5f, 0.5f);
    OrvImageBuffer Buffer(Canvas, floatColor());
    Buffer.fill(Color);
    const auto pPixels = source(Buffer), pUniform = uniform(Color, Canvas),
               pBase = source(picture(Canvas, 1));
    const QRect Region(-20, 100, 340, 140);
    QVERIFY(difference(rendered(*pPixels, Region), rendered(*pUniform, Region)) < 1e-6f);
    QCOMPARE(pUniform->boundingBox(), Canvas);
    for (OrvBlendMode Mode : {OrvBlendMode::Normal, OrvBlendMode::Divide}) {
        const auto pA = blend(pBase.get(), pPixels.get(), Mode),
                   pB = blend(pBase.get(), pUniform.get(), Mode);
        QVERIFY(difference(rendered(*pA, Region), rendered(*pB, Region)) < 1e-5f);
    }
    // Below an operation of the engine, which needs real pixels.
    const auto pA = operation("gegl:box-blur", pPixels.get()),
               pB = operation("gegl:box-blur", pUniform.get());
    QVERIFY(difference(rendered(*pA, Region), rendered(*pB, Region)) < 1e-5f);
    // Another colour and another extent.
    pUniform->setUniform(OrvColor::white(), QRect(0, 0, 10, 10));
    QCOMPARE(pixelOf(*pUniform, 9, 9), OrvColor::white());
    QCOMPARE(pixelOf(*pUniform, 10, 9), OrvColor::clear());
}

void TstEngine::resultsInEveryFormat()
{
    const auto pColor = uniform(OrvColor(0.5f, 0.25f, 1.0f, 0.5f), Canvas),
               pOver = uniform(OrvColor(1, 1, 1, 0), Canvas);
    const auto pTop = blend(pColor.get(), pOver.get());
    for (const auto Curve : {OrvPixelFormat::Linear, OrvPixelFormat::Srgb}) {
        for (const GLenum Depth : {GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT}) {
            for (const auto Kind : {OrvPixelFormat::Rgba, OrvPixelFormat::Scalar}) {
                const OrvPixelFormat Format{Depth, Kind, Curve};
                const QRect Region(290, 195, 20, 10); // half outside
                OrvImageBuffer Expected(Region, Format);
                Expected.fill(OrvColor::clear());
                OrvImageBuffer Source(Region, floatColor());
                Source.fill(OrvColor(0.5f, 0.25f, 1.0f, 0.5f), Canvas & Region);
                Expected = Source.converted(Format);
                QByteArray Result(20 * 10 * Format.bytesPerPixel(), 'x'), Wanted(Result.size(), 'x');
                pTop->render(Region, 1.0, Format, Result.data());
                Expected.read(Region, Format, Wanted.data());
                OrvImageBuffer Back(Region, Format);
                Back.write(Region, Format, Result.constData());
                std::vector<float> A(800), B(800);
                Back.read(Region, floatColor(), A.data());
                Expected.read(Region, floatColor(), B.data());
                QVERIFY(difference(A, B) < 1e-5f);
            }
        }
    }
    // A stride leaves what lies between the rows alone.
    std::vector<float> Pixels(2 * 5 * 4, -1.0f);
    pTop->render(QRect(0, 0, 3, 2), 1.0, floatColor(), Pixels.data(), 5 * 16);
    QCOMPARE(Pixels[8], 0.5f);
    QCOMPARE(Pixels[12], -1.0f);
    QCOMPARE(Pixels[20], 0.5f);
    QCOMPARE(Pixels[32], -1.0f);
    pTop->render(QRect(), 1.0, floatColor(), nullptr);
}

/// A blend with several readers, and a picture that is base and over at once.
void TstEngine::sharedContent()
{
    const auto pA = source(picture(Canvas, 1)), pB = source(picture(Canvas, 2, halfColor()));
    const auto pShared = blend(pA.get(), pB.get(), OrvBlendMode::Multiply);
    const auto pFirst = blend(pA.get(), pShared.get(), OrvBlendMode::Screen, 0.5f);
    const std::vector<float> Alone = rendered(*pFirst, Canvas);
    const auto pSecond = blend(pShared.get(), pShared.get(), OrvBlendMode::Difference);
    QVERIFY(difference(rendered(*pFirst, Canvas), Alone) < 1e-6f);
    QCOMPARE(pixelOf(*pSecond, 40, 50), OrvColor::black());
    QVERIFY(pixelOf(*pShared, 40, 50) != OrvColor::black());
    // A filter among the readers gets pixels, not a description of them.
    const auto pBlur = operation("gegl:box-blur", pShared.get());
    const std::vector<float> Blurred = rendered(*pBlur, Canvas);
    QVERIFY(pBlur->setParameter("radius", 0));
    QVERIFY(difference(rendered(*pBlur, Canvas), rendered(*pShared, Canvas)) < 1e-5f);
    QVERIFY(difference(Blurred, rendered(*pShared, Canvas)) > 0.01f);
}

void TstEngine::connectionsChange()
{
    const auto pRed = uniform(OrvColor(1, 0, 0), Canvas), pBlue = uniform(OrvColor(0, 0, 1), Canvas);
    const auto pTop = blend(pRed.get(), nullptr), pAbove = blend(pTop.get(), nullptr);
    QCOMPARE(pixelOf(*pAbove, 5, 5), OrvColor(1, 0, 0));
    pTop->connectInput(OrvEngineNode::Over, pBlue.get());
    QCOMPARE(pixelOf(*pAbove, 5, 5), OrvColor(0, 0, 1));
    OrvBlendParameters Off;
    Off.Enabled = false;
    pTop->setBlend(Off);
    QCOMPARE(pixelOf(*pAbove, 5, 5), OrvColor(1, 0, 0));
    pTop->connectInput(OrvEngineNode::Base, pBlue.get());
    QCOMPARE(pixelOf(*pAbove, 5, 5), OrvColor(0, 0, 1));
    pTop->connectInput(OrvEngineNode::Base, nullptr);
    QCOMPARE(pixelOf(*pAbove, 5, 5), OrvColor::clear());
    // Pads and settings of another kind of node are ignored.
    pRed->connectInput(OrvEngineNode::Base, pBlue.get());
    pRed->setBuffer(picture(Canvas, 1));
    pTop->setUniform(OrvColor::white(), Canvas);
    QVERIFY(!pTop->setParameter("radius", 3));
    QCOMPARE(pixelOf(*pRed, 5, 5), OrvColor(1, 0, 0));
    QVERIFY(!OrvEngineNode::createOperation("gegl:no-such-operation"));
    QVERIFY(!OrvEngineNode::createOperation(QString()));
}

void TstEngine::nodesGoInAnyOrder()
{
    for (int Order = 0; Order < 6; ++Order) {
        auto pSource = source(picture(Canvas, 1));
        auto pMiddle = blend(pSource.get(), pSource.get());
        auto pTop = blend(pMiddle.get(), pSource.get());
        pTop->connectInput(OrvEngineNode::Mask, pMiddle.get());
        pTop->setCached(Order % 2);
        rendered(*pTop, Canvas);
        std::unique_ptr<OrvEngineNode>* pNodes[] = {&pSource, &pMiddle, &pTop};
        for (int Index = 0; Index < 3; ++Index) {
            pNodes[(Order + Index * (Order < 3 ? 1 : 2)) % 3]->reset();
            if (pTop)
                rendered(*pTop, QRect(0, 0, 8, 8));
        }
    }
}

void TstEngine::extentsAndPasses()
{
    const auto pNoise = OrvEngineNode::createOperation("gegl:perlin-noise");
    QVERIFY(pNoise->boundingBox().width() > 100000);
    pNoise->setExtent(Canvas);
    QCOMPARE(pNoise->boundingBox(), Canvas);
    QCOMPARE(pixelOf(*pNoise, 300, 10), OrvColor::clear());
    QCOMPARE(pixelOf(*pNoise, 299, 199).alpha(), 1.0f);
    pNoise->setExtent(QRect());
    QCOMPARE(pixelOf(*pNoise, 300, 10).alpha(), 1.0f);

    // A blur spreads over the edge of the picture until it is cropped.
    const auto pSource = source(picture(Canvas, 1)), pBlur = operation("gegl:box-blur", pSource.get()),
               pBlurAgain = operation("gegl:gaussian-blur", pBlur.get());
    QVERIFY(pixelOf(*pBlur, -2, 50).alpha() > 0.0f);
    pBlur->setExtent(Canvas);
    QCOMPARE(pixelOf(*pBlur, -2, 50), OrvColor::clear());
    // What was cropped is not there for what follows.
    OrvImageBuffer Cropped(Canvas, floatColor());
    Cropped.write(Canvas, floatColor(), rendered(*pBlur, Canvas).data());
    const auto pCropped = source(Cropped), pExpected = operation("gegl:gaussian-blur", pCropped.get());
    QVERIFY(difference(rendered(*pBlurAgain, Canvas), rendered(*pExpected, Canvas)) < 1e-4f);

    const auto pPass = OrvEngineNode::createPass();
    QCOMPARE(pixelOf(*pPass, 5, 5), OrvColor::clear());
    pPass->connectInput(OrvEngineNode::Base, pSource.get());
    QVERIFY(difference(rendered(*pPass, Canvas), rendered(*pSource, Canvas)) < 1e-6f);
    // Between blends, above them, with several readers, cropped and cached: nothing but the crop changes
    // pixels.
    const auto pLayer = blend(pSource.get(), pCropped.get(), OrvBlendMode::Multiply);
    const auto pDirect = blend(pLayer.get(), pSource.get(), OrvBlendMode::Screen, 0.5f);
    const std::vector<float> Expected = rendered(*pDirect, Canvas);
    pPass->connectInput(OrvEngineNode::Base, pLayer.get());
    pDirect->connectInput(OrvEngineNode::Base, pPass.get());
    const auto pShown = OrvEngineNode::createPass(), pFiltered = operation("gegl:box-blur", nullptr);
    pShown->connectInput(OrvEngineNode::Base, pDirect.get());
    QVERIFY(difference(rendered(*pShown, Canvas), Expected) < 1e-6f);
    pFiltered->connectInput(OrvEngineNode::Base, pShown.get());
    QVERIFY(pFiltered->setParameter("radius", 0));
    QVERIFY(difference(rendered(*pFiltered, Canvas), Expected) < 1e-5f);
    pFiltered->connectInput(OrvEngineNode::Base, pPass.get());
    QVERIFY(difference(rendered(*pShown, Canvas), Expected) < 1e-6f);
    pPass->setCached(true);
    QVERIFY(difference(rendered(*pShown, Canvas), Expected) < 1e-6f);
    pPass->setCached(false);
    pShown->setExtent(QRect(10, 10, 20, 20));
    QCOMPARE(pShown->boundingBox(), QRect(10, 10, 20, 20));
    QVERIFY(difference(rendered(*pShown, QRect(10, 10, 20, 20)), rendered(*pDirect, QRect(10, 10, 20, 20)))
        < 1e-6f);
    QCOMPARE(pixelOf(*pShown, 9, 10), OrvColor::clear());
}

void TstEngine::fittedPictures_data()
{
    QTest::addColumn<QSize>("From");
    QTest::addColumn<QSize>("To");
    QTest::newRow("half") << QSize(128, 64) << QSize(64, 32);
    QTest::newRow("double") << QSize(64, 64) << QSize(128, 128);
    QTest::newRow("uneven") << QSize(90, 41) << QSize(33, 100);
}

void TstEngine::fittedPictures()
{
    QFETCH(QSize, From);
    QFETCH(QSize, To);
    const OrvUdimLayout FromLayout(From), ToLayout(To);
    for (const OrvPixelFormat& Format :
        {floatColor(), OrvPixelFormat{GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar}}) {
        OrvImageBuffer Pixels = picture(FromLayout.extent(), 1, Format);
        const auto pSource = source(Pixels), pFit = OrvEngineNode::createFit(FromLayout, ToLayout),
                   pBlur = operation("gegl:box-blur", pFit.get()), pTop = blend(pFit.get(), pBlur.get());
        pBlur->setParameter("radius", 3);
        QVERIFY(pFit->boundingBox().isEmpty());
        pFit->connectInput(OrvEngineNode::Base, pSource.get());
        QCOMPARE(pFit->boundingBox(), ToLayout.extent());
        const auto expected = [&] {
            return OrvImageResampling::fitted(Pixels.converted(floatColor()), FromLayout, ToLayout);
        };
        QVERIFY(
            difference(rendered(*pFit, ToLayout.extent()), rendered(*source(expected()), ToLayout.extent()))
            < 1e-4f);
        // Dabs reach what is cached above, and no less of it than they change.
        for (OrvEngineNode* pCached : {pFit.get(), pBlur.get(), pTop.get()})
            pCached->setCached(true);
        renderedInPieces(*pTop, ToLayout.extent());
        for (const QRect& Dab :
            {QRect(20, 20, 5, 7), QRect(0, 0, 1, 1), QRect(From.width() - 9, 30, 20, 20)}) {
            Pixels.fill(OrvColor(1.0f, 0.2f, 0.0f), Dab);
            pSource->pixelsWritten(Dab);
            const auto pFresh = source(expected()), pFreshBlur = operation("gegl:box-blur", pFresh.get()),
                       pFreshTop = blend(pFresh.get(), pFreshBlur.get());
            pFreshBlur->setParameter("radius", 3);
            QVERIFY(difference(
                        renderedInPieces(*pTop, ToLayout.extent()), rendered(*pFreshTop, ToLayout.extent()))
                < 1e-3f);
        }
        const QRect Half(0, 0, To.width() / 2, To.height() / 2);
        QVERIFY(difference(rendered(*pFit, Half, 0.5), rendered(*source(expected()), Half, 0.5)) < 0.01f);
    }
}

void TstEngine::zoomedPictures()
{
    const OrvColor Red(1, 0, 0), Green(0, 1, 0), Blue(0, 0, 1);
    OrvImageBuffer Pixels(Canvas, floatColor());
    Pixels.fill(Red, QRect(0, 0, 64, 200));
    Pixels.fill(Green, QRect(64, 0, 236, 200));
    const auto pSource = source(Pixels), pZoom = OrvEngineNode::createZoom(),
               pTop = blend(nullptr, pZoom.get());
    pZoom->connectInput(OrvEngineNode::Base, pSource.get());
    for (const double Scale : {2.0, 0.5, 1.0, 1.5}) {
        pZoom->setScale(Scale);
        for (const double Meaningless : {0.0, -2.0, qQNaN(), qInf()})
            pZoom->setScale(Meaningless);
        for (const double View : {1.0, 0.5}) {
            const auto at = [&](int X) {
                const std::vector<float> Pixel
                    = rendered(*pTop, QRect(int(X * Scale * View), int(50 * Scale * View), 1, 1), View);
                return OrvColor(Pixel[0], Pixel[1], Pixel[2], Pixel[3]);
            };
            QCOMPARE(at(52), Red);
            QCOMPARE(at(76), Green);
        }
    }
    // A dab is told where it shows.
    pZoom->setScale(2.0);
    pZoom->setExtent(QRect(0, 0, 512, 256));
    QCOMPARE(pTop->boundingBox(), QRect(0, 0, 512, 256));
    rendered(*pTop, Canvas);
    QRegion Told;
    pTop->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    Pixels.fill(Blue, QRect(20, 30, 8, 8));
    pSource->pixelsWritten(QRect(20, 30, 8, 8));
    const QRect Dab(40, 60, 16, 16);
    QVERIFY(Told.boundingRect().contains(Dab) && Dab.adjusted(-8, -8, 8, 8).contains(Told.boundingRect()));
    QCOMPARE(pixelOf(*pTop, 48, 68), Blue);
}

void TstEngine::wholePicturesHideWhatIsBelow()
{
    const auto pBase = source(picture(Canvas, 1)), pWhole = source(picture(QRect(0, 0, 150, 200), 2));
    const auto pMask = uniform(OrvColor::grey50(), Canvas);
    const auto pBlend = blend(pBase.get(), pWhole.get());
    OrvBlendParameters Parameters;
    Parameters.PassThrough = true;
    pBlend->setBlend(Parameters);
    QVERIFY(difference(rendered(*pBlend, Canvas), rendered(*pWhole, Canvas)) < 1e-6f);
    // What lets the base through makes it count again.
    const OrvColor Base = pixelOf(*pBase, 200, 5);
    for (const auto& change : std::vector<std::function<void()>>{[&] { Parameters.Amount = 0.5f; },
             [&] {
                 Parameters.Amount = 1.0f;
                 pBlend->connectInput(OrvEngineNode::Mask, pMask.get());
             }}) {
        change();
        pBlend->setBlend(Parameters);
        QVERIFY(std::abs(pixelOf(*pBlend, 200, 5).alpha() - 0.5f * Base.alpha()) < 0.01f);
    }
    Parameters.MaskEnabled = false;
    pBlend->setBlend(Parameters);
    QCOMPARE(pixelOf(*pBlend, 200, 5), OrvColor::clear());
    Parameters.Enabled = false;
    pBlend->setBlend(Parameters);
    QCOMPARE(pixelOf(*pBlend, 200, 5), Base);
}

/// Dabs below cached results: what is shown afterwards is what a new graph shows.
void TstEngine::cachedResultsFollowEdits()
{
    OrvImageBuffer Pixels = picture(Canvas, 1);
    const auto pSource = source(Pixels), pBase = source(picture(Canvas, 2));
    const auto pBlur = operation("gegl:gaussian-blur", pSource.get());
    pBlur->setParameter("std-dev-x", 4.0);
    const auto pSharpen = operation("gegl:unsharp-mask", pBlur.get());
    const auto pTop = blend(pBase.get(), pSharpen.get(), OrvBlendMode::Overlay);
    for (OrvEngineNode* pCached : {pBlur.get(), pSharpen.get(), pTop.get()})
        pCached->setCached(true);
    renderedInPieces(*pTop, Canvas, 20);
    const auto fresh = [&] {
        const auto pNewSource = source(Pixels), pNewBlur = operation("gegl:gaussian-blur", pNewSource.get());
        pNewBlur->setParameter("std-dev-x", 4.0);
        const auto pNewSharpen = operation("gegl:unsharp-mask", pNewBlur.get());
        return rendered(*blend(pBase.get(), pNewSharpen.get(), OrvBlendMode::Overlay), Canvas);
    };
    for (const QRect& Dab :
        {QRect(120, 120, 20, 16), QRect(0, 0, 3, 3), QRect(290, 190, 40, 40), QRect(140, 60, 1, 1)}) {
        Pixels.fill(OrvColor(3.0f, 0.0f, 1.0f), Dab);
        pSource->pixelsWritten(Dab);
        QVERIFY(difference(renderedInPieces(*pTop, Canvas, 20), fresh()) < 2e-3f);
    }
    // Parameters and connections below reach the caches as well.
    pBlur->setParameter("std-dev-x", 1.0);
    pBlur->setParameter("std-dev-x", 4.0);
    QVERIFY(difference(renderedInPieces(*pTop, Canvas, 20), fresh()) < 2e-3f);
    const auto pOther = source(picture(Canvas, 5)); // never computed before
    pBlur->connectInput(OrvEngineNode::Base, pOther.get());
    Pixels = picture(Canvas, 5);
    QVERIFY(difference(renderedInPieces(*pTop, Canvas, 20), fresh()) < 2e-3f);
}

void TstEngine::cachesSwitchedOffAndOn()
{
    OrvImageBuffer Pixels(Canvas, floatColor());
    Pixels.fill(OrvColor::white());
    const auto pSource = source(Pixels), pOver = uniform(OrvColor::clear(), Canvas);
    const auto pLayer = blend(pSource.get(), pOver.get()), pTop = blend(pLayer.get(), nullptr);
    pLayer->setCached(true);
    QCOMPARE(pixelOf(*pTop, 5, 5), OrvColor::white());
    pLayer->setCached(false);
    Pixels.fill(OrvColor::black());
    pSource->pixelsWritten(Canvas);
    QCOMPARE(pixelOf(*pTop, 5, 5), OrvColor::black());
    pLayer->setCached(true);
    QCOMPARE(pixelOf(*pTop, 5, 5), OrvColor::black());
    // Cached and switched off: the layer below shows.
    OrvBlendParameters Off;
    Off.Enabled = false;
    pLayer->setBlend(Off);
    QCOMPARE(pixelOf(*pTop, 6, 6), OrvColor::black());
    QCOMPARE(pixelOf(*pLayer, 7, 7), OrvColor::black());
}

void TstEngine::invalidatedRegions()
{
    OrvImageBuffer Pixels = picture(Canvas, 1);
    const auto pSource = source(Pixels), pColor = uniform(OrvColor::white(), Canvas),
               pMiddle = blend(pSource.get(), pColor.get()), pTop = blend(pMiddle.get(), nullptr);
    rendered(*pTop, Canvas);
    QRegion Told;
    pTop->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    pSource->pixelsWritten(QRect(10, 20, 30, 40));
    QCOMPARE(Told.boundingRect(), QRect(10, 20, 30, 40));
    Told = QRegion();
    pMiddle->setBlend(pMiddle ? OrvBlendParameters{OrvBlendMode::Multiply, 0.5f} : OrvBlendParameters());
    QVERIFY(Told.contains(Canvas));
    Told = QRegion();
    pMiddle->setBlend({OrvBlendMode::Multiply, 0.5f}); // nothing new
    QVERIFY(Told.isEmpty());
    // Below a blur the region grows by its radius.
    const auto pBlur = operation("gegl:box-blur", pMiddle.get()), pAbove = blend(pBlur.get(), nullptr);
    pBlur->setParameter("radius", 7);
    pAbove->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    pTop->setInvalidated({});
    Told = QRegion();
    pSource->pixelsWritten(QRect(100, 100, 1, 1));
    QVERIFY(Told.contains(QRect(93, 93, 15, 15)));
    QVERIFY(QRect(50, 50, 100, 100).contains(Told.boundingRect()));
    Told = QRegion();
    pSource->pixelsWritten(QRect());
    QVERIFY(Told.isEmpty());
}

/// Layers without pixels come, change and go, and nobody has to compute anything again.
void TstEngine::nothingIsToldOfEmptyLayers()
{
    using Input = OrvEngineRewiring::Input;
    const auto pBottom = source(picture(Canvas, 1)), pClear = uniform(OrvColor::clear(), Canvas),
               pUnpainted = source(OrvImageBuffer(Canvas, halfColor())),
               pColor = uniform(OrvColor::white(), Canvas);
    const auto pFirst = blend(pBottom.get(), pColor.get(), OrvBlendMode::Multiply, 0.5f),
               pTop = blend(pFirst.get(), nullptr), pView = OrvEngineNode::createPass();
    pView->connectInput(OrvEngineNode::Base, pTop.get());
    const std::vector<float> Before = rendered(*pView, Canvas);
    QRegion Told;
    pView->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    for (OrvEngineNode* pEmpty : {pClear.get(), pUnpainted.get()}) {
        auto pLayer = blend(nullptr, pEmpty), pGroup = blend(nullptr, nullptr);
        {
            const OrvEngineRewiring Insert({Input{pTop.get(), OrvEngineNode::Base}});
            pLayer->connectInput(OrvEngineNode::Base, pFirst.get());
            pTop->connectInput(OrvEngineNode::Base, pLayer.get());
        }
        OrvBlendParameters Parameters;
        Parameters.Mode = OrvBlendMode::Screen;
        pLayer->setBlend(Parameters);
        Parameters.Enabled = false;
        pLayer->setBlend(Parameters);
        pLayer->setBlend(OrvBlendParameters());
        {
            const OrvEngineRewiring MoveDown({Input{pTop.get(), OrvEngineNode::Base},
                Input{pLayer.get(), OrvEngineNode::Base}, Input{pFirst.get(), OrvEngineNode::Base}});
            for (OrvEngineNode* pNode : {pTop.get(), pLayer.get(), pFirst.get()})
                pNode->connectInput(OrvEngineNode::Base, nullptr);
            pLayer->connectInput(OrvEngineNode::Base, pBottom.get());
            pFirst->connectInput(OrvEngineNode::Base, pLayer.get());
            pTop->connectInput(OrvEngineNode::Base, pFirst.get());
        }
        {
            const OrvEngineRewiring Group(
                {Input{pFirst.get(), OrvEngineNode::Base}, Input{pLayer.get(), OrvEngineNode::Base}});
            pLayer->connectInput(OrvEngineNode::Base, nullptr);
            pGroup->connectInput(OrvEngineNode::Base, pBottom.get());
            pGroup->connectInput(OrvEngineNode::Over, pLayer.get());
            pFirst->connectInput(OrvEngineNode::Base, pGroup.get());
        }
        QVERIFY(Told.isEmpty());
        QVERIFY(difference(rendered(*pView, Canvas), Before) < 1e-6f);
        pGroup.reset(); // before whoever reads it is connected anew, as in an edit that is undone
        pLayer.reset();
        {
            const OrvEngineRewiring Remove({Input{pFirst.get(), OrvEngineNode::Base}});
            pFirst->connectInput(OrvEngineNode::Base, pBottom.get());
        }
        QVERIFY(Told.isEmpty());
        QVERIFY(difference(rendered(*pView, Canvas), Before) < 1e-6f);
    }
    // The first dab on it is told all the same, and so is a colour.
    {
        const OrvEngineRewiring Fill({Input{pTop.get(), OrvEngineNode::Over}});
        pTop->connectInput(OrvEngineNode::Over, pClear.get());
    }
    QVERIFY(Told.isEmpty());
    pClear->setUniform(OrvColor(1, 0, 0), QRect(5, 6, 7, 8));
    QCOMPARE(Told.boundingRect(), QRect(5, 6, 7, 8));
    QCOMPARE(pixelOf(*pView, 5, 6), OrvColor(1, 0, 0));
}

void TstEngine::layersTellWhereTheyArePainted()
{
    using Input = OrvEngineRewiring::Input;
    OrvImageBuffer Left(Canvas, halfColor()), Right(Canvas, halfColor());
    Left.fill(OrvColor(1, 0, 0, 0.5f), QRect(10, 10, 20, 20));
    Right.fill(OrvColor(0, 1, 0, 0.5f), QRect(280, 150, 5, 5));
    const QRect LeftTile(0, 0, 128, 128), RightTile(256, 128, 44, 72);
    const auto pBottom = source(picture(Canvas, 1)), pLeft = source(Left), pRight = source(Right),
               pLow = blend(pBottom.get(), pLeft.get()), pHigh = blend(pLow.get(), pRight.get()),
               pTop = blend(pHigh.get(), nullptr), pView = OrvEngineNode::createPass();
    pView->connectInput(OrvEngineNode::Base, pTop.get());
    std::vector<float> Shown = rendered(*pView, Canvas);
    QRegion Told;
    pView->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    // What was told lies within a rectangle, and all that differs within what was told.
    const auto told = [&](const QRect& Expected, int Margin = 0) {
        const std::vector<float> Now = rendered(*pView, Canvas);
        bool Missed = false;
        for (size_t Pixel = 0; Pixel < Now.size() / 4; ++Pixel) {
            const QPoint Position(int(Pixel) % Canvas.width(), int(Pixel) / Canvas.width());
            const auto First = Now.begin() + long(Pixel) * 4;
            Missed
                |= !std::equal(First, First + 4, Shown.begin() + long(Pixel) * 4) && !Told.contains(Position);
        }
        const QRect Bounds = Told.boundingRect();
        Told = QRegion();
        Shown = Now;
        return !Missed && Bounds.contains(Expected)
            && Expected.adjusted(-Margin, -Margin, Margin, Margin).contains(Bounds & Canvas);
    };
    OrvBlendParameters Hidden;
    Hidden.Enabled = false;
    pLow->setBlend(Hidden);
    QVERIFY(told(LeftTile));
    pLow->setBlend(OrvBlendParameters());
    QVERIFY(told(LeftTile));
    {
        // The upper layer changes places with the lower one.
        const OrvEngineRewiring Swap({Input{pTop.get(), OrvEngineNode::Base},
            Input{pHigh.get(), OrvEngineNode::Base}, Input{pLow.get(), OrvEngineNode::Base}});
        for (OrvEngineNode* pNode : {pTop.get(), pHigh.get(), pLow.get()})
            pNode->connectInput(OrvEngineNode::Base, nullptr);
        pHigh->connectInput(OrvEngineNode::Base, pBottom.get());
        pLow->connectInput(OrvEngineNode::Base, pHigh.get());
        pTop->connectInput(OrvEngineNode::Base, pLow.get());
    }
    QVERIFY(told(LeftTile | RightTile));
    {
        const OrvEngineRewiring Remove({Input{pTop.get(), OrvEngineNode::Base}});
        pTop->connectInput(OrvEngineNode::Base, pHigh.get());
    }
    QVERIFY(told(LeftTile));
    {
        const OrvEngineRewiring Replace({Input{pHigh.get(), OrvEngineNode::Over}});
        pHigh->connectInput(OrvEngineNode::Over, pLeft.get());
    }
    QVERIFY(told(LeftTile | RightTile));
    const auto pMask = uniform(OrvColor(0.5f, 0.5f, 0.5f), Canvas);
    {
        const OrvEngineRewiring Mask({Input{pHigh.get(), OrvEngineNode::Mask}});
        pHigh->connectInput(OrvEngineNode::Mask, pMask.get());
    }
    QVERIFY(told(LeftTile));
    {
        const OrvEngineRewiring Cut({Input{pHigh.get(), OrvEngineNode::Base}});
        pHigh->connectInput(OrvEngineNode::Base, nullptr);
    }
    QVERIFY(told(Canvas));
    // A group that passes through differs from what lies below it where its own layers are painted.
    const auto pInner = blend(pBottom.get(), pRight.get()), pGroup = blend(pBottom.get(), pInner.get());
    pTop->connectInput(OrvEngineNode::Base, pGroup.get());
    OrvBlendParameters PassThrough;
    PassThrough.PassThrough = true;
    pGroup->setBlend(PassThrough);
    told(Canvas);
    PassThrough.Enabled = false;
    pGroup->setBlend(PassThrough);
    QVERIFY(told(RightTile));
    // A blur shows a layer beyond its edges.
    const auto pBlur = operation("gegl:box-blur", pTop.get());
    pBlur->setParameter("radius", 20);
    pView->connectInput(OrvEngineNode::Base, pBlur.get());
    told(Canvas);
    PassThrough.Enabled = true;
    pGroup->setBlend(PassThrough);
    QVERIFY(told(RightTile.adjusted(-20, -20, 0, 0), 21));
}

/// Layers and groups that move about at random: all that differs has been told, and what is kept is up to
/// date.
void TstEngine::anyStacksTellWhatDiffers()
{
    struct Item {
        std::unique_ptr<OrvEngineNode> pBlend, pContent; ///< groups hold other items instead of a content
        OrvImageBuffer Pixels;
        OrvBlendParameters Parameters;
        int Group = -1; ///< the item around it
    };
    constexpr int GroupCount = 2, ItemCount = 9;
    std::vector<Item> Items(ItemCount);
    for (size_t Index = 0; Index < ItemCount; ++Index) {
        Item& One = Items[Index];
        One.pBlend = blend(nullptr, nullptr);
        One.Parameters.PassThrough = Index == 0;
        if (Index < GroupCount)
            continue;
        One.Pixels = Index == 2 ? picture(Canvas, 1) : OrvImageBuffer(Canvas, halfColor());
        One.pContent = source(One.Pixels);
        One.Parameters.Mode = Index % 2 ? OrvBlendMode::Multiply : OrvBlendMode::Normal;
    }
    const auto pMask = uniform(OrvColor(0.5f, 0.5f, 0.5f), QRect(0, 0, 200, 200));
    Items[5].pBlend->connectInput(OrvEngineNode::Mask, pMask.get());
    const auto pView = OrvEngineNode::createPass(), pKept = OrvEngineNode::createPass();
    pKept->setCached(true);

    std::vector<size_t> Order; // of all items, from the bottom up
    for (size_t Index = ItemCount; Index > 0; --Index)
        Order.push_back(Index - 1);
    using Link = std::pair<OrvEngineRewiring::Input, OrvEngineNode*>;
    std::vector<Link> Links;
    const std::function<OrvEngineNode*(int, OrvEngineNode*)> linkGroup
        = [&](int Group, OrvEngineNode* pBelow) {
              for (const size_t Index : Order) {
                  const Item& One = Items[Index];
                  if (One.Group != Group)
                      continue;
                  OrvEngineNode* pOver = One.pContent
                      ? One.pContent.get()
                      : linkGroup(int(Index), One.Parameters.PassThrough ? pBelow : nullptr);
                  Links.push_back({{One.pBlend.get(), OrvEngineNode::Base}, pBelow});
                  Links.push_back({{One.pBlend.get(), OrvEngineNode::Over}, pOver});
                  pBelow = One.pBlend.get();
              }
              return pBelow;
          };
    const auto rewire = [&] {
        Links.clear();
        OrvEngineNode* pTop = linkGroup(-1, nullptr);
        for (OrvEngineNode* pReader : {pView.get(), pKept.get()})
            Links.push_back({{pReader, OrvEngineNode::Base}, pTop});
        const auto isThere
            = [](const Link& One) { return One.first.pReader->readsFrom(One.first.Pad, One.second); };
        Links.erase(std::remove_if(Links.begin(), Links.end(), isThere), Links.end());
        std::vector<OrvEngineRewiring::Input> Changing;
        for (const Link& One : Links)
            Changing.push_back(One.first);
        const OrvEngineRewiring Rewiring(Changing);
        for (const Link& One : Links)
            One.first.pReader->connectInput(One.first.Pad, nullptr);
        for (const Link& One : Links)
            One.first.pReader->connectInput(One.first.Pad, One.second);
    };
    for (Item& One : Items)
        One.pBlend->setBlend(One.Parameters);
    rewire();

    std::vector<float> Shown = rendered(*pView, Canvas);
    QRegion Told;
    pView->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    QRandomGenerator Random(11);
    int Silent = 0;
    for (int Step = 0; Step < 300; ++Step) {
        const size_t Index = size_t(Random.bounded(ItemCount));
        Item& One = Items[Index];
        const int What = Random.bounded(8);
        if (What < 5) {
            // To another place, or into a group; groups stay where they are seen.
            Order.erase(std::find(Order.begin(), Order.end(), Index));
            Order.insert(Order.begin() + Random.bounded(ItemCount), Index);
            if (One.pContent && What < 2)
                One.Group = Random.bounded(-1, GroupCount);
            rewire();
        } else if (What == 5 && One.pContent) {
            const QRect Dab(Random.bounded(250), Random.bounded(150), 40, 40);
            One.Pixels.fill(OrvColor(0.2f, float(Index) / ItemCount, 0.9f, Random.bounded(2) * 0.7f), Dab);
            One.pContent->pixelsWritten(Dab);
        } else if (What == 6) {
            One.Parameters.Enabled = !One.Parameters.Enabled;
            One.pBlend->setBlend(One.Parameters);
        } else {
            One.Parameters.Amount = Random.bounded(2) ? 1.0f : 0.6f;
            One.pBlend->setBlend(One.Parameters);
        }
        const std::vector<float> Now = rendered(*pView, Canvas);
        Silent += Told.isEmpty();
        for (size_t Pixel = 0; Pixel < Now.size() / 4; ++Pixel) {
            const QPoint Position(int(Pixel) % Canvas.width(), int(Pixel) / Canvas.width());
            const auto First = Now.begin() + long(Pixel) * 4;
            const auto isClose = [](float A, float B) { return std::abs(A - B) < 1e-4f; };
            if (!std::equal(First, First + 4, Shown.begin() + long(Pixel) * 4, isClose))
                QVERIFY2(
                    Told.contains(Position), qPrintable(QString("step %1, case %2").arg(Step).arg(What)));
        }
        QVERIFY(difference(rendered(*pKept, Canvas), Now) < 1e-3f);
        Shown = Now;
        Told = QRegion();
    }
    QVERIFY(Silent > 0 && Silent < 200);
}

void TstEngine::scaledViews()
{
    // Blocks of 64 pixels of one colour: their middles look the same at every scale.
    const QRect Wide(0, 0, 1024, 512);
    OrvImageBuffer Pixels(Wide, halfColor());
    for (int Column = 0; Column < 16; ++Column)
        Pixels.fill(OrvColor(float(Column) / 16, 0.5f, 0.25f), QRect(Column * 64, 0, 64, 512));
    const auto pBase = source(Pixels), pOver = uniform(OrvColor(0, 1, 0, 0.5f), Wide);
    const auto pTop = blend(pBase.get(), pOver.get());
    for (const double Scale : {0.5, 0.25, 0.125, 0.4, 0.7, 2.0}) {
        for (int Column = 0; Column < 16; ++Column) {
            const QPoint Middle(int((Column * 64 + 32) * Scale), int(300 * Scale));
            const std::vector<float> Pixel = rendered(*pTop, QRect(Middle, QSize(1, 1)), Scale);
            QVERIFY(qAbs(Pixel[0] - float(Column) / 32) < 2e-3f);
            QVERIFY(qAbs(Pixel[1] - 0.75f) < 2e-3f);
        }
    }
    // A dab shows at small scales too.
    const QRect Part(0, 0, 256, 128);
    rendered(*pTop, Part, 0.25);
    Pixels.fill(OrvColor::white(), QRect(512, 256, 64, 64));
    pBase->pixelsWritten(QRect(512, 256, 64, 64));
    const std::vector<float> Result = rendered(*pTop, Part, 0.25);
    QVERIFY(qAbs(Result[(72 * 256 + 136) * 4 + 2] - 0.5f) < 2e-3f);
    QVERIFY(qAbs(Result[(72 * 256 + 126) * 4 + 2] - 0.125f) < 2e-3f);

    // A filter, cached and not, shows the same as one that has never been seen before; so does a copy of the
    // pixels.
    for (const bool Cached : {false, true}) {
        const auto pBlur = operation("gegl:gaussian-blur", pTop.get()), pAbove = blend(pBlur.get(), nullptr);
        pBlur->setParameter("std-dev-x", 12.0);
        pBlur->setCached(Cached);
        rendered(*pAbove, Part, 0.25);
        Pixels.fill(OrvColor(Cached, 0, 4), QRect(300, 100, 90, 50));
        pBase->pixelsWritten(QRect(300, 100, 90, 50));
        const OrvImageBuffer Copy = Pixels.snapshot();
        const auto pCopy = source(Copy), pFresh = blend(pCopy.get(), pOver.get()),
                   pFreshBlur = operation("gegl:gaussian-blur", pFresh.get());
        pFreshBlur->setParameter("std-dev-x", 12.0);
        QVERIFY(difference(rendered(*pAbove, Part, 0.25), rendered(*pFreshBlur, Part, 0.25)) < 2e-3f);
        QVERIFY(difference(rendered(*pTop, Part, 0.25), rendered(*pFresh, Part, 0.25)) < 2e-3f);
    }
}

void TstEngine::highStacks()
{
    constexpr int Count = 3000;
    const QRect Small(0, 0, 16, 16);
    const auto pFaint = uniform(OrvColor(1, 1, 1, 0.001f), Small);
    std::vector<std::unique_ptr<OrvEngineNode>> Stack;
    Stack.push_back(uniform(OrvColor::black(), Small));
    QElapsedTimer Timer;
    Timer.start();
    for (int Index = 0; Index < Count; ++Index)
        Stack.push_back(blend(Stack.back().get(), pFaint.get()));
    const float Expected = 1.0f - float(std::pow(0.999, Count));
    QVERIFY(qAbs(pixelOf(*Stack.back(), 3, 3).red() - Expected) < 1e-3f);
    pFaint->setUniform(OrvColor::clear(), Small);
    QCOMPARE(pixelOf(*Stack.back(), 3, 3), OrvColor::black());
    Stack.clear();
    qDebug("%d layers: %lld ms", Count, Timer.elapsed());
}

void TstEngine::smallerImages_data()
{
    QTest::addColumn<QRect>("Extent");
    QTest::newRow("left tile") << QRect(0, 0, 256, 256);
    QTest::newRow("right tile") << QRect(256, 0, 256, 256);
    QTest::newRow("odd") << QRect(100, 37, 301, 155);
}
/// An image of fewer tiles than its channel, with pixels or of one colour, is there up to its edges at every
/// scale.
void TstEngine::smallerImages()
{
    QFETCH(QRect, Extent);
    const QRect Wide(0, 0, 512, 256);
    const OrvColor Color(0.25f, 1.0f, 0.5f, 0.75f);
    OrvImageBuffer Buffer(Extent, floatColor());
    Buffer.fill(Color);
    const auto pWhole = uniform(OrvColor(0.75f, 0.5f, 0.25f), Wide), pPixels = source(Buffer),
               pUniform = uniform(Color, Extent), pRead = uniform(Color, Extent);
    // Real pixels are needed for this one.
    const auto pReader = operation("gegl:invert-linear", pRead.get());
    for (OrvEngineNode* pImage : {pPixels.get(), pUniform.get(), pRead.get()}) {
        const auto pOver = blend(pWhole.get(), pImage), pBase = blend(pImage, nullptr),
                   pMask = blend(nullptr, pWhole.get()), pGroup = blend(nullptr, pBase.get()),
                   pBlurred = operation("gegl:box-blur", pImage), pBlur = blend(nullptr, pBlurred.get());
        pMask->connectInput(OrvEngineNode::Mask, pImage);
        for (OrvEngineNode* pNode : {pOver.get(), pBase.get(), pMask.get(), pGroup.get(), pBlur.get()}) {
            for (const int Reduction : {1, 2, 4, 16}) {
                const QRect Whole(QPoint(0, 0), Wide.size() / Reduction);
                for (const QRect& Region : {Whole.adjusted(-5, -5, 5, 5), QRect(Whole.center(), Whole.size()),
                         QRect(Whole.center() - QPoint(3, 3), QSize(5, 5)), QRect(1, 1, 7, 3)}) {
                    QVERIFY2(averagesOfFullScale(*pNode, Region, Reduction) < 2e-3f,
                        qPrintable(QString("one in %1").arg(Reduction)));
                }
            }
        }
    }
}

void TstEngine::hardEdges_data()
{
    QTest::addColumn<OrvPixelFormat>("Format");
    for (const auto Curve : {OrvPixelFormat::Linear, OrvPixelFormat::Srgb}) {
        for (const GLenum Depth : {GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT})
            QTest::addRow("depth %x, curve %d", Depth, Curve)
                << OrvPixelFormat{Depth, OrvPixelFormat::Rgba, Curve};
    }
}
/// A stroke over its own colour is not to be seen, however small the picture is shown, whatever reads it.
void TstEngine::hardEdges()
{
    QFETCH(OrvPixelFormat, Format);
    const OrvColor Bright(1.0f, 0.5f, 0.25f);
    OrvImageBuffer Pixels(Canvas, Format);
    Pixels.fill(Bright, QRect(37, 21, 150, 77));
    Pixels.fill(Bright, QRect(201, 150, 3, 3));
    const auto pStroke = source(Pixels), pBelow = uniform(Bright, Canvas),
               pPassed = OrvEngineNode::createPass(), pCropped = OrvEngineNode::createPass(),
               pCached = OrvEngineNode::createPass();
    for (OrvEngineNode* pPass : {pPassed.get(), pCropped.get(), pCached.get()})
        pPass->connectInput(OrvEngineNode::Base, pStroke.get());
    pCropped->setExtent(QRect(64, 0, 128, 128));
    pCached->setCached(true);
    // An operation of the engine that leaves everything as it is.
    const auto pOperation = operation("gegl:brightness-contrast", pStroke.get()),
               pGroup = blend(nullptr, pStroke.get());
    for (OrvEngineNode* pOver :
        {pStroke.get(), pPassed.get(), pCropped.get(), pCached.get(), pOperation.get(), pGroup.get()}) {
        const auto pTop = blend(pBelow.get(), pOver);
        for (const int Reduction : {1, 2, 4, 8, 16}) {
            const QRect Region(0, 0, Canvas.width() / Reduction, Canvas.height() / Reduction);
            const std::vector<float> Shown = rendered(*pTop, Region, 1.0 / Reduction);
            for (size_t Pixel = 0; Pixel < Shown.size(); Pixel += 4) {
                for (int Component = 0; Component < 3; ++Component)
                    QVERIFY(qAbs(Shown[Pixel + size_t(Component)] - Bright.components()[Component]) < 6e-3f);
            }
        }
    }
    // How much of a pixel is covered, and its colour.
    const std::vector<float> Corner = rendered(*pStroke, QRect(18, 10, 1, 1), 0.5);
    QVERIFY(qAbs(Corner[3] - 0.25f) < 3e-3f);
    QVERIFY(qAbs(Corner[1] - 0.5f) < 3e-3f);
}

/// Whatever is written, filled, erased or taken from another image shows at reduced scales as it would in a
/// new image.
void TstEngine::reducedViewsFollowEdits()
{
    OrvImageBuffer Pixels(Canvas, halfColor());
    const OrvImageBuffer Other = picture(Canvas, 5, halfColor()), Nothing = Pixels.snapshot();
    const auto pSource = source(Pixels), pTop = blend(nullptr, pSource.get());
    const std::vector<float> Zeros(Canvas.width() * Canvas.height() * 4);
    const std::function<void()> Edits[] = {
        [&] { Pixels.fill(OrvColor::white(), QRect(100, 50, 1, 1)); },
        [&] { Pixels.copyFrom(Other, QRect(10, 10, 200, 150)); },
        [&] { Pixels.fill(OrvColor::clear(), QRect(0, 0, 130, 130)); },
        [&] { Pixels.write(QRect(140, 70, 40, 60), floatColor(), Zeros.data()); },
        [&] { Pixels.write(QRect(0, 0, 128, 128), floatColor(), Zeros.data()); },
        [&] { Pixels.copyFrom(Nothing, QRect(120, 0, 180, 200)); },
        [&] { Pixels.fill(OrvColor(0, 1, 0, 0.5f)); },
        [&] { Pixels.copyFrom(Nothing, Canvas); },
    };
    for (const auto& Edit : Edits) {
        Edit();
        pSource->pixelsWritten(Canvas);
        std::vector<float> Copied(Zeros.size());
        Pixels.read(Canvas, floatColor(), Copied.data());
        OrvImageBuffer Fresh(Canvas, floatColor());
        Fresh.write(Canvas, floatColor(), Copied.data());
        const auto pFresh = source(Fresh), pCopy = source(Pixels.snapshot());
        for (const int Reduction : {1, 2, 4, 8}) {
            const QRect Region(0, 0, Canvas.width() / Reduction, Canvas.height() / Reduction);
            const std::vector<float> Expected = rendered(*pFresh, Region, 1.0 / Reduction);
            QVERIFY(difference(rendered(*pTop, Region, 1.0 / Reduction), Expected) < 2e-3f);
            QVERIFY(difference(rendered(*pCopy, Region, 1.0 / Reduction), Expected) < 2e-3f);
        }
    }
}

/// An operation that looks at more of a result that is kept than has been computed of it reads nothing there.
void TstEngine::operationsReadWhatIsNotComputed()
{
    static std::atomic<int> Warnings{0};
    const auto count = [](const char*, GLogLevelFlags, const char*, void*) { ++Warnings; };
    const guint Handler = g_log_set_handler(
        "GEGL", GLogLevelFlags(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_CRITICAL), count, nullptr);
    const QRect Wide(0, 0, 1024, 1024), Part(130, 130, 300, 300);
    const auto pSource = source(picture(Wide, 3)), pPlain = operation("gegl:invert-linear", pSource.get()),
               pKept = operation("gegl:invert-linear", pSource.get());
    pKept->setCached(true);
    for (const char* pName : {"gegl:rotate", "gegl:scale-ratio"}) {
        const auto pExpected = operation(pName, pPlain.get()), pTurned = operation(pName, pKept.get());
        for (OrvEngineNode* pNode : {pExpected.get(), pTurned.get()}) {
            pNode->setParameter("degrees", 30.0);
            pNode->setParameter("x", 1.7);
            pNode->setParameter("y", 1.3);
        }
        for (const QRect& Region : {Part, Part.translated(200, 200)})
            QVERIFY(difference(rendered(*pTurned, Region), rendered(*pExpected, Region)) < 1e-6f);
    }
    g_log_remove_handler("GEGL", Handler);
    QCOMPARE(Warnings.load(), 0);
}

/// The window edits while another thread renders.
void TstEngine::editsWhileRendering()
{
    OrvImageBuffer Pixels = picture(Canvas, 1);
    const auto pSource = source(Pixels), pBlur = operation("gegl:box-blur", pSource.get());
    const auto pTop = blend(pSource.get(), pBlur.get());
    pBlur->setCached(true);
    std::atomic<bool> Stop{false};
    std::thread Renderer([&] {
        while (!Stop)
            rendered(*pTop, Canvas);
    });
    for (int Edit = 0; Edit < 200; ++Edit) {
        Pixels.fill(OrvColor(float(Edit), 0, 0), QRect(Edit, Edit / 2, 10, 10));
        pSource->pixelsWritten(QRect(Edit, Edit / 2, 10, 10));
        pTop->connectInput(OrvEngineNode::Over, Edit % 3 ? pBlur.get() : nullptr);
        const auto pTemporary = blend(pTop.get(), pSource.get());
        rendered(*pTemporary, QRect(0, 0, 4, 4));
    }
    Stop = true;
    Renderer.join();
    const auto pFreshBlur = operation("gegl:box-blur", pSource.get());
    pTop->connectInput(OrvEngineNode::Over, pBlur.get());
    QVERIFY(difference(rendered(*pTop, Canvas), rendered(*blend(pSource.get(), pFreshBlur.get()), Canvas))
        < 1e-4f);
}

/// What reads the whole picture is computed in turns, between which edits get through.
void TstEngine::editsBetweenTurns()
{
    const QRect Large(0, 0, 600, 500), Piece(290, 240, 20, 20);
    OrvImageBuffer Pixels = picture(Large, 1);
    const auto pSource = source(Pixels), pBlur = operation("gegl:gaussian-blur", pSource.get()),
               pNoise = OrvEngineNode::createOperation("gegl:simplex-noise");
    const auto pMixed = blend(pBlur.get(), pNoise.get(), OrvBlendMode::Multiply);
    const auto pRotated = operation("gegl:rotate", pMixed.get()), pTop = blend(pSource.get(), pRotated.get());
    pBlur->setParameter("std-dev-x", 40.0);
    pBlur->setParameter("std-dev-y", 30.0);
    pNoise->setExtent(Large);
    pNoise->setCached(true);
    pRotated->setParameter("degrees", 30.0);
    pRotated->setCached(true);
    int Turns = 0;
    std::vector<float> Result(20 * 20 * 4);
    for (const double Scale : {1.0, 0.25}) {
        const QRect Region(Piece.topLeft() * Scale, Piece.size());
        for (Turns = 0; !pTop->renderTurn(Region, Scale, floatColor(), Result.data()); ++Turns) {
            if (Turns >= 3)
                continue;
            // Another thread has its turn, too: nothing is locked meanwhile.
            std::thread([&] {
                const QRect Written(50 * Turns, 100, 200, 120);
                Pixels.fill(OrvColor(float(Turns), 0.5f, 0.25f), Written);
                pSource->pixelsWritten(Written);
                pBlur->setParameter("std-dev-y", 20.0 + Turns);
            }).join();
        }
        QVERIFY2(Turns > 6, qPrintable(QString::number(Turns)));
        const auto pFreshBlur = operation("gegl:gaussian-blur", pSource.get()),
                   pFreshMixed = blend(pFreshBlur.get(), pNoise.get(), OrvBlendMode::Multiply),
                   pFreshRotated = operation("gegl:rotate", pFreshMixed.get()),
                   pFresh = blend(pSource.get(), pFreshRotated.get());
        pFreshBlur->setParameter("std-dev-x", 40.0);
        pFreshBlur->setParameter("std-dev-y", 22.0);
        pFreshRotated->setParameter("degrees", 30.0);
        QVERIFY(difference(Result, rendered(*pFresh, Region, Scale)) < 1e-3f);
        // It stays so while what was computed is still there.
        QVERIFY(pTop->renderTurn(Region, Scale, floatColor(), Result.data()));
        QVERIFY(difference(Result, rendered(*pFresh, Region, Scale)) < 1e-3f);
    }
}

void TstEngine::nothingLeaks()
{
    QCOMPARE(OrvEngine::shutdown(), 0);
    QVERIFY(!OrvEngine::isStarted());
}

QTEST_GUILESS_MAIN(TstEngine)

#include "TstEngine.moc"
