#include "OrvEngineFixture.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvShadingKernels.h"
#include "OrvDdi/Engine/OrvShadingMath.h"
#include "OrvDdi/Image/OrvUdimLayout.h"

#include <QtTest/QtTest>

#include <cmath>
#include <functional>

using namespace OrvEngineFixture;
using Parameters = OrvShadingParameters;
using Vector = OrvShadingMath::Triple<float>;

namespace {

// Neither a multiple of what is computed at once nor of the engine's tiles.
const OrvUdimLayout Layout(QSize(150, 133));
const QRect Plane = Layout.extent();

bool isNear(float A, float B, float Tolerance = 1e-4f)
{
    return std::abs(A - B) <= Tolerance * std::max(1.0f, std::abs(B));
}

/// Shows what the maps hold in the light's absence and presence; inputs come in as they are set.
struct Shading {
    Parameters Given;
    std::unique_ptr<OrvEngineNode> pNode = OrvEngineNode::createShading();
    std::vector<std::unique_ptr<OrvEngineNode>> Sources;
    std::vector<OrvImageBuffer> Buffers = std::vector<OrvImageBuffer>(Parameters::SlotCount);

    explicit Shading(Parameters::Model Model, const OrvUdimLayout& Of = Layout)
    {
        Given.WhichModel = Model;
        Given.setLayout(Of);
    }

    void setValue(Parameters::Slot Slot, const OrvColor& Color)
    {
        Given.Slots[Slot].Used = true;
        std::copy_n(Color.components(), 4, Given.Slots[Slot].Value);
    }

    void connect(Parameters::Slot Slot, const OrvImageBuffer& Buffer)
    {
        Given.Slots[Slot].Used = Given.Slots[Slot].Connected = true;
        Buffers[Slot] = Buffer;
        Sources.push_back(source(Buffer));
        pNode->connectInput(OrvEngineNode::Pad(Slot), Sources.back().get());
    }

    OrvEngineNode& node()
    {
        pNode->setShading(Given);
        return *pNode;
    }
    std::vector<float> picture(const QRect& Region = Plane) { return rendered(node(), Region); }
    OrvColor pixel(int X, int Y) { return pixelOf(node(), X, Y); }
};

OrvImageBuffer filled(const OrvColor& Color, const OrvUdimLayout& Of = Layout)
{
    OrvImageBuffer Buffer(Of.extent(), floatColor());
    Buffer.fill(Color);
    return Buffer;
}

/// Grey opaque heights.
OrvImageBuffer heights(const OrvUdimLayout& Of, const std::function<float(int X, int Y)>& height)
{
    std::vector<float> Pixels;
    for (int Y = 0; Y < Of.extent().height(); ++Y) {
        for (int X = 0; X < Of.extent().width(); ++X)
            Pixels.insert(Pixels.end(), {height(X, Y), height(X, Y), height(X, Y), 1.0f});
    }
    OrvImageBuffer Buffer(Of.extent(), floatColor());
    Buffer.write(Of.extent(), floatColor(), Pixels.data());
    return Buffer;
}

} // namespace

class TstShading : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reflection_data();
    void reflection();
    void fallingLight();
    void picturesFollowTheFormulas_data();
    void picturesFollowTheFormulas();
    void kernelsAgree();
    void missingInputs();
    void invertedInputs();
    void transparentParts();
    void unlitAndLayered();
    void normalDirections();
    void heightsBecomeNormals();
    void tilesAreSurfacesOfTheirOwn();
    void lightAcrossTiles();
    void regionsAndCaches();
    void reducedLevels();
    void changesOfParameters();
    void nothingLeaks();
};

