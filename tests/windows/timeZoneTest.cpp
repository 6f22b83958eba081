#include "platform/timeZone.h"

#include <windows.h>

#include "gtest/gtest.h"

namespace {

TIME_ZONE_INFORMATION systemZone;
DWORD systemResult;

DWORD WINAPI scriptedZone(TIME_ZONE_INFORMATION* zone) {
    *zone = systemZone;
    return systemResult;
}

// The address that a call of the system's function goes through. The linker takes this one before that of the
// import library.
extern "C" {
extern decltype(&scriptedZone) const importedFunction asm("__imp__GetTimeZoneInformation@4");
decltype(&scriptedZone) const importedFunction = scriptedZone;
}

} // namespace

namespace tsr::platform {
namespace {

// No two numbers of a date are the same, and none is another's default.
void setSystemZone() {
    systemZone = {};
    systemZone.Bias = 300;
    systemZone.StandardBias = -7; // nobody asks for it
    systemZone.DaylightBias = -60;
    systemZone.StandardDate = {2026, 11, 6, 1, 12, 34, 56, 789};
    systemZone.DaylightDate = {2027, 3, 4, 2, 13, 45, 59, 987};
}

TEST(ReadZone, TakesEachFieldFromItsPlace) {
    for (const DWORD result : {TIME_ZONE_ID_UNKNOWN, TIME_ZONE_ID_STANDARD, TIME_ZONE_ID_DAYLIGHT}) {
        SCOPED_TRACE(result);
        setSystemZone();
        systemResult = result;
        const ZoneInformation zone = readZone();
        EXPECT_EQ(zone.bias, 300);
        EXPECT_EQ(zone.daylightBias, -60);
        EXPECT_EQ(zone.standard.year, 2026);
        EXPECT_EQ(zone.standard.month, 11);
        EXPECT_EQ(zone.standard.dayOfWeek, 6);
        EXPECT_EQ(zone.standard.instance, 1);
        EXPECT_EQ(zone.standard.hour, 12);
        EXPECT_EQ(zone.standard.minute, 34);
        EXPECT_EQ(zone.standard.second, 56);
        EXPECT_EQ(zone.daylight.year, 2027);
        EXPECT_EQ(zone.daylight.month, 3);
        EXPECT_EQ(zone.daylight.dayOfWeek, 4);
        EXPECT_EQ(zone.daylight.instance, 2);
        EXPECT_EQ(zone.daylight.hour, 13);
        EXPECT_EQ(zone.daylight.minute, 45);
        EXPECT_EQ(zone.daylight.second, 59);
    }
}

TEST(ReadZone, IsUtcWhereTheSystemKnowsNone) {
    setSystemZone();
    systemResult = TIME_ZONE_ID_INVALID;
    const ZoneInformation zone = readZone();
    EXPECT_EQ(zone.bias, 0);
    EXPECT_EQ(zone.daylightBias, 0);
    EXPECT_EQ(zone.standard.month, 0);
    EXPECT_EQ(zone.daylight.month, 0);
}

} // namespace
} // namespace tsr::platform
