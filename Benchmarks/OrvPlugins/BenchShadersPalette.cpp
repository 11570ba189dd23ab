// How fast the list of shaders follows an object with hundreds of them, next to the least that it has to do:
// to ask for the shaders, and to compare each row with its node. The 125 ms for which a palette collects
// changes are left out.

#include "Benchmarks/OrvPlugins/ModuleBenchmark.h"

#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCore/Shaders/OrvLayerShaderUtils.h"
#include "OrvCoreModules/Window/OrvApplication.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderModel.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderView.h"

#include <memory>

namespace {

constexpr int ShaderCount = 200;
constexpr double AllowedMilliseconds = 5.0; // of a refresh that finds nothing changed

std::unique_ptr<OrvShaderView> makePalette()
{
    auto pView = std::make_unique<OrvShaderView>(nullptr);
    pView->resize(300, 700);
    pView->show();
    pView->refresh();
    QApplication::processEvents();
    return pView;
}

void makeShaders()
{
    for (int Index = 0; Index < ShaderCount; ++Index)
        OrvLayerShaderUtils::createShaderFromKey(QStringLiteral("Shader/MetallicRoughness"), false);
}

void refreshUnchanged(benchmark::State& State)
{
    const auto pView = makePalette();
    for (auto _ : State) {
        pView->refresh();
        QApplication::processEvents();
    }
}

void floorRefreshUnchanged(benchmark::State& State)
{
    const auto pView = makePalette();
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    for (auto _ : State) {
        int Differences = 0;
        const QList<OrvSnBaseNode*> Nodes = OrvLayerShaderManager::instance().getShaderNodes(pNetwork, true);
        for (int Row = 0; Row < pView->model()->rowCount(); ++Row)
            Differences += Nodes.at(Row)->name() != pView->model()->item(Row)->text();
        benchmark::DoNotOptimize(Differences);
        QApplication::processEvents();
    }
}

void renameOne(benchmark::State& State)
{
    const auto pView = makePalette();
    OrvSnBaseNode* pNode
        = OrvLayerShaderManager::instance()
              .getShaderNodes(OrvShaderNetworkManager::instance().currentShaderNetwork(), false)
              .last();
    int Number = 0;
    for (auto _ : State) {
        pNode->setName(QString::number(++Number));
        pView->refresh();
        QApplication::processEvents();
    }
}

} // namespace

int main(int ArgumentCount, char** pArguments)
{
    const ModuleBenchmark Module(ArgumentCount, pArguments);
    ModuleBenchmark::openProject();
    makeShaders();

    const std::string Of = ", " + std::to_string(ShaderCount) + " shaders";
    RatioReporter::measure("floor: refresh unchanged" + Of, floorRefreshUnchanged, 0.3);
    RatioReporter::measure("refresh unchanged" + Of, refreshUnchanged, 0.3);
    RatioReporter::measure("rename one" + Of, renameOne, 0.3);
    RatioReporter Reporter;
    ModuleBenchmark::run(Reporter);
    const bool IsMet = !(Reporter.milliseconds("refresh unchanged" + Of) > AllowedMilliseconds);
    std::printf("refresh unchanged: %s %.0f ms\n", IsMet ? "within" : "MORE THAN", AllowedMilliseconds);
    return IsMet ? EXIT_SUCCESS : EXIT_FAILURE;
}
