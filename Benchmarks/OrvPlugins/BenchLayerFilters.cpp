// What a key stroke in the filter bar of the Layers palette costs, from the changed text to the painted tree,
// next to the same search in a plain tree of row widgets. Each round types what passes all rows, some, none,
// and clears it.

#include "Benchmarks/OrvPlugins/FloorTree.h"
#include "Benchmarks/OrvPlugins/LayersBenchmark.h"
#include "Benchmarks/OrvPlugins/ModuleBenchmark.h"


#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>

using namespace LayersBenchmark;

namespace {

const QStringList Texts{
    QStringLiteral("layer"), QStringLiteral("layer 7"), QStringLiteral("layer 77x"), QString()};

QLineEdit* nameEdit(const OrvLayerView& View)
{
    // The first combo box is the one of the filters.
    const QWidget* pPane = View.findChild<QComboBox*>()->parentWidget();
    return pPane->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
}

void keyStroke(benchmark::State& State, int LayerCount)
{
    Palette Shown(channelOf(LayerCount));
    Shown.refresh();
    QLineEdit* pEdit = nameEdit(Shown.view());
    int Step = 0;
    for (auto _ : State) {
        pEdit->setText(Texts[Step++ % Texts.size()]);
        settle();
    }
}

void floorKeyStroke(benchmark::State& State, int LayerCount)
{
    auto pTree = makeFloor();
    pTree->build(LayerCount);
    settle();
    int Step = 0;
    for (auto _ : State) {
        pTree->filterRows(Texts[Step++ % Texts.size()]);
        settle();
    }
}

void refreshFiltered(benchmark::State& State, int LayerCount)
{
    Palette Shown(channelOf(LayerCount));
    nameEdit(Shown.view())->setText(Texts.first());
    Shown.refresh();
    for (auto _ : State)
        Shown.refresh();
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    const ModuleBenchmark Module(ArgumentCount, pArguments);
    ModuleBenchmark::openProject();
    for (const int LayerCount : {1000, 10000}) {
        const auto add = [LayerCount](const char* pName, void (*pMeasured)(benchmark::State&, int)) {
            RatioReporter::measure(
                std::string(pName) + ", " + std::to_string(LayerCount) + " layers",
                [LayerCount, pMeasured](benchmark::State& State) { pMeasured(State, LayerCount); }, 0.3);
        };
        add("floor: key stroke", floorKeyStroke);
        add("key stroke", keyStroke);
        add("refresh filtered and unchanged", refreshFiltered);
    }
    RatioReporter Reporter;
    ModuleBenchmark::run(Reporter);
    for (const char* pName : {"key stroke", "refresh filtered and unchanged"})
        Reporter.printExponent(
            std::string(pName) + ", 1000 layers", 1000, std::string(pName) + ", 10000 layers", 10000);
    return EXIT_SUCCESS;
}
