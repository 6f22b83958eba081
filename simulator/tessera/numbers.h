#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/epochs.h"

namespace tsr {

// Decimal digits and nothing else; empty for any other text and for a number above 32 bits.
std::optional<std::uint32_t> parseNumber(const std::string& text);

// The moments that Notes can say, in seconds since 1970: it counts from 1993 in 32 bits without a sign.
inline constexpr std::int64_t firstNotesSecond = notesEpochSeconds;
inline constexpr std::int64_t lastNotesSecond = firstNotesSecond + 0xFFFFFFFF;

} // namespace tsr
