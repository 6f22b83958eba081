#pragma once

#include <string>

namespace tsr {

// The version record of a file, such as "2.4.2.0"; "?.?.?.?" for a file that has none. Never raises.
std::string fileVersionText(const std::string& fileName);

} // namespace tsr
