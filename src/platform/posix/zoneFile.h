#pragma once

#include <optional>
#include <string>

namespace tsr::platform {

// The rule in the footer of a compiled zone file, which holds for all years to come: the line between the
// last two line feeds. Nothing for a file that can't be read, is no zone file, or is of the first version.
std::optional<std::string> zoneFileRule(const std::string& path);

} // namespace tsr::platform
