#include "tessera/commands/userTexts.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <sstream>

#include "platform/posix/zoneFile.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/readings.h"

namespace tsr {

namespace {

constexpr std::array<const char*, 7> dayNames{"mon", "tue", "wed", "thu", "fri", "sat", "sun"};

std::size_t dayNumber(const std::string& name) {
    for (std::size_t day = 0; day < dayNames.size(); ++day) {
        if (name == dayNames[day]) return day;
    }
    throw ArgumentError("'" + name + "' is not a day; days are mon, tue, wed, thu, fri, sat and sun");
}

// "mon" or "mon-fri"; a range may run over the end of the week.
void addDays(std::array<bool, 7>& days, const std::string& range) {
    const std::size_t dash = range.find('-');
    std::size_t day = dayNumber(range.substr(0, dash));
    const std::size_t last = dash == std::string::npos ? day : dayNumber(range.substr(dash + 1));
    for (days[day] = true; day != last; days[day] = true) day = (day + 1) % days.size();
}

// Names are relative to the database, so that none leads out of it.
bool isZoneName(const std::string& text) {
    return !text.empty() && text.front() != '/' && text.find("..") == std::string::npos
        && text.find_first_of(":,<>\\") == std::string::npos;
}

std::optional<std::string> ruleOfZone(const std::string& name) {
    if (!isZoneName(name)) return std::nullopt;
    const char* folder = std::getenv("TZDIR");
    return platform::zoneFileRule(std::string(folder ? folder : "/usr/share/zoneinfo") + "/" + name);
}

} // namespace

void setHours(WorkingHours& hours, const std::string& text) {
    const std::size_t dash = text.find('-');
    if (dash == std::string::npos) throw ArgumentError("'" + text + "' are not hours such as 09:00-17:00");
    hours.startMinute = parseMinuteOfDay(text.substr(0, dash));
    hours.endMinute = parseMinuteOfDay(text.substr(dash + 1));
    if (hours.startMinute >= hours.endMinute) throw ArgumentError("working hours must end after they start");
}

std::string hoursText(const WorkingHours& hours) {
    return minuteOfDayText(hours.startMinute) + "-" + minuteOfDayText(hours.endMinute);
}

void setDays(WorkingHours& hours, const std::string& text) {
    std::array<bool, 7> days{};
    std::istringstream ranges(text + ",");
    for (std::string range; std::getline(ranges, range, ',');) addDays(days, range);
    hours.days = days;
}

std::string daysText(const WorkingHours& hours) {
    std::string text;
    for (std::size_t day = 0; day < hours.days.size(); ++day) {
        if (!hours.days[day]) continue;
        std::size_t last = day;
        while (last + 1 < hours.days.size() && hours.days[last + 1]) ++last;
        if (!text.empty()) text += ",";
        text += dayNames[day];
        if (last > day) text.append("-").append(dayNames[last]);
        day = last;
    }
    return text;
}

void setZone(User& user, const std::string& text) {
    try {
        user.zone = ZoneRule(ruleOfZone(text).value_or(text));
        user.zoneName = text;
    } catch (const TesseraError&) {
        throw ArgumentError("'" + text
                            + "' is neither a time zone such as Europe/Berlin nor a rule such as "
                              "CET-1CEST,M3.5.0,M10.5.0/3 that can be served");
    }
}

} // namespace tsr
