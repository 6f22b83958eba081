#include "tessera/ZoneRule.h"

#include <utility>

#include <gtest/gtest.h>

#include "support/bytes.h"
#include "tessera/TesseraError.h"

namespace tsr {
namespace {

using test::hexText;

constexpr std::int64_t hour = 3600;

// 2002-03-31 and 2002-10-27, the Sundays on which Central Europe changes its clocks, at 00:00 UTC.
constexpr std::int64_t march31 = 1017532800;
constexpr std::int64_t october27 = 1035676800;

const char centralEurope[] = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(ZoneRule, OfUtcIsABlockOfZeros) {
    EXPECT_EQ(ZoneRule("UTC0").block(), std::vector<std::uint8_t>(44));
    EXPECT_EQ(ZoneRule().block(), std::vector<std::uint8_t>(44));
}

TEST(ZoneRule, MakesTheBlock) {
    EXPECT_EQ(hexText(ZoneRule(centralEurope).block()),
              "C4 FF FF FF 00 00 00 00 C4 FF FF FF "              // -60, 0, -60
              "00 00 0A 00 00 00 05 00 03 00 00 00 00 00 00 00 "  // last Sunday of October, 03:00
              "00 00 03 00 00 00 05 00 02 00 00 00 00 00 00 00"); // last Sunday of March, 02:00
    EXPECT_EQ(hexText(ZoneRule("EST5EDT,M3.2.0,M11.1.0").block()).substr(0, 12 * 3 - 1),
              "2C 01 00 00 00 00 00 00 C4 FF FF FF"); // 300, 0, -60
}

TEST(ZoneRule, ReadsHalfHoursSecondsAndQuotedNames) {
    EXPECT_EQ(hexText(ZoneRule("<+0530>-5:30").block()).substr(0, 11), "B6 FE FF FF"); // -330
    EXPECT_EQ(hexText(ZoneRule("NST3:30:00NDT,M3.2.0,M11.1.0").block()).substr(0, 11), "D2 00 00 00");
    const auto lordHowe = ZoneRule("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0").block();
    EXPECT_EQ(hexText({lordHowe.begin() + 8, lordHowe.begin() + 12}), "E2 FF FF FF"); // -30
    const auto odd = ZoneRule("AAA0BBB,M3.2.6/1:02:03,M11.1.4/23:59:59").block();
    EXPECT_EQ(
        hexText({odd.begin() + 12, odd.end()}),
        "00 00 0B 00 04 00 01 00 17 00 3B 00 3B 00 00 00 00 00 03 00 06 00 02 00 01 00 02 00 03 00 00 00");
}

TEST(ZoneRule, IsRefused) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "nothing"},
        {"CET", "no distance"},
        {"CE-1", "a name of two letters"},
        {"CET-25", "more than a day"},
        {"CET-1:60", "no such minute"},
        {"CET-1CEST", "no days for the change"},
        {"CET-1CEST,M3.5.0", "one day only"},
        {"CET-1CEST,M13.5.0,M10.5.0", "no such month"},
        {"CET-1CEST,M3.6.0,M10.5.0", "no such week"},
        {"CET-1CEST,M3.5.7,M10.5.0", "no such weekday"},
        {"CET-1CEST,J90,J300", "days counted through the year"},
        {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "a time on the day before"},
        {"CET-1CEST,M3.5.0/24,M10.5.0", "a time on the day after"},
        {"CET-1CEST,M3.5.0,M10.5.0/3 ", "something behind it"},
        {"CET-999999999999999999999", "a number without end"},
        {"<+01-1", "an open bracket"},
    };
    for (const auto& [text, reason] : rows)
        EXPECT_THROW(ZoneRule{text}, TesseraError) << text << ": " << reason;
}

TEST(ZoneRule, ChangesItsClockInSpringAndAutumn) {
    const ZoneRule zone(centralEurope);
    EXPECT_EQ(zone.toLocal(march31 + hour - 1), march31 + 2 * hour - 1);
    EXPECT_EQ(zone.toLocal(march31 + hour), march31 + 3 * hour);
    EXPECT_EQ(zone.toLocal(october27 + hour - 1), october27 + 3 * hour - 1);
    EXPECT_EQ(zone.toLocal(october27 + hour), october27 + 2 * hour);
}

TEST(ZoneRule, TakesTheEarlierOfTwoMoments) {
    const ZoneRule zone(centralEurope);
    EXPECT_EQ(zone.toUtc(march31 + 2 * hour), march31); // skipped, so daylight time
    EXPECT_EQ(zone.toUtc(march31 + 3 * hour), march31 + hour);
    EXPECT_EQ(zone.toUtc(october27 + 2 * hour), october27); // twice there
    EXPECT_EQ(zone.toUtc(october27 + 3 * hour), october27 + 2 * hour);
}

TEST(ZoneRule, SpansTheNewYearInTheSouth) {
    const ZoneRule zone("AEST-10AEDT,M10.1.0,M4.1.0/3");
    const std::int64_t january15 = 1011052800; // 2002
    const std::int64_t july15 = 1026691200;
    EXPECT_EQ(zone.toLocal(january15), january15 + 11 * hour);
    EXPECT_EQ(zone.toLocal(july15), july15 + 10 * hour);
    EXPECT_EQ(zone.toUtc(january15 + 11 * hour), january15);
    EXPECT_EQ(zone.toUtc(july15 + 10 * hour), july15);
}

TEST(ZoneRule, MayCallWinterTheSavedTime) {
    const ZoneRule zone("IST-1GMT0,M10.5.0,M3.5.0/1");
    EXPECT_EQ(zone.toLocal(1011052800), 1011052800);        // 15 January
    EXPECT_EQ(zone.toLocal(1026691200), 1026691200 + hour); // 15 July
}

} // namespace
} // namespace tsr
