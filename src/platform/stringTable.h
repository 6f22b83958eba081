#pragma once

#include <cstdint>
#include <string>

namespace tsr::platform {

// The text of the library's string table under `id`, at most 1,023 characters; empty when there is none.
std::string loadString(std::uint32_t id);

} // namespace tsr::platform
