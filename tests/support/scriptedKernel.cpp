#include "support/scriptedKernel.h"

#include "platform/systemError.h"

namespace tsr {

namespace {

test::ScriptedKernel& script(const std::string& call) {
    auto& kernel = test::ScriptedKernel::instance();
    kernel.calls.push_back(call);
    platform::setLastError(kernel.error);
    return kernel;
}

} // namespace

namespace test {

ScriptedKernel& ScriptedKernel::instance() {
    static ScriptedKernel kernel;
    return kernel;
}

} // namespace test

namespace platform {

KernelHandle createEvent(bool manualReset) {
    return script(manualReset ? "createEvent(manual)" : "createEvent()").event;
}

bool setEvent(KernelHandle event) { return script("setEvent(" + std::to_string(event) + ")").sets; }

std::uint32_t waitFor(KernelHandle object, std::uint32_t milliseconds) {
    const std::string time = milliseconds == infinitely ? "infinitely" : std::to_string(milliseconds);
    auto& waits = script("waitFor(" + std::to_string(object) + ", " + time + ")").waits;
    if (waits.empty()) return waitSignalled;
    const std::uint32_t result = waits.front();
    waits.pop_front();
    return result;
}

KernelHandle startThread(ThreadEntry entry, void* argument) {
    auto& kernel = script("startThread");
    kernel.entry = entry;
    kernel.argument = argument;
    return kernel.thread;
}

bool closeHandle(KernelHandle object) { return script("closeHandle(" + std::to_string(object) + ")").closes; }

} // namespace platform

} // namespace tsr
