// How the cost of a replication of memos, meetings and mail grows with their number: each item of many should
// cost what one of few does, in time and in memory, and the conduit little beside the device and the server.

#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ratios.h"
#include "bench/scale/HeapCount.h"
#include "bench/scale/MailScene.h"
#include "bench/scale/MeetingScene.h"
#include "bench/scale/MemoScene.h"
#include "bench/scale/Recording.h"

namespace tsr::bench {
namespace {

using Place = Scene::Place;

// How often a size is measured in one of the rounds, in which all sizes and jobs come interleaved.
struct Size {
    std::size_t items;
    int repetitions;
};
using Sizes = std::vector<Size>;

const Sizes memoSizes{{1000, 10}, {10000, 1}, {50000, 1}};
const Sizes meetingSizes{{1000, 10}, {5000, 2}};
const Sizes mailSizes{{1000, 10}, {10000, 2}};
constexpr int rounds = 3;
constexpr double growthBar = 1.3;
constexpr double replayBar = 1.2;
constexpr double memoryBar = 1024; // bytes an item; other items are not as small as memos

std::string nameOf(const std::string& job, std::size_t items) { return job + '/' + std::to_string(items); }

double processorNanoseconds() { // of all threads
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

// Notes the time for an item: that of the wall, and under "Cost" that of the processors, which tells more in
// a machine that has other work too.
template <typename Work>
void time(const std::string& job, std::size_t items, Work work) {
    const auto start = std::chrono::steady_clock::now();
    const double processorStart = processorNanoseconds();
    work();
    const double cost = processorNanoseconds() - processorStart;
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
    noteTime(nameOf(job, items), took.count() / static_cast<double>(items));
    noteTime(nameOf(job + "Cost", items), cost / static_cast<double>(items));
}

template <typename Work>
void countHeap(const std::string& job, std::size_t items, Work work) {
    const HeapCount heap;
    work();
    noteMemory(nameOf(job, items), static_cast<double>(heap.peakBytes()) / static_cast<double>(items));
}

// The first replication of items that stand on one side, and of an idle session behind it. `Setting` is the
// scene.
template <typename Setting>
class Job {
public:
    Job(std::string name, Place place, std::size_t items)
        : name_(std::move(name)), place_(place), items_(items), settled_(items, place) {
        countHeap(name_, items_, [this] { recording_.record([this] { settled_.hotSync(); }); });
        settled_.requireSettled();
        checkReplay();
        settled_.attach();
        settled_.hotSync(); // in which the server learns that the device has all
        countHeap(name_ + "Idle", items_, [this] { settled_.hotSync(); });
    }

    void measure() {
        measureFirst();
        measureReplay();
        settled_.attach();
        time(name_ + "Idle", items_, [this] { settled_.hotSync(); });
    }

private:
    // A replay that does something else is no measure.
    void checkReplay() {
        Setting scene(items_, place_);
        recording_.replay(scene.port());
        scene.requireSettled();
        if (!scene.hasSameRecords(settled_)) throw std::runtime_error("the replay does something else");
    }

    void measureFirst() {
        Setting scene(items_, place_);
        time(name_, items_, [&] { scene.hotSync(); });
    }

    void measureReplay() {
        Setting scene(items_, place_);
        time(name_ + "Replay", items_, [&] { recording_.replay(scene.port()); });
    }

    std::string name_;
    Place place_;
    std::size_t items_;
    Setting settled_;
    Recording recording_;
};

template <typename Setting>
void measureAll(const std::string& name, Place place, const Sizes& sizes) {
    std::vector<std::unique_ptr<Job<Setting>>> jobs;
    for (const Size& size : sizes) jobs.push_back(std::make_unique<Job<Setting>>(name, place, size.items));
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < jobs.size(); ++i) {
            for (int repetition = 0; repetition < sizes[i].repetitions; ++repetition) jobs[i]->measure();
        }
    }
}

void setBars(const std::string& job, const Sizes& sizes, double mostMemory) {
    const std::size_t fewest = sizes.front().items;
    const std::size_t most = sizes.back().items;
    compare(nameOf(job + "Cost", most), nameOf(job + "Cost", fewest), growthBar);
    compare(nameOf(job + "IdleCost", most), nameOf(job + "IdleCost", fewest), growthBar);
    for (const Size& size : sizes)
        compare(nameOf(job, size.items), nameOf(job + "Replay", size.items), replayBar);
    compare(nameOf(job + "Cost", most), nameOf(job + "ReplayCost", most));
    for (const Size& size : sizes) {
        for (const char* kind : {"", "Idle"}) limitMemory(nameOf(job + kind, size.items), mostMemory);
    }
}

template <typename Setting>
void measureBothWays(const std::string& items, const Sizes& sizes, double mostMemory = 0) {
    for (const auto& [way, place] :
         {std::pair{"ToNotes", Place::Handheld}, std::pair{"ToHandheld", Place::Notes}}) {
        setBars(items + way, sizes, mostMemory);
        measureAll<Setting>(items + way, place, sizes);
    }
}

} // namespace
} // namespace tsr::bench

// tsr_scale [memos|meetings|mail]: all of them without an argument.
int main(int count, char** arguments) {
    using namespace tsr::bench;
    const std::string wanted = count > 1 ? arguments[1] : "";
    const auto isWanted = [&wanted](const char* items) { return wanted.empty() || wanted == items; };
    int result = 0;
    try {
        if (isWanted("memos")) measureBothWays<MemoScene>("memos", memoSizes, memoryBar);
        if (isWanted("meetings")) measureBothWays<MeetingScene>("meetings", meetingSizes);
        if (isWanted("mail")) measureBothWays<MailScene>("mail", mailSizes);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        result = 1;
    }
    printTimes(); // also of what came before a failure
    printRatios();
    return result;
}
