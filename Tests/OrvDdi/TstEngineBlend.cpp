#include "OrvReferenceBlend.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"
#include "OrvDdi/Image/OrvColor.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

#include <vector>

namespace {

const OrvPixelFormat FloatColor{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};
const OrvPixelFormat ByteMask{GL_UNSIGNED_BYTE, OrvPixelFormat::Scalar, OrvPixelFormat::Linear};

using Pixel = OrvReferenceBlend::Pixel;

/// An odd number of pixels, so that the end of a row is tried as well.
constexpr int PixelCount = 513;
const QRect Row(0, 0, PixelCount, 1);

/// Straight pixels: random ones, and all corners of the colour cube with and without alpha.
std::vector<Pixel> testPixels(quint32 Seed, int Variant)
{
    QRandomGenerator Random(Seed);
    std::vector<Pixel> Pixels;
    for (int Index = 0; Index < PixelCount; ++Index) {
        Pixel P{Random.bounded(1.0), Random.bounded(1.0), Random.bounded(1.0), Random.bounded(1.0)};
        if (Index < 256) {
            const int Corner = Variant ? Index / 16 : Index % 16;
            for (size_t Component = 0; Component < 4; ++Component)
                P[Component] = (Corner >> Component) & 1;
        }
        // Bytes hold them exactly.
        for (double& Component : P)
            Component = std::round(Component * 255) / 255;
        Pixels.push_back(P);
    }
    return Pixels;
}

OrvImageBuffer bufferOf(const std::vector<Pixel>& Pixels, const OrvPixelFormat& Format)
{
    std::vector<float> Floats;
    for (const Pixel& P : Pixels)
        Floats.insert(Floats.end(), P.begin(), P.end());
    OrvImageBuffer Buffer(Row, Format);
    Buffer.write(Row, FloatColor, Floats.data());
    return Buffer;
}

std::vector<Pixel> pixelsOf(const OrvImageBuffer& Buffer)
{
    std::vector<float> Floats(PixelCount * 4);
    Buffer.read(Row, FloatColor, Floats.data());
    std::vector<Pixel> Pixels;
    for (size_t Index = 0; Index < Floats.size(); Index += 4)
        Pixels.push_back({Floats[Index], Floats[Index + 1], Floats[Index + 2], Floats[Index + 3]});
    return Pixels;
}

std::unique_ptr<OrvEngineNode> sourceOf(const OrvImageBuffer& Buffer)
{
    auto pSource = OrvEngineNode::createSource();
    pSource->setBuffer(Buffer);
    return pSource;
}

std::unique_ptr<OrvEngineNode> uniformOf(const OrvColor& Color, const QRect& Extent)
{
    auto pUniform = OrvEngineNode::createUniform();
    pUniform->setUniform(Color, Extent);
    return pUniform;
}

OrvBlendParameters withMode(OrvBlendMode Mode, float Amount = 1.0f)
{
    OrvBlendParameters Parameters;
    Parameters.Mode = Mode;
    Parameters.Amount = Amount;
    return Parameters;
}

/// One blend step with its sources.
struct Layer {
    std::unique_ptr<OrvEngineNode> pBlend = OrvEngineNode::createBlend(), pBase, pOver, pMask;
    void connect()
    {
        pBlend->connectInput(OrvEngineNode::Base, pBase.get());
        pBlend->connectInput(OrvEngineNode::Over, pOver.get());
        pBlend->connectInput(OrvEngineNode::Mask, pMask.get());
    }
};

std::vector<float> rendered(OrvEngineNode& Node, const QRect& Region = Row)
{
    std::vector<float> Result(size_t(Region.width() * Region.height()) * 4, -99.0f);
    Node.render(Region, 1.0, FloatColor, Result.data());
    return Result;
}

/// Compares premultiplied, because the colour of nearly transparent pixels says little.
void comparePixels(
    const std::vector<float>& Result, const std::vector<Pixel>& Expected, double Tolerance = 2e-5)
{
    for (size_t Index = 0; Index < Expected.size(); ++Index) {
        for (size_t Component = 0; Component < 4; ++Component) {
            const double Alpha = Component == 3 ? 1.0 : Expected[Index][3];
            const double ResultAlpha = Component == 3 ? 1.0 : double(Result[Index * 4 + 3]);
            const double Got = double(Result[Index * 4 + Component]) * ResultAlpha;
            const double Wanted = Expected[Index][Component] * Alpha;
            if (!(std::abs(Got - Wanted) <= Tolerance * std::max(1.0, std::abs(Wanted)))) {
                QFAIL(qPrintable(QString("Pixel %1 component %2: %3 instead of %4")
                                     .arg(Index)
                                     .arg(Component)
                                     .arg(Got)
                                     .arg(Wanted)));
            }
        }
    }
}

} // namespace

