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

// Bit by bit, as the parameters tell it.
std::uint16_t definition(const std::vector<std::uint8_t>& data) {
    std::uint32_t value = 0xFFFF;
    for (const std::uint8_t byte : data) {
        value ^= static_cast<std::uint32_t>(byte) << 8;
        for (int bit = 0; bit < 8; ++bit) value = (value << 1 ^ (value & 0x8000 ? 0x1021u : 0u)) & 0xFFFF;
    }
    return static_cast<std::uint16_t>(value);
}

TEST(Crc16, IsThatOfItsDefinitionForEveryLength) {
    std::vector<std::uint8_t> data;
    for (std::uint32_t length = 0; length < 1000; ++length) {
        ASSERT_EQ(crc16(data.data(), data.size()), definition(data)) << length;
        data.push_back(static_cast<std::uint8_t>(length * 167 + length / 7));
    }
}

} // namespace
} // namespace tsr
