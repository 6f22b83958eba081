#include <algorithm>
#include <ctime>
#include <memory>
#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "interchange/calendarView.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/readings.h"
#include "tessera/meetingOccurrences.h"

namespace tsr {

namespace {

using namespace std::chrono;
using Json = nlohmann::ordered_json;

constexpr int maxDays = 3660;

struct CalendarOptions {
    std::string user;
    std::string month;
    std::string from;
    int days = 7;
};

year_month monthOf(const std::string& text) {
    try {
        const year_month_day first(parseDate(text + "-01"));
        return first.year() / first.month();
    } catch (const ArgumentError&) {
        throw ArgumentError("'" + text + "' is not a month such as 2026-11");
    }
}

DateWindow windowOf(const CalendarOptions& options, year_month month) {
    if (options.from.empty()) return {month / day(1), month / last};
    const sys_days first = parseDate(options.from);
    return {first, first + days(options.days - 1)};
}

std::vector<CalendarEntry> entriesIn(Store& store, const User& user, const DateWindow& window) {
    std::vector<CalendarEntry> entries;
    for (const Document& document : store.documents(store.mailDatabase(user.id).id, meetingKind)) {
        const auto meeting = toMeeting(document);
        if (!meeting) continue;
        for (const MeetingOccurrence& each : occurrences(*meeting, user.zone, window))
            entries.push_back({each.start, each.minutes, each.allDay, each.subject});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const CalendarEntry& a, const CalendarEntry& b) { return a.start < b.start; });
    return entries;
}

Json entriesJson(const std::vector<CalendarEntry>& entries) {
    Json list = Json::array();
    for (const CalendarEntry& entry : entries) {
        list.push_back({{"start", readingText(entry.start)},
                        {"minutes", entry.minutes},
                        {"allDay", entry.allDay},
                        {"subject", entry.subject}});
    }
    return list;
}

void showCalendar(const TesseraCommandLine& line, const CalendarOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    const std::string today = dateText(std::time(nullptr), user.zone);
    const year_month month = monthOf(options.month.empty() ? today.substr(0, 7) : options.month);
    const DateWindow window = windowOf(options, month);
    const std::vector<CalendarEntry> entries = entriesIn(store, user, window);
    if (line.json) {
        line.out << entriesJson(entries).dump(2) << "\n";
    } else if (options.from.empty()) {
        writeMonth(line.out, entries, month);
    } else {
        writeDays(line.out, entries, window.first, window.last);
    }
}

} // namespace

void addCalendarCommand(TesseraCommandLine& line) {
    const auto options = std::make_shared<CalendarOptions>();
    CLI::App& command = line.command(*line.app.get_subcommand("show"), "calendar",
                                     "Shows the calendar of a user as a month, or day by day",
                                     [&line, options] { showCalendar(line, *options); });
    command.footer("  tessera office.db show calendar --user \"Pat Lee\" --month 2026-11\n"
                   "  tessera office.db show calendar --user \"Pat Lee\" --from 2026-11-23 --days 14");
    command.add_option("--user", options->user, "Whose calendar; times are told in his zone")->required();
    CLI::Option* const month = command.add_option("--month", options->month, "The month; this one");
    CLI::Option* const from =
        command.add_option("--from", options->from, "The first of the days to list")->excludes(month);
    command.add_option("--days", options->days, "How many days; 7")
        ->needs(from)
        ->check(CLI::Range(1, maxDays));
    line.addJsonOption(command);
}

} // namespace tsr
