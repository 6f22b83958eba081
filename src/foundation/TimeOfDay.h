#pragma once

#include <compare>
#include <cstdint>
#include <ostream>

#include "foundation/TimeInterval.h"

namespace tsr {

// A time within a day, in one word: hour in bits 0 to 15, minute in 16 to 23, second in 24 to 31.
class TimeOfDay {
public:
    TimeOfDay() = default;                                                     // 00:00:00
    TimeOfDay(std::uint32_t hour, std::uint32_t minute, std::uint32_t second); // raises InvalidTime
    // Seconds since midnight; `kind` is 0. Raises InvalidArgument for another, SecondsExceedDay.
    TimeOfDay(std::uint32_t kind, std::uint32_t seconds);

    std::uint32_t hour() const { return packed_ & 0xFFFF; }
    std::uint32_t minute() const { return packed_ >> 16 & 0xFF; }
    std::uint32_t second() const { return packed_ >> 24; }
    std::uint32_t seconds() const { return (hour() * 60 + minute()) * 60 + second(); } // since midnight

    friend std::strong_ordering operator<=>(const TimeOfDay& left, const TimeOfDay& right) {
        return left.seconds() <=> right.seconds();
    }
    bool operator==(const TimeOfDay&) const = default;

private:
    std::uint32_t packed_ = 0;
};

// Wraps around midnight. Raises SecondsExceedDay where the sum is before midnight by whole days: that comes
// out as 24:00.
TimeOfDay operator+(const TimeOfDay& time, const TimeInterval& interval);
TimeInterval operator-(const TimeOfDay& left, const TimeOfDay& right);

// strftime's "%X", for logs.
std::ostream& operator<<(std::ostream& stream, const TimeOfDay& time);

} // namespace tsr