void TstShading::reflection_data()
{
    QTest::addColumn<float>("BaseColor");
    QTest::addColumn<float>("Metallic");
    QTest::addColumn<float>("Roughness");
    QTest::addColumn<float>("LightX"); // the light's direction is (x, 0, sqrt(1 - x * x))
    QTest::addColumn<float>("Expected");
    // Light from above: D = 1 / (pi a^2), V = 1 / 4, F = f0, so that pi D V = 1 / (4 a^2).
    QTest::newRow("chalk") << 1.0f << 0.0f << 1.0f << 0.0f << 0.96f + 0.04f * 0.25f;
    QTest::newRow("plastic") << 0.5f << 0.0f << 0.5f << 0.0f << 0.96f * 0.5f + 0.04f * 4.0f;
    QTest::newRow("metal") << 0.5f << 1.0f << 0.5f << 0.0f << 0.5f * 4.0f;
    QTest::newRow("half a metal") << 1.0f << 0.5f << 1.0f << 0.0f << 0.48f * 0.5f + 0.52f * 0.25f;
    // N.L = 0.8, a = 1: D = 1 / pi, V = 1 / 3.6; V.H = 0.9486833, (1 - V.H)^5 = 3.559e-7.
    QTest::newRow("chalk from the side") << 0.5f << 0.0f << 1.0f << 0.6f << 0.8f * (0.48f + 0.04f / 3.6f);
    // a = 0.25: N.H^2 = 0.9, D = 0.0625 / (pi 0.15625^2) = 2.56 / pi,
    // V = 0.5 / (0.8 + sqrt(0.0625 + 0.9375 * 0.64)) = 0.3098076.
    QTest::newRow("metal from the side") << 0.5f << 1.0f << 0.5f << 0.6f << 0.8f * 0.5f * 2.56f * 0.3098076f;
    QTest::newRow("from the horizon") << 1.0f << 0.0f << 1.0f << 1.0f << 0.0f;
}

void TstShading::reflection()
{
    QFETCH(float, BaseColor);
    QFETCH(float, Metallic);
    QFETCH(float, Roughness);
    QFETCH(float, LightX);
    QFETCH(float, Expected);
    OrvShadingMath::Surface<float> Surface;
    OrvShadingMath::setMetallic(Surface, Vector{BaseColor, BaseColor, 0.0f}, Metallic);
    Surface.Roughness = Roughness;
    Surface.Normal = {0.0f, 0.0f, 1.0f};
    const Vector Seen
        = OrvShadingMath::reflected(Surface, Vector{LightX, 0.0f, std::sqrt(1.0f - LightX * LightX)});
    QVERIFY2(isNear(Seen.X, Expected), qPrintable(QString::number(double(Seen.X))));
    QCOMPARE(Seen.X, Seen.Y);
    QVERIFY(Seen.Z <= Seen.X + 1e-6f);
}

void TstShading::fallingLight()
{
    // 3, 4 and 12 make 13.
    const auto Arriving = OrvShadingMath::illumination(3.0f, 4.0f, 12.0f);
    QVERIFY(isNear(Arriving.Strength, 144.0f / 169.0f));
    QVERIFY(isNear(Arriving.Direction.X, 3.0f / 13.0f) && isNear(Arriving.Direction.Y, 4.0f / 13.0f)
        && isNear(Arriving.Direction.Z, 12.0f / 13.0f));
    QVERIFY(isNear(OrvShadingMath::illumination(0.0f, 0.0f, 0.1f).Strength, 1.0f));
    // As smooth as can be: bright, and still a number.
    OrvShadingMath::Surface<float> Mirror{{0, 0, 0}, {1, 1, 1}, 0.0f, {0, 0, 1}, 1.0f, {0, 0, 0}};
    const float Glint = OrvShadingMath::reflected(Mirror, Vector{0, 0, 1}).X;
    QVERIFY(std::isfinite(Glint) && Glint > 1000.0f);
    // A normal that points away.
    const Vector Turned
        = OrvShadingMath::tilted(OrvShadingMath::mappedNormal(Vector{1, 0.5f, 0}), 0.0f, 0.0f);
    QVERIFY(Turned.Z > 0.0f && isNear(Turned.X, 1.0f));
}

void TstShading::picturesFollowTheFormulas_data()
{
    QTest::addColumn<bool>("IsMetallic");
    QTest::newRow("metallic roughness") << true;
    QTest::newRow("specular") << false;
}

