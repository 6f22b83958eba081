#include "foundation/epochs.h"

#include "foundation/DateTime.h"
#include "foundation/TimeZone.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(Seconds1993, ShiftsAndWraps) {
    EXPECT_EQ(toSeconds1993(725846400), 0u);
    EXPECT_EQ(toSeconds1970(0), 725846400u);
    EXPECT_EQ(toSeconds1993(0), 3569120896u); // 2 to the 32 - 725,846,400
    EXPECT_EQ(toSeconds1970(4294967295u), 725846399u);
    EXPECT_EQ(TimeStamp(1, toSeconds1970(0)), TimeStamp(DateTime(1993, 1, 1, 0, 0, 0), TimeZone()));
}

TEST(Minutes1601, GoBothWays) {
    EXPECT_EQ(TimeStamp::fromMinutesSince1601(194074560), TimeStamp(1, 0));
    EXPECT_EQ(minutesSince1601(TimeStamp(1, 0)), 194074560);
    EXPECT_EQ(minutesSince1601(TimeStamp(1, 120)), 194074562);
    EXPECT_EQ(seconds1970FromMinutes1601(194074562), 120);
}

TEST(Minutes1601, MayLieBefore1970) {
    EXPECT_EQ(seconds1970FromMinutes1601(0), -11644473600);
    EXPECT_EQ(seconds1970FromMinutes1601(194074559), -60);
    EXPECT_EQ(seconds1970FromMinutes1601(4294967295u), 246053564100); // (4294967295 - 194074560) x 60
}

TEST(Minutes1601, RefuseWhatIsNoMinute) {
    EXPECT_EQ(test::textRaisedBy([] { minutesSince1601(TimeStamp(1, 90)); }),
              "Cannot convert to minutes; 90 seconds is not an exact number of minutes.");
    EXPECT_EQ(test::textRaisedBy([] { minutesSince1601(TimeStamp(1, -60)); }),
              "The time stamp value represents a time before the start of UTC.");
    EXPECT_EQ(test::textRaisedBy([] { minutesSince1601(TimeStamp(1, 4294967340)); }),
              "Cannot perform conversion; integer value would have been truncated.");
}

TEST(DaysFromMinutes1601, TakesPartsOnlyWhenAllowed) {
    EXPECT_EQ(daysFromMinutes1601(194074560 + 1440, false), 1);
    EXPECT_EQ(daysFromMinutes1601(194074560 + 1441, true), 1);
    EXPECT_EQ(test::textRaisedBy([] { daysFromMinutes1601(194074560 + 1441, false); }),
              "The UTC seconds value does not represent a whole number of minutes.");
}

TEST(DaysSince1970, CountsForward) {
    EXPECT_EQ(daysSince1970(Date(1970, 1, 1)), 0);
    EXPECT_EQ(daysSince1970(Date(2002, 2, 6)), 11724);
    EXPECT_EQ(test::textRaisedBy([] { daysSince1970(Date(1969, 12, 31)); }),
              "Cannot perform conversion; integer value would have lost it's sign.");
}

} // namespace
} // namespace tsr
