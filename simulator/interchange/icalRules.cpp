#include "interchange/icalRules.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "interchange/InterchangeError.h"
#include "interchange/calendarDays.h"

namespace tsr {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;
using Unit = RepeatRule::Unit;

constexpr std::size_t triedDays = 200;
constexpr int maxCount = 10000;
constexpr int monthsPerYear = 12;
constexpr unsigned lastOfMonth = 5;
constexpr unsigned mostInstances = 4;
constexpr std::array<const char*, 7> dayNames{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

// The library's own reading ends with its clock.
const sys_days endOfTime =
    sizeof(std::time_t) == 4 ? std::chrono::year(2037) / 12 / 31 : std::chrono::year(2200) / 1 / 1;

[[noreturn]] void refuse() { throw InterchangeError("it repeats by a rule that a handheld can't hold"); }

template <std::size_t size>
std::vector<int> valuesOf(const short (&values)[size]) {
    const short* const end = std::find(values, values + size, ICAL_RECURRENCE_ARRAY_MAX);
    return {values, end};
}

// 0 is Sunday.
unsigned weekdayOf(int day) {
    return static_cast<unsigned>(icalrecurrencetype_day_day_of_week(static_cast<short>(day)) - 1);
}
int positionOf(int day) { return icalrecurrencetype_day_position(static_cast<short>(day)); }

struct Parts {
    explicit Parts(const icalrecurrencetype& rule)
        : days(valuesOf(rule.by_day)), dates(valuesOf(rule.by_month_day)), months(valuesOf(rule.by_month)),
          positions(valuesOf(rule.by_set_pos)) {}

    std::vector<int> days, dates, months, positions;
};

bool hasOtherParts(const icalrecurrencetype& rule) {
    return !valuesOf(rule.by_second).empty() || !valuesOf(rule.by_minute).empty()
        || !valuesOf(rule.by_hour).empty() || !valuesOf(rule.by_year_day).empty()
        || !valuesOf(rule.by_week_no).empty() || rule.rscale != nullptr;
}

void setDaysOfWeek(RepeatRule& rule, const Parts& parts, sys_days start) {
    rule.unit = Unit::Week;
    for (const int day : parts.days) {
        if (positionOf(day) != 0) refuse();
        rule.daysOfWeek = static_cast<std::uint8_t>(rule.daysOfWeek | 1u << weekdayOf(day));
    }
    if (parts.days.empty())
        rule.daysOfWeek = static_cast<std::uint8_t>(1u << std::chrono::weekday(start).c_encoding());
}

void setDayOfMonth(RepeatRule& rule, const Parts& parts) {
    rule.unit = Unit::MonthByDay;
    if (parts.days.size() != 1 || !parts.dates.empty()) refuse();
    int position = positionOf(parts.days.front());
    if (position == 0 && parts.positions.size() == 1) position = parts.positions.front();
    if (position != -1 && (position < 1 || position > static_cast<int>(mostInstances))) refuse();
    const unsigned instance = position == -1 ? lastOfMonth : static_cast<unsigned>(position);
    rule.daySpecs = {{instance, weekdayOf(parts.days.front())}};
}

void setDateOfMonth(RepeatRule& rule, const Parts& parts, sys_days start) {
    rule.unit = Unit::MonthByDate;
    if (parts.dates.size() > 1) refuse();
    const auto day = static_cast<unsigned>(year_month_day(start).day());
    if (!parts.dates.empty() && parts.dates.front() != static_cast<int>(day)) refuse();
    rule.dayNumbers = {day};
}

void setMonthly(RepeatRule& rule, const Parts& parts, sys_days start) {
    if (parts.days.empty()) {
        setDateOfMonth(rule, parts, start);
    } else {
        setDayOfMonth(rule, parts);
    }
}

// A year is twelve months.
void setYearly(RepeatRule& rule, const Parts& parts, sys_days start) {
    const auto month = static_cast<int>(static_cast<unsigned>(year_month_day(start).month()));
    if (parts.months.size() > 1 || (!parts.months.empty() && parts.months.front() != month)) refuse();
    if (parts.months.empty() && !(parts.days.empty() && parts.dates.empty())) refuse();
    rule.interval *= monthsPerYear;
    setMonthly(rule, parts, start);
}

RepeatRule structureOf(const icalrecurrencetype& ical, sys_days start) {
    const Parts parts(ical);
    const bool isYearly = ical.freq == ICAL_YEARLY_RECURRENCE;
    if (hasOtherParts(ical) || ical.interval < 1 || (!parts.months.empty() && !isYearly)) refuse();
    if (!parts.positions.empty() && parts.days.empty()) refuse();
    RepeatRule rule{.unit = Unit::Day, .interval = static_cast<std::uint32_t>(ical.interval)};
    switch (ical.freq) {
    case ICAL_DAILY_RECURRENCE:
        if (!parts.dates.empty()) refuse();
        if (!parts.days.empty()) setDaysOfWeek(rule, parts, start); // as every working day is told
        break;
    case ICAL_WEEKLY_RECURRENCE:
        if (!parts.dates.empty()) refuse();
        setDaysOfWeek(rule, parts, start);
        break;
    case ICAL_MONTHLY_RECURRENCE: setMonthly(rule, parts, start); break;
    case ICAL_YEARLY_RECURRENCE: setYearly(rule, parts, start); break;
    default: refuse();
    }
    return rule;
}

// Days by the library's own reading, at most `most`.
std::vector<sys_days> readDays(const icalrecurrencetype& rule, std::int64_t start, std::size_t most) {
    icaltimetype first = icalMoment(start);
    first.zone = nullptr;
    std::vector<sys_days> days;
    icalrecur_iterator* const iterator = icalrecur_iterator_new(rule, first);
    if (iterator == nullptr) refuse();
    for (icaltimetype time = icalrecur_iterator_next(iterator);
         days.size() < most && !icaltime_is_null_time(time); time = icalrecur_iterator_next(iterator)) {
        days.push_back(std::chrono::year(time.year) / time.month / time.day);
    }
    icalrecur_iterator_free(iterator);
    return days;
}

void setEnd(RepeatRule& rule, icalrecurrencetype& ical, std::int64_t start,
            std::optional<std::int64_t> until) {
    if (ical.count > maxCount) refuse();
    if (ical.count > 0) rule.until = readDays(ical, start, static_cast<std::size_t>(ical.count)).back();
    if (!until) return;
    // The day of the end doesn't count when it ends before the event's time of the day.
    const std::int64_t timeOfDay = start - secondsOf(dayOf(start));
    rule.until = dayOf(*until - timeOfDay);
    ical.until = icalMoment(*until);
    ical.until.zone = nullptr;
}

std::string dateText(sys_days day) { return textOf(icaltime_as_ical_string(icalDate(year_month_day(day)))); }

std::string listText(const RepeatRule& rule) {
    std::string text;
    const auto append = [&text](const std::string& item) { text += (text.empty() ? "" : ",") + item; };
    for (unsigned i = 0; i < dayNames.size(); ++i) {
        if ((rule.daysOfWeek >> i & 1) != 0) append(dayNames.at(i));
    }
    for (const unsigned number : rule.dayNumbers) append(std::to_string(number));
    for (const auto& [instance, weekday] : rule.daySpecs)
        append((instance == lastOfMonth ? "-1" : std::to_string(instance)) + dayNames.at(weekday));
    return text;
}

std::string ruleText(const RepeatRule& rule, bool allDay) {
    std::string text;
    switch (rule.unit) {
    case Unit::Day: text = "FREQ=DAILY"; break;
    case Unit::Week: text = "FREQ=WEEKLY;WKST=SU;BYDAY=" + listText(rule); break;
    case Unit::MonthByDate: text = "FREQ=MONTHLY;BYMONTHDAY=" + listText(rule); break;
    case Unit::MonthByDay: text = "FREQ=MONTHLY;BYDAY=" + listText(rule); break;
    }
    text += ";INTERVAL=" + std::to_string(rule.interval);
    if (rule.until) text += ";UNTIL=" + dateText(*rule.until) + (allDay ? "" : "T235959");
    return text;
}

} // namespace

RepeatRule toRepeatRule(icalrecurrencetype ical, std::int64_t start, std::optional<std::int64_t> until) {
    const sys_days first = dayOf(start);
    RepeatRule rule = structureOf(ical, first);
    if (occurrences(rule, first, first, first, 1).empty())
        throw InterchangeError("its first day is not a day of its rule");
    setEnd(rule, ical, start, until);
    std::vector<sys_days> read = readDays(ical, start, triedDays);
    std::erase_if(read, [](sys_days day) { return day > endOfTime; });
    if (!fitsHandheld(rule) || occurrences(rule, first, first, endOfTime, triedDays) != read) refuse();
    return rule;
}

icalproperty* newRule(const RepeatRule& rule, bool allDay) {
    return icalproperty_new_rrule(icalrecurrencetype_from_string(ruleText(rule, allDay).c_str()));
}

} // namespace tsr
