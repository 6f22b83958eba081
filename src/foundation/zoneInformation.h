#pragma once

#include <string>

#include "foundation/TimeZone.h"
#include "platform/timeZone.h"

namespace tsr {

// The zone that the platform's fields describe. Raises TimeZoneHasYears for transitions that are meant for
// one year, InvalidTime and InvalidTransition for fields that make no sense.
TimeZone toTimeZone(const platform::ZoneInformation& information);

// Parses the time-zone block of the server: hexadecimal text of 44 bytes, integers little-endian.
//
//   offset  size  field
//   0       4     bias, signed minutes to add to local time to get UTC
//   4       4     not read
//   8       4     daylight bias, signed minutes
//   12      16    end of daylight saving: eight words, year, month, day of week, instance, hour, minute,
//                 second, and one that is not read
//   28      16    its start, in the same form
//
// Raises OddHexLength, InvalidHexDigit, InvalidTimeZoneLength, and what toTimeZone raises.
TimeZone parseTimeZoneBlock(const std::string& hexText);

} // namespace tsr
