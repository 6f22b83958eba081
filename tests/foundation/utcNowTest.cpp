#include "foundation/utcNow.h"

#include "foundation/Win32Error.h"
#include "support/testClock.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(UtcNow, IsTheClock) {
    test::setClock(1012998896);
    EXPECT_EQ(utcNow().secondsSince1970(), 1012998896);
}

TEST(UtcNow, NamesTheFailedCall) {
    test::breakClock(5);
    try {
        utcNow();
        ADD_FAILURE();
    } catch (const Win32Error& error) {
        EXPECT_EQ(error.functionName(), "SystemTimeToFileTime");
        EXPECT_EQ(error.code(), 5u);
    }
    test::breakClock(0);
}

} // namespace
} // namespace tsr
