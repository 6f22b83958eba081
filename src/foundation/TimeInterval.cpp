#include "foundation/TimeInterval.h"

#include "foundation/GeneralError.h"
#include "foundation/calendar.h"
#include "foundation/wrapping.h"

namespace tsr {

TimeInterval TimeInterval::fromDays(std::int32_t days) {
    return TimeInterval(wrappingProduct32(days, secondsPerDay));
}

TimeInterval TimeInterval::fromWeeks(std::int32_t weeks) {
    return TimeInterval(wrappingProduct32(weeks, secondsPerWeek));
}

TimeInterval TimeInterval::fromMinutes(std::int64_t minutes) {
    return TimeInterval(wrappingProduct(minutes, secondsPerMinute));
}

std::int64_t TimeInterval::days() const {
    if (seconds_ % secondsPerDay != 0) throw GeneralError(Message::NotWholeDays);
    return seconds_ / secondsPerDay;
}

std::int64_t TimeInterval::minutes() const {
    if (seconds_ % secondsPerMinute != 0) throw GeneralError(Message::IntervalNotWholeMinutes);
    return seconds_ / secondsPerMinute;
}

TimeInterval operator+(const TimeInterval& left, const TimeInterval& right) {
    return TimeInterval(wrappingSum(left.seconds(), right.seconds()));
}

} // namespace tsr
