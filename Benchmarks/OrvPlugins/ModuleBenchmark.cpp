#include "Benchmarks/OrvPlugins/ModuleBenchmark.h"

#include "Benchmarks/OrvPlugins/LayersBenchmark.h"

#include "OrvCore/Project/OrvProjectManager.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvDdi/Engine/OrvEngine.h"

namespace {

/// Before there is an application.
int& withoutScreen(int& ArgumentCount)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return ArgumentCount;
}

} // namespace

ModuleBenchmark::ModuleBenchmark(int& ArgumentCount, char** pArguments)
    : m_Application(withoutScreen(ArgumentCount), pArguments)
{
    benchmark::Initialize(&ArgumentCount, pArguments);
    OrvMainWindow::instance();
}

ModuleBenchmark::~ModuleBenchmark()
{
    OrvProjectManager::instance().closeProject();
    LayersBenchmark::settle();
    OrvEngine::shutdown();
}

void ModuleBenchmark::openProject()
{
    OrvProjectManager::instance().newProject(QStringLiteral("Benchmark"));
}

void ModuleBenchmark::run(RatioReporter& Reporter)
{
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    Reporter.printRatios();
}
