#pragma once

#include <cstdint>
#include <string>

namespace tsr::platform {

// The code of the last failed platform call on this thread.
std::uint32_t lastError();
void setLastError(std::uint32_t code);

// The platform's text for one of its error codes; empty when it has none.
std::string systemErrorText(std::uint32_t code);

} // namespace tsr::platform
