#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "platform/kernelObject.h"

namespace tsr::test {

// Events and threads that answer as a test has scripted, and write every call down: "createEvent(manual)",
// "setEvent(5)", "waitFor(5, 50)", "startThread", "closeHandle(5)".
struct ScriptedKernel {
    static ScriptedKernel& instance();

    std::uintptr_t event = 5;  // what the next event gets
    std::uintptr_t thread = 9; // and the next thread
    bool sets = true;
    bool closes = true;
    std::deque<std::uint32_t> waits; // results of the waits to come; signalled where none is left
    std::uint32_t error = 6;         // the code that failures leave
    std::vector<std::string> calls;

    platform::ThreadEntry entry = nullptr; // of the last thread, which isn't run
    void* argument = nullptr;
};

} // namespace tsr::test
