#pragma once

#include <string>

#include "tessera/unicode.h"

namespace tsr::test {

// A byte of the handheld is the 16-bit unit of equal value on the wire, and that character in the store.
inline std::string fromDeviceText(const std::string& text) {
    std::u16string units;
    for (const char byte : text) units += static_cast<unsigned char>(byte);
    return toUtf8(units);
}

inline std::string toDeviceText(const std::string& utf8) {
    std::string text;
    for (const char16_t unit : toUtf16(utf8)) text += static_cast<char>(unit);
    return text;
}

} // namespace tsr::test
