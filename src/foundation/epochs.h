#pragma once

#include <cstdint>

#include "foundation/Date.h"
#include "foundation/TimeStamp.h"

namespace tsr {

inline constexpr std::uint32_t notesEpochSeconds = 725846400; // from 1970-01-01 to 1993-01-01
inline constexpr std::uint32_t minutes1601To1970 = 194074560; // from 1601-01-01 to 1970-01-01

// Between seconds since 1970 and since 1993. Both wrap in 32 bits.
std::uint32_t toSeconds1993(std::uint32_t seconds1970);
std::uint32_t toSeconds1970(std::uint32_t seconds1993);

// Raises BeforeUtcStart before 1970, IntegerTruncated for more than 32 bits of seconds since then,
// NotWholeMinutes.
std::int64_t minutesSince1601(const TimeStamp& timeStamp);

// Negative before 1970.
std::int64_t seconds1970FromMinutes1601(std::uint32_t minutes);

// Whole days since 1970. Raises NotWholeDaysFromMinutes for a part of a day, unless that may be dropped.
std::int64_t daysFromMinutes1601(std::uint32_t minutes, bool allowPartial);

// Raises IntegerSignLost before 1970.
std::int32_t daysSince1970(const Date& date);

} // namespace tsr
