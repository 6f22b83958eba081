#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tsr {

// Decimal digits and nothing else; empty for any other text and for a number above 32 bits.
std::optional<std::uint32_t> parseNumber(const std::string& text);

// Notes counts seconds from 1993-01-01 00:00:00 UTC, in 32 bits without a sign.
inline constexpr std::int64_t notesEpochSeconds = 725846400;
inline constexpr std::int64_t lastNotesSeconds = notesEpochSeconds + 0xFFFFFFFF;

} // namespace tsr
