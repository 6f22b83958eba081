#include "platform/windows/LibraryModule.h"

#include "platform/moduleName.h"

namespace tsr::platform {

namespace {

const LibraryModule library;

} // namespace

LibraryModule::LibraryModule() : handle_(GetModuleHandleA(moduleName)) {
    constexpr DWORD flags = GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS;
    HMODULE self = nullptr;
    GetModuleHandleExA(flags, reinterpret_cast<const char*>(&library), &self);
}

HMODULE LibraryModule::handle() { return library.handle_; }

} // namespace tsr::platform
