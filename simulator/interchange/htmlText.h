#pragma once

#include <string>

namespace tsr {

// The text of an HTML page in UTF-8, for a mail that has no other: paragraphs, line breaks and list items
// become lines, white space is one blank, and scripts, styles, comments and the head of the page are left
// out. Never fails: what is no tag is text.
std::string htmlText(const std::string& html);

} // namespace tsr
