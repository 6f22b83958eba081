#pragma once

#include <array>

namespace tsr {

// When a person can be met: from `start` to `end` minutes after midnight, on the days that are set (0 is
// Monday).
struct WorkingHours {
    int startMinute = 9 * 60;
    int endMinute = 17 * 60;
    std::array<bool, 7> days{true, true, true, true, true, false, false};
};

} // namespace tsr
