#include "foundation/utcNow.h"

#include "foundation/Win32Error.h"
#include "platform/clock.h"

namespace tsr {

TimeStamp utcNow() {
    std::int64_t seconds = 0;
    if (!platform::readClock(seconds)) throw Win32Error("SystemTimeToFileTime");
    return TimeStamp(1, seconds);
}

} // namespace tsr
