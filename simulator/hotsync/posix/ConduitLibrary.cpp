#include "hotsync/ConduitLibrary.h"

#include <stdexcept>

#include <dlfcn.h>

namespace tsr {

namespace {

// Without a directory it is looked for beside this program, unless LD_LIBRARY_PATH says otherwise.
constexpr char defaultName[] = "libTsrConduit.so";

} // namespace

ConduitLibrary::ConduitLibrary(const std::string& path)
    : handle_(dlopen(path.empty() ? defaultName : path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(dlerror());
    openConduit_ = reinterpret_cast<OpenConduit>(dlsym(handle_, "openConduit"));
    if (openConduit_ == nullptr) {
        const std::string reason = dlerror();
        dlclose(handle_);
        throw std::runtime_error(reason);
    }
}

ConduitLibrary::~ConduitLibrary() { dlclose(handle_); }

} // namespace tsr
