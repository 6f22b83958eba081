#include "applications/FreeTimeWeek.h"

#include "support/bytes.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

std::vector<std::uint8_t> written(const FreeTimeWeek& week, std::uint32_t userId) {
    PalmRecordBuffer buffer;
    week.writeTo(buffer, userId);
    return {buffer.data(), buffer.data() + buffer.size()};
}

TEST(FreeTimeWeek, StartsWithoutARecord) {
    const FreeTimeWeek week;
    EXPECT_EQ(week.recordId, 0U);
    EXPECT_EQ(week.crc, 0xFFFFFFFF);
    EXPECT_TRUE(week.slots.none());
}

TEST(FreeTimeWeek, IsAUserADayAndABitmap) {
    FreeTimeWeek week;
    week.start = Date(2002, 2, 4);
    std::string expected = "00 A1 B2 C3 C4 44"; // year 98, month 2, day 4: 1100010 0010 00100
    for (int byte = 0; byte < 84; ++byte) expected += " 00";
    EXPECT_EQ(written(week, 0xA1B2C3), test::bytes(expected));
}

TEST(FreeTimeWeek, PacksTheLowestSlotIntoTheTopBit) {
    FreeTimeWeek week;
    week.start = Date(2002, 2, 4);
    week.slots.set(0);   // byte 0, 0x80
    week.slots.set(9);   // byte 1, 0x40
    week.slots.set(23);  // byte 2, 0x01
    week.slots.set(671); // byte 83, 0x01
    std::string expected = "00 00 00 05 C4 44 80 40 01";
    for (int byte = 3; byte < 83; ++byte) expected += " 00";
    EXPECT_EQ(written(week, 5), test::bytes(expected + " 01"));
}

} // namespace
} // namespace tsr
