#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "applications/FreeTimeWeek.h"
#include "foundation/DateTime.h"

namespace tsr {

// A person whose free time the handheld shows. One without a name is known from an earlier session only: the
// user has deleted it.
struct FreeTimeUser {
    std::string name;
    std::map<Date, FreeTimeWeek> weeks;
    Date earliest = Date(2999, 12, 31); // the first week that this session's answer has touched

    // Enters a span of free time from `start`, local time. What doesn't fill a quarter of an hour is dropped.
    // Raises std::out_of_range for a span that runs past its week, after it has entered the part up to there.
    void addFreeTime(const DateTime& start, std::uint32_t minutes);
};

} // namespace tsr
