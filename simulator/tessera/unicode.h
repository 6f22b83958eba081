#pragma once

#include <string>

namespace tsr {

// The store and the command speak UTF-8, the wire 16-bit units. Both conversions are strict: an unpaired
// surrogate, an overlong form or a stray byte raises TesseraError.
std::u16string toUtf16(const std::string& utf8);
std::string toUtf8(const std::u16string& units);

// Whether `text` is UTF-8 without control characters but for the line feed and the tab.
bool isPlainText(const std::string& text);

// Of a to z and of the letters with accents of the first 256 characters, which are those that a handheld has.
std::string toLowerCase(const std::string& utf8);

} // namespace tsr
