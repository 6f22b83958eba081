#include "foundation/HandleBased.h"

#include "foundation/Win32Error.h"

namespace tsr {

namespace {

void release(std::uint32_t) {} // an attachment has nothing to give back yet

void releaseAll(std::list<std::uint32_t>& attachments) {
    while (!attachments.empty()) {
        const std::uint32_t first = attachments.front();
        attachments.pop_front();
        try {
            release(first);
        } catch (...) { // the others, and the handle, are to go as well
        }
    }
}

} // namespace

HandleBased::HandleBased(platform::KernelHandle handle) try
    : state_(makeCounted<HandleState>(HandleState{handle, {}})) {
} catch (...) { // there was no memory for an owner
    platform::closeHandle(handle);
    throw;
}

HandleBased::~HandleBased() {
    try {
        closeHandle();
    } catch (...) { // must not disturb an exception on its way
    }
}

void HandleBased::closeHandle() {
    releaseAll(state_->attachments);
    if (!platform::closeHandle(state_->handle)) throw Win32Error("CloseHandle");
}

} // namespace tsr
