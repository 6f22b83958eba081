#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "interchange/EventException.h"
#include "interchange/RepeatRule.h"

namespace tsr {

// Something in a calendar. Texts are UTF-8.
struct Event {
    std::string subject{};
    std::string note{};
    std::int64_t start = 0; // seconds since 1970 as the owner's clock shows them
    std::uint32_t minutes = 0;
    bool allDay = false;                  // then the minutes are those of its days
    std::optional<std::uint32_t> alarm{}; // minutes before the start
    bool isPrivate = false;
    std::optional<RepeatRule> rule{};
    std::set<std::chrono::sys_days> deletions{}; // days of the rule on which it doesn't take place
    std::vector<EventException> exceptions{};
    std::string uid{}; // by which other programs know it; it is written and not read

    bool operator==(const Event&) const = default;
};

} // namespace tsr
