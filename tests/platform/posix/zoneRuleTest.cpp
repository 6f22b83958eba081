#include "platform/posix/zoneRule.h"

#include <utility>

#include "gtest/gtest.h"

namespace tsr::platform {
namespace {

TEST(ZoneRule, HasABias) {
    const std::pair<const char*, std::int32_t> rows[] = {
        {"UTC0", 0},        {"JST-9", -540}, {"NST3:30", 210},     {"<+0545>-5:45", -345},
        {"<-03>3", 180},    {"ABC+1", 60},   {"LMT-0:53:28", -53}, // seconds can't be told
        {"LMT0:53:28", 53},
    };
    for (const auto& [text, bias] : rows) {
        const auto zone = parseZoneRule(text);
        ASSERT_TRUE(zone) << text;
        EXPECT_EQ(zone->bias, bias) << text;
        EXPECT_EQ(zone->daylight.month, 0) << text;
    }
}

TEST(ZoneRule, HasTransitions) {
    const auto zone = parseZoneRule("CET-1CEST,M3.5.0,M10.4.6/3:30:15");
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->bias, -60);
    EXPECT_EQ(zone->daylightBias, -60); // an hour ahead where it isn't told
    EXPECT_EQ(zone->daylight.year, 0);
    EXPECT_EQ(zone->daylight.month, 3);
    EXPECT_EQ(zone->daylight.instance, 5);
    EXPECT_EQ(zone->daylight.dayOfWeek, 0);
    EXPECT_EQ(zone->daylight.hour, 2); // where it isn't told
    EXPECT_EQ(zone->standard.month, 10);
    EXPECT_EQ(zone->standard.instance, 4);
    EXPECT_EQ(zone->standard.dayOfWeek, 6);
    EXPECT_EQ(zone->standard.hour, 3);
    EXPECT_EQ(zone->standard.minute, 30);
    EXPECT_EQ(zone->standard.second, 15);
}

TEST(ZoneRule, TellsTheDaylightBiasFromItsOffset) {
    EXPECT_EQ(parseZoneRule("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0")->daylightBias, -30);
    EXPECT_EQ(parseZoneRule("IST-1GMT0,M10.5.0,M3.5.0/1")->daylightBias, 60); // an hour back in winter
}

TEST(ZoneRule, GivesTheBiasAloneForTransitionsThatCannotBeExpressed) {
    for (const char* text : {
             "EST5EDT",                         // none
             "EST5EDT,J60,J300",                // days of the year
             "EST5EDT,59,299",                  // the same, counted from 0
             "<-02>2<-01>,M3.5.0/-1,M10.5.0/0", // the day before
             "IST-2IDT,M3.4.4/26,M10.5.0",      // the day after
             "EST5EDT,M3.2.0/24,M11.1.0",       // midnight at its end
             "EST5EDT,M3.2.0",                  // one alone
             "EST5EDT,M3.2.0,M11.1.0,M1.1.1",   // one too many
             "EST5EDT,M0.2.0,M11.1.0",
             "EST5EDT,M13.2.0,M11.1.0",
             "EST5EDT,M3.0.0,M11.1.0",
             "EST5EDT,M3.6.0,M11.1.0",
             "EST5EDT,M3.2.7,M11.1.0",
             "EST5EDT,M3.2,M11.1.0",
         }) {
        const auto zone = parseZoneRule(text);
        ASSERT_TRUE(zone) << text;
        EXPECT_NE(zone->bias, 0) << text;
        EXPECT_EQ(zone->daylightBias, 0) << text;
        EXPECT_EQ(zone->daylight.month, 0) << text;
        EXPECT_EQ(zone->standard.month, 0) << text;
    }
}

TEST(ZoneRule, IsNothingForOtherTexts) {
    for (const char* text :
         {"", "U", "UT0", "UTC", "<+03-3", "<>", "UTC+", "UTC-", "UTC0:60", "UTC99999999999", "UTC168",
          "UTC0 ", "UTC0,M3.2.0,M11.1.0", "Europe/Berlin", "EST5ED"}) {
        EXPECT_FALSE(parseZoneRule(text)) << text;
    }
}

} // namespace
} // namespace tsr::platform
