#include "tessera/meetingPattern.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

using namespace std::chrono;
using Unit = RepeatRule::Unit;

// 2026-11-23, a Monday, is day 20780 from 1970 and minute 223997760 from 1601.
constexpr sys_days monday{days(20780)};
constexpr std::int64_t midnight = 20780 * 86400;
constexpr std::int64_t ten = midnight + 10 * 3600;

MeetingPattern weekly() {
    return {.rule = {.unit = Unit::Week, .interval = 2, .until = monday + days(70), .daysOfWeek = 2},
            .start = ten,
            .deletions = {monday + days(14)},
            .exceptions = {{.patternDate = monday + days(28),
                            .start = ten + 29 * 86400 + 1800, // a day and half an hour later
                            .subject = "Elsewhere",
                            .note = "bring\ncake",
                            .allDay = false,
                            .minutes = 90}}};
}

const Properties weeklyProperties{
    {"Recurs", {"Week"}},
    {"Interval", {"2"}},
    {"PatternEnd", {"224098560"}}, // 70 days of 1,440 minutes later
    {"DaysOfWeek", {"2"}},
    {"RepeatStartTime", {"600"}},
    {"PatternStartDate", {"223998360"}},
    {"DeletionCount", {"1"}},
    {"Deletion.0.OriginalDate", {"224018520"}},
    {"ExceptionCount", {"1"}},
    {"Exception.1.PatternDate", {"224038680"}},
    {"Exception.1.Date", {"224040150"}},
    {"Exception.1.Subject", {"Elsewhere"}},
    {"Exception.1.Body", {"bring\ncake"}},
    {"Exception.1.AllDay", {"0"}},
    {"Exception.1.Duration", {"90"}},
};

TEST(MeetingPattern, GoesBothWays) {
    Properties properties;
    setPattern(properties, weekly());
    EXPECT_EQ(properties, weeklyProperties);
    EXPECT_EQ(toPattern(properties), weekly());
}

TEST(MeetingPattern, HasARuleForEachUnit) {
    struct Row {
        RepeatRule rule;
        Properties properties;
    };
    const Row rows[] = {
        {{.unit = Unit::Day, .interval = 3}, {{"Recurs", {"Day"}}, {"Interval", {"3"}}}},
        {{.unit = Unit::MonthByDate, .dayNumbers = {23, 31}},
         {{"Recurs", {"Month"}}, {"Interval", {"1"}}, {"DayInMonth.1", {"23"}}, {"DayInMonth.2", {"31"}}}},
        {{.unit = Unit::MonthByDay, .daySpecs = {{4, 1}, {5, 0}}},
         {{"Recurs", {"MonthNth"}}, {"Interval", {"1"}}, {"Nth.1", {"4.1"}}, {"Nth.2", {"5.0"}}}},
    };
    for (const Row& row : rows) {
        Properties expected = row.properties;
        expected.insert({{"PatternEnd", {"Forever"}},
                         {"RepeatStartTime", {"600"}},
                         {"PatternStartDate", {"223998360"}},
                         {"DeletionCount", {"0"}},
                         {"ExceptionCount", {"0"}}});
        Properties properties;
        setPattern(properties, MeetingPattern{.rule = row.rule, .start = ten});
        EXPECT_EQ(properties, expected);
        ASSERT_TRUE(toPattern(properties));
        EXPECT_EQ(toPattern(properties)->rule, row.rule);
    }
}

TEST(MeetingPattern, IsReplacedWhole) {
    Properties properties = weeklyProperties;
    properties["Chair"] = {"Ann"};
    setPattern(properties, std::nullopt);
    EXPECT_EQ(properties, (Properties{{"Chair", {"Ann"}}}));
}

TEST(MeetingPattern, IsNoneOfARuleThatMakesNoSense) {
    const std::pair<const char*, const char*> rows[] = {
        {"Recurs", ""},     {"Recurs", "Year"},       {"Interval", "0"},   {"Interval", "10000"},
        {"Interval", "x"},  {"PatternEnd", ""},       {"PatternEnd", "x"}, {"DaysOfWeek", "128"},
        {"DaysOfWeek", ""}, {"PatternStartDate", ""},
    };
    for (const auto& [name, value] : rows) {
        Properties properties = weeklyProperties;
        properties[name] = {value};
        EXPECT_FALSE(toPattern(properties)) << name << "=" << value;
    }
    for (const char* number : {"0", "32", "x"}) {
        Properties properties = weeklyProperties;
        properties["Recurs"] = {"Month"};
        properties["DayInMonth.1"] = {number};
        EXPECT_FALSE(toPattern(properties)) << number;
    }
    for (const char* spec : {"0.1", "6.1", "1.7", "1,1", "1.", ""}) {
        Properties properties = weeklyProperties;
        properties["Recurs"] = {"MonthNth"};
        properties["Nth.1"] = {spec};
        EXPECT_FALSE(toPattern(properties)) << spec;
    }
    Properties properties = weeklyProperties;
    properties["Recurs"] = {"Month"};
    properties["DayInMonth.2"] = {"5"}; // without the first
    EXPECT_FALSE(toPattern(properties));
}

TEST(MeetingPattern, TakesAnExceptionWithoutADateForOneAtMidnight) {
    Properties properties = weeklyProperties;
    for (const char* name : {"Date", "Subject", "Body", "AllDay", "Duration"})
        properties.erase(std::string("Exception.1.") + name);
    const auto pattern = toPattern(properties);
    ASSERT_TRUE(pattern);
    EXPECT_EQ(pattern->exceptions.at(0),
              (EventException{.patternDate = monday + days(28), .start = midnight + 28 * 86400}));
}

TEST(MeetingPattern, EndsWithTheLastOfACountThatLies) {
    Properties properties = weeklyProperties;
    properties["ExceptionCount"] = {"4294967295"};
    EXPECT_EQ(toPattern(properties)->exceptions.size(), 1u);
    properties["DeletionCount"] = {"2"};
    EXPECT_FALSE(deletionsOf(properties));
}

} // namespace
} // namespace tsr
