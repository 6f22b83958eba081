#pragma once

#include <string>

#include "foundation/TimeZone.h"

namespace tsr {

// The machine's time zone for log lines; UTC where it can't be told. Never raises: every error builds a
// stream that asks for it, the error about a bad time zone included.
TimeZone zoneOfLogs();

// The present time of day in `zone`, formatted with "%X"; empty where it can't be told. Never raises.
std::string timeOfDayText(const TimeZone& zone);

} // namespace tsr
