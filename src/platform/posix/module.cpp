#include "platform/module.h"

#include <dlfcn.h>

#include "platform/moduleName.h"

namespace tsr::platform {

namespace {

const char anchor = 0; // an address inside this module

} // namespace

std::string moduleDirectory(const std::string& name) {
    Dl_info info{};
    if (name != moduleName || dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1); // npos + 1 is 0: no separator, no directory
}

std::string fileVersion(const std::string& fileName) { return fileName == moduleName ? TSR_VERSION : ""; }

} // namespace tsr::platform
