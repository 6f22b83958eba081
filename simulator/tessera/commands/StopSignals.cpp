#include "tessera/commands/StopSignals.h"

namespace tsr {

StopSignals::StopSignals() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals_, &before_);
}

StopSignals::~StopSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void StopSignals::wait() const {
    int taken = 0;
    while (sigwait(&signals_, &taken) != 0) {
    }
}

} // namespace tsr
