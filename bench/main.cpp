#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/ratios.h"

namespace {

// The usual table, and a note of each time for the ratios.
class NotingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const double perSecond = benchmark::GetTimeUnitMultiplier(run.time_unit);
            const bool waits = !run.run_name.time_type.empty(); // real time counts where a peer has its part
            const double time = waits ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
            tsr::bench::noteTime(run.run_name.function_name + argumentsOf(run), time / perSecond * 1e9);
        }
        ConsoleReporter::ReportRuns(runs);
    }

private:
    static std::string argumentsOf(const Run& run) {
        return run.run_name.args.empty() ? std::string() : '/' + run.run_name.args;
    }
};

} // namespace

int main(int count, char** arguments) {
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> all(arguments, arguments + count);
    all.insert(all.begin() + 1, interleave); // what the user gives comes later, and wins
    int allCount = count + 1;
    all.push_back(nullptr);
    benchmark::Initialize(&allCount, all.data());
    if (benchmark::ReportUnrecognizedArguments(allCount, all.data())) return 1;
    NotingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    tsr::bench::printRatios();
    return 0;
}
