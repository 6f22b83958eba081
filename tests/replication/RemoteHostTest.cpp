#include "replication/RemoteHost.h"

#include "gtest/gtest-spi.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::RemoteHost;

TEST(RemoteHost, TakesAProgramThatEndsWell) { const RemoteHost host("cat"); }

// As one does whose library can't be unloaded.
TEST(RemoteHost, FailsTheTestForAProgramThatEndsBadly) {
    EXPECT_NONFATAL_FAILURE(RemoteHost("sh -c 'cat; exit 3'"), "exit 3' ended with status");
    EXPECT_NONFATAL_FAILURE(RemoteHost("sh -c 'cat; kill -SEGV $$'"), "ended with status");
    EXPECT_NONFATAL_FAILURE(RemoteHost("no-such-program 2>/dev/null"), "ended with status");
}

TEST(RemoteHost, RaisesForAProgramThatGivesNoAnswer) {
    for (const char* command : {"true", "head -c 4", "head -c 20"}) {
        SCOPED_TRACE(command);
        RemoteHost host(command);
        EXPECT_THROW(host.ask({}), std::runtime_error);
    }
}

} // namespace
} // namespace tsr
