#include "foundation/calendarText.h"

namespace tsr {

std::tm calendarFields(const Date& date) {
    std::tm fields{};
    fields.tm_year = static_cast<int>(date.year()) - 1900;
    fields.tm_mon = static_cast<int>(date.month()) - 1;
    fields.tm_mday = static_cast<int>(date.day());
    fields.tm_wday = static_cast<int>(date.dayOfWeek());
    for (std::uint32_t month = 1; month < date.month(); ++month)
        fields.tm_yday += static_cast<int>(Date::daysInMonth(date.year(), month));
    fields.tm_yday += fields.tm_mday - 1;
    return fields;
}

void setTimeFields(std::tm& fields, const TimeOfDay& time) {
    fields.tm_hour = static_cast<int>(time.hour());
    fields.tm_min = static_cast<int>(time.minute());
    fields.tm_sec = static_cast<int>(time.second());
}

std::string formatted(const char* format, const std::tm& fields) {
    char text[256];
    return std::string(text, std::strftime(text, sizeof text, format, &fields));
}

} // namespace tsr
