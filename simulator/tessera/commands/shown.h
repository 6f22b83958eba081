#pragma once

#include <string>

namespace tsr {

// What others have written may hold characters that act on a terminal; they show as '?'.
std::string shownLine(const std::string& text);
std::string shownText(const std::string& text); // leaves line feeds and tabs

} // namespace tsr
