#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsr {

// Between the text of a terminal or of JSON, which is UTF-8, and that of the handheld, one byte for each of
// the first 256 characters. Raises UsageError for UTF-8 that is broken, and for a character that the handheld
// does not know.
std::string toHandheldText(const std::string& utf8);
std::string fromHandheldText(const std::string& text);

// The same for the eyes of the user: what others have written may hold characters that act on a terminal, and
// they show as '?'. A text keeps its line feeds and tabs.
std::string shownHandheldText(const std::string& text);
std::string shownHandheldLine(const std::string& text);

std::string hexText(const std::vector<std::uint8_t>& data); // lowercase, without blanks

} // namespace tsr
