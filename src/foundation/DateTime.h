#pragma once

#include <compare>
#include <cstdint>
#include <ostream>

#include "foundation/Date.h"
#include "foundation/TimeInterval.h"
#include "foundation/TimeOfDay.h"

namespace tsr {

class TimeStamp;
class TimeZone;

// A day and a time of day: always what a clock on the wall shows, in some zone.
class DateTime {
public:
    DateTime(); // 1800-01-01 00:00:00
    DateTime(const Date& date, const TimeOfDay& timeOfDay) : date_(date), timeOfDay_(timeOfDay) {}
    DateTime(std::uint32_t year, std::uint32_t month, std::uint32_t day, std::uint32_t hour,
             std::uint32_t minute, std::uint32_t second);
    DateTime(const TimeStamp& timeStamp, const TimeZone& timeZone);

    const Date& date() const { return date_; }
    const TimeOfDay& timeOfDay() const { return timeOfDay_; }

    auto operator<=>(const DateTime&) const = default; // by date, then by time of day

private:
    Date date_;
    TimeOfDay timeOfDay_;
};

TimeInterval operator-(const DateTime& left, const DateTime& right);

// Between a wall-clock reading and its seconds after 1800-01-01 00:00:00 on the same clock. Raises
// IntegerSignLost for a negative count.
DateTime readingFromSeconds(std::int64_t secondsSince1800);
std::int64_t secondsOfReading(const DateTime& reading);

// strftime's "%c", for logs.
std::ostream& operator<<(std::ostream& stream, const DateTime& dateTime);

} // namespace tsr
