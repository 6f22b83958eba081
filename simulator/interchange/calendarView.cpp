#include "interchange/calendarView.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>

#include "interchange/calendarDays.h"

namespace tsr {

namespace {

using namespace std::chrono;

constexpr std::int64_t minutesPerDay = 1440;
constexpr std::size_t columnWidth = 11;
constexpr std::size_t mostLines = 5; // of a day in the grid
constexpr int daysPerWeek = 7;
constexpr std::array<const char*, 7> dayNames{"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
constexpr std::array<const char*, 12> monthNames{"January",   "February", "March",    "April",
                                                 "May",       "June",     "July",     "August",
                                                 "September", "October",  "November", "December"};

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::string shown(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isLatinControl = byte == 0xC2 && i + 1 < text.size() && continuesCharacter(text[i + 1])
                                 && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (isLatinControl) ++i;
        result += byte < 0x20 || byte == 0x7F || isLatinControl ? '?' : text[i];
    }
    return result;
}

// As wide as a column, with a blank at its end.
std::string fitted(const std::string& text) {
    std::string result;
    std::size_t width = 0;
    for (const char c : text) {
        if (!continuesCharacter(c) && ++width == columnWidth) {
            --width;
            break;
        }
        result += c;
    }
    return result + std::string(columnWidth - width, ' ');
}

std::string timeText(std::int64_t seconds) {
    const std::int64_t minute = (seconds - secondsOf(dayOf(seconds))) / 60;
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d", static_cast<int>(minute / 60),
                  static_cast<int>(minute % 60));
    return text;
}

std::string dayText(sys_days day) {
    const year_month_day date(day);
    char text[48];
    std::snprintf(text, sizeof text, "%s %04d-%02u-%02u", dayNames.at(weekday(day).iso_encoding() - 1),
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()));
    return text;
}

// Those that touch the day, whole days first.
std::vector<CalendarEntry> entriesOf(const std::vector<CalendarEntry>& entries, sys_days day) {
    std::vector<CalendarEntry> found;
    for (const CalendarEntry& entry : entries) {
        const sys_days first = dayOf(entry.start);
        const days further(daysTouched(entry.start, entry.minutes, entry.allDay) - 1);
        if (first <= day && first + further >= day) found.push_back(entry);
    }
    std::stable_sort(found.begin(), found.end(), [](const CalendarEntry& a, const CalendarEntry& b) {
        return std::pair(!a.allDay, a.start) < std::pair(!b.allDay, b.start);
    });
    return found;
}

std::string spanText(const CalendarEntry& entry) {
    if (entry.allDay) return "all day    ";
    return timeText(entry.start) + "-" + timeText(entry.start + std::int64_t{entry.minutes} * 60);
}

// The lines of one day in the grid.
std::vector<std::string> cellOf(const std::vector<CalendarEntry>& entries, sys_days day, year_month month) {
    const year_month_day date(day);
    if (date.year() / date.month() != month) return {};
    std::vector<std::string> lines{std::to_string(static_cast<unsigned>(date.day()))};
    const std::vector<CalendarEntry> found = entriesOf(entries, day);
    const std::size_t most = found.size() > mostLines ? mostLines - 1 : found.size();
    for (std::size_t i = 0; i < most; ++i)
        lines.push_back((found[i].allDay ? "" : timeText(found[i].start) + " ") + shown(found[i].subject));
    if (most < found.size()) lines.push_back("+" + std::to_string(found.size() - most) + " more");
    return lines;
}

void writeLine(std::ostream& out, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << "\n";
}

void writeWeek(std::ostream& out, const std::vector<CalendarEntry>& entries, sys_days monday,
               year_month month) {
    std::vector<std::vector<std::string>> cells;
    std::size_t lines = 0;
    for (int i = 0; i < daysPerWeek; ++i) {
        cells.push_back(cellOf(entries, monday + days(i), month));
        lines = std::max(lines, cells.back().size());
    }
    for (std::size_t number = 0; number < lines; ++number) {
        std::string line;
        for (const auto& cell : cells) line += fitted(number < cell.size() ? cell[number] : "");
        writeLine(out, line);
    }
}

} // namespace

void writeDays(std::ostream& out, const std::vector<CalendarEntry>& entries, sys_days first, sys_days last) {
    for (sys_days day = first; day <= last; day += days(1)) {
        const std::vector<CalendarEntry> found = entriesOf(entries, day);
        if (found.empty()) continue;
        out << dayText(day) << "\n";
        for (const CalendarEntry& entry : found)
            writeLine(out, "  " + spanText(entry) + "  " + shown(entry.subject));
    }
}

void writeMonth(std::ostream& out, const std::vector<CalendarEntry>& entries, year_month month) {
    out << monthNames.at(static_cast<unsigned>(month.month()) - 1) << " " << static_cast<int>(month.year())
        << "\n";
    std::string names;
    for (const char* name : dayNames) names += fitted(name);
    writeLine(out, names);
    const sys_days first = month / day(1);
    for (sys_days monday = first - days(weekday(first).iso_encoding() - 1); monday <= sys_days(month / last);
         monday += days(daysPerWeek)) {
        writeWeek(out, entries, monday, month);
    }
}

std::int64_t daysTouched(std::int64_t start, std::uint32_t minutes, bool allDay) {
    if (allDay) return std::max<std::int64_t>(1, (minutes + minutesPerDay - 1) / minutesPerDay);
    const std::int64_t end = start + std::max<std::int64_t>(minutes, 1) * 60 - 1;
    return (dayOf(end) - dayOf(start)).count() + 1;
}

std::string readingText(std::int64_t start) {
    return dayText(dayOf(start)).substr(std::string("Mon ").size()) + " " + timeText(start);
}

} // namespace tsr
