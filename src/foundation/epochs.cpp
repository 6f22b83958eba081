#include "foundation/epochs.h"

#include "foundation/GeneralError.h"
#include "foundation/calendar.h"
#include "foundation/narrowing.h"

namespace tsr {

namespace {

// The platform's file time: units of 100 nanoseconds since 1601-01-01.
constexpr std::int64_t unitsPerSecond = 10000000;
constexpr std::int64_t fileTimeOf1970 = 116444736000000000;

} // namespace

std::uint32_t toSeconds1993(std::uint32_t seconds1970) { return seconds1970 - notesEpochSeconds; }

std::uint32_t toSeconds1970(std::uint32_t seconds1993) { return seconds1993 + notesEpochSeconds; }

std::int64_t minutesSince1601(const TimeStamp& timeStamp) {
    const std::uint32_t seconds = narrowToUnsigned(narrowToUnsignedWide(timeStamp.secondsSince1970()));
    if (seconds % secondsPerMinute != 0)
        throw GeneralError(Message::NotWholeMinutes) << Tag("secs") << seconds;
    return static_cast<std::int64_t>(seconds / secondsPerMinute) + minutes1601To1970;
}

std::int64_t seconds1970FromMinutes1601(std::uint32_t minutes) {
    const std::int64_t fileTime = static_cast<std::int64_t>(minutes) * secondsPerMinute * unitsPerSecond;
    return (fileTime - fileTimeOf1970) / unitsPerSecond;
}

std::int64_t daysFromMinutes1601(std::uint32_t minutes, bool allowPartial) {
    const std::int64_t seconds = seconds1970FromMinutes1601(minutes);
    if (seconds % secondsPerDay != 0 && !allowPartial) throw GeneralError(Message::NotWholeDaysFromMinutes);
    return seconds / secondsPerDay;
}

std::int32_t daysSince1970(const Date& date) { return narrowNonNegative((date - Date(1970, 1, 1)).days()); }

} // namespace tsr
