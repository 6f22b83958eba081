#include "handheld/SyncCalls.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

std::int32_t call(SyncCalls& calls, const char* function) {
    return calls.run(
        function, [] { return std::string("1"); }, [] { return 0; });
}

TEST(SyncCalls, FailsTheOrderedCallAlone) {
    SyncCalls calls;
    calls.failCall(2, 0x4015);
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0);
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0x4015);
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0);
}

TEST(SyncCalls, FailsTheOrderedCallOfAFunction) {
    SyncCalls calls;
    calls.failCall("SyncDeleteRec", 2, 0x4006);
    EXPECT_EQ(call(calls, "SyncDeleteRec"), 0);
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0);
    EXPECT_EQ(call(calls, "SyncDeleteRec"), 0x4006);
    EXPECT_EQ(calls.count("SyncDeleteRec"), 2U);
    EXPECT_EQ(calls.count("SyncOpenDB"), 0U);
    EXPECT_EQ(calls.count(), 3U);
}

TEST(SyncCalls, LosesTheConnectionForGood) {
    SyncCalls calls;
    calls.pullCable(2);
    calls.failCall(3, 0x4015);
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0);
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0x10006410);
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0x10006410); // nothing else can happen any more
    calls.mend();
    EXPECT_EQ(call(calls, "SyncWriteRec"), 0);
}

TEST(SyncCalls, AFailedCallDoesNothing) {
    SyncCalls calls;
    calls.failCall(1, 0x4015);
    bool done = false;
    calls.run(
        "SyncWriteRec", [] { return std::string(); },
        [&] {
            done = true;
            return 0;
        });
    EXPECT_FALSE(done);
}

TEST(SyncCalls, TracesWithResults) {
    SyncCalls calls;
    call(calls, "SyncOpenDB"); // before tracing
    calls.setTracing(true);
    calls.failCall(3, 0x4003);
    call(calls, "SyncWriteRec");
    call(calls, "SyncDeleteRec");
    EXPECT_EQ(calls.trace(), (std::vector<std::string>{"SyncWriteRec(1)", "SyncDeleteRec(1) -> 0x4003"}));
    calls.restart();
    EXPECT_TRUE(calls.trace().empty());
    EXPECT_EQ(calls.count(), 0U);
}

} // namespace
} // namespace tsr
