#pragma once

#include <chrono>
#include <cstdint>

namespace tsr {

// Between days and seconds since 1970, on whatever clock.
inline std::chrono::sys_days dayOf(std::int64_t seconds) {
    return std::chrono::floor<std::chrono::days>(std::chrono::sys_seconds(std::chrono::seconds(seconds)));
}
inline std::int64_t secondsOf(std::chrono::sys_days day) {
    return std::int64_t{day.time_since_epoch().count()} * 86400;
}

} // namespace tsr
