#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tsr {

// The clock of a handheld on the command line: "2002-02-06T12:34:56", "2002-02-06", seconds since 1970, or
// "host" (empty) for a clock that runs with this machine's. Raises UsageError.
std::optional<std::uint32_t> parseClock(const std::string& text);

} // namespace tsr