class TstEngineBlend : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formulas_data();
    void formulas();
    void kernelSetsAgree();
    void brighterThanWhite();
    void neutralColorsLeaveTheBaseAlone_data();
    void neutralColorsLeaveTheBaseAlone();
    void missingInputs();
    void masks();
    void advancedOptions_data();
    void advancedOptions();
    void passThrough();
    void groupsAndMaskStacks();
    void smallerImages();
    void namesOfModes();
    void nothingLeaks();
};

void TstEngineBlend::formulas_data()
{
    QTest::addColumn<int>("Mode");
    QTest::addColumn<int>("OverDepth");
    QTest::addColumn<bool>("Srgb");
    for (int Mode = 0; Mode < int(OrvBlendMode::Count); ++Mode) {
        const QByteArray Name = OrvBlendParameters::modeNames()[Mode].toUtf8();
        QTest::newRow(Name + " 8 bit") << Mode << int(GL_UNSIGNED_BYTE) << false;
        QTest::newRow(Name + " 8 bit sRGB") << Mode << int(GL_UNSIGNED_BYTE) << true;
        QTest::newRow(Name + " half") << Mode << int(GL_HALF_FLOAT) << false;
        QTest::newRow(Name + " float") << Mode << int(GL_FLOAT) << false;
    }
}

/// Every mode against the definition, with and without amount and mask, for over images of every depth.
void TstEngineBlend::formulas()
{
    QFETCH(int, Mode);
    QFETCH(int, OverDepth);
    QFETCH(bool, Srgb);
    const OrvPixelFormat OverFormat{
        GLenum(OverDepth), OrvPixelFormat::Rgba, Srgb ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear};
    const OrvImageBuffer Base = bufferOf(testPixels(1, 0), FloatColor);
    const OrvImageBuffer Over = bufferOf(testPixels(2, 1), OverFormat);
    OrvImageBuffer Mask(Row, ByteMask);
    std::vector<uchar> MaskBytes;
    for (int Index = 0; Index < PixelCount; ++Index)
        MaskBytes.push_back(uchar(Index % 5 == 0 ? 0 : Index % 5 == 1 ? 255 : Index * 7));
    Mask.write(Row, ByteMask, MaskBytes.data());

    // What the engine reads: depths round.
    const std::vector<Pixel> BasePixels = pixelsOf(Base), OverPixels = pixelsOf(Over);
    for (const float Amount : {1.0f, 0.3f}) {
        for (const bool Masked : {false, true}) {
            const OrvBlendParameters Parameters = withMode(OrvBlendMode(Mode), Amount);
            Layer One;
            One.pBase = sourceOf(Base);
            One.pOver = sourceOf(Over);
            if (Masked)
                One.pMask = sourceOf(Mask);
            One.connect();
            One.pBlend->setBlend(Parameters);
            std::vector<Pixel> Expected;
            for (size_t Index = 0; Index < PixelCount; ++Index) {
                const double Factor = Masked ? MaskBytes[Index] / 255.0 : 1.0;
                Expected.push_back(
                    OrvReferenceBlend::blend(Parameters, BasePixels[Index], OverPixels[Index], Factor));
            }
            comparePixels(rendered(*One.pBlend), Expected);
        }
    }
}

