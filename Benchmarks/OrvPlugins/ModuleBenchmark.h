#pragma once

#include "Benchmarks/RatioReporter.h"

#include "OrvCoreModules/Window/OrvApplication.h"

/// What a benchmark of the module needs around it: the application without a screen, its window, and in the
/// end a closed project and a stopped engine. A main function makes it first, then says what to measure and
/// has it run.
class ModuleBenchmark {
public:
    ModuleBenchmark(int& ArgumentCount, char** pArguments);
    ~ModuleBenchmark();

    static void openProject();
    /// Carries out what was said and prints it next to its floors.
    static void run(RatioReporter& Reporter);

private:
    OrvApplication m_Application;
};
