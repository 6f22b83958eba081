#include "server/wireText.h"

#include <clocale>
#include <string>

#include "support/bytes.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

std::string narrowed(const std::string& hex) {
    const std::vector<std::uint8_t> wide = test::bytes(hex);
    return narrowText(wide.data(), wide.size() / 2);
}

std::string widened(const std::string& text) {
    WireBytes bytes;
    appendWide(bytes, text.data(), text.size());
    return test::hexText({bytes.begin(), bytes.end()});
}

TEST(WireText, AByteIsTheUnitOfEqualValue) {
    EXPECT_EQ(widened("aB"), "61 00 42 00");
    EXPECT_EQ(widened("\xE9\xFF"), "E9 00 FF 00");
    EXPECT_EQ(narrowed("61 00 42 00"), "aB");
    EXPECT_EQ(narrowed("E9 00 FF 00"), "\xE9\xFF");
    EXPECT_EQ(widened(""), "");
    EXPECT_EQ(narrowed(""), "");
}

TEST(WireText, EveryByteGoesBothWays) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    WireBytes bytes;
    appendWide(bytes, all.data(), all.size());
    EXPECT_EQ(narrowText(bytes.data(), all.size()), all);
}

TEST(WireText, DoesNotCareForTheLocale) {
    const std::string old = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C.utf8");
    EXPECT_EQ(widened("\xC3\xA9"), "C3 00 A9 00");
    EXPECT_EQ(narrowed("E9 00"), "\xE9");
    std::setlocale(LC_ALL, old.c_str());
}

TEST(WireText, AUnitAboveFFBecomesFortyNineMarks) {
    EXPECT_EQ(narrowed("AC 20"), std::string(49, '?'));
    EXPECT_EQ(narrowed("00 01 FF FF"), std::string(98, '?')); // also half of a pair
    EXPECT_EQ(narrowed("61 00 AC 20 62 00"), "a" + std::string(49, '?') + "b");
}

TEST(WireText, EndsAtAZeroUnitAnywhere) {
    for (const std::size_t units :
         {0u, 1u, 31u, 32u, 33u, 255u, 256u, 257u, 1023u, 1024u, 1025u, 2100u, 5000u}) {
        SCOPED_TRACE(units);
        std::string expected;
        for (std::size_t i = 0; i < units; ++i) expected += static_cast<char>('a' + i % 23);
        WireBytes wide;
        appendWide(wide, expected.data(), units);
        std::string text = "old";
        EXPECT_EQ(narrowUntilZero(wide.data(), units, text), units); // none
        EXPECT_EQ(text, expected);
        const std::string behind = std::string(1, '\0') + std::string(1500, 'x');
        appendWide(wide, behind.data(), behind.size());
        EXPECT_EQ(narrowUntilZero(wide.data(), units + behind.size(), text), units);
        EXPECT_EQ(text, expected);
    }
}

TEST(WireText, DoesNotTakeTwoZeroBytesOfTwoUnitsForAZeroUnit) {
    // 0x0100 and then 0x0001: the zeros of both lie next to each other in the other order.
    std::vector<std::uint8_t> wide;
    for (int i = 0; i < 2000; ++i) {
        const std::vector<std::uint8_t> pair = {1, 0, 0, 1};
        wide.insert(wide.end(), pair.begin(), pair.end());
    }
    std::string text;
    EXPECT_EQ(narrowUntilZero(wide.data(), 4000, text), 4000u);
    EXPECT_EQ(text.size(), 2000u + 2000u * 49u);
}

TEST(WireText, MarksAUnitAnywhereInALongText) {
    const std::size_t units = 3000;
    for (const std::size_t place : {0u, 300u, 1023u, 1024u, 2047u, 2999u}) {
        std::string expected(units, 'a');
        WireBytes wide;
        appendWide(wide, expected.data(), units);
        appendWide(wide, "\0b", 2);
        wide[2 * place + 1] = 0x20;
        std::string text;
        EXPECT_EQ(narrowUntilZero(wide.data(), units + 2, text), units);
        EXPECT_EQ(text, expected.replace(place, 1, std::string(49, '?')));
        EXPECT_EQ(narrowText(wide.data(), units), expected);
    }
}

TEST(WireText, AppendsBehindWhatIsThere) {
    WireBytes bytes;
    appendWide(bytes, "a", 1);
    appendWide(bytes, "b", 1);
    EXPECT_EQ(test::hexText({bytes.begin(), bytes.end()}), "61 00 62 00");
}

} // namespace
} // namespace tsr