/// The loops for any machine against those for this one, for every mode, layout and odd length.
void TstEngineBlend::kernelSetsAgree()
{
    const OrvPixelKernels &Portable = OrvPixelKernels::portable(), &Best = OrvPixelKernels::best();
    std::vector<float> Over, Base, Factors;
    for (const Pixel& P : testPixels(5, 0))
        Over.insert(Over.end(), {float(P[0]), float(P[1]), float(P[2]), float(P[3])});
    for (const Pixel& P : testPixels(6, 1))
        Base.insert(Base.end(), {float(P[0] * P[3]), float(P[1] * P[3]), float(P[2] * P[3]), float(P[3])});
    for (int Index = 0; Index < PixelCount; ++Index)
        Factors.push_back(float(Index) / PixelCount);
    for (int Mode = 0; Mode < int(OrvBlendMode::Count); ++Mode) {
        for (int Layout = 0; Layout <= int(OrvPixelLayout::OnePremultiplied); ++Layout) {
            std::vector<float> Stored(PixelCount * 4);
            if (Layout < int(OrvPixelLayout::Premultiplied))
                Portable.narrowStraight(OrvPixelLayout(Layout), Over.data(), PixelCount, Stored.data());
            else
                Portable.widenPremultiplied(
                    OrvPixelLayout::FloatRgba, Over.data(), PixelCount, Stored.data());
            for (const float* pFactors :
                {static_cast<const float*>(nullptr), static_cast<const float*>(Factors.data())}) {
                std::vector<float> One(Base), Two(Base);
                Portable.blend(OrvBlendMode(Mode), OrvPixelLayout(Layout), Stored.data(), pFactors, 0.6f,
                    PixelCount, One.data());
                Best.blend(OrvBlendMode(Mode), OrvPixelLayout(Layout), Stored.data(), pFactors, 0.6f,
                    PixelCount, Two.data());
                for (size_t Index = 0; Index < One.size(); ++Index)
                    QVERIFY(qAbs(One[Index] - Two[Index]) <= 2e-5f * qMax(1.0f, qAbs(One[Index])));
            }
        }
    }
}

/// Nothing is clamped where the mode has no reason to.
void TstEngineBlend::brighterThanWhite()
{
    const Pixel Bright{7.0, 0.5, 2.5, 1.0}, Other{3.0, -0.25, 0.5, 0.75};
    for (const OrvBlendMode Mode : {OrvBlendMode::Normal, OrvBlendMode::Multiply, OrvBlendMode::Screen,
             OrvBlendMode::Darken, OrvBlendMode::Lighten, OrvBlendMode::Difference, OrvBlendMode::Exclusion,
             OrvBlendMode::Add, OrvBlendMode::Subtract, OrvBlendMode::Divide, OrvBlendMode::Average,
             OrvBlendMode::HardLight, OrvBlendMode::Overlay}) {
        Layer One;
        One.pBase = uniformOf(OrvColor(7.0f, 0.5f, 2.5f), Row);
        One.pOver = uniformOf(OrvColor(3.0f, -0.25f, 0.5f, 0.75f), Row);
        One.connect();
        One.pBlend->setBlend(withMode(Mode));
        comparePixels(rendered(*One.pBlend, QRect(0, 0, 1, 1)),
            {OrvReferenceBlend::blend(withMode(Mode), Bright, Other, 1.0)});
    }
}

void TstEngineBlend::neutralColorsLeaveTheBaseAlone_data()
{
    QTest::addColumn<int>("Mode");
    QTest::addColumn<double>("Grey");
    QTest::newRow("Multiply") << int(OrvBlendMode::Multiply) << 1.0;
    QTest::newRow("Screen") << int(OrvBlendMode::Screen) << 0.0;
    QTest::newRow("Color Dodge") << int(OrvBlendMode::ColorDodge) << 0.0;
    QTest::newRow("Color Burn") << int(OrvBlendMode::ColorBurn) << 1.0;
    QTest::newRow("Hard Light") << int(OrvBlendMode::HardLight) << 0.5;
    QTest::newRow("Soft Light") << int(OrvBlendMode::SoftLight) << 0.5;
    QTest::newRow("Add") << int(OrvBlendMode::Add) << 0.0;
    QTest::newRow("Divide") << int(OrvBlendMode::Divide) << 1.0;
}

