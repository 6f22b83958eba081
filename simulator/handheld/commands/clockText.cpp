#include "handheld/commands/clockText.h"

#include <charconv>
#include <chrono>
#include <cstdio>

#include "handheld/commands/CommandLine.h"

namespace tsr {

namespace {

constexpr const char* accepted =
    " is no time: give 2002-02-06T12:34:56, 2002-02-06, seconds since 1970, or host";

std::optional<std::uint32_t> parseSeconds(const std::string& text) {
    std::uint32_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return seconds;
}

// Length of what was read must be all of the text, so that nothing stands behind the time.
std::optional<std::int64_t> parseCalendar(const std::string& text) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int read = 0;
    std::sscanf(text.c_str(), "%4d-%2u-%2u%n", &year, &month, &day, &read);
    if (read > 0 && text.size() > static_cast<std::size_t>(read)) {
        read = 0;
        std::sscanf(text.c_str(), "%4d-%2u-%2uT%2d:%2d:%2d%n", &year, &month, &day, &hour, &minute, &second,
                    &read);
    }
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    const bool inside = hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    if (static_cast<std::size_t>(read) != text.size() || text.empty() || !date.ok() || !inside)
        return std::nullopt;
    const std::chrono::sys_seconds time = std::chrono::sys_days(date) + std::chrono::hours(hour)
                                        + std::chrono::minutes(minute) + std::chrono::seconds(second);
    return time.time_since_epoch().count();
}

} // namespace

std::optional<std::uint32_t> parseClock(const std::string& text) {
    if (text == "host") return std::nullopt;
    if (const auto seconds = parseSeconds(text)) return seconds;
    const auto calendar = parseCalendar(text);
    if (!calendar || *calendar < 0 || *calendar > UINT32_MAX) throw UsageError(text + accepted);
    return static_cast<std::uint32_t>(*calendar);
}

} // namespace tsr
