#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "handheld/HandheldDatabase.h"

namespace tsr {

// The mail of the handheld, folder by folder, or of one folder: a line each, or JSON. Whose it is stands
// there as whom it is to in Outbox and Draft, and whom it is from elsewhere.
void listMail(std::ostream& out, HandheldDatabase& database, std::optional<std::uint8_t> folder, bool json);

} // namespace tsr
