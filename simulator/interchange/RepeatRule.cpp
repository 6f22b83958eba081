#include "interchange/RepeatRule.h"

#include <algorithm>

namespace tsr {

namespace {

using namespace std::chrono;

constexpr unsigned daysPerWeek = 7;
constexpr std::uint32_t maxHandheldInterval = 255;
constexpr unsigned lastOfMonth = 5;

sys_days weekStart(sys_days day) { return day - days(weekday(day).c_encoding()); }

year_month monthOf(sys_days day) {
    const year_month_day date(day);
    return date.year() / date.month();
}

// The days of one period, which is told by a day in it.
std::vector<sys_days> daysOfWeek(const RepeatRule& rule, sys_days sunday) {
    std::vector<sys_days> found;
    for (unsigned i = 0; i < daysPerWeek; ++i) {
        if ((rule.daysOfWeek >> i & 1) != 0) found.push_back(sunday + days(i));
    }
    return found;
}

std::vector<sys_days> daysOfMonth(const RepeatRule& rule, year_month month) {
    std::vector<sys_days> found;
    for (const unsigned number : rule.dayNumbers) {
        const year_month_day date = month / day(number);
        if (date.ok()) found.emplace_back(date);
    }
    for (const auto& [instance, dayOfWeek] : rule.daySpecs) {
        const weekday name(dayOfWeek);
        found.push_back(instance == lastOfMonth ? sys_days(month / name[last])
                                                : sys_days(month / name[instance]));
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

// Period `number` of the rule, the one with `start` being 0.
std::vector<sys_days> daysOfPeriod(const RepeatRule& rule, sys_days start, std::int64_t number) {
    const auto count = static_cast<int>(number * rule.interval);
    switch (rule.unit) {
    case RepeatRule::Unit::Day: return {start + days(count)};
    case RepeatRule::Unit::Week: return daysOfWeek(rule, weekStart(start) + weeks(count));
    default: return daysOfMonth(rule, monthOf(start) + months(count));
    }
}

sys_days firstDayOfPeriod(const RepeatRule& rule, sys_days start, std::int64_t number) {
    const auto count = static_cast<int>(number * rule.interval);
    switch (rule.unit) {
    case RepeatRule::Unit::Day: return start + days(count);
    case RepeatRule::Unit::Week: return weekStart(start) + weeks(count);
    default: return (monthOf(start) + months(count)) / day(1);
    }
}

// The last period that begins on `day` or before.
std::int64_t periodOf(const RepeatRule& rule, sys_days start, sys_days day) {
    if (day <= start) return 0;
    switch (rule.unit) {
    case RepeatRule::Unit::Day: return (day - start).count() / rule.interval;
    case RepeatRule::Unit::Week: return (day - weekStart(start)).count() / daysPerWeek / rule.interval;
    default: return (monthOf(day) - monthOf(start)).count() / rule.interval;
    }
}

} // namespace

bool fitsHandheld(const RepeatRule& rule) {
    if (rule.interval > maxHandheldInterval) return false;
    return rule.dayNumbers.size() <= 1 && rule.daySpecs.size() <= 1;
}

std::vector<sys_days> occurrences(const RepeatRule& rule, sys_days start, sys_days from, sys_days to,
                                  std::size_t most) {
    from = std::max(from, start);
    if (rule.until) to = std::min(to, *rule.until);
    std::vector<sys_days> found;
    for (std::int64_t number = periodOf(rule, start, from); firstDayOfPeriod(rule, start, number) <= to;
         ++number) {
        for (const sys_days day : daysOfPeriod(rule, start, number)) {
            if (day < from || day > to) continue;
            if (found.size() == most) return found;
            found.push_back(day);
        }
    }
    return found;
}

} // namespace tsr
