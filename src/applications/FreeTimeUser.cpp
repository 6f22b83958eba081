#include "applications/FreeTimeUser.h"

namespace tsr {

void FreeTimeUser::addFreeTime(const DateTime& start, std::uint32_t minutes) {
    constexpr std::uint32_t quarter = FreeTimeWeek::slotMinutes;
    const std::uint32_t julianDay = start.date().julianDay();
    const std::uint32_t weekday = julianDay % 7;
    const Date weekStart = Date(0, julianDay - weekday);

    const std::uint32_t minuteOfDay = start.timeOfDay().hour() * 60 + start.timeOfDay().minute();
    const std::uint32_t first = (minuteOfDay + quarter - 1) / quarter * quarter;
    const std::uint32_t remaining = minutes - (first - minuteOfDay); // wraps for less than the rounding took
    const std::uint32_t end = (first + remaining) / quarter * quarter;

    if (weekStart < earliest) earliest = weekStart;
    FreeTimeWeek& week = weeks.try_emplace(weekStart, FreeTimeWeek{weekStart, {}}).first->second;
    for (std::uint32_t minute = first; minute < end; minute += quarter) {
        week.slots.set(weekday * FreeTimeWeek::slotsPerDay + minute / quarter);
    }
}

} // namespace tsr
