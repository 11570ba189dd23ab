#pragma once

#include "Benchmarks/RatioReporter.h"

#include "OrvDdi/Engine/OrvEngine.h"
#include "OrvDdi/Engine/OrvEngineNode.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

/// What benchmarks of the engine do alike. A subject is what is computed, in the engine and as its own floor:
/// it has node(), touch(region) and computeByHand(region, pixels), and is made from a kind.
namespace EngineBenchmark {

const OrvPixelFormat FloatFormat{GL_FLOAT, OrvPixelFormat::Rgba, OrvPixelFormat::Linear};

/// The same pixels in every run.
class Noise {
public:
    float value() { return float(next() >> 8) / float(1 << 24); }
    unsigned char byte() { return (unsigned char)(next() >> 24); }

private:
    unsigned next() { return m_State = m_State * 1664525u + 1013904223u; }
    unsigned m_State = 1;
};

/// Calls Share(number of the thread, number of threads) once on every core.
template <class Function>
void onAllCores(const Function& Share)
{
    const int Count = int(std::max(1u, std::thread::hardware_concurrency()));
    std::vector<std::thread> Threads;
    for (int Thread = 1; Thread < Count; ++Thread)
        Threads.emplace_back(Share, Thread, Count);
    Share(0, Count);
    for (std::thread& One : Threads)
        One.join();
}

/// One subject at a time: all of them would fill the memory of a small machine.
template <class Subject, class Kind>
class Held {
public:
    Subject& of(Kind Wanted)
    {
        if (!m_pSubject || m_Kind != Wanted) {
            m_pSubject.reset();
            m_pSubject = std::make_unique<Subject>(Wanted);
            m_Kind = Wanted;
        }
        return *m_pSubject;
    }
    void letGo() { m_pSubject.reset(); }

private:
    std::unique_ptr<Subject> m_pSubject;
    Kind m_Kind{};
};

/// Registers a region of a subject after a change, next to its floor.
template <class Subject, class Kind>
void measure(
    Held<Subject, Kind>& Subjects, Kind Wanted, const QRect& Region, const std::string& Name, double Seconds)
{
    const auto repeat = [&Subjects, Wanted, Region](benchmark::State& State, const auto& Round) {
        Subject& Measured = Subjects.of(Wanted);
        std::vector<float> Result(size_t(Region.width()) * size_t(Region.height()) * 4);
        for (auto _ : State) {
            Round(Measured, Result.data());
            benchmark::ClobberMemory();
        }
    };
    const auto byHand
        = [Region](Subject& Measured, float* pResult) { Measured.computeByHand(Region, pResult); };
    const auto inEngine = [Region](Subject& Measured, float* pResult) {
        Measured.touch(Region);
        Measured.node().render(Region, 1.0, FloatFormat, pResult);
    };
    RatioReporter::measure(
        "floor: " + Name, [repeat, byHand](benchmark::State& State) { repeat(State, byHand); }, Seconds);
    RatioReporter::measure(
        Name, [repeat, inEngine](benchmark::State& State) { repeat(State, inEngine); }, Seconds);
}

/// Runs what is registered; the program's exit code.
template <class Subject, class Kind>
int run(Held<Subject, Kind>& Subjects)
{
    RatioReporter Reporter;
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    Reporter.printRatios();
    Subjects.letGo();
    return OrvEngine::shutdown() == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace EngineBenchmark
