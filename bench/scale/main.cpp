// How the cost of a replication of memos grows with their number: each item of many should cost what one of
// few does, in time and in memory, and the conduit little beside the device and the server.

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
#include "bench/scale/MemoScene.h"
#include "bench/scale/Recording.h"

namespace tsr::bench {
namespace {

using Place = MemoScene::Place;

// How often a size is measured in one of the rounds, in which all sizes and jobs come interleaved.
struct Size {
    std::size_t memos;
    int repetitions;
};

constexpr Size sizes[] = {{1000, 10}, {10000, 1}, {50000, 1}};
constexpr std::size_t fewest = sizes[0].memos;
constexpr std::size_t most = sizes[2].memos;
constexpr int rounds = 3;
constexpr double growthBar = 1.3;
constexpr double replayBar = 1.2;
constexpr double memoryBar = 1024; // bytes an item

std::string nameOf(const std::string& job, std::size_t memos) { return job + '/' + std::to_string(memos); }

double processorNanoseconds() { // of all threads
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

// Notes the time for an item: that of the wall, and under "Cost" that of the processors, which tells more in
// a machine that has other work too.
template <typename Work>
void time(const std::string& job, std::size_t memos, Work work) {
    const auto start = std::chrono::steady_clock::now();
    const double processorStart = processorNanoseconds();
    work();
    const double cost = processorNanoseconds() - processorStart;
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
    noteTime(nameOf(job, memos), took.count() / static_cast<double>(memos));
    noteTime(nameOf(job + "Cost", memos), cost / static_cast<double>(memos));
}

template <typename Work>
void countHeap(const std::string& job, std::size_t memos, Work work) {
    const HeapCount heap;
    work();
    noteMemory(nameOf(job, memos), static_cast<double>(heap.peakBytes()) / static_cast<double>(memos));
}

// The first replication of memos that stand on one side, and of an idle session behind it.
class Job {
public:
    Job(std::string name, Place place, std::size_t memos)
        : name_(std::move(name)), place_(place), memos_(memos), settled_(memos, place) {
        countHeap(name_, memos_, [this] { recording_.record([this] { settled_.hotSync(); }); });
        settled_.requireSettled();
        checkReplay();
        settled_.attach();
        settled_.hotSync(); // in which the server learns that the device has all
        countHeap(name_ + "Idle", memos_, [this] { settled_.hotSync(); });
    }

    void measure() {
        measureFirst();
        measureReplay();
        settled_.attach();
        time(name_ + "Idle", memos_, [this] { settled_.hotSync(); });
    }

private:
    // A replay that does something else is no measure.
    void checkReplay() {
        MemoScene scene(memos_, place_);
        recording_.replay(scene.port());
        scene.requireSettled();
        if (!scene.hasSameRecords(settled_)) throw std::runtime_error("the replay does something else");
    }

    void measureFirst() {
        MemoScene scene(memos_, place_);
        time(name_, memos_, [&] { scene.hotSync(); });
    }

    void measureReplay() {
        MemoScene scene(memos_, place_);
        time(name_ + "Replay", memos_, [&] { recording_.replay(scene.port()); });
    }

    std::string name_;
    Place place_;
    std::size_t memos_;
    MemoScene settled_;
    Recording recording_;
};

void measureAll(const std::string& name, Place place) {
    std::vector<std::unique_ptr<Job>> jobs;
    for (const Size& size : sizes) jobs.push_back(std::make_unique<Job>(name, place, size.memos));
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < jobs.size(); ++i) {
            for (int repetition = 0; repetition < sizes[i].repetitions; ++repetition) jobs[i]->measure();
        }
    }
}

void setBars(const std::string& job) {
    compare(nameOf(job + "Cost", most), nameOf(job + "Cost", fewest), growthBar);
    compare(nameOf(job + "IdleCost", most), nameOf(job + "IdleCost", fewest), growthBar);
    for (const Size& size : sizes)
        compare(nameOf(job, size.memos), nameOf(job + "Replay", size.memos), replayBar);
    compare(nameOf(job + "Cost", most), nameOf(job + "ReplayCost", most));
    for (const Size& size : sizes) {
        for (const char* kind : {"", "Idle"}) limitMemory(nameOf(job + kind, size.memos), memoryBar);
    }
}

} // namespace
} // namespace tsr::bench

int main() {
    using namespace tsr::bench;
    try {
        for (const auto& [name, place] : {std::pair{"toNotes", MemoScene::Place::Handheld},
                                          std::pair{"toHandheld", MemoScene::Place::Notes}}) {
            setBars(name);
            measureAll(name, place);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    printTimes();
    printRatios();
    return 0;
}
