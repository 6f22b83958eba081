#include "foundation/Event.h"

#include "foundation/Win32Error.h"

namespace tsr {

namespace {

platform::KernelHandle createEvent(bool manualReset) {
    const platform::KernelHandle event = platform::createEvent(manualReset);
    if (event == 0) throw Win32Error("CreateEvent");
    return event;
}

} // namespace

Event::Event(bool manualReset) : HandleBased(createEvent(manualReset)) {}

void Event::set() {
    if (!platform::setEvent(handle())) throw Win32Error("SetEvent");
}

bool Event::wait(std::uint32_t milliseconds) {
    switch (platform::waitFor(handle(), milliseconds)) {
    case platform::waitSignalled: return true;
    case platform::waitTimedOut: return false;
    default: throw Win32Error("WaitForSingleObject");
    }
}

} // namespace tsr
