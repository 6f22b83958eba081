#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace tsr {

// One day of a repeating event that differs from the others. What isn't there is as on the others.
struct EventException {
    std::chrono::sys_days patternDate{}; // where the rule has it
    std::int64_t start = 0;              // where it is: seconds since 1970 as the owner's clock shows them
    std::optional<std::string> subject{};
    std::optional<std::string> note{};
    std::optional<bool> allDay{};
    std::optional<std::uint32_t> minutes{};

    bool operator==(const EventException&) const = default;
};

} // namespace tsr
