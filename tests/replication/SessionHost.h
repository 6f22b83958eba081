#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "handheld/Handheld.h"

namespace tsr::test {

struct SessionOrder {
    std::uint32_t creator = 0;
    bool slow = false;
    std::uint64_t failedCall = 0; // of the handheld, from 1, that fails with 0x4006; 0 for none
    std::int64_t clock = 0;       // the desktop's, seconds since 1970; it stands still
    std::string traceFile;        // that the session writes its trace to, beside the conduit; empty for none
};

// What a session leaves behind, but for what it does to the handheld.
struct SessionRecord {
    std::int32_t result = 0;
    std::vector<std::string> log; // each entry behind the number of its activity
    std::vector<std::string> progress;
    std::string failedCall; // as it was made; empty where the session ended before its turn
    std::string trace;
};

// Calls the conduit as the HotSync manager does, for one application.
class ISessionHost {
public:
    virtual ~ISessionHost() = default;

    // On the handheld that the test has attached.
    virtual SessionRecord run(Handheld& handheld, const SessionOrder& order) = 0;
};

// The one that all tests use: in this process, or, where the variable TSR_HOST names one, in the program that
// it names with its arguments (see host/conduithost.cpp), so that another build of the conduit passes the
// same tests.
ISessionHost& sessionHost();

// Puts another one in its place; null brings the first one back. It must live until then.
void setSessionHost(ISessionHost* host);

} // namespace tsr::test
