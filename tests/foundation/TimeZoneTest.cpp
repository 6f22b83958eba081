#include "foundation/TimeZone.h"

#include <limits>
#include <memory>

#include "foundation/TransitionDateSpec.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

// An hour east; daylight saving from the last Sunday of March, 02:00, to that of October, 03:00: in 2002 from
// March 31, 01:00 UTC, to October 27, 01:00 UTC.
TimeZone northern() {
    return TimeZone(3600, 3600, TransitionDateSpec(3, 0, -1, 2, 0, 0),
                    TransitionDateSpec(10, 0, -1, 3, 0, 0));
}

// Ten hours east; daylight saving from the first Sunday of October, 02:00, to the last of March, 03:00.
TimeZone southern() {
    return TimeZone(36000, 3600, TransitionDateSpec(10, 0, 1, 2, 0, 0),
                    TransitionDateSpec(3, 0, -1, 3, 0, 0));
}

TimeStamp utc(std::uint32_t month, std::uint32_t day, std::uint32_t hour, std::uint32_t minute,
              std::uint32_t second) {
    return TimeStamp(DateTime(2002, month, day, hour, minute, second), TimeZone());
}

TEST(TimeZone, TheDefaultIsUtc) {
    EXPECT_EQ(TimeZone().offset(), 0);
    EXPECT_EQ(TimeZone().daylightDelta(), 0);
    EXPECT_EQ(TimeZone().toLocal(TimeStamp(1, 0)), DateTime(1970, 1, 1, 0, 0, 0));
    EXPECT_EQ(TimeZone().toUtc(DateTime(1970, 1, 1, 0, 0, 1)), TimeStamp(1, 1));
}

TEST(TimeZone, AnOffsetEastIsAdded) {
    EXPECT_EQ(TimeZone(-18000).toLocal(TimeStamp(1, 0)), DateTime(1969, 12, 31, 19, 0, 0));
    EXPECT_EQ(TimeZone(-18000).toUtc(DateTime(1969, 12, 31, 19, 0, 0)), TimeStamp(1, 0));
}

TEST(TimeZone, ReadsDaylightTimeInsideOneYear) {
    const struct {
        TimeStamp moment;
        DateTime reading;
    } rows[] = {
        {utc(1, 15, 12, 0, 0), DateTime(2002, 1, 15, 13, 0, 0)},
        {utc(7, 15, 12, 0, 0), DateTime(2002, 7, 15, 14, 0, 0)},
        {utc(3, 31, 0, 59, 59), DateTime(2002, 3, 31, 1, 59, 59)},
        {utc(3, 31, 1, 0, 0), DateTime(2002, 3, 31, 3, 0, 0)}, // the start itself is daylight time
        {utc(10, 27, 0, 59, 59), DateTime(2002, 10, 27, 2, 59, 59)},
        {utc(10, 27, 1, 0, 0), DateTime(2002, 10, 27, 2, 0, 0)}, // the end itself is standard time
        {utc(12, 31, 22, 59, 59), DateTime(2002, 12, 31, 23, 59, 59)},
    };
    for (const auto& row : rows) EXPECT_EQ(northern().toLocal(row.moment), row.reading);
}

TEST(TimeZone, TakesDoubtfulReadingsForDaylightTime) {
    const auto toUtc = [](std::uint32_t month, std::uint32_t day, std::uint32_t hour, std::uint32_t minute) {
        return northern().toUtc(DateTime(2002, month, day, hour, minute, 0));
    };
    EXPECT_EQ(toUtc(3, 31, 1, 59), utc(3, 31, 0, 59, 0));
    EXPECT_EQ(toUtc(3, 31, 2, 30), utc(3, 31, 0, 30, 0)); // doesn't exist
    EXPECT_EQ(toUtc(3, 31, 3, 0), utc(3, 31, 1, 0, 0));
    EXPECT_EQ(toUtc(10, 27, 2, 0), utc(10, 27, 0, 0, 0));   // occurs twice: the earlier
    EXPECT_EQ(toUtc(10, 27, 2, 59), utc(10, 27, 0, 59, 0)); // the same
    EXPECT_EQ(toUtc(10, 27, 3, 0), utc(10, 27, 2, 0, 0));   // standard time
}

TEST(TimeZone, IsNoInverseInTheDoubledHour) {
    const TimeStamp later = utc(10, 27, 1, 30, 0);
    const DateTime reading = northern().toLocal(later);
    EXPECT_EQ(reading, DateTime(2002, 10, 27, 2, 30, 0));
    EXPECT_EQ(northern().toUtc(reading), utc(10, 27, 0, 30, 0));
}

TEST(TimeZone, SpansTheNewYearInTheSouth) {
    EXPECT_EQ(southern().toLocal(utc(1, 15, 0, 0, 0)), DateTime(2002, 1, 15, 11, 0, 0));
    EXPECT_EQ(southern().toLocal(utc(7, 15, 0, 0, 0)), DateTime(2002, 7, 15, 10, 0, 0));
    EXPECT_EQ(southern().toLocal(utc(12, 31, 13, 30, 0)), DateTime(2003, 1, 1, 0, 30, 0));
    EXPECT_EQ(southern().toUtc(DateTime(2002, 1, 15, 11, 0, 0)), utc(1, 15, 0, 0, 0));
    EXPECT_EQ(southern().toUtc(DateTime(2002, 7, 15, 10, 0, 0)), utc(7, 15, 0, 0, 0));
    EXPECT_EQ(southern().toUtc(DateTime(2002, 12, 15, 11, 0, 0)), utc(12, 15, 0, 0, 0));
}

TEST(TimeZone, RefusesANegativeReading) {
    const char signLost[] = "Cannot perform conversion; integer value would have lost it's sign.";
    EXPECT_EQ(test::textRaisedBy([] { TimeZone(-1).toLocal(TimeStamp()); }), signLost);
    EXPECT_EQ(test::textRaisedBy([] { TimeZone().toLocal(TimeStamp(0, -1)); }), signLost);
}

TEST(TimeZone, SurvivesHostileOffsets) {
    using Limits = std::numeric_limits<std::int32_t>;
    const TransitionDateSpec spec(3, 0, -1, 2, 0, 0);
    const TimeZone most(Limits::max(), Limits::max(), spec, spec);
    const TimeZone least(Limits::min(), Limits::min(), spec, spec);
    const TimeStamp now(1, 1012998896);
    most.toLocal(now);
    least.toLocal(now);
    most.toUtc(DateTime(2002, 2, 6, 0, 0, 0));
    least.toUtc(DateTime(2002, 2, 6, 0, 0, 0));
    EXPECT_THROW(most.toLocal(TimeStamp(0, std::numeric_limits<std::int64_t>::max())), Error);
}

TEST(TimeZone, CopiesHaveRulesOfTheirOwn) {
    auto first = std::make_unique<TimeZone>(northern());
    const TimeZone second = *first;
    TimeZone third;
    third = *first;
    first.reset();
    EXPECT_EQ(second.toLocal(utc(7, 15, 12, 0, 0)), DateTime(2002, 7, 15, 14, 0, 0));
    EXPECT_EQ(third.toLocal(utc(7, 15, 12, 0, 0)), DateTime(2002, 7, 15, 14, 0, 0));
    EXPECT_EQ(TimeZone(TimeZone()).offset(), 0); // nothing to clone
}

} // namespace
} // namespace tsr
