#include "foundation/Thread.h"

#include <thread>

#include "foundation/Event.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

// Waits to be let go, so that a thread is known to be running.
struct Body : Runnable {
    std::uint32_t run() override {
        runner = std::this_thread::get_id();
        started.set();
        mayEnd.wait(platform::infinitely);
        ended = true;
        return 17;
    }

    Event started{true};
    Event mayEnd{true};
    std::thread::id runner;
    bool ended = false;
};

TEST(Thread, RunsItsBodyAtOnceBesideItsStarter) {
    Body body;
    Thread thread(body);
    EXPECT_TRUE(body.started.wait(platform::infinitely));
    EXPECT_NE(body.runner, std::this_thread::get_id());
    EXPECT_FALSE(body.ended);
    body.mayEnd.set();
    thread.join();
    EXPECT_TRUE(body.ended);
}

TEST(Thread, CanBeJoinedAgainAndThroughACopy) {
    Body body;
    body.mayEnd.set();
    Thread thread(body);
    Thread copy = thread;
    thread.join();
    copy.join();
    EXPECT_TRUE(body.ended);
}

TEST(Thread, RunsOnWhenNobodyHoldsItAnyMore) {
    Body body;
    Event& mayEnd = body.mayEnd;
    struct Outer : Runnable { // tells of its end, which a thread without a handle can't
        explicit Outer(Body& inner) : body(inner) {}
        std::uint32_t run() override {
            const std::uint32_t result = body.run();
            done.set();
            return result;
        }
        Body& body;
        Event done{true};
    } outer(body);
    { const Thread thread(outer); }
    mayEnd.set();
    EXPECT_TRUE(outer.done.wait(platform::infinitely));
    EXPECT_TRUE(body.ended);
}

TEST(Runnable, IsEndedThroughItsBase) { EXPECT_TRUE(std::has_virtual_destructor_v<Runnable>); }

} // namespace
} // namespace tsr
