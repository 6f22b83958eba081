#pragma once

#include <cstdint>
#include <string>

#include "foundation/DateTime.h"
#include "foundation/TimeZone.h"
#include "server/NotesItem.h"

namespace tsr {

// What the properties of meetings and of their rules have in common.

// A name with a number in it: ("Nth.", 2) is "Nth.2", ("Instance.", 0, ".Date") is "Instance.0.Date".
std::string numberedName(const char* before, std::uint32_t number, const char* after = "");

// The first value as a number. Raises NotUnsigned, also where there is none.
std::uint32_t requiredNumber(const NotesItem& item, const std::string& name);

// What a clock in UTC shows at the moment that `minutes` after 1601-01-01 00:00 UTC is. Raises
// IntegerSignLost before 1800.
DateTime utcReading(std::uint32_t minutes);

// The reverse, in decimal, for a clock in `timeZone`. Raises BeforeUtcStart, NotWholeMinutes,
// IntegerTruncated.
std::string minutesText(const DateTime& reading, const TimeZone& timeZone);

} // namespace tsr