void TstShading::picturesFollowTheFormulas()
{
    QFETCH(bool, IsMetallic);
    Shading Shown(IsMetallic ? Parameters::MetallicRoughness : Parameters::SpecularGloss);
    QVector<Parameters::Slot> Slots{Parameters::Color, Parameters::Roughness, Parameters::Occlusion,
        Parameters::Emissive, IsMetallic ? Parameters::Metallic : Parameters::Specular};
    if (IsMetallic)
        Slots.append(Parameters::Normal);
    for (const Parameters::Slot Slot : Slots)
        Shown.connect(Slot, picture(Plane, quint32(Slot) + 1));
    Parameters::Light& Lamp = Shown.Given.Lamp;
    Lamp.Color[0] = 0.9f;
    Lamp.Color[2] = 0.5f;
    const std::vector<float> Result = Shown.picture();
    std::vector<std::vector<float>> Read(Parameters::SlotCount, std::vector<float>(Result.size()));
    for (const Parameters::Slot Slot : Slots)
        Shown.Buffers[Slot].read(Plane, floatColor(), Read[size_t(Slot)].data());

    for (int Pixel = 0; Pixel < Plane.width() * Plane.height(); ++Pixel) {
        const auto color = [&](Parameters::Slot Slot) {
            const float* p = Read[size_t(Slot)].data() + Pixel * 4;
            return Vector{p[0], p[1], p[2]};
        };
        const auto scalar = [&](Parameters::Slot Slot) {
            return OrvShadingMath::dot(color(Slot), Vector{0.2126f, 0.7152f, 0.0722f});
        };
        OrvShadingMath::Surface<float> Surface;
        if (IsMetallic) {
            OrvShadingMath::setMetallic(Surface, color(Parameters::Color), scalar(Parameters::Metallic));
            const Vector Normal = OrvShadingMath::mappedNormal(color(Parameters::Normal));
            Surface.Normal = OrvShadingMath::tilted(Normal, 0.0f, 0.0f);
        } else {
            Surface.Diffuse = color(Parameters::Color);
            Surface.Reflectance = color(Parameters::Specular);
            Surface.Normal = {0.0f, 0.0f, 1.0f};
        }
        Surface.Roughness = scalar(Parameters::Roughness);
        Surface.Occlusion = scalar(Parameters::Occlusion);
        const float U = (float(Pixel % Plane.width()) + 0.5f) / 150.0f;
        const float V = 1.0f - (float(Pixel / Plane.width()) + 0.5f) / 133.0f;
        const auto Arriving = OrvShadingMath::illumination(Lamp.U - U, Lamp.V - V, Lamp.Height);
        const Vector Reflected = OrvShadingMath::reflected(Surface, Arriving.Direction);
        const Vector Ambient = OrvShadingMath::reflectedAmbient(Surface);
        const Vector Emission = color(Parameters::Emissive);
        const float Strength = Arriving.Strength * Lamp.Intensity;
        const float Expected[3]
            = {(Reflected.X * Strength + Ambient.X * Lamp.Ambient) * Lamp.Color[0] + Emission.X,
                (Reflected.Y * Strength + Ambient.Y * Lamp.Ambient) * Lamp.Color[1] + Emission.Y,
                (Reflected.Z * Strength + Ambient.Z * Lamp.Ambient) * Lamp.Color[2] + Emission.Z};
        for (int Component = 0; Component < 3; ++Component)
            QVERIFY(isNear(Result[size_t(Pixel * 4 + Component)], Expected[Component], 2e-3f));
        QCOMPARE(Result[size_t(Pixel * 4 + 3)], 1.0f);
    }
}

