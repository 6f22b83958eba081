#pragma once

#include <cstdint>
#include <string>

namespace tsr {

// Facts about the handheld and its desktop library that need no open database.

// "major.minor" of the handheld's operating system, "?.?" where it can't be told. Never raises.
std::string osVersionText();

// "major.minor" of the Sync Manager's interface. Raises PalmSyncApiError.
std::string apiVersionText();

// The handheld's clock, in seconds since 1970. Raises PalmSyncApiError, or InvalidDeviceTime for 0 and
// 0xFFFFFFFF.
std::uint32_t deviceClock();

} // namespace tsr
