#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tessera/ZoneRule.h"

namespace tsr {

// When a person can be met: from `start` to `end` minutes after midnight, on the days that are set (0 is
// Monday).
struct WorkingHours {
    int startMinute = 9 * 60;
    int endMinute = 17 * 60;
    std::array<bool, 7> days{true, true, true, true, true, false, false};
};

struct User {
    std::int64_t id = 0;  // in the store
    std::string name;     // upper and lower case of a to z are one
    std::string zoneName; // as the user was given it: "Europe/Berlin", or the rule itself
    ZoneRule zone;
    WorkingHours hours;
};

// Raises TesseraError for a name that is empty, too long or not plain text, and for hours that don't lie in
// one day.
void checkUser(const User& user);

} // namespace tsr