/// Also where the base is brighter than the published formulas allow for.
void TstEngineBlend::neutralColorsLeaveTheBaseAlone()
{
    QFETCH(int, Mode);
    QFETCH(double, Grey);
    Layer One;
    One.pBase = uniformOf(OrvColor(4.0f, 0.25f, 1.5f), Row);
    One.pOver = uniformOf(OrvColor(float(Grey), float(Grey), float(Grey)), Row);
    One.connect();
    One.pBlend->setBlend(withMode(OrvBlendMode(Mode)));
    comparePixels(rendered(*One.pBlend, QRect(0, 0, 1, 1)), {Pixel{4.0, 0.25, 1.5, 1.0}});
}

void TstEngineBlend::missingInputs()
{
    const Pixel Red{1, 0, 0, 1}, Green{0, 1, 0, 0.5}, Clear{0, 0, 0, 0};
    const QRect One(0, 0, 1, 1);
    Layer Empty;
    comparePixels(rendered(*Empty.pBlend, One), {Clear});
    QVERIFY(Empty.pBlend->boundingBox().isEmpty());

    Layer BaseOnly;
    BaseOnly.pBase = uniformOf(OrvColor(1, 0, 0), Row);
    BaseOnly.connect();
    comparePixels(rendered(*BaseOnly.pBlend, One), {Red});

    Layer OverOnly;
    OverOnly.pOver = uniformOf(OrvColor(0, 1, 0, 0.5f), Row);
    OverOnly.connect();
    OverOnly.pBlend->setBlend(withMode(OrvBlendMode::Multiply));
    comparePixels(rendered(*OverOnly.pBlend, One), {Green});
    QCOMPARE(OverOnly.pBlend->boundingBox(), Row);

    // A source that has not been given its pixels yet.
    Layer Unset;
    Unset.pBase = uniformOf(OrvColor(1, 0, 0), Row);
    Unset.pOver = OrvEngineNode::createSource();
    Unset.connect();
    comparePixels(rendered(*Unset.pBlend, One), {Red});
    Unset.pOver->setBuffer(bufferOf(std::vector<Pixel>(PixelCount, Pixel{0, 1, 0, 1}), FloatColor));
    comparePixels(rendered(*Unset.pBlend, One), {Pixel{0, 1, 0, 1}});
    Unset.pOver.reset();
    comparePixels(rendered(*Unset.pBlend, One), {Red});

    OrvBlendParameters Off = withMode(OrvBlendMode::Normal);
    Off.Enabled = false;
    Layer Disabled;
    Disabled.pBase = uniformOf(OrvColor(1, 0, 0), Row);
    Disabled.pOver = uniformOf(OrvColor(0, 1, 0), Row);
    Disabled.connect();
    Disabled.pBlend->setBlend(Off);
    comparePixels(rendered(*Disabled.pBlend, One), {Red});
    Disabled.pBlend->setBlend(withMode(OrvBlendMode::Normal, 0.0f));
    comparePixels(rendered(*Disabled.pBlend, One), {Red});
    Disabled.pBase.reset();
    comparePixels(rendered(*Disabled.pBlend, One), {Clear});
}

void TstEngineBlend::masks()
{
    const Pixel Red{1, 0, 0, 1}, Green{0, 1, 0, 1}, Between{0.5, 0.5, 0, 1};
    Layer One;
    One.pBase = uniformOf(OrvColor(1, 0, 0), QRect(0, 0, 4, 1));
    One.pOver = uniformOf(OrvColor(0, 1, 0), QRect(0, 0, 4, 1));
    OrvImageBuffer Mask(QRect(0, 0, 2, 1), {GL_FLOAT, OrvPixelFormat::Scalar, OrvPixelFormat::Linear});
    const float Values[] = {1.0f, 0.5f};
    Mask.write(Mask.extent(), Mask.format(), Values);
    One.pMask = sourceOf(Mask);
    One.connect();
    // Outside its extent the mask hides.
    comparePixels(rendered(*One.pBlend, QRect(0, 0, 4, 1)), {Green, Between, Red, Red});
    OrvBlendParameters Unmasked;
    Unmasked.MaskEnabled = false;
    One.pBlend->setBlend(Unmasked);
    comparePixels(rendered(*One.pBlend, QRect(0, 0, 4, 1)), {Green, Green, Green, Green});
    One.pBlend->setBlend({});
    One.pMask = OrvEngineNode::createSource(); // connected, but empty
    One.connect();
    comparePixels(rendered(*One.pBlend, QRect(0, 0, 1, 1)), {Red});
    // A mask in colour counts by its luminance over black.
    One.pMask = uniformOf(OrvColor(1, 1, 1, 0.5f), QRect(0, 0, 4, 1));
    One.connect();
    comparePixels(rendered(*One.pBlend, QRect(3, 0, 1, 1)), {Between});
    One.pMask.reset();
    comparePixels(rendered(*One.pBlend, QRect(3, 0, 1, 1)), {Green});
}

