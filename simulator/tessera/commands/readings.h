#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "tessera/ZoneRule.h"

namespace tsr {

// Moments in the arguments and on the screen, in seconds since 1970 UTC. A text is "2026-11-23 10:00", a T in
// the place of the blank, seconds and the time itself being optional; with a Z at its end it tells UTC,
// otherwise the time of `zone`. Raises ArgumentError.
std::int64_t parseMoment(const std::string& text, const ZoneRule& zone);

// For the moments of a meeting's instances, which are told in the meeting's own zone.
inline const ZoneRule asItStands;

std::string momentText(std::int64_t moment, const ZoneRule& zone); // "2026-11-23 10:00"
std::string dateText(std::int64_t moment, const ZoneRule& zone);   // "2026-11-23"
std::string exactText(std::int64_t moment);                        // "2026-11-23T09:00:00Z"

// A day, "2026-11-23". Raises ArgumentError.
std::chrono::year_month_day parseDate(const std::string& text);
std::string dateText(std::chrono::year_month_day date);

// A time of the day as minutes after midnight: "09:00" to "24:00". Raises ArgumentError.
int parseMinuteOfDay(const std::string& text);
std::string minuteOfDayText(int minute);

} // namespace tsr
