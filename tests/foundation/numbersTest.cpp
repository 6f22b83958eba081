#include "foundation/numbers.h"

#include <string>
#include <utility>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(ParseUnsigned, TakesDigits) {
    const std::pair<const char*, std::uint32_t> rows[] = {
        {"0", 0},          {"007", 7}, {"4294967295", 4294967295u}, {"4294967296", 0}, // wraps
        {"4294967297", 1},
    };
    for (const auto& [text, value] : rows) EXPECT_EQ(parseUnsigned(text), value) << text;
}

TEST(ParseUnsigned, RefusesAnythingElse) {
    for (const std::string text : {"", " 1", "-1", "+1", "1a", "1 ", "0x1", "/", ":"}) {
        EXPECT_EQ(test::textRaisedBy([&] { parseUnsigned(text); }),
                  "Cannot convert string '" + text + "' to unsigned.");
    }
}

std::uint32_t parseWide(const std::u16string& text) { return parseWideUnsigned(text.data(), text.size()); }

TEST(ParseWideUnsigned, TakesWhatAStreamTakes) {
    const std::pair<const char16_t*, std::uint32_t> rows[] = {
        {u"00000040", 40},
        {u"12ab", 12}, // rubbish behind the digits is ignored
        {u"  12", 12},
        {u"\t\n 7", 7},
        {u"+5", 5},
        {u"-1", 4294967295u}, // negated in 32 bits
        {u"-4294967295", 1},
        {u"-0", 0},
        {u"\v\f\r8", 8},
        {u"4294967295", 4294967295u},
        {u"000000000000000000000000012", 12},
        {u"0012", 12},   // decimal, not octal
        {u"1,000", 1},   // no grouping
        {u"1\u0660", 1}, // a digit of another script is none
    };
    for (const auto& [text, value] : rows) EXPECT_EQ(parseWide(text), value) << value;
}

TEST(ParseWideUnsigned, StopsAtTheCount) { EXPECT_EQ(parseWideUnsigned(u"123456", 4), 1234u); }

TEST(ParseWideUnsigned, RefusesWhatHasNoNumber) {
    for (const char16_t* text : {u"", u"    ", u"abcd", u"-", u"+", u"4294967296", u"-4294967296",
                                 u"99999999999999999999999", u"+-1", u"- 1", u"\u00A01", u"\u0661"}) {
        EXPECT_EQ(test::textRaisedBy([&] { parseWide(text); }), "Cannot convert wide string to unsigned.");
    }
    EXPECT_EQ(test::textRaisedBy([] { parseWide(std::u16string(4, u'\0')); }),
              "Cannot convert wide string to unsigned.");
}

TEST(ToDecimal, HasNoPadding) {
    EXPECT_EQ(toDecimal(0), "0");
    EXPECT_EQ(toDecimal(4294967295u), "4294967295");
}

} // namespace
} // namespace tsr
