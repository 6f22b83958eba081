#include "interchange/RepeatRule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tsr {
namespace {

using namespace std::chrono;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Unit = RepeatRule::Unit;

constexpr std::size_t many = 100;

sys_days on(int y, unsigned m, unsigned d) { return year(y) / m / d; }

// Monday; 2026-11-01 is a Sunday.
const sys_days monday = on(2026, 11, 23);

TEST(RepeatRule, ComesEveryFewDays) {
    const RepeatRule rule{.unit = Unit::Day, .interval = 3};
    EXPECT_THAT(occurrences(rule, monday, on(2026, 11, 24), on(2026, 11, 30), many),
                ElementsAre(on(2026, 11, 26), on(2026, 11, 29)));
    EXPECT_THAT(occurrences(rule, monday, on(2020, 1, 1), on(2026, 11, 25), many), ElementsAre(monday));
}

TEST(RepeatRule, ComesOnDaysOfTheWeek) {
    const RepeatRule rule{.unit = Unit::Week, .interval = 1, .daysOfWeek = 2 + 8}; // Monday and Wednesday
    EXPECT_THAT(occurrences(rule, monday, monday, on(2026, 12, 1), many),
                ElementsAre(monday, on(2026, 11, 25), on(2026, 11, 30)));
    EXPECT_THAT(occurrences(rule, on(2026, 11, 24), monday, on(2026, 11, 26), many),
                ElementsAre(on(2026, 11, 25))); // the start itself is none
}

TEST(RepeatRule, CountsWeeksFromSunday) {
    // Sunday and Wednesday of every second week: the week of Wednesday the 25th began on the 22nd.
    const RepeatRule rule{.unit = Unit::Week, .interval = 2, .daysOfWeek = 1 + 8};
    EXPECT_THAT(occurrences(rule, on(2026, 11, 25), monday, on(2026, 12, 20), many),
                ElementsAre(on(2026, 11, 25), on(2026, 12, 6), on(2026, 12, 9), on(2026, 12, 20)));
}

TEST(RepeatRule, PassesOverMonthsWithoutTheDate) {
    const RepeatRule rule{.unit = Unit::MonthByDate, .dayNumbers = {31}};
    EXPECT_THAT(occurrences(rule, on(2026, 1, 31), on(2026, 1, 1), on(2026, 5, 31), many),
                ElementsAre(on(2026, 1, 31), on(2026, 3, 31), on(2026, 5, 31)));
    const RepeatRule leapDays{.unit = Unit::MonthByDate, .interval = 12, .dayNumbers = {29}};
    EXPECT_THAT(occurrences(leapDays, on(2024, 2, 29), on(2024, 1, 1), on(2030, 1, 1), many),
                ElementsAre(on(2024, 2, 29), on(2028, 2, 29)));
}

TEST(RepeatRule, ComesOnTheNthOrTheLastDayOfAMonth) {
    const RepeatRule second{.unit = Unit::MonthByDay, .daySpecs = {{2, 4}}}; // Thursday
    EXPECT_THAT(occurrences(second, on(2026, 11, 12), monday, on(2027, 1, 31), many),
                ElementsAre(on(2026, 12, 10), on(2027, 1, 14)));
    const RepeatRule last{.unit = Unit::MonthByDay, .interval = 2, .daySpecs = {{5, 1}}}; // Monday
    EXPECT_THAT(occurrences(last, on(2026, 11, 30), monday, on(2027, 3, 31), many),
                ElementsAre(on(2026, 11, 30), on(2027, 1, 25), on(2027, 3, 29)));
}

TEST(RepeatRule, SortsTheDaysOfAMonth) {
    const RepeatRule rule{.unit = Unit::MonthByDate, .dayNumbers = {20, 5, 20}};
    EXPECT_THAT(occurrences(rule, on(2026, 11, 1), on(2026, 11, 1), on(2026, 11, 30), many),
                ElementsAre(on(2026, 11, 5), on(2026, 11, 20)));
}

TEST(RepeatRule, EndsWithItsLastDayAndWithTheMost) {
    RepeatRule rule{.unit = Unit::Day, .until = on(2026, 11, 24)};
    EXPECT_THAT(occurrences(rule, monday, monday, on(2030, 1, 1), many),
                ElementsAre(monday, on(2026, 11, 24)));
    rule.until.reset();
    EXPECT_EQ(occurrences(rule, monday, monday, on(9000, 1, 1), many).size(), many);
    EXPECT_THAT(occurrences(rule, monday, on(2026, 11, 1), on(2026, 11, 22), many), IsEmpty());
}

TEST(RepeatRule, MayHaveNoDay) {
    const RepeatRule rule{.unit = Unit::MonthByDate, .interval = 12, .dayNumbers = {30}};
    EXPECT_THAT(occurrences(rule, on(2026, 2, 1), on(2026, 2, 1), on(3000, 1, 1), many), IsEmpty());
    EXPECT_THAT(occurrences({.unit = Unit::Week}, monday, monday, on(3000, 1, 1), many), IsEmpty());
}

TEST(RepeatRule, FitsAHandheldWithOneDayOfTheMonth) {
    EXPECT_TRUE(fitsHandheld({.unit = Unit::Week, .interval = 255, .daysOfWeek = 127}));
    EXPECT_FALSE(fitsHandheld({.unit = Unit::Week, .interval = 256, .daysOfWeek = 127}));
    EXPECT_TRUE(fitsHandheld({.unit = Unit::MonthByDate, .dayNumbers = {1}}));
    EXPECT_FALSE(fitsHandheld({.unit = Unit::MonthByDate, .dayNumbers = {1, 15}}));
    EXPECT_FALSE(fitsHandheld({.unit = Unit::MonthByDay, .daySpecs = {{1, 1}, {3, 1}}}));
}

} // namespace
} // namespace tsr
