// How fast the Channels palette follows documents of many channels, and the Layers palette the choice of another one.
// The 125 ms for which a palette collects changes are left out: refreshes are called at once.

#include "Benchmarks/OrvPlugins/LayersBenchmark.h"
#include "Benchmarks/OrvPlugins/ModuleBenchmark.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputActions.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputView.h"

using namespace LayersBenchmark;

namespace {

OrvShaderInputManager& channels()
{
    return OrvShaderInputManager::instance();
}

/// Fills the project up to that many channels.
void makeChannels(int Count)
{
    const OrvUndoManager::NoRecording NoRecording;
    OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    for (int Number = channels().getShaderInputsFromNetwork(pNetwork).size(); Number < Count; ++Number) {
        OrvShaderInputUtils::create(
            pNetwork, QStringLiteral("Channel %1").arg(Number), QSize(64, 64), GL_UNSIGNED_BYTE);
    }
}

/// A Channels palette that stands in no window of the program's.
std::unique_ptr<OrvShaderInputView> makePalette()
{
    auto pView = std::make_unique<OrvShaderInputView>(nullptr);
    pView->resize(320, 800);
    pView->show();
    settle();
    return pView;
}

void build(benchmark::State& State, int Count)
{
    makeChannels(Count);
    for (auto _ : State) {
        State.PauseTiming();
        auto pView = makePalette();
        State.ResumeTiming();
        pView->refresh();
        settle();
        State.PauseTiming();
        pView.reset();
        settle();
        State.ResumeTiming();
    }
}

void refreshUnchanged(benchmark::State& State, int Count)
{
    makeChannels(Count);
    auto pView = makePalette();
    pView->refresh();
    settle();
    for (auto _ : State) {
        pView->refresh();
        settle();
    }
}

OrvShaderInput* largeChannel(int Index)
{
    static OrvShaderInput* const Made[] = {makeChannel(1000), makeChannel(1000)};
    return Made[Index];
}

/// The rows of a stack that was never shown, and what belongs to its current layer.
void firstRows(benchmark::State& State)
{
    channels().makeShaderInputCurrent(largeChannel(0), true);
    for (auto _ : State) {
        State.PauseTiming();
        auto pPalette = std::make_unique<Palette>(nullptr);
        State.ResumeTiming();
        pPalette->view().setLayerStack(largeChannel(0));
        pPalette->refresh();
        State.PauseTiming();
        pPalette.reset();
        settle();
        State.ResumeTiming();
    }
}

void switchChannel(benchmark::State& State)
{
    Palette Shown(largeChannel(0));
    Shown.refresh();
    int Index = 0;
    for (auto _ : State) {
        Index = 1 - Index;
        channels().makeShaderInputCurrent(largeChannel(Index), true);
        Shown.view().setLayerStack(largeChannel(Index));
        Shown.refresh();
    }
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    const ModuleBenchmark Module(ArgumentCount, pArguments);
    OrvShaderInputActions::instance();
    ModuleBenchmark::openProject();

    RatioReporter::measure("floor: switch between stacks of 1000 layers", firstRows, 0.3);
    RatioReporter::measure("switch between stacks of 1000 layers", switchChannel, 0.3);
    for (const int Count : {500, 10000}) {
        const std::string Suffix = ", " + std::to_string(Count) + " channels";
        RatioReporter::measure(
            "build" + Suffix, [Count](benchmark::State& State) { build(State, Count); }, 0.1, 3);
        RatioReporter::measure("refresh unchanged" + Suffix,
            [Count](benchmark::State& State) { refreshUnchanged(State, Count); }, 0.1, 3);
    }
    RatioReporter Reporter;
    ModuleBenchmark::run(Reporter);
    return EXIT_SUCCESS;
}
