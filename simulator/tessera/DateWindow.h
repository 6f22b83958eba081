#pragma once

#include <chrono>

namespace tsr {

// The days that take part in a replication, both counted.
struct DateWindow {
    std::chrono::sys_days first{};
    std::chrono::sys_days last{};
};

} // namespace tsr
