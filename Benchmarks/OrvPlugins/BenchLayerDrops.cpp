// What it costs to move, copy, share, group and delete thousands of layers at once, without the palette that
// shows them (see BenchLayersPalette), and how that grows with their number.

#include "Benchmarks/OrvPlugins/LayersBenchmark.h"
#include "Benchmarks/OrvPlugins/ModuleBenchmark.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Channels/OrvShaderInputUtils.h"
#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnMergeNode.h"
#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvDdi/Image/OrvColor.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerDrop.h"

using namespace LayersBenchmark;

namespace {

constexpr int Smallest = 1000, Middle = 3000, Largest = 9000;

OrvShaderInput* channel(const QString& Name)
{
    return OrvShaderInputUtils::create(
        OrvShaderNetworkManager::instance().currentShaderNetwork(), Name, QSize(256, 256), GL_UNSIGNED_BYTE);
}

/// Flat, so that each layer is dragged by itself.
void fill(OrvShaderInput* pChannel, int LayerCount)
{
    const OrvUndoManager::NoRecording NoRecording;
    for (int Index = 0; Index < LayerCount; ++Index)
        pChannel->createPaintableLayer(
            OrvLayerCreateFlags(), nullptr, QStringLiteral("Layer %1").arg(Index), OrvColor());
}

void drop(
    OrvShaderInput* pFrom, OrvShaderInput* pTo, OrvSnBaseNode* pTarget, Qt::DropAction Action, int First)
{
    QVector<OrvSnBaseNode*> Nodes;
    for (OrvLayer* pLayer : pFrom->layerList().mid(First))
        Nodes.append(pLayer->blendNode());
    const bool Done = OrvLayerDrop::inUndoStep(
        [&] { return OrvLayerDrop(Nodes, Action, pFrom, pTarget, pTo).carryOut(); });
    if (!Done)
        qFatal("The layers were not dropped");
}

/// Runs an edit of a fresh stack again and again; taking it back is not measured.
void edit(benchmark::State& State, int LayerCount,
    const std::function<void(OrvShaderInput* pFull, OrvShaderInput* pEmpty)>& Edit)
{
    OrvProjectManager::instance().newProject(QStringLiteral("Benchmark"));
    OrvShaderInput* pFull = channel(QStringLiteral("Full"));
    OrvShaderInput* pEmpty = channel(QStringLiteral("Empty"));
    fill(pFull, LayerCount);
    OrvShaderInputManager::instance().makeShaderInputCurrent(pFull, true);
    OrvUndoManager::instance().clear();
    settle();
    for (auto _ : State) {
        Edit(pFull, pEmpty);
        State.PauseTiming();
        OrvUndoManager::instance().undo();
        settle();
        State.ResumeTiming();
    }
}

void moveToOther(benchmark::State& State, int LayerCount)
{
    edit(State, LayerCount, [](OrvShaderInput* pFull, OrvShaderInput* pEmpty) {
        drop(pFull, pEmpty, pEmpty->topNode(), Qt::MoveAction, 0);
    });
}

void moveToTop(benchmark::State& State, int LayerCount)
{
    edit(State, LayerCount, [LayerCount](OrvShaderInput* pFull, OrvShaderInput*) {
        drop(pFull, pFull, pFull->topNode(), Qt::MoveAction, LayerCount / 2);
    });
}

void copy(benchmark::State& State, int LayerCount)
{
    edit(State, LayerCount, [](OrvShaderInput* pFull, OrvShaderInput*) {
        drop(pFull, pFull, pFull->topNode(), Qt::CopyAction, 0);
    });
}

void share(benchmark::State& State, int LayerCount)
{
    edit(State, LayerCount, [](OrvShaderInput* pFull, OrvShaderInput* pEmpty) {
        drop(pFull, pEmpty, pEmpty->topNode(), Qt::LinkAction, 0);
    });
}

void copyToBottom(benchmark::State& State, int LayerCount)
{
    edit(State, LayerCount, [](OrvShaderInput* pFull, OrvShaderInput*) {
        drop(pFull, pFull, pFull->layerList().last()->blendNode(), Qt::CopyAction, 0);
    });
}

void group(benchmark::State& State, int LayerCount)
{
    edit(State, LayerCount, [](OrvShaderInput* pFull, OrvShaderInput*) {
        QString Error;
        pFull->groupLayers(
            Error, OrvLayerCreateFlags(), pFull->layerList(), nullptr, QStringLiteral("Group"));
    });
}

void remove(benchmark::State& State, int LayerCount)
{
    edit(State, LayerCount,
        [](OrvShaderInput* pFull, OrvShaderInput*) { pFull->deleteLayers(pFull->layerList()); });
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    const ModuleBenchmark Module(ArgumentCount, pArguments);

    struct Case {
        const char* pName;
        void (*pMeasured)(benchmark::State&, int);
    };
    const std::vector<Case> Cases{{"move to another channel", moveToOther},
        {"move half to the top", moveToTop}, {"copy", copy}, {"copy to the bottom", copyToBottom},
        {"share", share}, {"group", group}, {"delete", remove}};
    const auto nameOf = [](const Case& One, int LayerCount) {
        return std::string(One.pName) + ", " + std::to_string(LayerCount) + " layers";
    };
    for (const Case& One : Cases) {
        for (const int LayerCount : {Smallest, Middle, Largest}) {
            RatioReporter::measure(
                nameOf(One, LayerCount),
                [One, LayerCount](benchmark::State& State) { One.pMeasured(State, LayerCount); }, 0.1, 3);
        }
    }
    RatioReporter Reporter;
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    for (const Case& One : Cases)
        Reporter.printExponent(nameOf(One, Smallest), Smallest, nameOf(One, Largest), Largest);
    return EXIT_SUCCESS;
}
