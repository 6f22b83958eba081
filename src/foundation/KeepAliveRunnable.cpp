#include "foundation/KeepAliveRunnable.h"

#include "platform/syncManager.h"

namespace tsr {

namespace {

constexpr std::uint32_t roundMilliseconds = 50;

bool serveLink() {
    try {
        SyncYieldCycles(1);
        return true;
    } catch (...) { // without a link there is nothing to keep alive
        return false;
    }
}

} // namespace

std::uint32_t KeepAliveRunnable::run() {
    while (!stop_.wait(roundMilliseconds) && serveLink()) ++beats_;
    return 0;
}

} // namespace tsr
