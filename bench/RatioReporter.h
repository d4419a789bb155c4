#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

#include "BenchSockets.h"

namespace vagent::bench {

// Keeps each benchmark's real time per iteration so that a program can
// print the ratios of its pairs once every benchmark has run.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && run.iterations > 0 && !run.error_occurred) {
                seconds_[run.run_name.function_name] =
                    run.real_accumulated_time / static_cast<double>(run.iterations);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // Seconds per iteration of a benchmark that ran without error, or 0.
    double SecondsOf(const std::string& name) const {
        const auto found = seconds_.find(name);
        return found != seconds_.end() ? found->second : 0.0;
    }

private:
    std::map<std::string, double> seconds_;
};

// The body of a benchmark program's main: the sockets started around every
// benchmark, the report through the reporter, then its ratios.
template <class PrintRatios>
int RunBenchmarks(int argc, char** argv, PrintRatios printRatios) {
    Sockets().Startup();
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printRatios(reporter);
    benchmark::Shutdown();
    Sockets().Cleanup();
    return 0;
}

}  // namespace vagent::bench
