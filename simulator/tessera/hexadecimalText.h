#pragma once

#include <string>

namespace tsr {

// Bodies reach the handheld as two hexadecimal digits a character, of which it knows the first 256. Between
// that and UTF-8.
std::string toHexadecimalText(const std::string& utf8);     // raises TesseraError for another character
std::string fromHexadecimalText(const std::string& digits); // empty for what isn't hexadecimal

} // namespace tsr
