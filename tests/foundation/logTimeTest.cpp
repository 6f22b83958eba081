#include "foundation/logTime.h"

#include "support/environment.h"
#include "support/testClock.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(ZoneOfLogs, IsTheMachinesZone) {
    const test::ScopedVariable zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(zoneOfLogs().offset(), 3600);
    EXPECT_EQ(zoneOfLogs().daylightDelta(), 3600);
}

TEST(ZoneOfLogs, IsUtcWhereItCannotBeTold) {
    const test::ScopedVariable zone("TZ", "no zone");
    EXPECT_EQ(zoneOfLogs().offset(), 0);
}

TEST(TimeOfDayText, IsEmptyWhereTheClockFails) {
    test::setClock(1012998896); // 2002-02-06 12:34:56 UTC
    EXPECT_EQ(timeOfDayText(TimeZone()), "12:34:56");
    test::breakClock(5);
    EXPECT_EQ(timeOfDayText(TimeZone()), "");
    test::breakClock(0);
}

} // namespace
} // namespace tsr
