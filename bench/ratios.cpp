#include "bench/ratios.h"

#include <algorithm>
#include <cstddef>
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

std::map<std::string, std::vector<double>>& times() {
    static std::map<std::string, std::vector<double>> map;
    return map;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

bool compare(const std::string& job, const std::string& reference, double bar) {
    ratios().push_back({job, reference, bar});
    return true;
}

void noteTime(const std::string& name, double nanoseconds) { times()[name].push_back(nanoseconds); }

void printRatios() {
    std::printf("\n%-28s %-28s %8s %6s\n", "job", "against", "ratio", "bar");
    for (const Ratio& ratio : ratios()) {
        const auto job = times().find(ratio.job);
        const auto reference = times().find(ratio.reference);
        if (job == times().end() || reference == times().end()) continue; // filtered out of this run
        const double value = median(job->second) / median(reference->second);
        std::printf("%-28s %-28s %7.2fx", ratio.job.c_str(), ratio.reference.c_str(), value);
        if (ratio.bar != 0) std::printf(" %5.1fx%s", ratio.bar, value <= ratio.bar ? "" : "  above the bar");
        std::printf("\n");
    }
}

} // namespace tsr::bench
