#pragma once

#include "replication/SessionHost.h"

namespace tsr::test {

// Calls the conduit that is linked into the test.
class InProcessHost : public ISessionHost {
public:
    SessionRecord run(Handheld& handheld, std::uint32_t creator, bool slow,
                      std::uint64_t failedCall) override;
};

} // namespace tsr::test
