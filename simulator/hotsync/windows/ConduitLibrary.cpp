#include "hotsync/ConduitLibrary.h"

#include <stdexcept>

#include <windows.h>

namespace tsr {

namespace {

// Without a directory it is looked for beside this program first.
constexpr char defaultName[] = "TsrConduit.dll";

std::runtime_error failure(const std::string& what) {
    return std::runtime_error(what + " (system error " + std::to_string(GetLastError()) + ")");
}

} // namespace

ConduitLibrary::ConduitLibrary(const std::string& path) {
    const std::string name = path.empty() ? defaultName : path;
    const HMODULE module = LoadLibraryA(name.c_str());
    if (module == nullptr) throw failure(name + " cannot be loaded");
    handle_ = module;
    openConduit_ =
        reinterpret_cast<OpenConduit>(reinterpret_cast<void*>(GetProcAddress(module, "openConduit")));
    if (openConduit_ == nullptr) {
        const std::runtime_error reason = failure(name + " has no openConduit");
        FreeLibrary(module);
        throw reason;
    }
}

ConduitLibrary::~ConduitLibrary() { FreeLibrary(static_cast<HMODULE>(handle_)); }

} // namespace tsr