void TstEngineBlend::advancedOptions_data()
{
    QTest::addColumn<int>("Written");
    QTest::addColumn<bool>("Ranges");
    QTest::addColumn<bool>("PassThrough");
    for (const int Written : {15, 9, 6, 7, 8, 0}) {
        for (const bool Ranges : {false, true}) {
            for (const bool PassThrough : {false, true})
                QTest::addRow("components %d, ranges %d, pass-through %d", Written, Ranges, PassThrough)
                    << Written << Ranges << PassThrough;
        }
    }
}

void TstEngineBlend::advancedOptions()
{
    QFETCH(int, Written);
    QFETCH(bool, Ranges);
    QFETCH(bool, PassThrough);
    OrvBlendParameters Parameters = withMode(OrvBlendMode::HardLight, 0.8f);
    Parameters.AdvancedEnabled = true;
    Parameters.PassThrough = PassThrough;
    Parameters.WriteRed = Written & 1;
    Parameters.WriteGreen = Written & 2;
    Parameters.WriteBlue = Written & 4;
    Parameters.WriteAlpha = Written & 8;
    if (Ranges) {
        const float Over[] = {0.1f, 0.4f, 0.6f, 0.9f}, Base[] = {0.0f, 0.0f, 0.3f, 0.3f};
        std::copy(Over, Over + 4, Parameters.OverRange);
        std::copy(Base, Base + 4, Parameters.BaseRange);
    }
    Layer One;
    One.pBase = sourceOf(bufferOf(testPixels(3, 0), FloatColor));
    One.pOver = sourceOf(bufferOf(testPixels(4, 1), FloatColor));
    One.connect();
    One.pBlend->setBlend(Parameters);
    const std::vector<Pixel> Base = testPixels(3, 0), Over = testPixels(4, 1);
    std::vector<Pixel> Expected;
    for (size_t Index = 0; Index < PixelCount; ++Index)
        Expected.push_back(OrvReferenceBlend::blend(Parameters, Base[Index], Over[Index], 1.0));
    comparePixels(rendered(*One.pBlend), Expected, 1e-4);
    // The fields count only while the options are on.
    Parameters.AdvancedEnabled = false;
    One.pBlend->setBlend(Parameters);
    Expected.clear();
    for (size_t Index = 0; Index < PixelCount; ++Index)
        Expected.push_back(OrvReferenceBlend::blend(Parameters, Base[Index], Over[Index], 1.0));
    comparePixels(rendered(*One.pBlend), Expected);
}

void TstEngineBlend::passThrough()
{
    OrvBlendParameters Parameters = withMode(OrvBlendMode::Multiply, 0.25f);
    Parameters.PassThrough = true;
    Layer One;
    One.pBase = uniformOf(OrvColor(1, 0, 0), QRect(0, 0, 2, 1));
    One.pOver = uniformOf(OrvColor(0, 0, 1), QRect(0, 0, 1, 1));
    One.connect();
    One.pBlend->setBlend(Parameters);
    const Pixel Mixed{0.75, 0, 0.25, 1}, FadedOut{1, 0, 0, 0.75};
    comparePixels(rendered(*One.pBlend, QRect(0, 0, 2, 1)), {Mixed, FadedOut});
    One.pBlend->connectInput(OrvEngineNode::Over, nullptr);
    comparePixels(rendered(*One.pBlend, QRect(0, 0, 1, 1)), {FadedOut});
}

