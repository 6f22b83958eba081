#pragma once

#include <string>
#include <vector>

namespace tsr {

// Calls the conduit's application on the handheld with strings, each of which ends with a NUL on the way, and
// gives the strings of its answer. Raises PalmSyncApiError when the call fails, RemoteModuleFailed when the
// application says that it did, MissingNul for an answer that ends inside a string.
std::vector<std::string> callRemoteModule(const std::vector<std::string>& arguments);

} // namespace tsr
