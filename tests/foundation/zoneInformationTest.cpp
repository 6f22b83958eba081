#include "foundation/zoneInformation.h"

#include <string>

#include "foundation/desktopTimeZone.h"
#include "support/environment.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

const std::string zeroInteger = "00000000";
const std::string noTransition(32, '0');

// Words are little-endian: year, month, day of week, instance, hour, minute, second, milliseconds.
const std::string lastSundayOfMarch = "0000"
                                      "0300"
                                      "0000"
                                      "0500"
                                      "0200"
                                      "0000"
                                      "0000"
                                      "0000";
const std::string lastSundayOfOctober = "0000"
                                        "0A00"
                                        "0000"
                                        "0500"
                                        "0300"
                                        "0000"
                                        "0000"
                                        "0000";
const std::string firstSundayOfOctober = "0000"
                                         "0A00"
                                         "0000"
                                         "0100"
                                         "0200"
                                         "0000"
                                         "0000"
                                         "E703";

// The fields of a block: bias, daylight bias, end and start of daylight saving.
std::string block(const std::string& bias, const std::string& daylightBias, const std::string& standard,
                  const std::string& daylight) {
    return bias + "FFFFFF7F" + daylightBias + standard + daylight; // the second integer is not read
}

TEST(TimeZoneBlock, OfZerosIsUtc) {
    const TimeZone zone = parseTimeZoneBlock(std::string(88, '0'));
    EXPECT_EQ(zone.offset(), 0);
    EXPECT_EQ(zone.daylightDelta(), 0);
}

TEST(TimeZoneBlock, ABiasIsMinutesWest) {
    // 300 is 0x012C; a daylight bias without transitions means nothing.
    const TimeZone zone = parseTimeZoneBlock(block("2C010000", "C4FFFFFF", noTransition, noTransition));
    EXPECT_EQ(zone.offset(), -18000);
    EXPECT_EQ(zone.daylightDelta(), 0);
}

TEST(TimeZoneBlock, HasARuleForEachTransition) {
    // Both biases are -60, 0xFFFFFFC4.
    const TimeZone zone =
        parseTimeZoneBlock(block("C4FFFFFF", "c4ffffff", lastSundayOfOctober, lastSundayOfMarch));
    EXPECT_EQ(zone.offset(), 3600);
    EXPECT_EQ(zone.daylightDelta(), 3600);
    EXPECT_EQ(zone.toLocal(TimeStamp(1, 1017536399)), DateTime(2002, 3, 31, 1, 59, 59));
    EXPECT_EQ(zone.toLocal(TimeStamp(1, 1017536400)), DateTime(2002, 3, 31, 3, 0, 0));
    EXPECT_EQ(zone.toLocal(TimeStamp(1, 1035680400)), DateTime(2002, 10, 27, 2, 0, 0));
}

TEST(TimeZoneBlock, MayStartDaylightSavingInAutumn) {
    // -600 is 0xFFFFFDA8.
    const TimeZone zone =
        parseTimeZoneBlock(block("A8FDFFFF", "C4FFFFFF", lastSundayOfMarch, firstSundayOfOctober));
    EXPECT_EQ(zone.toUtc(DateTime(2002, 1, 15, 11, 0, 0)),
              TimeStamp(DateTime(2002, 1, 15, 0, 0, 0), TimeZone()));
    EXPECT_EQ(zone.toUtc(DateTime(2002, 7, 15, 10, 0, 0)),
              TimeStamp(DateTime(2002, 7, 15, 0, 0, 0), TimeZone()));
}

TEST(TimeZoneBlock, RefusesAnotherLength) {
    const auto refusal = [](const std::string& length) {
        return "The time zone information received from the Tessera Server has invalid length (" + length
             + ").";
    };
    EXPECT_EQ(test::textRaisedBy([] { parseTimeZoneBlock(std::string(86, '0')); }), refusal("43"));
    EXPECT_EQ(test::textRaisedBy([] { parseTimeZoneBlock(std::string(90, '0')); }), refusal("45"));
    EXPECT_EQ(test::textRaisedBy([] { parseTimeZoneBlock(""); }), refusal("0"));
    EXPECT_EQ(test::textRaisedBy([] { parseTimeZoneBlock(std::string(87, '0')); }),
              "Cannot convert hexadecimal string to binary; the length (87) must be even.");
    EXPECT_EQ(test::textRaisedBy([] { parseTimeZoneBlock(std::string(88, 'x')); }),
              "The character 'x' is not valid in a hexadecimal string.");
}

TEST(TimeZoneBlock, RefusesYears) {
    const std::string withYear = "D207" + noTransition.substr(4); // 2002
    for (const auto& text : {block(zeroInteger, zeroInteger, withYear, noTransition),
                             block(zeroInteger, zeroInteger, noTransition, withYear)}) {
        EXPECT_EQ(test::textRaisedBy([&] { parseTimeZoneBlock(text); }),
                  "The time zone information received from the Tessera Server has years specified in the "
                  "transition dates.");
    }
}

TEST(TimeZoneBlock, RefusesOneTransitionWithoutTheOther) {
    EXPECT_EQ(test::textRaisedBy([] {
                  parseTimeZoneBlock(block(zeroInteger, zeroInteger, lastSundayOfOctober, noTransition));
              }),
              "One or more of the parameters is invalid for use in a transition date specification; "
              "month(0), day of week(0), instance(0).");
}

TEST(TimeZoneBlock, TakesWordsAsUnsigned) {
    const std::string hostile = "0000"
                                "0300"
                                "FFFF"
                                "FFFF"
                                "0200"
                                "0000"
                                "0000"
                                "0000";
    EXPECT_EQ(test::textRaisedBy(
                  [&] { parseTimeZoneBlock(block(zeroInteger, zeroInteger, lastSundayOfOctober, hostile)); }),
              "One or more of the parameters is invalid for use in a transition date specification; "
              "month(3), day of week(65535), instance(65535).");
}

TEST(TimeZoneBlock, WrapsAHostileBias) {
    // 2 to the 31 times -60 is 0 in 32 bits.
    EXPECT_EQ(parseTimeZoneBlock(block("00000080", zeroInteger, noTransition, noTransition)).offset(), 0);
    EXPECT_EQ(parseTimeZoneBlock(block("FFFFFF7F", zeroInteger, noTransition, noTransition)).offset(), 60);
}

TEST(DesktopTimeZone, IsBuiltByTheSameSteps) {
    const test::ScopedVariable variable("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    const TimeZone zone = desktopTimeZone();
    EXPECT_EQ(zone.toLocal(TimeStamp(1, 1017536400)), DateTime(2002, 3, 31, 3, 0, 0));
    EXPECT_EQ(zone.toLocal(TimeStamp(1, 1035680400)), DateTime(2002, 10, 27, 2, 0, 0));
}

} // namespace
} // namespace tsr
