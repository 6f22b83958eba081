#pragma once

#include <optional>
#include <string>

#include "platform/timeZone.h"

namespace tsr::platform {

// Parses a time-zone rule as TZ and the last line of a zone file hold it: "CET-1CEST,M3.5.0,M10.5.0/3". A
// rule whose transitions can't be expressed (dates that count days of the year, times outside of the day)
// gives its bias alone, and so does one with a name for daylight saving and no transitions. Nothing for a
// text that isn't a rule.
std::optional<ZoneInformation> parseZoneRule(const std::string& text);

} // namespace tsr::platform
