#pragma once

#include <cstdint>

namespace tsr {

// The body of a thread.
class Runnable {
public:
    virtual ~Runnable() = default;
    virtual std::uint32_t run() = 0; // returns the exit code
};

} // namespace tsr
