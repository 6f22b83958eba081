#pragma once

#include <cstdint>
#include <string>

namespace tsr {

// A creator or type: four characters in 32 bits, the first one in the top byte.
constexpr std::uint32_t fourCharacterCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int index = 0; index < 4; ++index) code = code << 8 | static_cast<unsigned char>(text[index]);
    return code;
}

inline std::string fourCharacters(std::uint32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(code >> shift & 0xFF);
    return text;
}

} // namespace tsr
