#pragma once

#include <cstdint>

#include "foundation/HandleBased.h"

namespace tsr {

// Something that one thread sets and others wait for. It starts unset. With manual reset it stays set,
// otherwise it lets one waiter through and is unset again. Each operation throws Win32Error where the
// platform's call fails.
class Event : public HandleBased {
public:
    explicit Event(bool manualReset);

    void set();
    // True where it was set within that time, false where the time ran out.
    bool wait(std::uint32_t milliseconds);
};

} // namespace tsr
