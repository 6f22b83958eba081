#include "host/hostSystem.h"

#include <filesystem>
#include <malloc.h>
#include <stdexcept>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace tsr::test {

namespace {

std::int64_t conduitTime = 0;

} // namespace

void useBinaryStreams() {}

void setConduitClock(std::int64_t secondsSince1970) { conduitTime = secondsSince1970; }

void orderConduitFault(const std::string& fault) {
    throw std::runtime_error("no fault is known here as " + fault);
}

ProcessUse processUse() {
    ProcessUse use;
    for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator("/proc/self/fd"))
        ++use.handles;
    const struct mallinfo2 heap = mallinfo2();
    use.bytes = static_cast<std::int64_t>(heap.uordblks + heap.hblkhd);
    return use;
}

} // namespace tsr::test

// Found before the system's by all that is loaded into this program.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* time) noexcept {
    if (clock != CLOCK_REALTIME) return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    time->tv_sec = static_cast<time_t>(tsr::test::conduitTime);
    time->tv_nsec = 0;
    return 0;
}
