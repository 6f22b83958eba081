#pragma once

#include <cstdint>
#include <list>

#include "platform/kernelObject.h"

namespace tsr {

// What the copies of an owner share.
struct HandleState {
    platform::KernelHandle handle;
    std::list<std::uint32_t> attachments; // released before the handle is closed; nothing adds to it yet
};

} // namespace tsr
