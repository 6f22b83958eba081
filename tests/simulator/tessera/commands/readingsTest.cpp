#include "tessera/commands/readings.h"

#include <utility>

#include <gtest/gtest.h>

#include "tessera/commands/ArgumentError.h"

namespace tsr {
namespace {

constexpr std::int64_t february6 = 1012953600; // 2002-02-06 00:00 UTC
constexpr std::int64_t hour = 3600;

const ZoneRule berlin("CET-1CEST,M3.5.0,M10.5.0/3");

TEST(Moment, IsReadInTheZoneOrInUtc) {
    const std::pair<const char*, std::int64_t> rows[] = {
        {"2002-02-06 10:30", february6 + 9 * hour + 1800},
        {"2002-02-06T10:30", february6 + 9 * hour + 1800},
        {"2002-02-06 10:30:07", february6 + 9 * hour + 1807},
        {"2002-02-06", february6 - hour},
        {"2002-02-06T10:30Z", february6 + 10 * hour + 1800},
        {"2002-02-06Z", february6},
        {"2000-02-29Z", 951782400}, // a leap year
        {"1970-01-01Z", 0},
    };
    for (const auto& [text, moment] : rows) EXPECT_EQ(parseMoment(text, berlin), moment) << text;
}

TEST(Moment, IsRefused) {
    for (const char* text :
         {"", "Z", "noon", "2002-02-29", "2002-13-01", "2002-00-10", "2002-02-06 24:00", "2002-02-06 10:60",
          "2002-02-06 10:30:60", "2002-02-06 10", "2002-2-6", "02-02-06", "2002-02-06 10:30 ",
          "2002-02-06-10:30", "1969-12-31", "2002-02-06 1x:30"}) {
        EXPECT_THROW(parseMoment(text, berlin), ArgumentError) << text;
    }
}

TEST(Moment, IsShown) {
    EXPECT_EQ(momentText(february6 + 9 * hour + 1830, berlin), "2002-02-06 10:30");
    EXPECT_EQ(dateText(february6 - hour, berlin), "2002-02-06");
    EXPECT_EQ(exactText(february6 + 9 * hour + 1807), "2002-02-06T09:30:07Z");
}

TEST(MinuteOfDay, GoesBothWays) {
    for (const auto& [text, minute] : {std::pair{"00:00", 0}, {"09:05", 545}, {"24:00", 1440}}) {
        EXPECT_EQ(parseMinuteOfDay(text), minute);
        EXPECT_EQ(minuteOfDayText(minute), text);
    }
}

TEST(MinuteOfDay, IsRefused) {
    for (const char* text : {"", "9:00", "24:01", "12:60", "noon!", "-1:00", "09:00 "}) {
        EXPECT_THROW(parseMinuteOfDay(text), ArgumentError) << text;
    }
}

} // namespace
} // namespace tsr
