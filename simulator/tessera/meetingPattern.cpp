#include "tessera/meetingPattern.h"

#include <algorithm>
#include <array>

#include "foundation/epochs.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

using std::chrono::sys_days;
using Unit = RepeatRule::Unit;

constexpr char recursName[] = "Recurs";
constexpr char intervalName[] = "Interval";
constexpr char endName[] = "PatternEnd";
constexpr char daysOfWeekName[] = "DaysOfWeek";
constexpr char dayInMonthPrefix[] = "DayInMonth.";
constexpr char nthPrefix[] = "Nth.";
constexpr char startTimeName[] = "RepeatStartTime";
constexpr char startName[] = "PatternStartDate";
constexpr char deletionCountName[] = "DeletionCount";
constexpr char deletionPrefix[] = "Deletion.";
constexpr char exceptionCountName[] = "ExceptionCount";
constexpr char exceptionPrefix[] = "Exception.";
constexpr char forever[] = "Forever";

constexpr const char* patternNames[] = {recursName,    intervalName, endName,           daysOfWeekName,
                                        startTimeName, startName,    deletionCountName, exceptionCountName};
constexpr const char* patternPrefixes[] = {dayInMonthPrefix, nthPrefix, deletionPrefix, exceptionPrefix};

constexpr std::array<const char*, 4> unitWords{"Day", "Week", "Month", "MonthNth"};

constexpr unsigned lastDayNumber = 31;
constexpr std::uint32_t allDaysOfWeek = 127;

std::optional<std::uint32_t> numberOf(const Properties& properties, const std::string& name) {
    return parseNumber(firstValue(properties, name));
}

std::optional<std::int64_t> momentOf(const Properties& properties, const std::string& name) {
    const auto minutes = numberOf(properties, name);
    if (!minutes) return std::nullopt;
    return fromMinutes1601(*minutes);
}

bool readDayNumbers(const Properties& properties, RepeatRule& rule) {
    for (unsigned n = 1; properties.contains(dayInMonthPrefix + std::to_string(n)); ++n) {
        const auto number = numberOf(properties, dayInMonthPrefix + std::to_string(n));
        if (!number || *number < 1 || *number > lastDayNumber) return false;
        rule.dayNumbers.push_back(*number);
    }
    return !rule.dayNumbers.empty();
}

bool readDaySpecs(const Properties& properties, RepeatRule& rule) {
    for (unsigned n = 1; properties.contains(nthPrefix + std::to_string(n)); ++n) {
        const std::string text = firstValue(properties, nthPrefix + std::to_string(n));
        const bool isSpec = text.size() == 3 && text[0] >= '1' && text[0] <= '5' && text[1] == '.'
                         && text[2] >= '0' && text[2] <= '6';
        if (!isSpec) return false;
        rule.daySpecs.push_back({static_cast<unsigned>(text[0] - '0'), static_cast<unsigned>(text[2] - '0')});
    }
    return !rule.daySpecs.empty();
}

bool readDaysOfWeek(const Properties& properties, RepeatRule& rule) {
    const auto mask = numberOf(properties, daysOfWeekName);
    if (!mask || *mask > allDaysOfWeek) return false;
    rule.daysOfWeek = static_cast<std::uint8_t>(*mask);
    return true;
}

bool readUnit(const Properties& properties, RepeatRule& rule) {
    switch (rule.unit) {
    case Unit::Day: return true;
    case Unit::Week: return readDaysOfWeek(properties, rule);
    case Unit::MonthByDate: return readDayNumbers(properties, rule);
    case Unit::MonthByDay: return readDaySpecs(properties, rule);
    }
    return false;
}

std::optional<RepeatRule> toRule(const Properties& properties) {
    const auto* const word =
        std::find(unitWords.begin(), unitWords.end(), firstValue(properties, recursName));
    const auto interval = numberOf(properties, intervalName);
    const std::string end = firstValue(properties, endName);
    const auto until = momentOf(properties, endName);
    if (word == unitWords.end() || !interval || *interval == 0 || *interval > maxRepeatInterval
        || (end != forever && !until))
        return std::nullopt;
    RepeatRule rule{.unit = static_cast<Unit>(word - unitWords.begin()), .interval = *interval};
    if (until) rule.until = dayOf(*until);
    if (!readUnit(properties, rule)) return std::nullopt;
    return rule;
}

// Empty without a pattern date.
std::optional<EventException> toException(const Properties& properties, const std::string& prefix) {
    const auto pattern = momentOf(properties, prefix + "PatternDate");
    if (!pattern) return std::nullopt;
    EventException exception;
    exception.patternDate = dayOf(*pattern);
    exception.start = momentOf(properties, prefix + "Date").value_or(secondsOf(exception.patternDate));
    const auto text = [&](const char* name) -> std::optional<std::string> {
        if (!properties.contains(prefix + name)) return std::nullopt;
        return firstValue(properties, prefix + name);
    };
    exception.subject = text("Subject");
    exception.note = text("Body");
    if (const auto allDay = text("AllDay")) exception.allDay = *allDay == "1";
    exception.minutes = numberOf(properties, prefix + "Duration");
    return exception;
}

