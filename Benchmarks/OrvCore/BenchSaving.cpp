// What saving costs: a project of 20 painted layers of 4096 x 4096 pixels in mixed depths goes to an empty
// folder, then again after one dab of the brush, then unchanged. Only what was painted may be written again.

#include "Benchmarks/RatioReporter.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>

#include <random>

namespace {

constexpr int PlaneEdge = 4096;
constexpr int LayerCount = 20;
constexpr int StrokesPerLayer = 12;

const OrvPixelFormat Linear{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};

/// A soft dab with the grain of a real brush, so that pixels neither repeat nor compress to nothing.
std::vector<float> makeDab(int Edge, const OrvColor& Color, std::minstd_rand& Random)
{
    std::uniform_real_distribution<float> Grain(0.9f, 1.0f);
    std::vector<float> Pixels(std::size_t(Edge) * Edge * 4);
    float* pPixel = Pixels.data();
    for (int Y = 0; Y < Edge; ++Y) {
        for (int X = 0; X < Edge; ++X, pPixel += 4) {
            const float Distance = std::hypot(2.0f * X / Edge - 1.0f, 2.0f * Y / Edge - 1.0f);
            const float Strength = Grain(Random);
            for (int Component = 0; Component < 3; ++Component)
                pPixel[Component] = Color.components()[Component] * Strength;
            pPixel[3] = std::max(0.0f, 1.0f - Distance);
        }
    }
    return Pixels;
}

void paint(OrvImageSet* pImages, const QPoint& Place, int Edge, const std::vector<float>& Dab)
{
    const QRect Region(Place, QSize(Edge, Edge));
    pImages->buffer().write(Region, Linear, Dab.data());
    pImages->pixelsWritten(Region);
}

QList<OrvImageSet*> paintProject()
{
    constexpr int StrokeEdge = 1024;
    OrvProject* pProject
        = OrvProjectManager::instance().newProject(QStringLiteral("Bench"), QStringLiteral("Head"));
    OrvShaderNetwork* pNetwork = pProject->currentGeoEntity()->shaderNetwork();
    std::minstd_rand Random;
    const auto below = [&Random](int Limit) { return int(Random() % unsigned(Limit)); };
    QList<OrvImageSet*> Painted;
    const QVector<GLenum> Depths{GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT};
    for (int Index = 0; Index < Depths.size(); ++Index) {
        OrvShaderInput* pChannel = OrvShaderInputUtils::create(
            pNetwork, QStringLiteral("Channel"), {PlaneEdge, PlaneEdge}, Depths[Index]);
        while (Painted.size() < LayerCount * (Index + 1) / Depths.size()) {
            OrvImageSet* pImages = pChannel->createPaintableLayer(OrvColor::clear(), 0)->paintImageSet();
            const OrvColor Color(below(256) / 255.0f, below(256) / 255.0f, below(256) / 255.0f);
            const std::vector<float> Dab = makeDab(StrokeEdge, Color, Random);
            for (int Stroke = 0; Stroke < StrokesPerLayer; ++Stroke)
                paint(pImages, {below(PlaneEdge), below(PlaneEdge)}, StrokeEdge, Dab);
            Painted.append(pImages);
        }
    }
    return Painted;
}

void save(const QString& Folder)
{
    QString Error;
    if (!OrvProjectManager::instance().saveProjectAs(Folder, Error))
        qFatal("%s", qPrintable(Error));
}

void saveFirst(benchmark::State& State, const QString& Folder)
{
    for (auto _ : State) {
        State.PauseTiming();
        QDir(Folder).removeRecursively();
        State.ResumeTiming();
        save(Folder);
    }
}

void saveAfterDab(benchmark::State& State, const QString& Folder, const QList<OrvImageSet*>& Painted)
{
    constexpr int DabEdge = 256;
    std::minstd_rand Random;
    int Step = 0;
    save(Folder);
    for (auto _ : State) {
        State.PauseTiming();
        OrvImageSet* pImages = Painted[Step++ % Painted.size()];
        const std::vector<float> Dab = makeDab(DabEdge, OrvColor(0.8f, 0.3f, 0.1f), Random);
        // Across the corner of four stored squares, the worst place.
        paint(pImages, QPoint(1024 - DabEdge / 2, 1024 - DabEdge / 2), DabEdge, Dab);
        State.ResumeTiming();
        save(Folder);
    }
}

void saveUnchanged(benchmark::State& State, const QString& Folder)
{
    for (auto _ : State)
        save(Folder);
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication Application(ArgumentCount, pArguments);
    benchmark::Initialize(&ArgumentCount, pArguments);
    const QTemporaryDir Place;
    const QString Folder = Place.filePath(QStringLiteral("Bench.orvi"));
    const QList<OrvImageSet*> Painted = paintProject();

    const std::string First = "first save", AfterDab = "save after a dab", Unchanged = "save unchanged";
    RatioReporter::measure(
        First, [&](benchmark::State& State) { saveFirst(State, Folder); }, 0.001, 3);
    RatioReporter::measure(
        AfterDab, [&](benchmark::State& State) { saveAfterDab(State, Folder, Painted); }, 1.0, 3);
    RatioReporter::measure(
        Unchanged, [&](benchmark::State& State) { saveUnchanged(State, Folder); }, 0.5, 3);
    RatioReporter Reporter;
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    Reporter.printRatios();
    for (const std::string& Name : {AfterDab, Unchanged}) {
        std::printf("%s: %.2f %% of the first save\n", Name.c_str(),
            100.0 * Reporter.milliseconds(Name) / Reporter.milliseconds(First));
    }
    OrvProjectManager::instance().closeProject();
    OrvEngine::shutdown();
    return EXIT_SUCCESS;
}
