// What caches of layers are worth: a stack of painted layers, some with a costly filter, below one that is painted on.
// Each round is a dab, or another amount of the layer on top, and what the canvas computes then; next to it
// the same above one plain image, which is the least that anything below can cost.

#include "Benchmarks/RatioReporter.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvNodeEvaluation.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvGeoEntity.h"
#include "OrvCore/Project/OrvProject.h"
#include "OrvCore/Project/OrvProjectManager.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineNode.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvDdi/Image/OrvImageSet.h"

#include <QtGui/QGuiApplication>

namespace {

constexpr int Edge = 2048;
constexpr int LayerCount = 12;
constexpr int FilterEvery = 6;
constexpr int DabEdge = 256;

const OrvPixelFormat ForDisplay{GL_UNSIGNED_BYTE, OrvPixelFormat::Rgba, OrvPixelFormat::Srgb};

enum class Kept { Nothing, Layers, UpToTop, PlainImage };

/// The channel with the layer on top; it lives as long as the project.
struct Stack {
    OrvShaderInput* pChannel = nullptr;
    OrvLayer* pTop = nullptr;
};

void fill(OrvLayer* pLayer, const QRect& Region, const OrvColor& Color)
{
    pLayer->paintImageSet()->buffer().fill(Color, Region);
    pLayer->paintImageSet()->pixelsWritten(Region);
}

Stack makeStack(Kept What)
{
    OrvShaderNetwork* pNetwork
        = OrvProjectManager::instance().currentProject()->currentGeoEntity()->shaderNetwork();
    Stack Made;
    Made.pChannel
        = OrvShaderInputUtils::create(pNetwork, QStringLiteral("Channel"), {Edge, Edge}, GL_UNSIGNED_BYTE);
    const int Count = What == Kept::PlainImage ? 1 : LayerCount;
    OrvLayer* pLast = nullptr;
    for (int Index = 0; Index < Count; ++Index) {
        pLast = Made.pChannel->createPaintableLayer(OrvColor(0.3f, 0.1f * (Index % 10), 0.6f, 0.5f), 0);
        fill(pLast, QRect(100 * Index, 50 * Index, 900, 900), OrvColor(0.9f, 0.5f, 0.1f));
        if (Count > 1 && Index % FilterEvery == 0) {
            pLast->addLayerAdjustmentLayerFromKey(QStringLiteral("Filter/Blur/Median"));
            if (What == Kept::Layers)
                pLast->cacheLayer();
        }
    }
    if (What == Kept::UpToTop)
        pLast->cacheUpToHere();
    Made.pTop = Made.pChannel->createPaintableLayer(OrvColor::clear(), 0);
    fill(Made.pTop, QRect(0, 0, Edge, Edge), OrvColor(0.1f, 0.1f, 0.1f, 0.2f));
    return Made;
}

void render(const Stack& Shown, const QRect& Region)
{
    static std::vector<char> s_Pixels(std::size_t(Edge) * Edge * 4);
    OrvNodeEvaluation::result(Shown.pChannel->node())->render(Region, 1.0, ForDisplay, s_Pixels.data());
}

void dab(benchmark::State& State, const Stack& Shown)
{
    const QRect Region(Edge / 2, Edge / 3, DabEdge, DabEdge);
    int Step = 0;
    render(Shown, QRect(0, 0, Edge, Edge));
    for (auto _ : State) {
        fill(Shown.pTop, Region, OrvColor(0.2f, 0.01f * (++Step % 100), 0.3f, 0.5f));
        render(Shown, Region);
    }
}

void amount(benchmark::State& State, const Stack& Shown)
{
    int Step = 0;
    render(Shown, QRect(0, 0, Edge, Edge));
    for (auto _ : State) {
        Shown.pTop->blendNode()->setUserAttributeValue(OrvMergeAttributes::Amount, 0.01 * (++Step % 100));
        render(Shown, QRect(0, 0, Edge, Edge));
    }
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication Application(ArgumentCount, pArguments);
    benchmark::Initialize(&ArgumentCount, pArguments);
    OrvProjectManager::instance().newProject(QStringLiteral("Bench"), QStringLiteral("Head"));
    const Stack Plain = makeStack(Kept::PlainImage);
    const std::vector<std::pair<std::string, Stack>> Stacks{{"nothing cached", makeStack(Kept::Nothing)},
        {"filtered layers cached", makeStack(Kept::Layers)},
        {"cached up to the top", makeStack(Kept::UpToTop)}};
    for (const auto& One : Stacks) {
        const Stack Shown = One.second;
        RatioReporter::measure(
            "floor: dab, " + One.first, [Plain](benchmark::State& State) { dab(State, Plain); }, 0.2);
        RatioReporter::measure(
            "dab, " + One.first, [Shown](benchmark::State& State) { dab(State, Shown); }, 0.2);
        RatioReporter::measure(
            "floor: amount, " + One.first, [Plain](benchmark::State& State) { amount(State, Plain); }, 0.2,
            3);
        RatioReporter::measure(
            "amount, " + One.first, [Shown](benchmark::State& State) { amount(State, Shown); }, 0.2, 3);
    }
    RatioReporter Reporter;
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    Reporter.printRatios();
    for (const std::string Round : {"dab, ", "amount, "}) {
        for (std::size_t Index = 1; Index < Stacks.size(); ++Index) {
            std::printf("%s%s: %.1f times as fast\n", Round.c_str(), Stacks[Index].first.c_str(),
                Reporter.milliseconds(Round + Stacks.front().first)
                    / Reporter.milliseconds(Round + Stacks[Index].first));
        }
    }
    OrvProjectManager::instance().closeProject();
    OrvEngine::shutdown();
    return EXIT_SUCCESS;
}
