#pragma once

#include <cstdint>
#include <functional>

namespace tsr {

// Between UTC and the clock of somebody's calendar, both in seconds since 1970. Without functions, as of a
// handheld, which knows no zones, times are read as they stand in their own zones.
struct CalendarClock {
    std::function<std::int64_t(std::int64_t)> toLocal{};
    std::function<std::int64_t(std::int64_t)> toUtc{};
};

} // namespace tsr
