#include <windows.h>

#include "foundation/Win32Error.h"
#include "foundation/utcNow.h"

#include "gmock/gmock.h"

namespace {

SYSTEMTIME systemTime;

void WINAPI scriptedTime(SYSTEMTIME* time) { *time = systemTime; }

// As in timeZoneTest.cpp, in place of that of the import library.
extern "C" {
extern decltype(&scriptedTime) const importedTime asm("__imp__GetSystemTime@4");
decltype(&scriptedTime) const importedTime = scriptedTime;
}

} // namespace

namespace tsr {
namespace {

using testing::AllOf;
using testing::Property;

TEST(UtcNow, IsTheTimeOfTheSystemInWholeSeconds) {
    systemTime = {2002, 2, 3, 6, 12, 34, 56, 999};
    EXPECT_EQ(utcNow().secondsSince1970(), 1012998896);
}

TEST(UtcNow, NamesTheCallThatRefusesATime) {
    systemTime = {2002, 13, 3, 6, 12, 34, 56, 0};
    EXPECT_THAT([] { utcNow(); }, testing::Throws<Win32Error>(
                                      AllOf(Property(&Win32Error::functionName, "SystemTimeToFileTime"),
                                            Property(&Win32Error::code, DWORD{ERROR_INVALID_PARAMETER}))));
}

} // namespace
} // namespace tsr
