#include "handheld/freeTimeGrid.h"

#include <array>
#include <cstdio>

namespace tsr {

namespace {

constexpr std::size_t days = 7;
constexpr std::array<const char*, days> dayNames = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};

// By the quarters of a half hour: none free, the first, the second, both.
constexpr std::array<const char*, 4> blocks = {"·", "▌", "▐", "█"};
constexpr std::array<const char*, 4> letters = {".", "<", ">", "#"};

void drawHours(std::ostream& out) {
    out << "      ";
    for (int hour = 0; hour < 24; hour += 2) out << (hour < 10 ? "0" : "") << hour << (hour < 22 ? "  " : "");
    out << "\n";
}

void drawDay(std::ostream& out, const FreeWeek& week, std::size_t day,
             const std::array<const char*, 4>& cells) {
    out << "  " << dayNames[day] << " ";
    for (std::size_t slot = day * FreeWeek::slotsInDay; slot < (day + 1) * FreeWeek::slotsInDay; slot += 2) {
        out << cells[static_cast<std::size_t>(week.free[slot])
                     + 2 * static_cast<std::size_t>(week.free[slot + 1])];
    }
    out << "\n";
}

} // namespace

void drawFreeTime(std::ostream& out, const Colleague& colleague, bool ascii) {
    out << (colleague.name.empty() ? "(removed from the list)" : colleague.name) << "\n";
    if (colleague.weeks.empty()) out << "  no free time known yet\n";
    for (const FreeWeek& week : colleague.weeks) {
        out << "  week of " << dateText(week.start) << "\n";
        drawHours(out);
        for (std::size_t day = 0; day < days; ++day) drawDay(out, week, day, ascii ? letters : blocks);
    }
}

std::vector<std::pair<std::size_t, std::size_t>> freeSpans(const FreeWeek& week) {
    std::vector<std::pair<std::size_t, std::size_t>> spans;
    for (std::size_t slot = 0; slot < FreeWeek::slots; ++slot) {
        if (!week.free[slot]) continue;
        if (!spans.empty() && spans.back().second == slot)
            ++spans.back().second;
        else
            spans.emplace_back(slot, slot + 1);
    }
    return spans;
}

std::string dateText(std::chrono::sys_days date) {
    const std::chrono::year_month_day day(date);
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
    return text;
}

std::string slotText(const FreeWeek& week, std::size_t slot) {
    const std::size_t minutes = slot % FreeWeek::slotsInDay * 15;
    char text[24];
    std::snprintf(text, sizeof text, "T%02u:%02u", static_cast<unsigned>(minutes / 60),
                  static_cast<unsigned>(minutes % 60));
    return dateText(week.start + std::chrono::days(slot / FreeWeek::slotsInDay)) + text;
}

} // namespace tsr
