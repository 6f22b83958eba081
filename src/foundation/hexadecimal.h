#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tsr {

// The value of one digit of either case. Raises InvalidHexDigit.
std::uint32_t hexDigit(char character);

// Reads the 8 digits from `position` on into `word`, the first digit the most significant, and returns the
// position after them. A text that is too short runs into its terminator, which raises InvalidHexDigit as any
// other bad digit does. `position` is at most the length of the text.
std::size_t parseHexWord(const std::string& text, std::size_t position, std::uint32_t& word);

// 8 digits, lowercase.
std::string toHexWord(std::uint32_t value);

// Two digits a byte. Leaves `bytes` as it was on a failure. Raises OddHexLength, InvalidHexDigit.
void hexToBinary(const std::string& text, std::vector<std::uint8_t>& bytes);

// Two lowercase digits a byte.
std::string binaryToHex(const std::vector<std::uint8_t>& bytes);

} // namespace tsr
