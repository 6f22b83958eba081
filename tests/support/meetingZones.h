#pragma once

#include <chrono>
#include <string>

#include "foundation/TimeZone.h"
#include "foundation/TransitionDateSpec.h"

namespace tsr::test {

// A zone on each side of Greenwich, of the equator, and beside the whole hour.

// +1. Daylight saving in 2002 from March 31, 01:00 UTC, to October 27, 01:00 UTC.
inline TimeZone northEast() {
    return TimeZone(3600, 3600, TransitionDateSpec(3, 0, -1, 2, 0, 0),
                    TransitionDateSpec(10, 0, -1, 3, 0, 0));
}

// -5. From April 7, 07:00 UTC, to October 27, 06:00 UTC.
inline TimeZone northWest() {
    return TimeZone(-18000, 3600, TransitionDateSpec(4, 0, 1, 2, 0, 0),
                    TransitionDateSpec(10, 0, -1, 2, 0, 0));
}

// +10. Until March 30, 16:00 UTC, and again from October 26, 16:00 UTC.
inline TimeZone southEast() {
    return TimeZone(36000, 3600, TransitionDateSpec(10, 0, -1, 2, 0, 0),
                    TransitionDateSpec(3, 0, -1, 3, 0, 0));
}

// -3, at midnight. Until February 17, 02:00 UTC, and again from October 20, 03:00 UTC.
inline TimeZone southWest() {
    return TimeZone(-10800, 3600, TransitionDateSpec(10, 0, 3, 0, 0, 0),
                    TransitionDateSpec(2, 0, 3, 0, 0, 0));
}

// +10:30, by half an hour. Until March 30, 15:00 UTC, and again from October 26, 15:30 UTC.
inline TimeZone halfHourSouth() {
    return TimeZone(37800, 1800, TransitionDateSpec(10, 0, -1, 2, 0, 0),
                    TransitionDateSpec(3, 0, -1, 2, 0, 0));
}

inline TimeZone twoHoursEast() { return TimeZone(7200); }
inline TimeZone halfPastFiveEast() { return TimeZone(19800); }
inline TimeZone halfPastThreeWest() { return TimeZone(-12600); }

// A reading of the clock in UTC, worked out by the standard library's calendar.
inline std::int64_t secondsSince1970(int year, unsigned month, unsigned day, unsigned hour, unsigned minute) {
    const std::chrono::sys_days date =
        std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
    return std::int64_t{date.time_since_epoch().count()} * 86400 + hour * 3600 + minute * 60;
}

inline std::string secondsSince1993(int year, unsigned month, unsigned day, unsigned hour, unsigned minute) {
    return std::to_string(secondsSince1970(year, month, day, hour, minute) - 725846400);
}

inline std::string minutesSince1601(int year, unsigned month, unsigned day, unsigned hour = 0,
                                    unsigned minute = 0) {
    return std::to_string(secondsSince1970(year, month, day, hour, minute) / 60 + 194074560);
}

} // namespace tsr::test
