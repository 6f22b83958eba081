#pragma once

#include <cstdint>

#include "foundation/Event.h"
#include "foundation/Runnable.h"

namespace tsr {

// Serves the link to the handheld while another thread waits for the server, every 50 ms until `stop` is set.
// No session starts it: a request to the server leaves the link unserved.
class KeepAliveRunnable : public Runnable {
public:
    std::uint32_t run() override; // 0

    Event& stop() { return stop_; }
    std::uint32_t beats() const { return beats_; } // to be read once the run has ended

private:
    Event stop_{true};
    std::uint32_t beats_ = 0;
};

} // namespace tsr
