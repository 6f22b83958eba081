#include "handheld/commands/datebookEvents.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>

#include "handheld/HandheldError.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/forms/fieldText.h"
#include "interchange/calendarDays.h"

namespace tsr {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;
using Unit = RepeatRule::Unit;

constexpr std::uint32_t minutesPerHour = 60;
constexpr std::uint32_t minutesPerDay = 1440;
constexpr std::uint32_t mostLead = 99; // of an alarm, in each unit
constexpr std::uint32_t daysPerWeek = 7;
constexpr std::uint32_t monthsPerYear = 12;
constexpr std::array<const char*, 4> repeatNames{"daily", "weekly", "monthlyByDate", "monthlyByDay"};
constexpr char yearlyName[] = "yearly";

std::string dateText(sys_days day) {
    const year_month_day date(day);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

sys_days dateOf(const std::string& text) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    std::sscanf(text.c_str(), "%4d-%2u-%2u", &year, &month, &day);
    const year_month_day date{std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
    if (!date.ok()) throw HandheldError(text + " is no day");
    return date;
}

std::uint32_t numberOf(const std::string& text) { return parseNumberField("number", text, UINT16_MAX); }

// Leads that the handheld can't hold are rounded to hours, or to days.
std::string alarmText(std::uint32_t minutes) {
    if (minutes <= mostLead) return std::to_string(minutes) + "m";
    const std::uint32_t hours = (minutes + minutesPerHour / 2) / minutesPerHour;
    if (hours <= mostLead) return std::to_string(hours) + "h";
    return std::to_string(std::min(mostLead, (minutes + minutesPerDay / 2) / minutesPerDay)) + "d";
}

std::uint32_t alarmMinutes(const std::string& text) {
    const std::uint32_t lead = numberOf(text.substr(0, text.size() - 1));
    return lead * (text.back() == 'm' ? 1 : text.back() == 'h' ? minutesPerHour : minutesPerDay);
}

void setTimes(FieldValues& fields, std::int64_t start, std::uint32_t minutes, bool allDay) {
    fields["date"] = dateText(dayOf(start));
    if (allDay) return;
    const auto minute = static_cast<std::uint32_t>((start - secondsOf(dayOf(start))) / 60);
    const std::uint32_t end = minute + minutes;
    if (end >= minutesPerDay) throw UsageError("it runs over midnight, which no event of a handheld does");
    fields["start"] = timeText(minute / minutesPerHour, minute % minutesPerHour);
    fields["end"] = timeText(end / minutesPerHour, end % minutesPerHour);
}

std::uint32_t wholeDays(std::uint32_t minutes) {
    return std::max(1u, (minutes + minutesPerDay - 1) / minutesPerDay);
}

void setRule(FieldValues& fields, const RepeatRule& rule) {
    fields["repeat"] = repeatNames.at(static_cast<std::size_t>(rule.unit));
    fields["every"] = std::to_string(rule.interval);
    if (rule.until) fields["until"] = dateText(*rule.until);
    if (rule.unit == Unit::Week) fields["on"] = std::to_string(rule.daysOfWeek);
    if (rule.unit == Unit::MonthByDay && !rule.daySpecs.empty()) {
        const auto& [instance, weekday] = rule.daySpecs.front();
        fields["on"] = std::to_string((instance - 1) * daysPerWeek + weekday);
    }
}

void setExceptions(FieldValues& fields, const Event& event) {
    std::set<sys_days> days = event.deletions;
    for (const EventException& exception : event.exceptions) days.insert(exception.patternDate);
    std::string text;
    for (const sys_days day : days) text += (text.empty() ? "" : ",") + dateText(day);
    setField(fields, "except", text);
}

DatebookFields masterOf(const Event& event) {
    DatebookFields record;
    record.secret = event.isPrivate;
    setField(record.fields, "description", event.subject);
    setField(record.fields, "note", event.note);
    setTimes(record.fields, event.start, event.minutes, event.allDay);
    if (event.alarm) record.fields["alarm"] = alarmText(*event.alarm);
    const std::uint32_t days = event.allDay ? wholeDays(event.minutes) : 1;
    if (days > 1 && event.rule)
        throw UsageError("it repeats and takes several days, which no event of a handheld does");
    if (days > 1)
        setRule(record.fields,
                {.unit = Unit::Day, .until = dayOf(event.start) + std::chrono::days(days - 1)});
    return record;
}

DatebookFields changedDay(const Event& event, const EventException& exception) {
    Event once = event;
    once.rule.reset();
    once.start = exception.start;
    once.subject = exception.subject.value_or(event.subject);
    once.note = exception.note.value_or(event.note);
    once.allDay = exception.allDay.value_or(event.allDay);
    once.minutes = exception.minutes.value_or(event.minutes);
    return masterOf(once);
}

RepeatRule ruleOf(const FieldValues& fields, sys_days start) {
    RepeatRule rule;
    const std::string name = fieldValue(fields, "repeat");
    const std::string on = fieldValue(fields, "on");
    const std::string until = fieldValue(fields, "until");
    const std::uint32_t day = on.empty() ? 0 : numberOf(on);
    const auto* const found = std::find(repeatNames.begin(), repeatNames.end(), name);
    rule.unit = name == yearlyName ? Unit::MonthByDate : static_cast<Unit>(found - repeatNames.begin());
    rule.interval = std::max(1u, numberOf(fieldValue(fields, "every")));
    if (name == yearlyName) rule.interval *= monthsPerYear;
    if (!until.empty()) rule.until = dateOf(until);
    if (rule.unit == Unit::Week) rule.daysOfWeek = static_cast<std::uint8_t>(day);
    if (rule.unit == Unit::MonthByDate)
        rule.dayNumbers = {static_cast<unsigned>(year_month_day(start).day())};
    if (rule.unit == Unit::MonthByDay) {
        if (day / daysPerWeek > 4) throw HandheldError("the event repeats in an unknown way");
        rule.daySpecs = {{day / daysPerWeek + 1, day % daysPerWeek}};
    }
    return rule;
}

} // namespace

std::vector<DatebookFields> toDatebook(const Event& event) {
    std::vector<DatebookFields> records{masterOf(event)};
    if (!event.rule) return records;
    setRule(records.front().fields, *event.rule);
    setExceptions(records.front().fields, event);
    for (const EventException& exception : event.exceptions) records.push_back(changedDay(event, exception));
    return records;
}

Event toEvent(const DatebookFields& record) {
    const FieldValues& fields = record.fields;
    Event event;
    event.subject = fieldValue(fields, "description");
    event.note = fieldValue(fields, "note");
    event.isPrivate = record.secret;
    const sys_days day = dateOf(fieldValue(fields, "date"));
    const std::string start = fieldValue(fields, "start");
    event.start = secondsOf(day);
    event.allDay = start.empty();
    event.minutes = minutesPerDay;
    if (!event.allDay) {
        const auto minuteOf = [](const ClockTime& time) { return time.hour * minutesPerHour + time.minute; };
        const std::uint32_t from = minuteOf(parseTimeField("start", start));
        const std::uint32_t to = minuteOf(parseTimeField("end", fieldValue(fields, "end")));
        event.start += std::int64_t{from} * 60;
        event.minutes = to < from ? 0 : to - from;
    }
    if (const std::string alarm = fieldValue(fields, "alarm"); !alarm.empty())
        event.alarm = alarmMinutes(alarm);
    if (fieldValue(fields, "repeat").empty()) return event;
    event.rule = ruleOf(fields, day);
    std::istringstream days(fieldValue(fields, "except"));
    for (std::string text; std::getline(days, text, ',');) event.deletions.insert(dateOf(text));
    return event;
}

} // namespace tsr
