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

TEST(WireText, FindsAZeroUnitAnywhere) {
    for (std::size_t units = 0; units < 300; ++units) {
        // 0x0100 and 0x0001 have a zero byte each, next to each other.
        std::vector<std::uint8_t> wide;
        for (std::size_t i = 0; i < units; ++i) {
            wide.push_back(i % 2 == 0 ? 0 : 1);
            wide.push_back(i % 2 == 0 ? 1 : 0);
        }
        EXPECT_EQ(unitsBeforeZero(wide.data(), units), units);
        wide.insert(wide.end(), 6, 0);
        EXPECT_EQ(unitsBeforeZero(wide.data(), units + 3), units);
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
