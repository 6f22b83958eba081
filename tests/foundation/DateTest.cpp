#include "foundation/Date.h"

#include <limits>
#include <sstream>
#include <string>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

void expectDay(const Date& date, std::uint32_t year, std::uint32_t month, std::uint32_t day) {
    EXPECT_EQ(date.year(), year);
    EXPECT_EQ(date.month(), month);
    EXPECT_EQ(date.day(), day);
}

TEST(Date, IsTwoWords) { EXPECT_EQ(sizeof(Date), 8u); }

TEST(Date, TheDefaultIs1970) {
    expectDay(Date(), 1970, 1, 1);
    EXPECT_EQ(Date(), Date(1970, 1, 1));
}

TEST(Date, KnowsJulianDaysBothWays) {
    const struct {
        std::uint32_t year, month, day, julianDay;
    } rows[] = {
        {1801, 1, 1, 2378862},  // 365 days after 1800-01-01
        {1900, 2, 28, 2415079}, // no leap year
        {1900, 3, 1, 2415080},  {1970, 1, 1, 2440588},  {1999, 12, 31, 2451544},
        {2000, 1, 1, 2451545},  {2000, 2, 29, 2451604}, {2000, 12, 31, 2451910}, // day 366
        {2002, 2, 6, 2452312},  {2100, 3, 1, 2488129},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.julianDay);
        EXPECT_EQ(Date(row.year, row.month, row.day).julianDay(), row.julianDay);
        expectDay(Date(0, row.julianDay), row.year, row.month, row.day);
    }
}

TEST(Date, GoesBothWaysForEveryDayFrom1801On) {
    std::uint32_t julianDay = 2378862;
    for (std::uint32_t year = 1801; year <= 2420; ++year) {
        for (std::uint32_t month = 1; month <= 12; ++month) {
            for (std::uint32_t day = 1; day <= Date::daysInMonth(year, month); ++day, ++julianDay) {
                const Date forward(year, month, day);
                const Date back(0, julianDay);
                ASSERT_EQ(forward.julianDay(), julianDay);
                ASSERT_TRUE(back.year() == year && back.month() == month && back.day() == day) << julianDay;
            }
        }
    }
}

TEST(Date, RefusesDaysThatDoNotExist) {
    const struct {
        std::uint32_t year, month, day;
    } rows[] = {
        {1999, 2, 29}, {1900, 2, 29}, {1799, 12, 31},
        {2002, 0, 1},  {2002, 13, 1}, {2002, 4, 31},
        {2002, 1, 0},  {0, 0, 0},     {4294967295u, 4294967295u, 4294967295u},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(test::textRaisedBy([&] { Date(row.year, row.month, row.day); }),
                  "The specified year(" + std::to_string(row.year) + "), month(" + std::to_string(row.month)
                      + ") and day(" + std::to_string(row.day) + ") do not form a valid date.");
    }
    expectDay(Date(2000, 2, 29), 2000, 2, 29);
    expectDay(Date(1800, 1, 1), 1800, 1, 1);
}

TEST(Date, RefusesAnotherKind) {
    EXPECT_EQ(test::textRaisedBy([] { Date(1, 2440588); }), "Invalid argument.");
}

TEST(Date, KnowsTheDayOfWeek) {
    EXPECT_EQ(Date(1970, 1, 1).dayOfWeek(), 4u); // Thursday
    EXPECT_EQ(Date(2002, 2, 3).dayOfWeek(), 0u); // Sunday
    EXPECT_EQ(Date(2002, 2, 9).dayOfWeek(), 6u); // Saturday
}

TEST(Date, SetDayStaysInTheMonth) {
    Date date(2002, 4, 15);
    EXPECT_EQ(date.julianDay(), 2452380u);
    date.setDay(30);
    expectDay(date, 2002, 4, 30);
    EXPECT_EQ(date.julianDay(), 2452395u);
    EXPECT_EQ(test::textRaisedBy([&] { date.setDay(31); }),
              "The specified day number (31) is not valid for month 4 in year 2002.");
    EXPECT_EQ(test::textRaisedBy([&] { date.setDay(0); }),
              "The specified day number (0) is not valid for month 4 in year 2002.");
    expectDay(date, 2002, 4, 30);
}

TEST(Date, MovesByWholeDays) {
    expectDay(Date(2002, 2, 28) + TimeInterval::fromDays(1), 2002, 3, 1);
    expectDay(Date(2000, 3, 1) + TimeInterval::fromDays(-1), 2000, 2, 29);
    expectDay(Date(2002, 12, 31) + TimeInterval::fromWeeks(1), 2003, 1, 7);
    expectDay(Date(2002, 2, 6) + TimeInterval(), 2002, 2, 6);
}

