// How fast the Layers palette follows stacks of thousands of layers, next to the least that a tree of row widgets costs
// in plain Qt. The 125 ms for which a palette collects changes are left out: refreshes are called at once.

#include "Benchmarks/OrvPlugins/FloorTree.h"
#include "Benchmarks/RatioReporter.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerStreamUtils.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerView.h"

#include <malloc.h>

namespace {

const QSize PaletteSize(360, 800);

/// Until nothing is left to be laid out or painted.
void settle()
{
    for (int Round = 0; Round < 3; ++Round)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// A channel of that many layers: each tenth is a group that holds the nine before it.
OrvShaderInput* makeChannel(int LayerCount)
{
    const OrvUndoManager::NoRecording NoRecording;
    OrvShaderInput* pChannel = OrvShaderInputUtils::create(OrvShaderNetworkManager::instance().currentShaderNetwork(),
        QStringLiteral("Channel %1").arg(LayerCount), QSize(256, 256), GL_UNSIGNED_BYTE);
    QList<OrvLayer*> Members;
    for (int Index = 0; Index < LayerCount; ++Index) {
        if (Index % 10 == 9) {
            QString Error;
            pChannel->groupLayers(Error, OrvLayerCreateFlags(), Members, nullptr, QStringLiteral("Group %1").arg(Index));
            Members.clear();
        } else {
            Members.append(pChannel->createPaintableLayer(
                OrvLayerCreateFlags(), nullptr, QStringLiteral("Layer %1").arg(Index), OrvColor()));
        }
    }
    return pChannel;
}

OrvShaderInput* channelOf(int LayerCount)
{
    static QHash<int, OrvShaderInput*> s_Channels;
    OrvShaderInput*& pChannel = s_Channels[LayerCount];
    if (!pChannel)
        pChannel = makeChannel(LayerCount);
    OrvShaderInputManager::instance().makeShaderInputCurrent(pChannel, true);
    settle();
    return pChannel;
}

class Palette {
public:
    explicit Palette(OrvShaderInput* pChannel)
        : m_View(nullptr, 0)
    {
        m_View.resize(PaletteSize);
        m_View.show();
        settle();
        m_View.setLayerStack(pChannel);
    }
    OrvLayerView& view() { return m_View; }
    void refresh()
    {
        m_View.refresh();
        settle();
    }

private:
    OrvLayerView m_View;
};

std::unique_ptr<FloorTree> makeFloor()
{
    auto pTree = std::make_unique<FloorTree>();
    pTree->resize(PaletteSize);
    pTree->show();
    settle();
    return pTree;
}

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
    qputenv("QT_QPA_PLATFORM", "offscreen");
    OrvApplication Application(ArgumentCount, pArguments);
    benchmark::Initialize(&ArgumentCount, pArguments);
    OrvMainWindow::instance();
    OrvProjectManager::instance().newProject(QStringLiteral("Benchmark"));

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
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    Reporter.printRatios();
    for (const char* pName : {"build", "insert one", "move one", "refresh unchanged"})
        Reporter.printExponent(
            std::string(pName) + ", 1000 layers", 1000, std::string(pName) + ", 10000 layers", 10000);
    printMemoryOfRows();
    OrvProjectManager::instance().closeProject();
    settle();
    OrvEngine::shutdown();
    return EXIT_SUCCESS;
}
