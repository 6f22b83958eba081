#include "records/phoneLabels.h"

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(PhoneLabels, EachHasALetter) {
    const std::pair<std::int32_t, char> rows[] = {
        {0, 'W'}, {1, 'H'}, {2, 'F'}, {3, 'O'}, {4, 'E'}, {5, 'm'}, {6, 'P'}, {7, 'M'},
    };
    for (const auto& [label, letter] : rows) {
        SCOPED_TRACE(label);
        EXPECT_EQ(phoneLetter(label), letter);
        EXPECT_EQ(labelOfPhoneLetter(letter), label);
        EXPECT_EQ(checkedPhoneLabel(label), label);
    }
}

TEST(PhoneLabels, ThereAreNoOthers) {
    const std::pair<std::int32_t, const char*> rows[] = {
        {8, "The phone label identifier (8) is invalid."},
        {15, "The phone label identifier (15) is invalid."},
        {-1, "The phone label identifier (-1) is invalid."},
    };
    for (const auto& [label, text] : rows) {
        SCOPED_TRACE(label);
        EXPECT_EQ(test::textRaisedBy([&] { phoneLetter(label); }), text);
        EXPECT_EQ(test::textRaisedBy([&] { checkedPhoneLabel(label); }), text);
    }
    for (const char letter : {'w', 'h', 'X', '\0', '\xFF'}) EXPECT_FALSE(labelOfPhoneLetter(letter));
}

} // namespace
} // namespace tsr
