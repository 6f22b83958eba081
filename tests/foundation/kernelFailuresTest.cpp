#include <functional>

#include "foundation/Event.h"
#include "foundation/Thread.h"
#include "foundation/Win32Error.h"
#include "support/scriptedKernel.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using Calls = std::vector<std::string>;

constexpr std::uintptr_t allOnes = ~std::uintptr_t{0};

struct NothingToDo : Runnable {
    std::uint32_t run() override { return 0; }
};

class KernelFailures : public testing::Test {
protected:
    KernelFailures() { kernel = test::ScriptedKernel(); }

    // The function that a Win32Error names, which must carry the system's code too.
    std::string failedFunction(const std::function<void()>& work) {
        try {
            work();
        } catch (const Win32Error& error) {
            EXPECT_EQ(error.code(), kernel.error);
            return error.functionName();
        }
        return "none";
    }

    test::ScriptedKernel& kernel = test::ScriptedKernel::instance();
};

TEST_F(KernelFailures, AnEventIsAskedForAsItWasWanted) {
    { const Event event(true); }
    { const Event event(false); }
    EXPECT_EQ(kernel.calls,
              (Calls{"createEvent(manual)", "closeHandle(5)", "createEvent()", "closeHandle(5)"}));
}

TEST_F(KernelFailures, AnEventThatCannotBeCreatedIsNotClosed) {
    kernel.event = 0;
    EXPECT_EQ(failedFunction([] { const Event event(true); }), "CreateEvent");
    EXPECT_EQ(kernel.calls, Calls{"createEvent(manual)"});
}

TEST_F(KernelFailures, AnEventThatCannotBeSet) {
    kernel.sets = false;
    Event event(true);
    EXPECT_EQ(failedFunction([&] { event.set(); }), "SetEvent");
}

TEST_F(KernelFailures, AWaitTellsTheSignalFromTheEndOfTheTime) {
    kernel.waits = {0, 258};
    Event event(true);
    EXPECT_TRUE(event.wait(50));
    EXPECT_FALSE(event.wait(50));
}

TEST_F(KernelFailures, AnyOtherResultOfAWaitIsAFailure) {
    Event event(true);
    for (const std::uint32_t result : {1u, 128u, 257u, 259u, 0xFFFFFFFFu}) { // 128: an abandoned lock
        kernel.waits = {result};
        EXPECT_EQ(failedFunction([&] { event.wait(50); }), "WaitForSingleObject") << result;
    }
}

TEST_F(KernelFailures, AThreadThatCannotBeStarted) {
    NothingToDo body;
    for (const std::uintptr_t none : {std::uintptr_t{0}, allOnes}) {
        kernel.thread = none;
        EXPECT_EQ(failedFunction([&] { const Thread thread(body); }), "_beginthreadex");
    }
    EXPECT_EQ(kernel.calls, (Calls{"startThread", "startThread"})); // nothing was closed
}

TEST_F(KernelFailures, TheResultOfTheBodyIsTheExitCodeOfItsThread) {
    struct Body : Runnable {
        std::uint32_t run() override { return 0x80000011; }
    } body;
    const Thread thread(body);
    EXPECT_EQ(kernel.entry(kernel.argument), 0x80000011u);
}

TEST_F(KernelFailures, AJoinTakesNothingButTheSignal) {
    NothingToDo body;
    Thread thread(body);
    for (const std::uint32_t result : {128u, 258u, 0xFFFFFFFFu}) {
        kernel.waits = {result};
        EXPECT_EQ(failedFunction([&] { thread.join(); }), "WaitForSingleObject") << result;
    }
    EXPECT_EQ(kernel.calls.back(), "waitFor(9, infinitely)");
}

TEST_F(KernelFailures, CopiesOfAThreadCloseItsHandleOnce) {
    NothingToDo body;
    {
        const Thread thread(body);
        const Thread copy = thread; // NOLINT(performance-unnecessary-copy-initialization)
    }
    EXPECT_EQ(kernel.calls, (Calls{"startThread", "closeHandle(9)"}));
}

TEST_F(KernelFailures, EachCopyOfAnEventClosesIt) {
    {
        const Event event(true);
        const Event copy = event; // NOLINT(performance-unnecessary-copy-initialization)
        kernel.closes = false;    // as for a handle that is closed already: nothing is thrown
    }
    EXPECT_EQ(kernel.calls, (Calls{"createEvent(manual)", "closeHandle(5)", "closeHandle(5)"}));
}

TEST_F(KernelFailures, AFailedCloseDoesNotDisturbAnExceptionOnItsWay) {
    kernel.closes = false;
    const auto work = [] {
        const Event event(true);
        throw std::string("on its way");
    };
    EXPECT_THROW(work(), std::string);
}

TEST_F(KernelFailures, AHandleThatCannotBeClosedSaysSoWhenAsked) {
    HandleBased owner(7);
    kernel.closes = false;
    EXPECT_EQ(failedFunction([&] { owner.closeHandle(); }), "CloseHandle");
}

} // namespace
} // namespace tsr
