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

struct Rate {
    std::string job;
    std::size_t amount; // in a turn
    const char* unit;   // of the rate, which is the amount in a microsecond
    double bar;
};

std::vector<Rate>& rates() {
    static std::vector<Rate> list;
    return list;
}

std::map<std::string, std::vector<double>>& times() {
    static std::map<std::string, std::vector<double>> map;
    return map;
}

struct MemoryLimit {
    std::string job;
    double bar; // bytes
};

std::vector<MemoryLimit>& memoryLimits() {
    static std::vector<MemoryLimit> list;
    return list;
}

std::map<std::string, double>& memory() {
    static std::map<std::string, double> map;
    return map;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void printRates() {
    if (rates().empty()) return;
    std::printf("\n%-28s %13s %11s\n", "job", "rate", "bar");
    for (const Rate& rate : rates()) {
        const auto job = times().find(rate.job);
        if (job == times().end()) continue; // filtered out of this run
        const double value = static_cast<double>(rate.amount) * 1e3 / median(job->second);
        std::printf("%-28s %8.1f %s", rate.job.c_str(), value, rate.unit);
        if (rate.bar != 0)
            std::printf(" %6.0f %s%s", rate.bar, rate.unit, value >= rate.bar ? "" : "  below the bar");
        std::printf("\n");
    }
}

void printMemory() {
    if (memoryLimits().empty()) return;
    std::printf("\n%-28s %10s %8s\n", "job", "memory", "bar");
    for (const MemoryLimit& limit : memoryLimits()) {
        const double bytes = memory()[limit.job];
        std::printf("%-28s %8.0f B", limit.job.c_str(), bytes);
        if (limit.bar != 0) std::printf(" %6.0f B%s", limit.bar, bytes <= limit.bar ? "" : "  above the bar");
        std::printf("\n");
    }
}

} // namespace

bool compare(const std::string& job, const std::string& reference, double bar) {
    ratios().push_back({job, reference, bar});
    return true;
}

bool requireRate(const std::string& job, std::size_t bytes, double bar) {
    rates().push_back({job, bytes, "MB/s", bar});
    return true;
}

bool requireRecords(const std::string& job, double bar) {
    rates().push_back({job, 1, "M/s ", bar});
    return true;
}

void noteTime(const std::string& name, double nanoseconds) { times()[name].push_back(nanoseconds); }

void limitMemory(const std::string& job, double bar) { memoryLimits().push_back({job, bar}); }

void noteMemory(const std::string& name, double bytes) {
    double& noted = memory()[name];
    noted = std::max(noted, bytes);
}

void printTimes() {
    std::printf("\n%-28s %11s %11s %5s\n", "job", "median", "fastest", "runs");
    for (const auto& [name, each] : times()) {
        std::printf("%-28s %8.2f us %8.2f us %5zu\n", name.c_str(), median(each) / 1e3,
                    *std::min_element(each.begin(), each.end()) / 1e3, each.size());
    }
}

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
    printRates();
    printMemory();
}

} // namespace tsr::bench
