#pragma once

#include "replication/SessionHost.h"

namespace tsr::test {

// Calls the conduit that is linked into the test.
class InProcessHost : public ISessionHost {
public:
    SessionRecord run(Handheld& handheld, const SessionOrder& order) override;
};

} // namespace tsr::test