void TstShading::kernelsAgree()
{
    constexpr int Count = 21, Padded = 24;
    std::vector<float> Inputs(Parameters::SlotCount * Padded * 4), Slopes(Padded);
    QRandomGenerator Random(7);
    for (float& Value : Inputs)
        Value = float(Random.bounded(1.0));
    for (float& Value : Slopes)
        Value = float(Random.bounded(2.0)) - 1.0f;
    for (const Parameters::Model Model :
        {Parameters::Unlit, Parameters::MetallicRoughness, Parameters::SpecularGloss, Parameters::Layered}) {
        Parameters Given;
        Given.WhichModel = Model;
        OrvShadingRow Row{&Given, {}, Slopes.data(), Slopes.data(), 0.1f, 0.3f, 0.01f, Count, nullptr};
        for (int Slot = 0; Slot < Parameters::SlotCount; ++Slot) {
            Given.Slots[Slot].Used = true;
            Given.Slots[Slot].Inverted = Slot % 2;
            Row.pInputs[Slot] = Inputs.data() + Slot * Padded * 4;
        }
        std::vector<float> Results[2];
        int Index = 0;
        for (const OrvShadingKernels* pKernels :
            {&OrvShadingKernels::best(), &OrvShadingKernels::portable()}) {
            Results[Index].assign((Count + 1) * 4, -99.0f);
            Row.pResult = Results[Index].data();
            pKernels->light(Row);
            QCOMPARE(Results[Index++][Count * 4], -99.0f); // nothing beyond the row
        }
        QVERIFY(difference(Results[0], Results[1]) < 1e-3f);
    }
}

void TstShading::missingInputs()
{
    // Values alone: a picture of the whole plane.
    Shading Values(Parameters::MetallicRoughness);
    Values.setValue(Parameters::Color, OrvColor(0.2f, 0.4f, 0.6f));
    Values.setValue(Parameters::Roughness, OrvColor(0.7f, 0.7f, 0.7f));
    QCOMPARE(Values.node().boundingBox(), Plane);
    Shading Images(Parameters::MetallicRoughness);
    Images.connect(Parameters::Color, filled(OrvColor(0.2f, 0.4f, 0.6f)));
    Images.connect(Parameters::Roughness, filled(OrvColor(0.7f, 0.7f, 0.7f)));
    QVERIFY(difference(Values.picture(), Images.picture()) < 1e-5f);
    // A channel without pixels, and an input that is switched off, which is as if it were not there.
    Values.Given.Slots[Parameters::Color].Connected = true;
    QCOMPARE(Values.pixel(10, 10), OrvColor::clear());
    Shading Off(Parameters::MetallicRoughness);
    const std::vector<float> Neutral = Off.picture();
    Off.connect(Parameters::Emissive, filled(OrvColor(5.0f, 5.0f, 5.0f)));
    QVERIFY(difference(Off.picture(), Neutral) > 1.0f);
    Off.Given.Slots[Parameters::Emissive] = Parameters().Slots[Parameters::Emissive];
    QCOMPARE(Off.picture(), Neutral);
    // Without a size there is nothing to see.
    Off.Given.setLayout(OrvUdimLayout());
    QVERIFY(Off.node().boundingBox().isEmpty());
    QCOMPARE(Off.pixel(0, 0), OrvColor::clear());
}

void TstShading::invertedInputs()
{
    for (const Parameters::Slot Slot : {Parameters::Color, Parameters::Metallic, Parameters::Roughness,
             Parameters::Normal, Parameters::Occlusion, Parameters::Emissive, Parameters::Height}) {
        Shading Straight(Parameters::MetallicRoughness), Inverted(Parameters::MetallicRoughness);
        OrvImageBuffer Pixels = picture(Plane, 3), Opposite(Plane, floatColor());
        std::vector<float> Values(size_t(Plane.width() * Plane.height()) * 4);
        Pixels.read(Plane, floatColor(), Values.data());
        for (size_t Index = 0; Index < Values.size(); ++Index)
            Values[Index] = Index % 4 == 3 ? Values[Index] : 1.0f - Values[Index];
        Opposite.write(Plane, floatColor(), Values.data());
        Straight.connect(Slot, Pixels);
        Inverted.connect(Slot, Opposite);
        Inverted.Given.Slots[Slot].Inverted = true;
        QVERIFY(difference(Straight.picture(), Inverted.picture()) < 2e-3f);
        // The input's own value is what it says.
        Shading Value(Parameters::MetallicRoughness);
        Value.setValue(Slot, OrvColor(0.25f, 0.25f, 0.25f));
        const std::vector<float> Before = Value.picture();
        Value.Given.Slots[Slot].Inverted = true;
        QCOMPARE(Value.picture(), Before);
    }
}

