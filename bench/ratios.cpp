#include "bench/ratios.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

namespace tsr::bench {

namespace {

struct Ratio {
    std::string job;
    std::string reference;
    double bar;
};

std::vector<Ratio>& ratios() {
    static std::vector<Ratio> list;
    return list;
}

std::map<std::string, double>& times() {
    static std::map<std::string, double> map;
    return map;
}

} // namespace

bool compare(const std::string& job, const std::string& reference, double bar) {
    ratios().push_back({job, reference, bar});
    return true;
}

void noteTime(const std::string& name, double nanoseconds) {
    const auto [entry, isNew] = times().try_emplace(name, nanoseconds);
    if (!isNew) entry->second = std::min(entry->second, nanoseconds);
}

void printRatios() {
    std::printf("\n%-28s %-28s %8s %6s\n", "job", "against", "ratio", "bar");
    for (const Ratio& ratio : ratios()) {
        const auto job = times().find(ratio.job);
        const auto reference = times().find(ratio.reference);
        if (job == times().end() || reference == times().end()) continue; // filtered out of this run
        const double value = job->second / reference->second;
        std::printf("%-28s %-28s %7.2fx", ratio.job.c_str(), ratio.reference.c_str(), value);
        if (ratio.bar != 0) std::printf(" %5.1fx%s", ratio.bar, value <= ratio.bar ? "" : "  above the bar");
        std::printf("\n");
    }
}

} // namespace tsr::bench
