#include "foundation/TimeOfDay.h"

#include "foundation/GeneralError.h"
#include "foundation/calendar.h"
#include "foundation/calendarText.h"
#include "foundation/wrapping.h"

namespace tsr {

TimeOfDay::TimeOfDay(std::uint32_t hour, std::uint32_t minute, std::uint32_t second) {
    if (hour > 23 || minute > 59 || second > 59) {
        throw GeneralError(Message::InvalidTime)
            << Tag("h") << hour << Tag("m") << minute << Tag("s") << second;
    }
    packed_ = hour | minute << 16 | second << 24;
}

TimeOfDay::TimeOfDay(std::uint32_t kind, std::uint32_t seconds) {
    if (kind != 0) throw GeneralError(Message::InvalidArgument);
    if (seconds >= static_cast<std::uint32_t>(secondsPerDay))
        throw GeneralError(Message::SecondsExceedDay) << Tag("n") << seconds;
    *this = TimeOfDay(seconds / 3600, seconds / 60 % 60, seconds % 60);
}

TimeOfDay operator+(const TimeOfDay& time, const TimeInterval& interval) {
    const std::int64_t sum = wrappingSum(time.seconds(), interval.seconds());
    const auto rest = static_cast<std::uint32_t>(magnitude(sum) % secondsPerDay);
    return TimeOfDay(0, sum < 0 ? static_cast<std::uint32_t>(secondsPerDay) - rest : rest);
}

TimeInterval operator-(const TimeOfDay& left, const TimeOfDay& right) {
    return TimeInterval(static_cast<std::int64_t>(left.seconds()) - right.seconds());
}

std::ostream& operator<<(std::ostream& stream, const TimeOfDay& time) {
    std::tm fields = calendarFields(Date(2000, 1, 1)); // any full date: only the time is shown
    setTimeFields(fields, time);
    return stream << formatted("%X", fields);
}

} // namespace tsr
