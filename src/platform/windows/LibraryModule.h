#pragma once

#include <windows.h>

namespace tsr::platform {

// The library as a module of its process. The one instance is built as the library is loaded, and is what
// makes the string resources reachable: each look-up names this module, so that no call has to switch to it
// and back. It also lets the library stay for as long as the process runs: each load takes one of about a
// thousand places for what threads hold, which the run-time library never gives back, so that a HotSync
// manager that loads and frees a conduit for each session would be ended in the midst of one some day.
class LibraryModule {
public:
    LibraryModule();

    static HMODULE handle(); // null when the library was given another name

private:
    HMODULE handle_;
};

} // namespace tsr::platform
