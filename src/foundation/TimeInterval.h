#pragma once

#include <compare>
#include <cstdint>

namespace tsr {

// A span of time, forwards or backwards, in whole seconds.
class TimeInterval {
public:
    TimeInterval() = default;
    explicit TimeInterval(std::int64_t seconds) : seconds_(seconds) {}

    // The products of days and weeks have 32 bits and wrap; no caller comes near.
    static TimeInterval fromDays(std::int32_t days);
    static TimeInterval fromWeeks(std::int32_t weeks);
    static TimeInterval fromMinutes(std::int64_t minutes);

    std::int64_t days() const;    // raises NotWholeDays
    std::int64_t minutes() const; // raises IntervalNotWholeMinutes
    std::int64_t seconds() const { return seconds_; }

    auto operator<=>(const TimeInterval&) const = default;

private:
    std::int64_t seconds_ = 0;
};

TimeInterval operator+(const TimeInterval& left, const TimeInterval& right);

} // namespace tsr
