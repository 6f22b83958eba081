#include "foundation/KeepAliveRunnable.h"

#include "foundation/Win32Error.h"
#include "support/ScriptedSyncManager.h"
#include "support/scriptedKernel.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using Calls = std::vector<std::string>;

constexpr std::uint32_t timeOut = 258;

class KeepAlive : public testing::Test {
protected:
    KeepAlive() {
        kernel = test::ScriptedKernel();
        manager.reset();
    }

    test::ScriptedKernel& kernel = test::ScriptedKernel::instance();
    test::ScriptedSyncManager& manager = test::ScriptedSyncManager::instance();
};

TEST_F(KeepAlive, ServesTheLinkEvery50MillisecondsUntilItIsStopped) {
    kernel.waits = {timeOut, timeOut, timeOut, 0};
    KeepAliveRunnable keepAlive;
    EXPECT_EQ(keepAlive.run(), 0u);
    EXPECT_EQ(keepAlive.beats(), 3u);
    EXPECT_EQ(manager.calls, (Calls(3, "SyncYieldCycles(1)")));
    EXPECT_EQ(kernel.calls, (Calls{"createEvent(manual)", "waitFor(5, 50)", "waitFor(5, 50)",
                                   "waitFor(5, 50)", "waitFor(5, 50)"}));
}

TEST_F(KeepAlive, StoppedBeforeItsFirstRoundItDoesNothing) {
    KeepAliveRunnable keepAlive;
    keepAlive.stop().set();
    EXPECT_EQ(keepAlive.run(), 0u);
    EXPECT_EQ(keepAlive.beats(), 0u);
    EXPECT_EQ(manager.calls, Calls());
    EXPECT_EQ(kernel.calls, (Calls{"createEvent(manual)", "setEvent(5)", "waitFor(5, 50)"}));
}

TEST_F(KeepAlive, EndsQuietlyWhenTheLinkRaises) {
    kernel.waits = {timeOut, timeOut, timeOut};
    manager.yieldFault = [this] {
        if (manager.calls.size() == 2) throw std::string("the cable is pulled");
    };
    KeepAliveRunnable keepAlive;
    EXPECT_EQ(keepAlive.run(), 0u);
    EXPECT_EQ(keepAlive.beats(), 1u); // the round that failed isn't one
    EXPECT_EQ(manager.calls.size(), 2u);
}

TEST_F(KeepAlive, AResultThatIsNoExceptionDoesNotEndIt) {
    kernel.waits = {timeOut, timeOut, 0};
    manager.answer("SyncYieldCycles", 0x4004);
    KeepAliveRunnable keepAlive;
    EXPECT_EQ(keepAlive.run(), 0u);
    EXPECT_EQ(keepAlive.beats(), 2u);
}

TEST_F(KeepAlive, AWaitThatFailsIsNotSwallowed) {
    kernel.waits = {timeOut, 0xFFFFFFFF};
    KeepAliveRunnable keepAlive;
    EXPECT_THROW(keepAlive.run(), Win32Error);
    EXPECT_EQ(keepAlive.beats(), 1u);
}

} // namespace
} // namespace tsr
