#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tsr {

// Strict decimal: digits alone, at least one. Wraps beyond 32 bits. Raises NotUnsigned.
std::uint32_t parseUnsigned(const std::string& text);

// The lax twin, for the header of a frame: what a stream extracts from `count` 16-bit units. Leading white
// space and a sign are taken, so that "-1" is 4294967295, and reading stops at the first unit that is no
// digit. Raises WideNotUnsigned where no number of 32 bits can be read.
std::uint32_t parseWideUnsigned(const char16_t* characters, std::size_t count);

// Decimal without padding.
std::string toDecimal(std::uint32_t value);

} // namespace tsr
