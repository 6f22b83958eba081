#include <algorithm>
#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>

#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/recordFiles.h"
#include "handheld/forms/fieldText.h"
#include "interchange/calendarDays.h"
#include "interchange/calendarView.h"

namespace tsr {

namespace {

using namespace std::chrono;
using Json = nlohmann::ordered_json;

constexpr int maxDays = 3660;
constexpr std::size_t allDays = SIZE_MAX;

struct CalendarOptions {
    std::string month;
    std::string from;
    int days = 7;
};

sys_days parseDay(const std::string& name, const std::string& text) {
    const std::uint32_t packed = parseDateField(name, text);
    return sys_days(year(1904 + static_cast<int>(packed >> 9)) / month(packed >> 5 & 15) / day(packed & 31));
}

year_month chosenMonth(const CalendarOptions& options, std::int64_t now) {
    const year_month_day date(options.month.empty() ? dayOf(now) : parseDay("month", options.month + "-01"));
    return date.year() / date.month();
}

std::vector<CalendarEntry> entriesIn(const std::vector<Event>& events, sys_days first, sys_days last) {
    std::vector<CalendarEntry> entries;
    for (const Event& event : events) {
        const sys_days start = dayOf(event.start);
        const std::vector<sys_days> days =
            event.rule ? occurrences(*event.rule, start, first, last, allDays) : std::vector<sys_days>{start};
        for (const sys_days day : days) {
            if (day < first || day > last || event.deletions.contains(day)) continue;
            entries.push_back({event.start + secondsOf(day) - secondsOf(start), event.minutes, event.allDay,
                               event.subject});
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const CalendarEntry& a, const CalendarEntry& b) { return a.start < b.start; });
    return entries;
}

void showJson(std::ostream& out, const std::vector<CalendarEntry>& entries) {
    Json list = Json::array();
    for (const CalendarEntry& entry : entries) {
        list.push_back({{"start", readingText(entry.start)},
                        {"minutes", entry.minutes},
                        {"allDay", entry.allDay},
                        {"subject", entry.subject}});
    }
    out << list.dump(2) << "\n";
}

void showCalendar(const CommandLine& line, const CalendarOptions& options) {
    HandheldFolder folder = HandheldFolder::open(line.folder);
    Handheld& handheld = folder.handheld();
    const std::int64_t now = handheld.clock.value_or(static_cast<std::uint32_t>(std::time(nullptr)));
    const year_month month = chosenMonth(options, now);
    const bool isList = !options.from.empty();
    const sys_days first = isList ? parseDay("from", options.from) : sys_days(month / day(1));
    const sys_days end = isList ? first + days(options.days - 1) : sys_days(month / last);
    const auto entries = entriesIn(eventsOf(findDatabase(handheld, eventDatabase)), first, end);
    if (line.json) {
        showJson(line.out, entries);
    } else if (isList) {
        writeDays(line.out, entries, first, end);
    } else {
        writeMonth(line.out, entries, month);
    }
}

} // namespace

void addCalendarCommand(CommandLine& line) {
    CLI::App& command = line.addCommand("calendar", "Show the Date Book as a month, or day by day",
                                        "--from 2026-11-23 --days 14");
    line.addJsonOption(command);
    auto options = std::make_shared<CalendarOptions>();
    CLI::Option* month =
        command.add_option("--month", options->month, "The month, such as 2026-11; that of the clock");
    CLI::Option* from =
        command.add_option("--from", options->from, "The first of the days to list")->excludes(month);
    command.add_option("--days", options->days, "How many days; 7")
        ->needs(from)
        ->check(CLI::Range(1, maxDays));
    command.callback([&line, options] { line.action = [&line, options] { showCalendar(line, *options); }; });
}

} // namespace tsr
