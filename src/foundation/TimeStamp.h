#pragma once

#include <compare>
#include <cstdint>

#include "foundation/TimeInterval.h"

namespace tsr {

class DateTime;
class TimeZone;

// A moment: seconds after 1800-01-01 00:00:00 UTC.
class TimeStamp {
public:
    TimeStamp() = default;
    // `kind` tells what `seconds` counts from: 0 from 1800, 1 from 1970. Raises InvalidArgument for another.
    TimeStamp(std::uint32_t kind, std::int64_t seconds);
    TimeStamp(const DateTime& dateTime, const TimeZone& timeZone);

    static TimeStamp fromMinutesSince1601(std::uint32_t minutes);

    std::int64_t secondsSince1800() const { return seconds_; }
    std::int64_t secondsSince1970() const; // raises BeforeUtcStart

    TimeStamp& operator+=(const TimeInterval& interval);
    TimeStamp& operator-=(const TimeInterval& interval);

    auto operator<=>(const TimeStamp&) const = default;

private:
    std::int64_t seconds_ = 0;
};

TimeInterval operator-(const TimeStamp& left, const TimeStamp& right);

} // namespace tsr
