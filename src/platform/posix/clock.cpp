#include "platform/clock.h"

#include <ctime>

namespace tsr::platform {

bool readClock(std::int64_t& secondsSince1970) {
    timespec now{};
    if (clock_gettime(CLOCK_REALTIME, &now) != 0) return false;
    secondsSince1970 = now.tv_sec;
    return true;
}

} // namespace tsr::platform
