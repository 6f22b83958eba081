#pragma once

#include <compare>
#include <cstdint>
#include <ostream>

#include "foundation/TimeInterval.h"

namespace tsr {

// A calendar day from 1800 on. Held in two forms, each worked out from the other when it is first asked for:
//
//   packed       year in bits 0 to 22, month in 23 to 26, day in 27 to 31; year 0: not known yet
//   Julian day   0: not known yet
//
// Reading may therefore write: a Date is copied, never shared between threads.
class Date {
public:
    Date() = default;                                                 // 1970-01-01
    Date(std::uint32_t year, std::uint32_t month, std::uint32_t day); // raises InvalidDate
    // `kind` is 0. Raises InvalidArgument for another.
    Date(std::uint32_t kind, std::uint32_t julianDay);

    std::uint32_t year() const;
    std::uint32_t month() const; // 1 to 12
    std::uint32_t day() const;   // 1 to 31
    std::uint32_t julianDay() const;
    std::uint32_t dayOfWeek() const; // 0 Sunday to 6 Saturday

    void setDay(std::uint32_t day); // raises InvalidDay, and then changes nothing

    // Raises NotWholeDays, and IntervalTooLarge for one that goes back behind Julian day 0.
    Date& operator+=(const TimeInterval& interval);

    friend std::strong_ordering operator<=>(const Date& left, const Date& right) {
        return left.julianDay() <=> right.julianDay();
    }
    friend bool operator==(const Date& left, const Date& right) {
        return left.julianDay() == right.julianDay();
    }

    static bool isLeapYear(std::uint32_t year);
    static std::uint32_t daysInMonth(std::uint32_t year, std::uint32_t month); // raises InvalidMonth

    // The day in `month` that is the `instance`-th of its day of week: 1 is the first, -1 the last; 0 is a
    // week behind the last. Raises InvalidDayOfWeekInstance where that day is in another month.
    static Date nthDayOfWeek(std::uint32_t year, std::uint32_t month, std::uint32_t dayOfWeek,
                             std::int32_t instance);

private:
    void pack(std::uint32_t year, std::uint32_t month, std::uint32_t day) const;
    std::uint32_t packedYear() const { return packed_ & 0x7FFFFF; }
    void unpackJulianDay() const;
    std::uint32_t packedAsJulianDay() const;

    mutable std::uint32_t packed_ = 1970 | 1u << 23 | 1u << 27;
    mutable std::uint32_t julianDay_ = 0;
};

Date operator+(Date date, const TimeInterval& interval);
TimeInterval operator-(const Date& left, const Date& right);

// strftime's "%x", for logs.
std::ostream& operator<<(std::ostream& stream, const Date& date);

} // namespace tsr
