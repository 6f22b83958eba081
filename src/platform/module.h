#pragma once

#include <string>

namespace tsr::platform {

// The directory that the loaded module `name` came from, its last separator included; empty where that
// can't be told.
std::string moduleDirectory(const std::string& name);

// The four numbers of a file's version record, joined by points; empty for a file that has none.
std::string fileVersion(const std::string& fileName);

} // namespace tsr::platform
