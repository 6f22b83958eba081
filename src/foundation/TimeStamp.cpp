#include "foundation/TimeStamp.h"

#include "foundation/GeneralError.h"
#include "foundation/TimeZone.h"
#include "foundation/epochs.h"
#include "foundation/wrapping.h"

namespace tsr {

namespace {

constexpr std::int64_t seconds1800To1970 = 62091LL * 86400; // 62,091 days

} // namespace

TimeStamp::TimeStamp(std::uint32_t kind, std::int64_t seconds) : seconds_(seconds) {
    if (kind > 1) throw GeneralError(Message::InvalidArgument);
    if (kind == 1) seconds_ = wrappingSum(seconds, seconds1800To1970);
}

TimeStamp::TimeStamp(const DateTime& dateTime, const TimeZone& timeZone)
    : TimeStamp(timeZone.toUtc(dateTime)) {}

TimeStamp TimeStamp::fromMinutesSince1601(std::uint32_t minutes) {
    return TimeStamp(1, seconds1970FromMinutes1601(minutes));
}

std::int64_t TimeStamp::secondsSince1970() const {
    if (seconds_ < seconds1800To1970) throw GeneralError(Message::BeforeUtcStart);
    return seconds_ - seconds1800To1970;
}

TimeStamp& TimeStamp::operator+=(const TimeInterval& interval) {
    seconds_ = wrappingSum(seconds_, interval.seconds());
    return *this;
}

TimeStamp& TimeStamp::operator-=(const TimeInterval& interval) {
    seconds_ = wrappingDifference(seconds_, interval.seconds());
    return *this;
}

TimeInterval operator-(const TimeStamp& left, const TimeStamp& right) {
    return TimeInterval(wrappingDifference(left.secondsSince1800(), right.secondsSince1800()));
}

} // namespace tsr
