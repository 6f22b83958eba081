#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace tsr {

inline constexpr std::uint32_t maxRepeatInterval = 9999;

// How an event comes again, counted from its first day.
struct RepeatRule {
    enum class Unit { Day, Week, MonthByDate, MonthByDay };

    struct DaySpec {
        unsigned instance = 1; // 1 to 4, 5 for the last of the month
        unsigned weekday = 0;  // 0 is Sunday
        bool operator==(const DaySpec&) const = default;
    };

    Unit unit = Unit::Day;
    std::uint32_t interval = 1;                   // days, weeks or months: 1 to maxRepeatInterval
    std::optional<std::chrono::sys_days> until{}; // the last day that may count; empty for ever
    std::uint8_t daysOfWeek = 0;                  // of Week: bit 0 is Sunday
    std::vector<unsigned> dayNumbers{};           // of MonthByDate: 1 to 31
    std::vector<DaySpec> daySpecs{};              // of MonthByDay

    bool operator==(const RepeatRule&) const = default;
};

// Whether a handheld can hold it: a month has one day only, and the interval one byte.
bool fitsHandheld(const RepeatRule& rule);

// The days of the rule from `from` to `to`, in their order, at most `most`. `start` itself only counts when
// it is a day of the rule. Weeks begin on Sunday. A month without the day, such as the 31st, is passed over.
std::vector<std::chrono::sys_days> occurrences(const RepeatRule& rule, std::chrono::sys_days start,
                                               std::chrono::sys_days from, std::chrono::sys_days to,
                                               std::size_t most);

} // namespace tsr