TEST(Date, RefusesIntervalsThatItCannotMoveBy) {
    Date date(1970, 1, 1);
    const char notWhole[] =
        "The attempted operation requires a time interval that is a whole number of days.";
    EXPECT_EQ(test::textRaisedBy([&] { date += TimeInterval(86401); }), notWhole);
    EXPECT_EQ(test::textRaisedBy([&] { date += TimeInterval(-1); }), notWhole);
    EXPECT_EQ(test::textRaisedBy([&] { date += TimeInterval(std::numeric_limits<std::int64_t>::min()); }),
              notWhole);
    const char tooLarge[] = "The specified time interval is too large for the attempted operation.";
    EXPECT_EQ(test::textRaisedBy([&] { date += TimeInterval(-86400LL * 2440589); }), tooLarge);
    EXPECT_EQ(test::textRaisedBy([&] { date += TimeInterval(-86400LL * 4294967296LL); }), tooLarge);
    EXPECT_EQ(test::textRaisedBy([&] { date += TimeInterval(86400LL * 4294967296LL); }),
              "Cannot perform conversion; integer value would have been truncated.");
    expectDay(date, 1970, 1, 1);
}

// Nothing good can come out for days that far off, but every operation has to come back.
TEST(Date, SurvivesAnyJulianDay) {
    for (const std::uint32_t julianDay : {0u, 1u, 2378496u, 2378497u, 2147483648u, 4294967295u}) {
        const Date date(0, julianDay);
        EXPECT_LT(date.month(), 13u);
        std::ostringstream stream;
        stream << date << date.dayOfWeek() << (date < Date());
    }
    Date date;
    date += TimeInterval(-86400LL * 2440588);
    EXPECT_EQ(date.julianDay(), 0u);
    EXPECT_LT(date.month(), 13u);
}

TEST(Date, ComparesByDay) {
    EXPECT_LT(Date(2001, 12, 31), Date(2002, 1, 1));
    EXPECT_EQ(Date(0, 2440588), Date(1970, 1, 1));
    EXPECT_EQ((Date(2002, 3, 1) - Date(2002, 2, 1)).seconds(), 28 * 86400);
    EXPECT_EQ((Date(2002, 2, 1) - Date(2002, 3, 1)).seconds(), -28 * 86400);
}

TEST(Date, KnowsLeapYearsAndMonths) {
    EXPECT_TRUE(Date::isLeapYear(2000));
    EXPECT_TRUE(Date::isLeapYear(2004));
    EXPECT_FALSE(Date::isLeapYear(1900));
    EXPECT_FALSE(Date::isLeapYear(2001));
    EXPECT_EQ(Date::daysInMonth(2000, 2), 29u);
    EXPECT_EQ(Date::daysInMonth(1900, 2), 28u);
    EXPECT_EQ(Date::daysInMonth(2002, 12), 31u);
    EXPECT_EQ(test::textRaisedBy([] { Date::daysInMonth(2002, 0); }), "The specified month (0) is invalid.");
    EXPECT_EQ(test::textRaisedBy([] { Date::daysInMonth(2002, 13); }),
              "The specified month (13) is invalid.");
}

TEST(Date, FindsTheNthDayOfWeek) {
    // February 2002 begins with a Friday and has four of every day.
    expectDay(Date::nthDayOfWeek(2002, 2, 5, 1), 2002, 2, 1);
    expectDay(Date::nthDayOfWeek(2002, 2, 4, 1), 2002, 2, 7);
    expectDay(Date::nthDayOfWeek(2002, 2, 5, 4), 2002, 2, 22);
    expectDay(Date::nthDayOfWeek(2002, 2, 5, -1), 2002, 2, 22);
    expectDay(Date::nthDayOfWeek(2002, 2, 4, -1), 2002, 2, 28);
    expectDay(Date::nthDayOfWeek(2002, 2, 0, -2), 2002, 2, 17);
    expectDay(Date::nthDayOfWeek(2002, 3, 0, 5), 2002, 3, 31);
    expectDay(Date::nthDayOfWeek(2002, 3, 0, -5), 2002, 3, 3);
}

TEST(Date, RefusesAnInstanceOutsideOfTheMonth) {
    const auto refusal = [](const std::string& instance, const std::string& dayOfWeek) {
        return "The instance count (" + instance + ") is invalid for the specified day of the week ("
             + dayOfWeek + "), month (2) and year (2002).";
    };
    EXPECT_EQ(test::textRaisedBy([] { Date::nthDayOfWeek(2002, 2, 5, 5); }), refusal("5", "5"));
    EXPECT_EQ(test::textRaisedBy([] { Date::nthDayOfWeek(2002, 2, 5, 0); }), refusal("0", "5"));
    EXPECT_EQ(test::textRaisedBy([] { Date::nthDayOfWeek(2002, 2, 5, -5); }), refusal("-5", "5"));
    EXPECT_EQ(test::textRaisedBy([] { Date::nthDayOfWeek(2002, 2, 40, 1); }), refusal("1", "40"));
}

TEST(Date, TakesADayOfWeekOfSevenByTheSameSteps) {
    expectDay(Date::nthDayOfWeek(2002, 2, 7, 1), 2002, 2, 3);   // a Friday plus two days
    expectDay(Date::nthDayOfWeek(2002, 9, 7, 1), 2002, 9, 8);   // begins with a Sunday: plus seven
    expectDay(Date::nthDayOfWeek(2002, 2, 7, -1), 2002, 2, 24); // ends with a Thursday: four back
}

TEST(Date, PrintsForLogs) {
    std::ostringstream stream;
    stream << Date(2002, 2, 6);
    EXPECT_EQ(stream.str(), "02/06/02");
}

} // namespace
} // namespace tsr
