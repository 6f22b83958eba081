#pragma once

#include <cstdint>

namespace tsr::platform {

// The system's time: UTC, whole seconds since 1970-01-01. False when the system can't tell; lastError() says
// why.
bool readClock(std::int64_t& secondsSince1970);

} // namespace tsr::platform
