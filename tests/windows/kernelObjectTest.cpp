#include "foundation/Event.h"
#include "foundation/HandleBased.h"
#include "foundation/KeepAliveRunnable.h"
#include "foundation/Thread.h"
#include "foundation/Win32Error.h"

#include <windows.h>

#include "gmock/gmock.h"

namespace tsr {
namespace {

using testing::AllOf;
using testing::Property;

auto isInvalidHandleIn(const std::string& function) {
    return testing::Throws<Win32Error>(AllOf(Property(&Win32Error::functionName, function),
                                             Property(&Win32Error::code, DWORD{ERROR_INVALID_HANDLE})));
}

TEST(KernelObject, AClosedHandleFailsInTheNameOfTheCall) {
    Event event(true);
    event.closeHandle();
    EXPECT_THAT([&] { event.set(); }, isInvalidHandleIn("SetEvent"));
    EXPECT_THAT([&] { event.wait(0); }, isInvalidHandleIn("WaitForSingleObject"));
    EXPECT_THAT([&] { event.closeHandle(); }, isInvalidHandleIn("CloseHandle"));
}

TEST(KernelObject, IsOneOfTheSystem) {
    Event event(false);
    const auto handle = reinterpret_cast<HANDLE>(event.handle());
    EXPECT_EQ(SetEvent(handle), TRUE);
    EXPECT_TRUE(event.wait(0));
    EXPECT_FALSE(event.wait(0));
}

std::uint32_t TSR_THREAD_CALL endWithItsArgument(void* argument) {
    return *static_cast<const std::uint32_t*>(argument);
}

TEST(KernelObject, KeepsTheExitCodeOfAThread) {
    std::uint32_t wanted = 0x80000011;
    const HandleBased thread(platform::startThread(&endWithItsArgument, &wanted));
    EXPECT_EQ(platform::waitFor(thread.handle(), platform::infinitely), platform::waitSignalled);
    DWORD code = 0;
    EXPECT_TRUE(GetExitCodeThread(reinterpret_cast<HANDLE>(thread.handle()), &code));
    EXPECT_EQ(code, wanted);
}

// Without a handheld attached, to serve its link does nothing.
TEST(KeepAliveRunnable, ServesTheLinkBesideItsStarterUntilItIsStopped) {
    struct Body : Runnable {
        std::uint32_t run() override { return result = keepAlive.run(); }
        KeepAliveRunnable keepAlive;
        std::uint32_t result = 1;
    } body;
    Thread thread(body);
    body.keepAlive.stop().set();
    thread.join();
    EXPECT_EQ(body.result, 0u);
}

} // namespace
} // namespace tsr
