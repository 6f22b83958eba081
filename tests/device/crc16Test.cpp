#include "device/crc16.h"

#include "support/bytes.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;

std::uint16_t crcOf(const std::string& pairs) {
    const std::vector<std::uint8_t> data = bytes(pairs);
    return crc16(data.data(), data.size());
}

TEST(Crc16, HasTheCheckValueOfItsParameters) {
    EXPECT_EQ(crcOf("31 32 33 34 35 36 37 38 39"),
              0x29B1); // "123456789": the check value of CRC-16/CCITT-FALSE
}

TEST(Crc16, OfNothingIsTheInitialValue) { EXPECT_EQ(crc16(nullptr, 0), 0xFFFF); }

TEST(Crc16, TakesTheTopBitFirst) {
    // 0xFFFF takes eight steps of the polynomial 0x1021 for a zero byte: 0xE1F0, the published value.
    EXPECT_EQ(crcOf("00"), 0xE1F0);
    EXPECT_EQ(crcOf("41"), 0xB915); // "A"
}

TEST(Crc16, SeesTheOrderOfBytes) { EXPECT_NE(crcOf("01 02"), crcOf("02 01")); }

} // namespace
} // namespace tsr
