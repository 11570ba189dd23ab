// How long a channel of twenty painted layers takes to become one of another depth or colour space, next to a bare loop
// over as many pixels in memory.

#include "Benchmarks/RatioReporter.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvDdi/Color/OrvColorManager.h"
#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvPixelKernels.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtWidgets/QApplication>

#include <cstdlib>
#include <future>
#include <thread>
#include <vector>

namespace {

constexpr int LayerCount = 20;
constexpr int EdgeLength = 2048;
constexpr int RunLength = 512;

OrvPixelFormat format(GLenum Depth)
{
    return {Depth, OrvPixelFormat::Rgba,
        Depth == GL_UNSIGNED_BYTE ? OrvPixelFormat::Srgb : OrvPixelFormat::Linear};
}

/// A picture that no conversion can shorten.
std::vector<char> picture(GLenum Depth)
{
    const OrvPixelFormat Format = format(Depth);
    std::vector<char> Pixels(std::size_t(EdgeLength) * EdgeLength * std::size_t(Format.bytesPerPixel()));
    float Row[EdgeLength * 4];
    for (int Y = 0; Y < EdgeLength; ++Y) {
        for (int X = 0; X < EdgeLength * 4; ++X)
            Row[X] = float((X * 37 + Y * 91) % 1009) / 1008.0f;
        OrvPixelKernels::best().narrowStraight(orvPixelLayout(Format), Row, EdgeLength,
            Pixels.data() + std::size_t(Y) * EdgeLength * std::size_t(Format.bytesPerPixel()));
    }
    return Pixels;
}

/// The channel that all conversions begin with; each is undone again, out of the measurement.
OrvShaderInput* channel(GLenum Depth)
{
    static std::map<GLenum, OrvShaderInput*> Made;
    OrvShaderInput*& pChannel = Made[Depth];
    if (!pChannel) {
        const OrvProject* pProject = OrvProjectManager::instance().currentProject();
        pChannel = OrvShaderInputUtils::create(pProject->currentGeoEntity()->shaderNetwork(), QString(),
            QSize(EdgeLength, EdgeLength), Depth);
        const std::vector<char> Pixels = picture(Depth);
        for (int Index = 0; Index < LayerCount; ++Index) {
            OrvImageSet* pImages
                = pChannel->createPaintableLayer(0, nullptr, QString(), OrvColor())->paintImageSet();
            pImages->buffer().write(pImages->extent(), format(Depth), Pixels.data());
        }
        OrvUndoManager::instance().clear();
    }
    return pChannel;
}

void convertDepth(benchmark::State& State, GLenum From, GLenum To)
{
    OrvShaderInput* pChannel = channel(From);
    for (auto _ : State) {
        if (!pChannel->convertDepthTo(To, OrvShaderInput::FreeImages))
            std::abort();
        State.PauseTiming();
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().clear();
        State.ResumeTiming();
    }
}

void convertColorSpace(benchmark::State& State, GLenum Depth)
{
    OrvShaderInput* pChannel = channel(Depth);
    for (auto _ : State) {
        if (!pChannel->convertColorSpaceTo(OrvColorManager::acesCg(), OrvShaderInput::FreeImages))
            std::abort();
        State.PauseTiming();
        OrvUndoManager::instance().undo();
        OrvUndoManager::instance().clear();
        State.ResumeTiming();
    }
}

/// The same kernels over contiguous memory, on all threads. The results are kept, as the channel keeps its own.
void bareLoop(benchmark::State& State, GLenum From, GLenum To)
{
    const OrvPixelFormat Source = format(From), Target = format(To);
    const std::vector<char> Pixels = picture(From);
    const OrvPixelKernels& Kernels = OrvPixelKernels::best();
    const int Threads = int(std::thread::hardware_concurrency());
    for (auto _ : State) {
        std::vector<std::unique_ptr<char[]>> Results;
        for (int Layer = 0; Layer < LayerCount; ++Layer) {
            const std::size_t Count = std::size_t(EdgeLength) * EdgeLength;
            Results.emplace_back(new char[Count * std::size_t(Target.bytesPerPixel())]);
            const auto convert = [&](std::size_t First, std::size_t End) {
                float Straight[RunLength * 4];
                for (std::size_t Index = First; Index < End; Index += RunLength) {
                    Kernels.widenStraight(orvPixelLayout(Source),
                        Pixels.data() + Index * std::size_t(Source.bytesPerPixel()), RunLength, Straight);
                    Kernels.narrowStraight(orvPixelLayout(Target), Straight, RunLength,
                        Results.back().get() + Index * std::size_t(Target.bytesPerPixel()));
                }
            };
            std::vector<std::future<void>> Others;
            for (int Thread = 1; Thread < Threads; ++Thread)
                Others.push_back(std::async(std::launch::async, convert,
                    Count * std::size_t(Thread) / std::size_t(Threads),
                    Count * std::size_t(Thread + 1) / std::size_t(Threads)));
            convert(0, Count / std::size_t(Threads));
        }
        State.PauseTiming();
        Results.clear();
        State.ResumeTiming();
    }
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication Application(ArgumentCount, pArguments);
    benchmark::Initialize(&ArgumentCount, pArguments);
    OrvProjectManager::instance().newProject(QStringLiteral("Benchmark"));

    const auto add = [](const std::string& Name, GLenum From, GLenum To) {
        RatioReporter::measure(
            "floor: " + Name, [From, To](benchmark::State& State) { bareLoop(State, From, To); }, 0.3);
        RatioReporter::measure(
            Name, [From, To](benchmark::State& State) { convertDepth(State, From, To); }, 0.3);
    };
    add("20 layers, half to 8 bits", GL_HALF_FLOAT, GL_UNSIGNED_BYTE);
    add("20 layers, 8 bits to half", GL_UNSIGNED_BYTE, GL_HALF_FLOAT);
    RatioReporter::measure(
        "20 layers, half to ACEScg", [](benchmark::State& State) { convertColorSpace(State, GL_HALF_FLOAT); },
        0.3, 3);
    RatioReporter Reporter;
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    Reporter.printRatios();
    OrvProjectManager::instance().closeProject();
    OrvEngine::shutdown();
    return EXIT_SUCCESS;
}