void TstShading::transparentParts()
{
    Shading Shown(Parameters::MetallicRoughness);
    OrvImageBuffer Roughness = filled(OrvColor::clear());
    Roughness.fill(OrvColor(1.0f, 1.0f, 1.0f, 0.5f), QRect(0, 0, 75, 133));
    Shown.connect(Parameters::Roughness, Roughness);
    Shown.setValue(Parameters::Roughness, OrvColor(0.4f, 0.4f, 0.4f));
    Shading Expected(Parameters::MetallicRoughness);
    Expected.setValue(Parameters::Roughness, OrvColor(0.7f, 0.7f, 0.7f));
    QVERIFY(isNear(Shown.pixel(20, 20).red(), Expected.pixel(20, 20).red()));
    Expected.setValue(Parameters::Roughness, OrvColor(0.4f, 0.4f, 0.4f));
    QVERIFY(isNear(Shown.pixel(120, 20).red(), Expected.pixel(120, 20).red()));
    // Colour keeps its transparency, and all that shines goes with it.
    Shown.connect(Parameters::Color, filled(OrvColor(1.0f, 0.5f, 0.25f, 0.25f)));
    Expected.setValue(Parameters::Color, OrvColor(1.0f, 0.5f, 0.25f, 1.0f));
    QCOMPARE(Shown.pixel(120, 20).alpha(), 0.25f);
    QVERIFY(isNear(Shown.pixel(120, 20).green(), Expected.pixel(120, 20).green()));
    Shown.connect(Parameters::Color, filled(OrvColor::clear()));
    Shown.setValue(Parameters::Emissive, OrvColor::white());
    QCOMPARE(Shown.pixel(120, 20), OrvColor::clear());
}

void TstShading::unlitAndLayered()
{
    Shading Unlit(Parameters::Unlit);
    const OrvImageBuffer Picture = picture(Plane, 5);
    Unlit.connect(Parameters::Color, Picture);
    Unlit.setValue(Parameters::Emissive, OrvColor::white());
    QVERIFY(difference(Unlit.picture(), rendered(*source(Picture), Plane)) < 1e-6f);

    Shading Layered(Parameters::Layered);
    Layered.setValue(Parameters::Color, OrvColor(0.5f, 0.5f, 0.5f));
    Layered.connect(Parameters::Roughness, filled(OrvColor(1.0f, 0.0f, 0.0f, 0.5f)));
    Layered.connect(Parameters::Metallic, filled(OrvColor(0.0f, 1.0f, 0.0f, 0.5f)));
    // The third above the second above grey.
    const OrvColor Seen = Layered.pixel(5, 5);
    QVERIFY(isNear(Seen.red(), 0.5f + 0.125f) && isNear(Seen.green(), 0.375f) && isNear(Seen.blue(), 0.125f));
    // Relief changes their light: not where it is flat, brighter where it faces the lamp.
    const std::vector<float> Flat = Layered.picture();
    Layered.connect(Parameters::Height, filled(OrvColor(0.3f, 0.3f, 0.3f)));
    QVERIFY(difference(Layered.picture(), Flat) < 1e-5f);
    Layered.connect(Parameters::Height, heights(Layout, [](int X, int) { return float(X % 50) * 0.2f; }));
    Layered.Given.Lamp.U = -1.0f;
    Layered.Given.Lamp.Ambient = 0.1f;
    QVERIFY(Layered.pixel(75, 70).green() > 0.4f); // rises away from the lamp
    QVERIFY(Layered.pixel(100, 70).green() < 0.3f); // falls
    QCOMPARE(Layered.pixel(100, 70).alpha(), 1.0f);
}

