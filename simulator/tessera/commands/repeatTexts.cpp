#include "tessera/commands/repeatTexts.h"

#include <algorithm>
#include <array>

#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/readings.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

using Unit = RepeatRule::Unit;

constexpr std::array<const char*, 4> unitNames{"daily", "weekly", "monthly-by-date", "monthly-by-day"};
constexpr std::array<const char*, 7> dayNames{"sun", "mon", "tue", "wed", "thu", "fri", "sat"};
constexpr char lastName[] = "last";
constexpr unsigned lastInstance = 5;
constexpr unsigned daysPerWeek = 7;
constexpr unsigned daysPerMonth = 31;

unsigned parseWeekday(const std::string& name, const std::string& text) {
    const auto* const found = std::find(dayNames.begin(), dayNames.end(), name);
    if (found == dayNames.end())
        throw ArgumentError("'" + text + "' is not a day; days are mon, tue, wed, thu, fri, sat and sun");
    return static_cast<unsigned>(found - dayNames.begin());
}

unsigned parseNumberUpTo(unsigned most, const std::string& number, const std::string& text) {
    const auto value = parseNumber(number);
    if (!value || *value < 1 || *value > most)
        throw ArgumentError("'" + text + "' is not a day such as 15, of dates, or 2-tue or last-fri");
    return *value;
}

RepeatRule::DaySpec parseDaySpec(const std::string& text) {
    const std::size_t dash = std::min(text.find('-'), text.size());
    const std::string instance = text.substr(0, dash);
    const std::string name = dash == text.size() ? "" : text.substr(dash + 1);
    return {instance == lastName ? lastInstance : parseNumberUpTo(lastInstance - 1, instance, text),
            parseWeekday(name, text)};
}

} // namespace

RepeatRule::Unit parseUnit(const std::string& text) {
    const auto* const found = std::find(unitNames.begin(), unitNames.end(), text);
    if (found == unitNames.end()) {
        throw ArgumentError("'" + text
                            + "' is no way to repeat: daily, weekly, monthly-by-date or monthly-by-day");
    }
    return static_cast<Unit>(found - unitNames.begin());
}

std::string unitText(RepeatRule::Unit unit) { return unitNames.at(static_cast<std::size_t>(unit)); }

void setRuleDays(RepeatRule& rule, const std::vector<std::string>& days) {
    rule.daysOfWeek = 0;
    rule.dayNumbers.clear();
    rule.daySpecs.clear();
    if (rule.unit == Unit::Day && !days.empty()) throw ArgumentError("what is daily has no days of its own");
    for (const std::string& text : days) {
        switch (rule.unit) {
        case Unit::Day: break;
        case Unit::Week:
            rule.daysOfWeek = static_cast<std::uint8_t>(rule.daysOfWeek | 1u << parseWeekday(text, text));
            break;
        case Unit::MonthByDate: rule.dayNumbers.push_back(parseNumberUpTo(daysPerMonth, text, text)); break;
        case Unit::MonthByDay: rule.daySpecs.push_back(parseDaySpec(text)); break;
        }
    }
}

std::vector<std::string> ruleDays(const RepeatRule& rule) {
    std::vector<std::string> days;
    for (unsigned day = 0; day < dayNames.size(); ++day) {
        if ((rule.daysOfWeek >> day & 1) != 0) days.emplace_back(dayNames.at(day));
    }
    for (const unsigned number : rule.dayNumbers) days.push_back(std::to_string(number));
    for (const auto& [instance, weekday] : rule.daySpecs) {
        days.push_back((instance == lastInstance ? lastName : std::to_string(instance)) + "-"
                       + dayNames.at(weekday));
    }
    return days;
}

void setDefaultDays(RepeatRule& rule, std::chrono::sys_days start) {
    const unsigned weekday = std::chrono::weekday(start).c_encoding();
    const auto date = static_cast<unsigned>(std::chrono::year_month_day(start).day());
    setRuleDays(rule, {});
    if (rule.unit == Unit::Week) rule.daysOfWeek = static_cast<std::uint8_t>(1u << weekday);
    if (rule.unit == Unit::MonthByDate) rule.dayNumbers = {date};
    if (rule.unit == Unit::MonthByDay) rule.daySpecs = {{(date + daysPerWeek - 1) / daysPerWeek, weekday}};
}

std::string ruleText(const RepeatRule& rule) {
    std::string text = unitText(rule.unit);
    const char* before = " on ";
    for (const std::string& day : ruleDays(rule)) {
        text += before + day;
        before = ", ";
    }
    if (rule.interval != 1) text += ", every " + std::to_string(rule.interval);
    if (rule.until) text += ", until " + dateText(*rule.until);
    return text;
}

} // namespace tsr
