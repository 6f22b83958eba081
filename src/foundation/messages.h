#pragma once

#include <cstdint>
#include <string>

#include "resources/Message.h"

namespace tsr {

// The text of a numbered message. Never fails: a number without a text gives
// "Unable to find string resource " and the number, so that a missing text can't hide the error that wanted
// it.
std::string loadMessage(std::uint32_t id);
std::string loadMessage(Message id);

// The platform's text for one of its error codes, its line end included. Never fails: an unknown code gives
// "Win32 error <code> (no description found)".
std::string describeSystemError(std::uint32_t code);

// The text for a Sync Manager result. Unknown codes, and 0, give "Unknown conduit sync error: " and the code
// in hexadecimal, right-aligned in eight columns.
std::string describeSyncResult(std::uint32_t code);

} // namespace tsr
