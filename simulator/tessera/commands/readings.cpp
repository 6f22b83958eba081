#include "tessera/commands/readings.h"

#include <array>
#include <chrono>
#include <cstdio>

#include "tessera/commands/ArgumentError.h"

namespace tsr {

namespace {

constexpr std::int64_t secondsPerDay = 86400;

// Whether `text` has digits where `pattern` has zeros, and the pattern's own characters elsewhere.
bool matches(const std::string& text, const std::string& pattern) {
    if (text.size() != pattern.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (pattern[i] == '0' ? !isDigit : text[i] != pattern[i]) return false;
    }
    return true;
}

int number(const std::string& text, std::size_t position, std::size_t digits) {
    return std::stoi(text.substr(position, digits));
}

[[noreturn]] void raiseNoMoment(const std::string& text) {
    throw ArgumentError("'" + text + "' is not a date and time such as \"2026-11-23 10:00\"");
}

// The text, filled up to "2026-11-23 10:00:00".
std::string completed(std::string text) {
    if (text.size() > 10 && text[10] == 'T') text[10] = ' ';
    if (matches(text, "0000-00-00")) return text + " 00:00:00";
    if (matches(text, "0000-00-00 00:00")) return text + ":00";
    return text;
}

// Of a text that begins with digits as in "2026-11-23".
std::chrono::year_month_day dateOf(const std::string& text) {
    using namespace std::chrono;
    return {year(number(text, 0, 4)), month(static_cast<unsigned>(number(text, 5, 2))),
            day(static_cast<unsigned>(number(text, 8, 2)))};
}

// Seconds since 1970 on the clock that `text` was read from.
std::int64_t parseReading(const std::string& text) {
    const std::string whole = completed(text);
    if (!matches(whole, "0000-00-00 00:00:00")) raiseNoMoment(text);
    using namespace std::chrono;
    const year_month_day date = dateOf(whole);
    const int hour = number(whole, 11, 2);
    const int minute = number(whole, 14, 2);
    const int second = number(whole, 17, 2);
    if (!date.ok() || date.year() < year(1970) || hour > 23 || minute > 59 || second > 59)
        raiseNoMoment(text);
    const seconds time = hours(hour) + minutes(minute) + seconds(second);
    return (sys_days(date).time_since_epoch() + time).count();
}

std::string readingText(std::int64_t local) {
    using namespace std::chrono;
    const sys_seconds moment{seconds(local)};
    const year_month_day date(floor<days>(moment));
    const hh_mm_ss time(moment - floor<days>(moment));
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

} // namespace

std::int64_t parseMoment(const std::string& text, const ZoneRule& zone) {
    if (text.ends_with('Z')) return parseReading(text.substr(0, text.size() - 1));
    return zone.toUtc(parseReading(text));
}

std::string momentText(std::int64_t moment, const ZoneRule& zone) {
    return readingText(zone.toLocal(moment)).substr(0, 16);
}

std::string dateText(std::int64_t moment, const ZoneRule& zone) {
    return readingText(zone.toLocal(moment)).substr(0, 10);
}

std::string exactText(std::int64_t moment) {
    std::string text = readingText(moment);
    text[10] = 'T';
    return text + "Z";
}

std::chrono::year_month_day parseDate(const std::string& text) {
    if (!matches(text, "0000-00-00") || !dateOf(text).ok())
        throw ArgumentError("'" + text + "' is not a day such as 2026-11-23");
    return dateOf(text);
}

std::string dateText(std::chrono::year_month_day date) {
    return readingText(std::chrono::sys_days(date).time_since_epoch().count() * secondsPerDay).substr(0, 10);
}

int parseMinuteOfDay(const std::string& text) {
    const int minute = matches(text, "00:00") ? number(text, 0, 2) * 60 + number(text, 3, 2) : -1;
    if (minute < 0 || minute > 24 * 60 || number(text, 3, 2) > 59) {
        throw ArgumentError("'" + text + "' is not a time of day such as 09:00");
    }
    return minute;
}

std::string minuteOfDayText(int minute) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d", minute / 60, minute % 60);
    return text.data();
}

} // namespace tsr