void TstShading::normalDirections()
{
    // The light stands in the middle; a slope that faces it is brighter than one that turns away.
    Shading Shown(Parameters::MetallicRoughness);
    Shown.setValue(Parameters::Roughness, OrvColor::white());
    Shown.Given.Lamp.U = Shown.Given.Lamp.V = 0.5f;
    const QPoint Left(20, 66), Right(130, 66), Top(75, 15), Bottom(75, 118);
    struct Case {
        OrvColor Normal;
        QPoint Facing, Away;
    };
    for (const Case& One : {Case{OrvColor(0.8f, 0.5f, 0.9f), Left, Right}, // red points to the right
             Case{OrvColor(0.2f, 0.5f, 0.9f), Right, Left},
             Case{OrvColor(0.5f, 0.8f, 0.9f), Bottom, Top}, // green points up
             Case{OrvColor(0.5f, 0.2f, 0.9f), Top, Bottom}}) {
        Shown.setValue(Parameters::Normal, One.Normal);
        const float Away = Shown.pixel(One.Away.x(), One.Away.y()).red();
        QVERIFY(Shown.pixel(One.Facing.x(), One.Facing.y()).red() > 1.2f * Away);
    }
    // One half is flat, and blue may be anything above it.
    Shown.setValue(Parameters::Normal, OrvColor(0.5f, 0.5f, 1.0f));
    const std::vector<float> Flat = Shown.picture();
    Shown.setValue(Parameters::Normal, OrvColor(0.5f, 0.5f, 0.75f));
    QVERIFY(difference(Shown.picture(), Flat) < 1e-5f);
}

void TstShading::heightsBecomeNormals()
{
    const OrvUdimLayout Square(QSize(128, 128));
    for (const QPointF& Slope : {QPointF(0.5, 0.0), QPointF(0.0, 0.5), QPointF(-0.3, 0.6)}) {
        // A plane that rises so much for a whole tile along u and v is one normal, up to all edges.
        const auto height = [&Slope](int X, int Y) { return float(Slope.x() * X - Slope.y() * Y) / 128.0f; };
        const float Length = std::sqrt(float(Slope.x() * Slope.x() + Slope.y() * Slope.y()) + 1.0f);
        Shading Normals(Parameters::MetallicRoughness, Square);
        Normals.setValue(Parameters::Normal,
            OrvColor(0.5f - float(Slope.x()) / Length / 2.0f, 0.5f - float(Slope.y()) / Length / 2.0f,
                0.5f + 0.5f / Length));
        const std::vector<float> Expected = Normals.picture(Square.extent());
        Shading Heights(Parameters::MetallicRoughness, Square);
        Heights.Given.HeightScale = 1.0f;
        Heights.connect(Parameters::Height, heights(Square, height));
        QVERIFY(difference(Heights.picture(Square.extent()), Expected) < 1e-3f);
        // A bump is the same with a scale of its own, and both add up.
        Shading Bumps(Parameters::SpecularGloss, Square);
        Bumps.setValue(Parameters::Specular, OrvColor(0.04f, 0.04f, 0.04f));
        Bumps.Given.BumpScale = 0.5f;
        Bumps.Given.HeightScale = 0.5f;
        Bumps.connect(Parameters::Normal, heights(Square, height));
        Bumps.connect(Parameters::Height, heights(Square, height));
        QVERIFY(difference(Bumps.picture(Square.extent()), Expected) < 1e-3f);
    }
}

void TstShading::tilesAreSurfacesOfTheirOwn()
{
    // A step of height from tile to tile is no slope; the tiles are no multiple of the engine's.
    const OrvUdimLayout Two(QSize(100, 60), {1001, 1002, 1011});
    Shading Shown(Parameters::MetallicRoughness, Two);
    const std::vector<float> Flat = Shown.picture(Two.extent());
    Shown.connect(Parameters::Height,
        heights(Two, [](int X, int Y) { return (X >= 100 ? 5.0f : 0.0f) + (Y >= 60 ? 3.0f : 0.0f); }));
    QVERIFY(difference(Shown.picture(Two.extent()), Flat) < 1e-5f);
    const QRect Seam(30, 20, 40, 20);
    QVERIFY(difference(rendered(Shown.node(), Seam, 0.5),
                rendered(Shading(Parameters::MetallicRoughness, Two).node(), Seam, 0.5))
        < 1e-5f);
    // A tile of one pixel has no slope at all.
    const OrvUdimLayout Tiny(QSize(1, 1), {1001, 1002});
    Shading Smallest(Parameters::MetallicRoughness, Tiny);
    const std::vector<float> Plain = Smallest.picture(Tiny.extent());
    Smallest.connect(Parameters::Height, heights(Tiny, [](int X, int) { return float(X); }));
    QCOMPARE(Smallest.picture(Tiny.extent()), Plain);
}

