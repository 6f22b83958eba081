#include "platform/kernelObject.h"

#include <cerrno>

#include "foundation/HandleBased.h"
#include "foundation/Win32Error.h"
#include "platform/systemError.h"

#include "gtest/gtest.h"

namespace tsr::platform {
namespace {

std::uint32_t TSR_THREAD_CALL endAtOnce(void*) { return 0; }

TEST(KernelObject, HandlesAreNeverGivenTwice) {
    const KernelHandle first = createEvent(true);
    EXPECT_TRUE(closeHandle(first));
    const KernelHandle second = createEvent(true);
    EXPECT_NE(second, first);
    EXPECT_TRUE(closeHandle(second));
}

// On Windows it would be given the number that is free.
TEST(KernelObject, ASecondCloseClosesNobodyElses) {
    HandleBased owner(createEvent(true));
    owner.closeHandle();
    const HandleBased other(createEvent(true));
    EXPECT_THROW(owner.closeHandle(), Win32Error);
    EXPECT_TRUE(setEvent(other.handle()));
}

TEST(KernelObject, AClosedHandleFailsEverywhereWithItsCode) {
    const KernelHandle event = createEvent(true);
    EXPECT_TRUE(closeHandle(event));
    const auto code = [](bool failed) {
        EXPECT_TRUE(failed);
        const std::uint32_t error = lastError();
        setLastError(0);
        return error;
    };
    EXPECT_EQ(code(!closeHandle(event)), std::uint32_t{EBADF});
    EXPECT_EQ(code(!setEvent(event)), std::uint32_t{EBADF});
    EXPECT_EQ(code(waitFor(event, 0) == waitFailed), std::uint32_t{EBADF});
}

TEST(KernelObject, AThreadIsNoEvent) {
    const KernelHandle thread = startThread(&endAtOnce, nullptr);
    EXPECT_FALSE(setEvent(thread));
    EXPECT_EQ(waitFor(thread, infinitely), waitSignalled);
    EXPECT_EQ(waitFor(thread, 0), waitSignalled); // it stays ended
    EXPECT_TRUE(closeHandle(thread));
}

TEST(KernelObject, AWaitForAnUnsetEventEndsWithItsTime) {
    const KernelHandle event = createEvent(false);
    EXPECT_EQ(waitFor(event, 0), waitTimedOut);
    EXPECT_TRUE(setEvent(event));
    EXPECT_EQ(waitFor(event, 0), waitSignalled);
    EXPECT_EQ(waitFor(event, 0), waitTimedOut);
    EXPECT_TRUE(closeHandle(event));
}

} // namespace
} // namespace tsr::platform