/// Groups and masks of several layers are computed in the same pass as the stack around them; the result is
/// the same as that of one blend after the other.
void TstEngineBlend::groupsAndMaskStacks()
{
    const auto picture = [](quint32 Seed) { return sourceOf(bufferOf(testPixels(Seed, 0), FloatColor)); };
    const auto stack = [](OrvEngineNode* pBottom, OrvEngineNode* pTop, OrvBlendMode Mode) {
        auto pBlend = OrvEngineNode::createBlend();
        pBlend->connectInput(OrvEngineNode::Base, pBottom);
        pBlend->connectInput(OrvEngineNode::Over, pTop);
        pBlend->setBlend(withMode(Mode, 0.7f));
        return pBlend;
    };
    const auto pA = picture(1), pB = picture(2), pC = picture(3), pD = picture(4);
    const auto pInner = stack(pC.get(), pD.get(), OrvBlendMode::Screen);
    const auto pGroup = stack(pB.get(), pInner.get(), OrvBlendMode::Multiply);
    const auto pMask = stack(pD.get(), pB.get(), OrvBlendMode::Difference);
    const auto pTop = stack(pA.get(), pGroup.get(), OrvBlendMode::Overlay);
    pTop->connectInput(OrvEngineNode::Mask, pMask.get());
    const std::vector<float> InOnePass = rendered(*pTop);

    const auto stepByStep = [](OrvEngineNode& Node) {
        OrvImageBuffer Result(Row, FloatColor);
        Result.write(Row, FloatColor, rendered(Node).data());
        return sourceOf(Result);
    };
    const auto pInnerResult = stepByStep(*pInner), pMaskResult = stepByStep(*pMask);
    pGroup->connectInput(OrvEngineNode::Over, pInnerResult.get());
    const auto pGroupResult = stepByStep(*pGroup);
    pTop->connectInput(OrvEngineNode::Over, pGroupResult.get());
    pTop->connectInput(OrvEngineNode::Mask, pMaskResult.get());
    const std::vector<float> Stepwise = rendered(*pTop);
    std::vector<Pixel> Expected;
    for (size_t Index = 0; Index < Stepwise.size(); Index += 4)
        Expected.push_back({Stepwise[Index], Stepwise[Index + 1], Stepwise[Index + 2], Stepwise[Index + 3]});
    comparePixels(InOnePass, Expected);
}

void TstEngineBlend::smallerImages()
{
    // Over images that cover a part of the canvas, across tile edges and in another depth.
    const QRect Canvas(0, 0, 300, 200), Part(100, 50, 70, 90);
    OrvImageBuffer Over(Part, {GL_HALF_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear});
    Over.fill(OrvColor(0, 1, 0, 0.5f));
    Layer One;
    One.pBase = uniformOf(OrvColor(1, 0, 0), Canvas);
    One.pOver = sourceOf(Over);
    One.connect();
    QCOMPARE(One.pBlend->boundingBox(), Canvas);
    const QRect Region(-7, -3, 320, 220); // over the canvas' edges
    const std::vector<float> Result = rendered(*One.pBlend, Region);
    std::vector<Pixel> Expected;
    for (int Y = Region.top(); Y <= Region.bottom(); ++Y) {
        for (int X = Region.left(); X <= Region.right(); ++X)
            Expected.push_back(Part.contains(X, Y) ? Pixel{0.5, 0.5, 0, 1}
                    : Canvas.contains(X, Y)        ? Pixel{1, 0, 0, 1}
                                                   : Pixel{0, 0, 0, 0});
    }
    comparePixels(Result, Expected);
}

void TstEngineBlend::namesOfModes()
{
    const QStringList& Names = OrvBlendParameters::modeNames();
    QCOMPARE(Names.size(), int(OrvBlendMode::Count));
    QCOMPARE(OrvBlendParameters::modeFromName("Color Dodge"), OrvBlendMode::ColorDodge);
    QCOMPARE(OrvBlendParameters::modeFromName("Luminosity"), OrvBlendMode::Luminosity);
    QCOMPARE(OrvBlendParameters::modeFromName("Average"), OrvBlendMode::Average);
    QCOMPARE(OrvBlendParameters::modeFromName("no mode"), OrvBlendMode::Normal);
}

void TstEngineBlend::nothingLeaks()
{
    QCOMPARE(OrvEngine::shutdown(), 0);
}

QTEST_GUILESS_MAIN(TstEngineBlend)

#include "TstEngineBlend.moc"
