#include "foundation/TimeInterval.h"

#include <limits>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(TimeInterval, CountsInSeconds) {
    EXPECT_EQ(TimeInterval().seconds(), 0);
    EXPECT_EQ(TimeInterval::fromDays(2).seconds(), 172800);
    EXPECT_EQ(TimeInterval::fromWeeks(-1).seconds(), -604800);
    EXPECT_EQ(TimeInterval::fromMinutes(3).seconds(), 180);
}

TEST(TimeInterval, WrapsProductsOfDaysAndWeeksIn32Bits) {
    // 24855 days are 2,147,472,000 seconds; one day more passes 2,147,483,647 and wraps by 2 to the 32.
    EXPECT_EQ(TimeInterval::fromDays(24855).seconds(), 2147472000);
    EXPECT_EQ(TimeInterval::fromDays(24856).seconds(), 2147558400LL - 4294967296LL);
    EXPECT_EQ(TimeInterval::fromWeeks(3551).seconds(), 2147644800LL - 4294967296LL);
    EXPECT_EQ(TimeInterval::fromMinutes(4294967296LL).seconds(), 257698037760LL); // minutes have 64
}

TEST(TimeInterval, SurvivesHostileCounts) {
    TimeInterval::fromDays(std::numeric_limits<std::int32_t>::min());
    TimeInterval::fromWeeks(std::numeric_limits<std::int32_t>::max());
    TimeInterval::fromMinutes(std::numeric_limits<std::int64_t>::max());
    const TimeInterval most(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ((most + TimeInterval(1)).seconds(), std::numeric_limits<std::int64_t>::min());
}

TEST(TimeInterval, GivesWholeUnitsOnly) {
    EXPECT_EQ(TimeInterval(-172800).days(), -2);
    EXPECT_EQ(TimeInterval(-120).minutes(), -2);
    EXPECT_EQ(test::textRaisedBy([] { TimeInterval(86401).days(); }),
              "The attempted operation requires a time interval that is a whole number of days.");
    EXPECT_EQ(test::textRaisedBy([] { TimeInterval(-61).minutes(); }),
              "The attempted operation requires a time interval that is a whole number of minutes.");
}

TEST(TimeInterval, Adds) { EXPECT_EQ(TimeInterval(5) + TimeInterval(-7), TimeInterval(-2)); }

} // namespace
} // namespace tsr
