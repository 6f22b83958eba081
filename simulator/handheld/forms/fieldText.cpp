#include "handheld/forms/fieldText.h"

#include <charconv>
#include <chrono>
#include <cstdio>

namespace tsr {

namespace {

constexpr int firstYear = 1904;
constexpr int lastYear = firstYear + 127;

[[noreturn]] void refuse(const std::string& name, const std::string& text, const std::string& wanted) {
    throw FieldError(name + "=" + text + ": " + wanted + " is wanted");
}

bool isWhole(const std::string& text, int read) {
    return read > 0 && static_cast<std::size_t>(read) == text.size();
}

} // namespace

std::string fieldValue(const FieldValues& values, const std::string& name) {
    const auto found = values.find(name);
    return found == values.end() ? std::string() : found->second;
}

void setField(FieldValues& values, const std::string& name, const std::string& value) {
    if (!value.empty()) values[name] = value;
}

std::uint16_t parseDateField(const std::string& name, const std::string& text) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    int read = 0;
    std::sscanf(text.c_str(), "%4d-%2u-%2u%n", &year, &month, &day, &read);
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    if (!isWhole(text, read) || !date.ok() || year < firstYear || year > lastYear) {
        refuse(name, text, "a date such as 2002-02-06");
    }
    return static_cast<std::uint16_t>(static_cast<unsigned>(year - firstYear) << 9 | month << 5 | day);
}

std::string packedDateText(std::uint32_t packed) {
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u", static_cast<unsigned>(firstYear + (packed >> 9 & 127)),
                  static_cast<unsigned>(packed >> 5 & 15), static_cast<unsigned>(packed & 31));
    return text;
}

ClockTime parseTimeField(const std::string& name, const std::string& text) {
    unsigned hour = 0;
    unsigned minute = 0;
    int read = 0;
    std::sscanf(text.c_str(), "%2u:%2u%n", &hour, &minute, &read);
    if (!isWhole(text, read) || hour > 23 || minute > 59) refuse(name, text, "a time such as 09:30");
    return {static_cast<std::uint8_t>(hour), static_cast<std::uint8_t>(minute)};
}

std::string timeText(std::uint32_t hour, std::uint32_t minute) {
    char text[32];
    std::snprintf(text, sizeof text, "%02u:%02u", static_cast<unsigned>(hour), static_cast<unsigned>(minute));
    return text;
}

std::uint32_t parseNumberField(const std::string& name, const std::string& text, std::uint32_t largest) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number > largest) {
        refuse(name, text, "a number from 0 to " + std::to_string(largest));
    }
    return number;
}

bool parseFlagField(const std::string& name, const std::string& text) {
    if (text != "yes" && text != "no" && !text.empty()) refuse(name, text, "yes or no");
    return text == "yes";
}

} // namespace tsr
