#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tsr {

// What takes place once, for a calendar in the terminal. Texts are UTF-8; characters in them that would act
// on a terminal show as '?'.
struct CalendarEntry {
    std::int64_t start = 0; // seconds since 1970 as the owner's clock shows them
    std::uint32_t minutes = 0;
    bool allDay = false;
    std::string subject{};
};

// Each day from `first` to `last` that has entries, with them below it. What takes several days stands on
// each of them.
void writeDays(std::ostream& out, const std::vector<CalendarEntry>& entries, std::chrono::sys_days first,
               std::chrono::sys_days last);

// A month as a grid of weeks, Monday first, in 77 columns.
void writeMonth(std::ostream& out, const std::vector<CalendarEntry>& entries, std::chrono::year_month month);

// How many days an entry touches; one that ends at midnight doesn't touch the day that begins there.
std::int64_t daysTouched(std::int64_t start, std::uint32_t minutes, bool allDay);

std::string readingText(std::int64_t start); // "2026-11-23 10:00"

} // namespace tsr
