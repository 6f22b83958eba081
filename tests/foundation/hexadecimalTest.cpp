#include "foundation/hexadecimal.h"

#include <string>
#include <vector>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string refusal(char digit) {
    return std::string("The character '") + digit + "' is not valid in a hexadecimal string.";
}

TEST(HexDigit, TakesBothCases) {
    const std::string lower = "0123456789abcdef";
    const std::string upper = "0123456789ABCDEF";
    for (std::uint32_t value = 0; value < 16; ++value) {
        EXPECT_EQ(hexDigit(lower[value]), value);
        EXPECT_EQ(hexDigit(upper[value]), value);
    }
}

TEST(HexDigit, RefusesTheNeighboursOfDigits) {
    for (const char character : {'/', ':', '@', 'G', '`', 'g', ' ', '\0', '\xE9'})
        EXPECT_EQ(test::textRaisedBy([&] { hexDigit(character); }), refusal(character));
}

TEST(ParseHexWord, TakesEightDigitsFromThePositionOn) {
    std::uint32_t word = 1;
    EXPECT_EQ(parseHexWord("0012aBcD", 0, word), 8u);
    EXPECT_EQ(word, 0x0012ABCDu);
    EXPECT_EQ(parseHexWord("xx80000001yy", 2, word), 10u);
    EXPECT_EQ(word, 0x80000001u);
}

TEST(ParseHexWord, AShortTextRunsIntoItsTerminator) {
    std::uint32_t word = 0;
    EXPECT_EQ(test::textRaisedBy([&] { parseHexWord("1234567", 0, word); }), refusal('\0'));
    EXPECT_EQ(test::textRaisedBy([&] { parseHexWord("12345678", 8, word); }), refusal('\0'));
}

TEST(ToHexWord, HasEightLowercaseDigits) {
    EXPECT_EQ(toHexWord(0), "00000000");
    EXPECT_EQ(toHexWord(0xABC), "00000abc");
    EXPECT_EQ(toHexWord(0xFEDCBA98), "fedcba98");
}

TEST(HexToBinary, TakesTheHighHalfFirst) {
    Bytes bytes = {9};
    hexToBinary("1fA0", bytes);
    EXPECT_EQ(bytes, (Bytes{0x1F, 0xA0}));
    hexToBinary("", bytes);
    EXPECT_EQ(bytes, Bytes());
}

TEST(HexToBinary, AFailureLeavesTheBytes) {
    Bytes bytes = {9};
    EXPECT_EQ(test::textRaisedBy([&] { hexToBinary("1", bytes); }),
              "Cannot convert hexadecimal string to binary; the length (1) must be even.");
    EXPECT_EQ(test::textRaisedBy([&] { hexToBinary("zy", bytes); }), refusal('z'));
    EXPECT_EQ(test::textRaisedBy([&] { hexToBinary("00112g", bytes); }), refusal('g'));
    EXPECT_EQ(bytes, Bytes{9});
}

TEST(BinaryToHex, HasTwoLowercaseDigitsAByte) {
    EXPECT_EQ(binaryToHex({0x00, 0x0A, 0xFF}), "000aff");
    EXPECT_EQ(binaryToHex({}), "");
}

} // namespace
} // namespace tsr
