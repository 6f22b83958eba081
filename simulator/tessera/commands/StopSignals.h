#pragma once

#include <csignal>

namespace tsr {

// While it lives, SIGINT and SIGTERM don't end the program but wait to be taken. It must be there before
// other threads are started, since they inherit it.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    void wait() const; // for one of them

private:
    sigset_t signals_;
    sigset_t before_;
};

} // namespace tsr
