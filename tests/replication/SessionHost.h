#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "handheld/Handheld.h"

namespace tsr::test {

// What a session leaves behind, but for what it does to the handheld.
struct SessionRecord {
    std::int32_t result = 0;
    std::vector<std::string> log; // each entry behind the number of its activity
    std::string failedCall;       // as it was made; empty where the session ended before its turn
};

// Calls the conduit as the HotSync manager does, for one application.
class ISessionHost {
public:
    virtual ~ISessionHost() = default;

    // On the handheld that the test has attached. The call `failedCall` of the handheld, from 1, fails with
    // 0x4006; 0 lets none fail.
    virtual SessionRecord run(Handheld& handheld, std::uint32_t creator, bool slow,
                              std::uint64_t failedCall) = 0;
};

// The one that all tests use: in this process, or, where the variable TSR_HOST names one, in the program that
// it names with its arguments (see host/conduithost.cpp), so that another build of the conduit passes the
// same tests.
ISessionHost& sessionHost();

// Puts another one in its place; null brings the first one back. It must live until then.
void setSessionHost(ISessionHost* host);

} // namespace tsr::test
