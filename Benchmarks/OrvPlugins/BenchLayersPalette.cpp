// How fast the Layers palette follows stacks of thousands of layers, next to the least that a tree of row widgets costs
// in plain Qt. The 125 ms for which a palette collects changes are left out: refreshes are called at once.

#include "Benchmarks/OrvPlugins/FloorTree.h"
#include "Benchmarks/OrvPlugins/LayersBenchmark.h"
#include "Benchmarks/OrvPlugins/ModuleBenchmark.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvDdi/Image/OrvColor.h"

#include <malloc.h>

using namespace LayersBenchmark;

namespace {

void build(benchmark::State& State, int LayerCount)
{
    OrvShaderInput* pChannel = channelOf(LayerCount);
    for (auto _ : State) {
        State.PauseTiming();
        auto pPalette = std::make_unique<Palette>(pChannel);
        State.ResumeTiming();
        pPalette->refresh();
        State.PauseTiming();
        pPalette.reset();
        settle();
        State.ResumeTiming();
    }
}

void floorBuild(benchmark::State& State, int LayerCount)
{
    for (auto _ : State) {
        State.PauseTiming();
        auto pTree = makeFloor();
        State.ResumeTiming();
        pTree->build(LayerCount);
        settle();
        State.PauseTiming();
        pTree.reset();
        settle();
        State.ResumeTiming();
    }
}

void insertOne(benchmark::State& State, int LayerCount)
{
    OrvShaderInput* pChannel = channelOf(LayerCount);
    Palette Shown(pChannel);
    Shown.refresh();
    for (auto _ : State) {
        State.PauseTiming();
        OrvLayer* pLayer = pChannel->createPaintableLayer(OrvLayerCreateFlags(), nullptr, QStringLiteral("New"), OrvColor());
        State.ResumeTiming();
        Shown.refresh();
        State.PauseTiming();
        pChannel->deleteLayers({pLayer});
        Shown.refresh();
        State.ResumeTiming();
    }
}

void floorInsertOne(benchmark::State& State, int LayerCount)
{
    auto pTree = makeFloor();
    pTree->build(LayerCount);
    settle();
    for (auto _ : State) {
        pTree->insertRowOnTop();
        settle();
    }
}

void moveOne(benchmark::State& State, int LayerCount)
{
    OrvShaderInput* pChannel = channelOf(LayerCount);
    Palette Shown(pChannel);
    Shown.refresh();
    for (auto _ : State) {
        State.PauseTiming();
        const QList<OrvLayer*> Layers = pChannel->layerList();
        OrvLayerStreamUtils::insertLayerAfter(Layers.last(), Layers.first()->blendNode(), pChannel);
        State.ResumeTiming();
        Shown.refresh();
    }
}

void floorMoveOne(benchmark::State& State, int LayerCount)
{
    auto pTree = makeFloor();
    pTree->build(LayerCount);
    settle();
    for (auto _ : State) {
        pTree->moveLastRowToTop();
        settle();
    }
}

void refreshUnchanged(benchmark::State& State, int LayerCount)
{
    Palette Shown(channelOf(LayerCount));
    Shown.refresh();
    for (auto _ : State)
        Shown.refresh();
}

/// Bytes on the heap; what the system keeps in reserve does not count.
size_t heapBytes()
{
    const struct mallinfo2 Heap = mallinfo2();
    return Heap.uordblks + Heap.hblkhd;
}

/// Of a layer that is never in view, with its row.
void printMemoryOfRows()
{
    constexpr int LayerCount = 10000;
    settle();
    const size_t Before = heapBytes();
    OrvShaderInput* pChannel = makeChannel(LayerCount);
    settle();
    const size_t WithLayers = heapBytes();
    Palette Shown(pChannel);
    Shown.refresh();
    settle();
    const size_t WithRows = heapBytes();
    std::printf("memory of a layer %.2f KiB (nodes included), of its row %.2f KiB\n",
        double(WithLayers - Before) / LayerCount / 1024.0, double(WithRows - WithLayers) / LayerCount / 1024.0);
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    const ModuleBenchmark Module(ArgumentCount, pArguments);
    ModuleBenchmark::openProject();

    for (const int LayerCount : {1000, 10000}) {
        const auto add = [LayerCount](const char* pName, void (*pMeasured)(benchmark::State&, int)) {
            RatioReporter::measure(std::string(pName) + ", " + std::to_string(LayerCount) + " layers",
                [LayerCount, pMeasured](benchmark::State& State) { pMeasured(State, LayerCount); }, 0.3);
        };
        add("floor: build", floorBuild);
        add("build", build);
        add("floor: insert one", floorInsertOne);
        add("insert one", insertOne);
        add("floor: move one", floorMoveOne);
        add("move one", moveOne);
        add("refresh unchanged", refreshUnchanged);
    }
    RatioReporter Reporter;
    ModuleBenchmark::run(Reporter);
    for (const char* pName : {"build", "insert one", "move one", "refresh unchanged"})
        Reporter.printExponent(
            std::string(pName) + ", 1000 layers", 1000, std::string(pName) + ", 10000 layers", 10000);
    printMemoryOfRows();
    return EXIT_SUCCESS;
}
