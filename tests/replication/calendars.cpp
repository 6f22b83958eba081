#include "replication/calendars.h"

#include <array>
#include <cstdio>

#include "handheld/HandheldError.h"
#include "handheld/forms/DatebookForm.h"
#include "handheld/forms/fieldText.h"
#include "interchange/RepeatRule.h"
#include "replication/deviceText.h"
#include "tessera/meetingOccurrences.h"

namespace tsr::test {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;
using Unit = RepeatRule::Unit;

constexpr std::uint32_t minutesPerDay = 1440;
constexpr std::size_t all = SIZE_MAX;

std::string dateText(sys_days day) {
    const year_month_day date(day);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", int{date.year()}, unsigned{date.month()},
                  unsigned{date.day()});
    return text.data();
}

std::string clockText(std::int64_t minute) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d", static_cast<int>(minute / 60),
                  static_cast<int>(minute % 60));
    return text.data();
}

sys_days parseDay(const std::string& text) {
    return year_month_day(std::chrono::year(std::stoi(text)),
                          std::chrono::month(static_cast<unsigned>(std::stoi(text.substr(5)))),
                          std::chrono::day(static_cast<unsigned>(std::stoi(text.substr(8)))));
}

std::int64_t parseClock(const std::string& text) { return std::stoi(text) * 60 + std::stoi(text.substr(3)); }

struct Details {
    std::string text;
    std::string alarm; // minutes, empty for none
    bool isPrivate = false;

    std::string line() const {
        return text + (alarm.empty() ? "" : ", alarm " + alarm) + (isPrivate ? ", private" : "");
    }
};

std::string timedLine(sys_days day, std::int64_t minute, std::int64_t minutes, const Details& details) {
    return dateText(day) + ' ' + clockText(minute) + ' ' + std::to_string(minutes) + ' ' + details.line();
}

void addAllDay(Calendar& calendar, sys_days day, const Details& details) {
    const std::string line = dateText(day) + " all day " + details.line();
    if (!calendar.contains(line)) calendar.insert(line);
}

std::string alarmMinutes(const std::string& lead) {
    if (lead.empty()) return "";
    const int unit = lead.back() == 'm' ? 1 : lead.back() == 'h' ? 60 : 1440;
    return std::to_string(std::stoi(lead) * unit);
}

RepeatRule ruleOf(const FieldValues& values, sys_days start) {
    RepeatRule rule;
    rule.interval = static_cast<std::uint32_t>(std::stoul(values.at("every")));
    if (values.contains("until")) rule.until = parseDay(values.at("until"));
    const std::string repeat = values.at("repeat");
    const auto on = static_cast<unsigned>(values.contains("on") ? std::stoul(values.at("on")) : 0);
    if (repeat == "weekly") {
        rule.unit = Unit::Week;
        rule.daysOfWeek = static_cast<std::uint8_t>(on);
    } else if (repeat == "monthlyByDay") {
        rule.unit = Unit::MonthByDay;
        rule.daySpecs = {{on / 7 + 1, on % 7}};
    } else if (repeat == "monthlyByDate" || repeat == "yearly") {
        rule.unit = Unit::MonthByDate;
        rule.dayNumbers = {unsigned{year_month_day(start).day()}};
        if (repeat == "yearly") rule.interval *= 12;
    }
    return rule;
}

std::vector<sys_days> daysOf(const FieldValues& values, const DateWindow& window) {
    const sys_days date = parseDay(values.at("date"));
    if (!values.contains("repeat")) {
        if (date < window.first || date > window.last) return {};
        return {date};
    }
    std::vector<sys_days> found = occurrences(ruleOf(values, date), date, window.first, window.last, all);
    const std::string except = fieldValue(values, "except");
    for (std::size_t at = 0; at < except.size(); at += 11) std::erase(found, parseDay(except.substr(at, 10)));
    return found;
}

void addRecord(Calendar& calendar, const HandheldRecord& record, const DateWindow& window) {
    const FieldValues values = DatebookForm().read(record.data);
    const Details details{fromDeviceText(fieldValue(values, "description")) + " | "
                              + fromDeviceText(fieldValue(values, "note")),
                          alarmMinutes(fieldValue(values, "alarm")),
                          (record.attributes & HandheldRecord::secret) != 0};
    for (const sys_days day : daysOf(values, window)) {
        if (!values.contains("start")) {
            addAllDay(calendar, day, details);
            continue;
        }
        const std::int64_t start = parseClock(values.at("start"));
        calendar.insert(timedLine(day, start, parseClock(values.at("end")) - start, details));
    }
}

} // namespace

Calendar calendarOnDevice(const HandheldDatabase& database, const DateWindow& window) {
    Calendar calendar;
    for (const HandheldRecord& record : database.records().all()) {
        if (record.isGone()) continue;
        try {
            addRecord(calendar, record, window);
        } catch (const HandheldError&) {
            calendar.insert("unreadable");
        }
    }
    return calendar;
}

Calendar calendarInNotes(const std::vector<Document>& documents, const ZoneRule& zone,
                         const DateWindow& window) {
    Calendar calendar;
    for (const Document& document : documents) {
        const auto meeting = toMeeting(document);
        if (!meeting) continue;
        for (const MeetingOccurrence& each : occurrences(*meeting, zone, window)) {
            const Details details{each.subject + " | " + each.note,
                                  meeting->alarm ? std::to_string(*meeting->alarm) : "", meeting->isPrivate};
            const sys_days first = dayOf(each.start);
            if (!each.allDay) {
                calendar.insert(
                    timedLine(first, (each.start - secondsOf(first)) / 60, each.minutes, details));
                continue;
            }
            const auto count = static_cast<int>((each.minutes + minutesPerDay - 1) / minutesPerDay);
            for (int k = 0; k < std::max(1, count); ++k) {
                const sys_days day = first + days(k);
                if (day >= window.first && day <= window.last) addAllDay(calendar, day, details);
            }
        }
    }
    return calendar;
}

} // namespace tsr::test
