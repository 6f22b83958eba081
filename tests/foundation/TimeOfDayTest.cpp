#include "foundation/TimeOfDay.h"

#include <limits>
#include <sstream>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(TimeOfDay, IsOneWord) { EXPECT_EQ(sizeof(TimeOfDay), 4u); }

TEST(TimeOfDay, TakesHourMinuteSecond) {
    const TimeOfDay time(23, 59, 58);
    EXPECT_EQ(time.hour(), 23u);
    EXPECT_EQ(time.minute(), 59u);
    EXPECT_EQ(time.second(), 58u);
    EXPECT_EQ(time.seconds(), 86398u);
    EXPECT_EQ(TimeOfDay(), TimeOfDay(0, 0, 0));
    EXPECT_EQ(TimeOfDay(23, 59, 59).seconds(), 86399u);
}

TEST(TimeOfDay, RefusesTimesThatDoNotExist) {
    EXPECT_EQ(test::textRaisedBy([] { TimeOfDay(24, 0, 0); }),
              "The specified hour(24), minute(0) and second(0) do not form a valid time.");
    EXPECT_EQ(test::textRaisedBy([] { TimeOfDay(0, 60, 0); }),
              "The specified hour(0), minute(60) and second(0) do not form a valid time.");
    EXPECT_EQ(test::textRaisedBy([] { TimeOfDay(0, 0, 60); }),
              "The specified hour(0), minute(0) and second(60) do not form a valid time.");
}

TEST(TimeOfDay, TakesSeconds) {
    EXPECT_EQ(TimeOfDay(0, 86399), TimeOfDay(23, 59, 59));
    EXPECT_EQ(TimeOfDay(0, 3661), TimeOfDay(1, 1, 1));
    EXPECT_EQ(test::textRaisedBy([] { TimeOfDay(0, 86400); }),
              "The specified number of seconds (86400) exceeds the number of seconds in a day.");
    EXPECT_EQ(test::textRaisedBy([] { TimeOfDay(1, 0); }), "Invalid argument.");
}

TEST(TimeOfDay, WrapsAroundMidnight) {
    EXPECT_EQ(TimeOfDay(23, 30, 0) + TimeInterval::fromMinutes(60), TimeOfDay(0, 30, 0));
    EXPECT_EQ(TimeOfDay(0, 30, 0) + TimeInterval::fromMinutes(-60), TimeOfDay(23, 30, 0));
    EXPECT_EQ(TimeOfDay(12, 0, 0) + TimeInterval::fromDays(-1), TimeOfDay(12, 0, 0));
    EXPECT_EQ(TimeOfDay(12, 0, 0) + TimeInterval::fromDays(3), TimeOfDay(12, 0, 0));
}

TEST(TimeOfDay, RefusesASumOfWholeDaysBeforeMidnight) {
    EXPECT_EQ(test::textRaisedBy([] { TimeOfDay(0, 0, 0) + TimeInterval::fromDays(-1); }),
              "The specified number of seconds (86400) exceeds the number of seconds in a day.");
}

TEST(TimeOfDay, SurvivesAnyInterval) {
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_LT((TimeOfDay(23, 0, 0) + TimeInterval(Limits::max())).hour(), 24u);
    EXPECT_LT((TimeOfDay(23, 0, 0) + TimeInterval(Limits::min())).hour(), 24u);
}

TEST(TimeOfDay, ComparesAndSubtracts) {
    EXPECT_LT(TimeOfDay(1, 59, 59), TimeOfDay(2, 0, 0));
    EXPECT_LT(TimeOfDay(1, 0, 59), TimeOfDay(1, 1, 0));
    EXPECT_EQ((TimeOfDay(1, 0, 0) - TimeOfDay(2, 0, 30)).seconds(), -3630);
}

TEST(TimeOfDay, PrintsForLogs) {
    std::ostringstream stream;
    stream << TimeOfDay(7, 8, 9);
    EXPECT_EQ(stream.str(), "07:08:09");
}

} // namespace
} // namespace tsr
