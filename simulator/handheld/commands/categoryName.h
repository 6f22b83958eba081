#pragma once

#include <cstdint>
#include <string>

#include "handheld/HandheldDatabase.h"

namespace tsr {

// A category as the user names it: by its number, 0 to 15, or by its name in the database's table, in
// capitals or not. Raises UsageError when there is none.
std::uint8_t parseCategory(HandheldDatabase& database, const std::string& text);

// Its name in UTF-8; the number when it has none.
std::string categoryText(HandheldDatabase& database, std::uint8_t category);

} // namespace tsr
