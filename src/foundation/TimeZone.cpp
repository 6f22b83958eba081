#include "foundation/TimeZone.h"

#include <utility>

#include "foundation/wrapping.h"

namespace tsr {

namespace {

std::unique_ptr<TransitionDateSpecBase> copyOf(const std::unique_ptr<TransitionDateSpecBase>& spec) {
    return spec ? spec->clone() : nullptr;
}

} // namespace

TimeZone::TimeZone(std::int32_t offset, std::int32_t daylightDelta,
                   const TransitionDateSpecBase& daylightStart, const TransitionDateSpecBase& daylightEnd)
    : offset_(offset), daylightDelta_(daylightDelta), daylightStart_(daylightStart.clone()),
      daylightEnd_(daylightEnd.clone()) {}

TimeZone::TimeZone(const TimeZone& other)
    : offset_(other.offset_), daylightDelta_(other.daylightDelta_),
      daylightStart_(copyOf(other.daylightStart_)), daylightEnd_(copyOf(other.daylightEnd_)) {}

TimeZone& TimeZone::operator=(TimeZone other) noexcept {
    std::swap(offset_, other.offset_);
    std::swap(daylightDelta_, other.daylightDelta_);
    std::swap(daylightStart_, other.daylightStart_);
    std::swap(daylightEnd_, other.daylightEnd_);
    return *this;
}

DateTime TimeZone::toLocal(const TimeStamp& timeStamp) const {
    const std::int64_t standardSeconds = wrappingSum(timeStamp.secondsSince1800(), offset_);
    const DateTime standard = readingFromSeconds(standardSeconds);
    if (daylightDelta_ == 0) return standard;

    const DateTime daylight = readingFromSeconds(wrappingSum(standardSeconds, daylightDelta_));
    const DateTime start = daylightStart_->moment(daylight.date().year());
    const DateTime end = daylightEnd_->moment(daylight.date().year());
    const bool started = standard >= start;
    const bool notEnded = daylight < end;
    // Where the start is not before the end, daylight saving spans the new year.
    const bool isDaylight = start < end ? started && notEnded : started || notEnded;
    return isDaylight ? daylight : standard;
}

TimeStamp TimeZone::toUtc(const DateTime& dateTime) const {
    std::int64_t shift = offset_;
    if (daylightDelta_ != 0) {
        const DateTime start = daylightStart_->moment(dateTime.date().year());
        const DateTime end = daylightEnd_->moment(dateTime.date().year());
        const bool started = dateTime >= start;
        const bool notEnded = dateTime < end;
        if (start < end ? started && notEnded : started || notEnded) shift += daylightDelta_;
    }
    return TimeStamp(0, wrappingDifference(secondsOfReading(dateTime), shift));
}

} // namespace tsr
