#pragma once

#include <cstdint>

namespace tsr {

// "The second Tuesday" of a month.
struct DaySpec {
    std::uint32_t instance; // 1 to 4: the nth such day of the month; 5: the last
    std::uint32_t weekday;  // 0 Sunday to 6 Saturday

    bool operator==(const DaySpec&) const = default;
};

} // namespace tsr
