#include "foundation/DateTime.h"

#include "foundation/TimeStamp.h"
#include "foundation/TimeZone.h"
#include "foundation/calendar.h"
#include "foundation/calendarText.h"
#include "foundation/narrowing.h"

namespace tsr {

DateTime::DateTime() : date_(firstYear, 1, 1) {}

DateTime::DateTime(std::uint32_t year, std::uint32_t month, std::uint32_t day, std::uint32_t hour,
                   std::uint32_t minute, std::uint32_t second)
    : date_(year, month, day), timeOfDay_(hour, minute, second) {}

DateTime::DateTime(const TimeStamp& timeStamp, const TimeZone& timeZone)
    : DateTime(timeZone.toLocal(timeStamp)) {}

TimeInterval operator-(const DateTime& left, const DateTime& right) {
    return (left.date() - right.date()) + (left.timeOfDay() - right.timeOfDay());
}

DateTime readingFromSeconds(std::int64_t secondsSince1800) {
    const std::uint64_t seconds = narrowToUnsignedWide(secondsSince1800);
    const std::uint32_t days = narrowToUnsigned(seconds / secondsPerDay);
    return DateTime(Date(0, days + epochJulianDay),
                    TimeOfDay(0, static_cast<std::uint32_t>(seconds % secondsPerDay)));
}

std::int64_t secondsOfReading(const DateTime& reading) {
    const std::int64_t days = static_cast<std::int64_t>(reading.date().julianDay()) - epochJulianDay;
    return days * secondsPerDay + reading.timeOfDay().seconds();
}

std::ostream& operator<<(std::ostream& stream, const DateTime& dateTime) {
    std::tm fields = calendarFields(dateTime.date());
    setTimeFields(fields, dateTime.timeOfDay());
    return stream << formatted("%c", fields);
}

} // namespace tsr
