#include "foundation/Event.h"

#include "foundation/Win32Error.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(Event, StartsUnset) {
    EXPECT_FALSE(Event(true).wait(0));
    EXPECT_FALSE(Event(false).wait(0));
}

TEST(Event, WithManualResetItStaysSet) {
    Event event(true);
    event.set();
    EXPECT_TRUE(event.wait(0));
    EXPECT_TRUE(event.wait(0));
}

TEST(Event, WithoutManualResetItLetsOneWaiterThrough) {
    Event event(false);
    event.set();
    event.set(); // being set twice is being set
    EXPECT_TRUE(event.wait(0));
    EXPECT_FALSE(event.wait(0));
}

TEST(Event, ACopyIsTheSameEvent) {
    Event event(true);
    Event copy = event;
    copy.set();
    EXPECT_TRUE(event.wait(0));
    EXPECT_EQ(copy.handle(), event.handle());
}

TEST(Event, IsClosedByTheFirstOfItsCopiesToGo) {
    Event event(true);
    { const Event copy = event; } // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_THROW(event.set(), Win32Error);
    EXPECT_THROW(event.wait(0), Win32Error);
}

} // namespace
} // namespace tsr
