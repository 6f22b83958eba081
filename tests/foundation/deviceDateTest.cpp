#include "foundation/deviceDate.h"

#include <string>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

// year - 1904 x 512 + month x 32 + day
constexpr std::uint16_t packed(std::uint32_t year, std::uint32_t month, std::uint32_t day) {
    return static_cast<std::uint16_t>((year - 1904) * 512 + month * 32 + day);
}

TEST(DeviceDate, GoesBothWays) {
    EXPECT_EQ(packDate(Date(2002, 2, 6)), 0xC446); // 1100010 0010 00110
    EXPECT_EQ(unpackDate(0xC446), Date(2002, 2, 6));
    EXPECT_EQ(unpackDate(packed(1993, 1, 1)), Date(1993, 1, 1)); // the first that is taken
    EXPECT_EQ(unpackDate(packed(2031, 12, 31)), Date(2031, 12, 31));
}

TEST(DeviceDate, AYearAbove2031LosesItsTop) {
    EXPECT_EQ(packDate(Date(2032, 1, 1)), packed(1904, 1, 1));
    EXPECT_EQ(packDate(Date(1903, 1, 1)), packed(2031, 1, 1));
}

TEST(DeviceDate, RefusesDaysThatDoNotExist) {
    EXPECT_EQ(test::textRaisedBy([] { unpackDate(packed(2002, 13, 1)); }),
              "The specified year(2002), month(13) and day(1) do not form a valid date.");
    EXPECT_EQ(test::textRaisedBy([] { unpackDate(0); }),
              "The specified year(1904), month(0) and day(0) do not form a valid date.");
    EXPECT_EQ(test::textRaisedBy([] { unpackDate(0xFFFF); }),
              "The specified year(2031), month(15) and day(31) do not form a valid date.");
}

TEST(DeviceDate, RefusesDaysBefore1993) {
    EXPECT_EQ(test::textRaisedBy([] { unpackDate(packed(1992, 12, 31)); }),
              "Dates prior to 1993 are not supported (bad date is 12/31/92).");
}

} // namespace
} // namespace tsr