void TstShading::lightAcrossTiles()
{
    const OrvUdimLayout Tiles(QSize(64, 64), {1001, 1013}); // three columns, two rows
    Shading Shown(Parameters::MetallicRoughness, Tiles);
    Shown.setValue(Parameters::Roughness, OrvColor::white());
    Shown.Given.Lamp.Height = 0.2f;
    for (const QPointF& Place : {QPointF(0.25, 0.25), QPointF(2.5, 1.75), QPointF(1.25, 0.5)}) {
        Shown.Given.Lamp.U = float(Place.x());
        Shown.Given.Lamp.V = float(Place.y());
        const std::vector<float> Picture = Shown.picture(Tiles.extent());
        int Brightest = 0;
        for (int Pixel = 0; Pixel < Tiles.extent().width() * Tiles.extent().height(); ++Pixel) {
            if (Picture[size_t(Pixel) * 4] > Picture[size_t(Brightest) * 4])
                Brightest = Pixel;
        }
        const int Width = Tiles.extent().width();
        QVERIFY(qAbs(Brightest % Width - Place.x() * 64.0) <= 1.0);
        QVERIFY(qAbs(Brightest / Width - (2.0 - Place.y()) * 64.0) <= 1.0);
    }
}

void TstShading::regionsAndCaches()
{
    // A dab of height changes the pixels around it as well; one of colour does not.
    Shading Shown(Parameters::MetallicRoughness);
    Shown.Given.HeightScale = 0.3f;
    Shown.connect(Parameters::Color, picture(Plane, 1));
    Shown.connect(Parameters::Height, picture(Plane, 2));
    Shown.node().setCached(true);
    renderedInPieces(Shown.node(), Plane);
    QRegion Told;
    Shown.pNode->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    Shown.Sources[0]->pixelsWritten(QRect(30, 30, 5, 5));
    QCOMPARE(Told.boundingRect(), QRect(30, 30, 5, 5));
    Told = QRegion();
    Shown.Sources[1]->pixelsWritten(QRect(30, 30, 5, 5));
    QCOMPARE(Told.boundingRect(), QRect(29, 29, 7, 7));
    for (const QRect& Dab : {QRect(40, 50, 9, 3), QRect(0, 0, 1, 1), QRect(140, 125, 20, 20)}) {
        for (const size_t Index : {size_t(0), size_t(1)}) {
            Shown.Buffers[Index ? Parameters::Height : Parameters::Color].fill(OrvColor::white(), Dab);
            Shown.Sources[Index]->pixelsWritten(Dab);
            Shading Fresh(Parameters::MetallicRoughness);
            Fresh.Given.HeightScale = 0.3f;
            Fresh.connect(Parameters::Color, Shown.Buffers[Parameters::Color]);
            Fresh.connect(Parameters::Height, Shown.Buffers[Parameters::Height]);
            QVERIFY(difference(renderedInPieces(Shown.node(), Plane), Fresh.picture()) < 1e-5f);
        }
    }
    // Any piece looks as it does in the whole.
    Shown.node().setCached(false);
    QVERIFY(difference(renderedInPieces(Shown.node(), Plane, 7), Shown.picture()) < 1e-5f);
    // Stacks of layers are computed on the way.
    OrvImageBuffer Over = picture(Plane, 9);
    const auto pOver = source(Over),
               pStack = blend(Shown.Sources[1].get(), pOver.get(), OrvBlendMode::Average);
    Shown.pNode->connectInput(OrvEngineNode::Input5, pStack.get());
    Shading Fresh(Parameters::MetallicRoughness);
    Fresh.Given.HeightScale = 0.3f;
    Fresh.connect(Parameters::Color, Shown.Buffers[Parameters::Color]);
    OrvImageBuffer Blended(Plane, floatColor());
    Blended.write(Plane, floatColor(), rendered(*pStack, Plane).data());
    Fresh.connect(Parameters::Height, Blended);
    QVERIFY(difference(Shown.picture(), Fresh.picture()) < 1e-4f);
}