std::vector<EventException> exceptionsOf(const Properties& properties) {
    std::vector<EventException> exceptions;
    const std::uint32_t count = numberOf(properties, exceptionCountName).value_or(0);
    for (std::uint32_t n = 1; n <= count; ++n) {
        const auto exception = toException(properties, exceptionPrefix + std::to_string(n) + ".");
        if (!exception) break;
        exceptions.push_back(*exception);
    }
    return exceptions;
}

void setRule(Properties& properties, const RepeatRule& rule) {
    properties[recursName] = {unitWords.at(static_cast<std::size_t>(rule.unit))};
    properties[intervalName] = {std::to_string(rule.interval)};
    properties[endName] = {rule.until ? minutes1601Text(secondsOf(*rule.until)) : forever};
    if (rule.unit == Unit::Week) properties[daysOfWeekName] = {std::to_string(rule.daysOfWeek)};
    for (std::size_t i = 0; i < rule.dayNumbers.size(); ++i)
        properties[dayInMonthPrefix + std::to_string(i + 1)] = {std::to_string(rule.dayNumbers[i])};
    for (std::size_t i = 0; i < rule.daySpecs.size(); ++i) {
        const auto& [instance, weekday] = rule.daySpecs[i];
        properties[nthPrefix + std::to_string(i + 1)] = {std::to_string(instance) + "."
                                                         + std::to_string(weekday)};
    }
}

void setException(Properties& properties, const std::string& prefix, const EventException& exception,
                  std::int64_t timeOfDay) {
    properties[prefix + "PatternDate"] = {minutes1601Text(secondsOf(exception.patternDate) + timeOfDay)};
    properties[prefix + "Date"] = {minutes1601Text(exception.start)};
    if (exception.subject) properties[prefix + "Subject"] = {*exception.subject};
    if (exception.note) properties[prefix + "Body"] = {*exception.note};
    if (exception.allDay) properties[prefix + "AllDay"] = {*exception.allDay ? "1" : "0"};
    if (exception.minutes) properties[prefix + "Duration"] = {std::to_string(*exception.minutes)};
}

void removePattern(Properties& properties) {
    for (const char* const name : patternNames) properties.erase(name);
    for (const std::string prefix : patternPrefixes) {
        std::erase_if(properties, [&prefix](const auto& entry) { return entry.first.starts_with(prefix); });
    }
}

} // namespace

std::optional<MeetingPattern> toPattern(const Properties& properties) {
    const auto rule = toRule(properties);
    const auto start = momentOf(properties, startName);
    if (!rule || !start) return std::nullopt;
    MeetingPattern pattern{.rule = *rule, .start = *start};
    pattern.deletions = deletionsOf(properties).value_or(std::set<sys_days>());
    pattern.exceptions = exceptionsOf(properties);
    return pattern;
}

void setPattern(Properties& properties, const std::optional<MeetingPattern>& pattern) {
    removePattern(properties);
    if (!pattern) return;
    setRule(properties, pattern->rule);
    const std::int64_t timeOfDay = pattern->start - secondsOf(dayOf(pattern->start));
    properties[startTimeName] = {std::to_string(timeOfDay / 60)};
    properties[startName] = {minutes1601Text(pattern->start)};
    properties[deletionCountName] = {std::to_string(pattern->deletions.size())};
    std::size_t number = 0;
    for (const sys_days day : pattern->deletions) {
        properties[deletionPrefix + std::to_string(number++) + ".OriginalDate"] = {
            minutes1601Text(secondsOf(day) + timeOfDay)};
    }
    properties[exceptionCountName] = {std::to_string(pattern->exceptions.size())};
    number = 0;
    for (const EventException& exception : pattern->exceptions)
        setException(properties, exceptionPrefix + std::to_string(++number) + ".", exception, timeOfDay);
}

std::optional<std::set<sys_days>> deletionsOf(const Properties& properties) {
    std::set<sys_days> days;
    const std::uint32_t count = numberOf(properties, deletionCountName).value_or(0);
    for (std::uint32_t n = 0; n < count; ++n) {
        const auto moment = momentOf(properties, deletionPrefix + std::to_string(n) + ".OriginalDate");
        if (!moment) return std::nullopt;
        days.insert(dayOf(*moment));
    }
    return days;
}

std::int64_t fromMinutes1601(std::uint32_t minutes) {
    return (std::int64_t{minutes} - minutes1601To1970) * 60;
}

std::string minutes1601Text(std::int64_t seconds) { return std::to_string(seconds / 60 + minutes1601To1970); }

} // namespace tsr
