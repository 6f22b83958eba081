#include "platform/windows/LibraryModule.h"

#include "foundation/moduleName.h"

namespace tsr::platform {

namespace {

const LibraryModule library;

} // namespace

LibraryModule::LibraryModule() : handle_(GetModuleHandleA(moduleName)) {}

HMODULE LibraryModule::handle() { return library.handle_; }

} // namespace tsr::platform