void TstShading::reducedLevels()
{
    // Smooth maps look the same at every scale, heights too: the slope is that of the surface, not of the
    // pixels.
    const OrvUdimLayout Wide(QSize(512, 512));
    Shading Shown(Parameters::MetallicRoughness, Wide);
    Shown.setValue(Parameters::Roughness, OrvColor(0.8f, 0.8f, 0.8f));
    Shown.Given.HeightScale = 0.1f;
    Shown.connect(Parameters::Height,
        heights(Wide, [](int X, int Y) { return std::sin(float(X) / 80.0f) + std::cos(float(Y) / 90.0f); }));
    const std::vector<float> Whole = Shown.picture(Wide.extent());
    for (const double Scale : {0.5, 0.25, 0.125, 0.4}) {
        for (const QPoint& Place : {QPoint(256, 256), QPoint(64, 400), QPoint(400, 96), QPoint(480, 480)}) {
            const QPoint Reduced(int(Place.x() * Scale), int(Place.y() * Scale));
            const float Seen = rendered(Shown.node(), QRect(Reduced, QSize(1, 1)), Scale)[0];
            const float Expected = Whole[size_t(Place.y() * 512 + Place.x()) * 4];
            QVERIFY2(isNear(Seen, Expected, 0.03f),
                qPrintable(QStringLiteral("%1: %2 %3").arg(Scale).arg(double(Seen)).arg(double(Expected))));
        }
    }
    // Pieces of a level meet without seams.
    const QRect Part(0, 0, 128, 128);
    const std::vector<float> AtOnce = rendered(Shown.node(), Part, 0.25);
    for (const QRect& Piece : {QRect(0, 0, 50, 40), QRect(50, 40, 78, 88)}) {
        const std::vector<float> Alone = rendered(Shown.node(), Piece, 0.25);
        for (int Y = 0; Y < Piece.height(); ++Y) {
            for (int X = 0; X < Piece.width(); ++X) {
                const size_t There = size_t((Piece.y() + Y) * Part.width() + Piece.x() + X) * 4;
                QVERIFY(isNear(Alone[size_t(Y * Piece.width() + X) * 4], AtOnce[There], 1e-3f));
            }
        }
    }
}

void TstShading::changesOfParameters()
{
    Shading Shown(Parameters::MetallicRoughness);
    Shown.node();
    QRegion Told;
    Shown.pNode->setInvalidated([&Told](const QRect& Region) { Told += Region; });
    Shown.node(); // nothing new
    QVERIFY(Told.isEmpty());
    Shown.Given.Lamp.U += 0.1f;
    Shown.node();
    QVERIFY(Told.contains(Plane));
    // Other nodes do not know what shading is, nor does shading what they know.
    const auto pPass = OrvEngineNode::createPass();
    pPass->setShading(Shown.Given);
    Shown.pNode->setBlend(OrvBlendParameters());
    QVERIFY(!pPass->readsFrom(OrvEngineNode::Input7, Shown.pNode.get()));
    pPass->connectInput(OrvEngineNode::Input7, Shown.pNode.get());
    QVERIFY(!pPass->readsFrom(OrvEngineNode::Input7, Shown.pNode.get()));
    // What feeds it may go first.
    auto pSource = source(picture(Plane, 1));
    Shown.pNode->connectInput(OrvEngineNode::Input7, pSource.get());
    QVERIFY(Shown.pNode->readsFrom(OrvEngineNode::Input7, pSource.get()));
    pSource.reset();
    Shown.Given.Slots[Parameters::Emissive].Used = Shown.Given.Slots[Parameters::Emissive].Connected = true;
    QVERIFY(std::isfinite(Shown.pixel(3, 3).red()));
}

void TstShading::nothingLeaks()
{
    QCOMPARE(OrvEngine::shutdown(), 0);
}

QTEST_GUILESS_MAIN(TstShading)
#include "TstShading.moc"
