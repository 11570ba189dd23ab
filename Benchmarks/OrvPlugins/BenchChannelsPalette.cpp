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

enum LargeChannel { Grouped, OtherGrouped, Flat };

/// Of 1000 layers. Nothing that the rows of one show serves another.
OrvShaderInput* largeChannel(LargeChannel Which)
{
    static OrvShaderInput* const Made[]
        = {makeChannel(1000), makeChannel(1000, QStringLiteral("Other Layer %1")),
            makeChannel(1000, QStringLiteral("Flat Layer %1"), Shape::Flat)};
    return Made[Which];
}

/// The rows of stacks that were never shown, and what belongs to their current layers: one stack and the
/// other in turn, as they are switched.
void firstRows(benchmark::State& State, LargeChannel One, LargeChannel Other)
{
    LargeChannel Now = One;
    for (auto _ : State) {
        State.PauseTiming();
        Now = Now == One ? Other : One;
        channels().makeShaderInputCurrent(largeChannel(Now), true);
        auto pPalette = std::make_unique<Palette>(nullptr);
        State.ResumeTiming();
        pPalette->view().setLayerStack(largeChannel(Now));
        pPalette->refresh();
        State.PauseTiming();
        pPalette.reset();
        settle();
        State.ResumeTiming();
    }
}

void switchChannel(benchmark::State& State, LargeChannel One, LargeChannel Other)
{
    Palette Shown(largeChannel(One));
    Shown.refresh();
    LargeChannel Now = One;
    for (auto _ : State) {
        Now = Now == One ? Other : One;
        channels().makeShaderInputCurrent(largeChannel(Now), true);
        Shown.view().setLayerStack(largeChannel(Now));
        Shown.refresh();
    }
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    const ModuleBenchmark Module(ArgumentCount, pArguments);
    OrvShaderInputActions::instance();
    ModuleBenchmark::openProject();

    const auto addSwitch = [](const char* pName, LargeChannel Other) {
        RatioReporter::measure(std::string("floor: ") + pName,
            [Other](benchmark::State& State) { firstRows(State, Grouped, Other); }, 0.3);
        RatioReporter::measure(
            pName, [Other](benchmark::State& State) { switchChannel(State, Grouped, Other); }, 0.3);
    };
    addSwitch("switch between stacks of 1000 layers", OtherGrouped);
    addSwitch("switch to 1000 layers without groups", Flat);
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
