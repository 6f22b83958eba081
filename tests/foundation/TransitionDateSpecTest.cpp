#include "foundation/TransitionDateSpec.h"

#include <string>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(TransitionDateSpec, GivesTheMomentOfAYear) {
    EXPECT_EQ(TransitionDateSpec(3, 0, -1, 2, 0, 0).moment(2002), DateTime(2002, 3, 31, 2, 0, 0));
    EXPECT_EQ(TransitionDateSpec(3, 0, -1, 2, 0, 0).moment(2003), DateTime(2003, 3, 30, 2, 0, 0));
    EXPECT_EQ(TransitionDateSpec(4, 0, 1, 1, 30, 15).moment(2002), DateTime(2002, 4, 7, 1, 30, 15));
}

TEST(TransitionDateSpec, ACloneIsTheSameRule) {
    const TransitionDateSpec spec(4, 0, 1, 1, 30, 15);
    EXPECT_EQ(spec.clone()->moment(2002), spec.moment(2002));
}

TEST(TransitionDateSpec, RefusesBadParameters) {
    const struct {
        std::uint32_t month, dayOfWeek;
        std::int32_t instance;
    } rows[] = {{0, 0, 1}, {13, 0, 1}, {3, 8, 1}, {3, 0, 0}, {3, 0, 6}, {3, 0, -6}, {65535, 65535, 65535}};
    for (const auto& row : rows) {
        EXPECT_EQ(
            test::textRaisedBy([&] { TransitionDateSpec(row.month, row.dayOfWeek, row.instance, 2, 0, 0); }),
            "One or more of the parameters is invalid for use in a transition date specification; month("
                + std::to_string(row.month) + "), day of week(" + std::to_string(row.dayOfWeek)
                + "), instance(" + std::to_string(row.instance) + ").");
    }
}

TEST(TransitionDateSpec, ChecksTheTimeFirst) {
    EXPECT_EQ(test::textRaisedBy([] { TransitionDateSpec(0, 0, 0, 24, 0, 0); }),
              "The specified hour(24), minute(0) and second(0) do not form a valid time.");
}

TEST(TransitionDateSpec, FailsForAYearThatLacksTheDay) {
    // A day of week of 7 passes the check. September 2002 ends with a Monday: the 4th "day 7" is the 29th.
    EXPECT_EQ(TransitionDateSpec(9, 7, 4, 2, 0, 0).moment(2002), DateTime(2002, 9, 29, 2, 0, 0));
    // February 2015 begins with a Sunday, so that "day 7" is a week late and the fourth in March.
    EXPECT_EQ(test::textRaisedBy([] { TransitionDateSpec(2, 7, 4, 2, 0, 0).moment(2015); }),
              "The instance count (4) is invalid for the specified day of the week (7), month (2) and year "
              "(2015).");
    EXPECT_EQ(test::textRaisedBy([] { TransitionDateSpec(2, 5, 5, 2, 0, 0).moment(2002); }),
              "The instance count (5) is invalid for the specified day of the week (5), month (2) and year "
              "(2002).");
}

} // namespace
} // namespace tsr
