#pragma once

#include <cstdint>

namespace tsr::platform {

// When daylight saving starts or ends, in wall-clock time: a year of 0 and the `instance`-th `dayOfWeek` of
// `month`. A month of 0 means that there is no transition.
struct ZoneTransition {
    std::uint16_t year = 0;
    std::uint16_t month = 0;
    std::uint16_t dayOfWeek = 0; // 0 Sunday
    std::uint16_t instance = 0;  // 1 to 4, or 5 for the last
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
};

// A time zone in the terms of the desktop platform; biases are minutes to add to local time to get UTC.
struct ZoneInformation {
    std::int32_t bias = 0;
    std::int32_t daylightBias = 0; // on top of bias, while daylight saving lasts
    ZoneTransition standard;       // the end of daylight saving
    ZoneTransition daylight;       // its start
};

// The zone that this machine is set to; UTC where it can't be told.
ZoneInformation readZone();

} // namespace tsr::platform
