#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

/// Prints benchmarks as usual and, at the end, a table of what is measured against its floor: a benchmark "X" against
/// "floor: X" of the same run, both by their medians.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& Runs) override
    {
        ConsoleReporter::ReportRuns(Runs);
        for (const Run& One : Runs) {
            if (One.aggregate_name == "median")
                m_Milliseconds[One.run_name.function_name] = One.GetAdjustedRealTime();
        }
    }

    double milliseconds(const std::string& Name) const
    {
        const auto Found = m_Milliseconds.find(Name);
        return Found == m_Milliseconds.end() ? NAN : Found->second;
    }

    void printRatios() const
    {
        std::printf("\n%-44s %10s %10s %8s\n", "median ms", "ours", "floor", "ratio");
        for (const auto& One : m_Milliseconds) {
            if (One.first.rfind("floor: ", 0) == 0)
                continue;
            const double Floor = milliseconds("floor: " + One.first);
            if (std::isnan(Floor))
                std::printf("%-44s %10.2f\n", One.first.c_str(), One.second);
            else
                std::printf(
                    "%-44s %10.2f %10.2f %8.2f\n", One.first.c_str(), One.second, Floor, One.second / Floor);
        }
    }

    /// How time grows from one size to a larger one: 1 is linear.
    void printExponent(const std::string& Small, double SmallSize, const std::string& Large, double LargeSize) const
    {
        const double Ratio = milliseconds(Large) / milliseconds(Small);
        std::printf("%s to %s: exponent %.2f\n", Small.c_str(), Large.c_str(),
            std::log(Ratio) / std::log(LargeSize / SmallSize));
    }

    /// Registers a benchmark whose median of several repetitions is kept.
    template <class Function>
    static void measure(const std::string& Name, const Function& Measured, double Seconds, int Repetitions = 5)
    {
        benchmark::RegisterBenchmark(Name.c_str(), Measured)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond)
            ->MinTime(Seconds)
            ->Repetitions(Repetitions)
            ->ReportAggregatesOnly();
    }

private:
    std::map<std::string, double> m_Milliseconds;
};
