#pragma once

#include <string>

namespace tsr {

// Text in UTF-8, of bytes in a character set by its name in mail. Bytes that are none of that set, or of one
// that nobody knows, are taken for UTF-8, then for windows-1252, and then each for the character of its
// value. NULs are left out, as no text of a handheld can have one.
std::string toUtf8(const std::string& bytes, const std::string& charset);

} // namespace tsr
