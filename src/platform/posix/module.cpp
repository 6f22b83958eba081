#include "platform/module.h"

#include <dlfcn.h>

namespace tsr::platform {

namespace {

// The one module that can be asked for, under the name that it has on Windows.
constexpr char conduitName[] = "TsrConduit.dll";

const char anchor = 0; // an address inside this module

} // namespace

std::string moduleDirectory(const std::string& moduleName) {
    Dl_info info{};
    if (moduleName != conduitName || dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1); // npos + 1 is 0: no separator, no directory
}

std::string fileVersion(const std::string& fileName) { return fileName == conduitName ? TSR_VERSION : ""; }

} // namespace tsr::platform
