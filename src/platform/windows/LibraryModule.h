#pragma once

#include <windows.h>

namespace tsr::platform {

// The library as a module of its process. The one instance is built as the library is loaded, and is what
// makes the string resources reachable: each look-up names this module, so that no call has to switch to it
// and back.
class LibraryModule {
public:
    LibraryModule();

    static HMODULE handle(); // null when the library was given another name

private:
    HMODULE handle_;
};

} // namespace tsr::platform
