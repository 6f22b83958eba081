#include "hotsync/ConduitLibrary.h"

#include <filesystem>
#include <stdexcept>

#include <dlfcn.h>

namespace tsr {

namespace {

// Without a directory it is looked for beside this program, unless LD_LIBRARY_PATH says otherwise.
constexpr char defaultName[] = "libTsrConduit.so";

void* load(const std::string& path) {
    if (!path.empty()) return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (void* const found = dlopen(defaultName, RTLD_NOW | RTLD_LOCAL)) return found;
    // A sanitizer opens it in its own name, for which this program's search path doesn't count.
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    return dlopen((folder / defaultName).c_str(), RTLD_NOW | RTLD_LOCAL);
}

} // namespace

ConduitLibrary::ConduitLibrary(const std::string& path) : handle_(load(path)) {
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
