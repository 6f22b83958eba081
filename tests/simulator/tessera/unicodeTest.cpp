#include "tessera/unicode.h"

#include <utility>

#include <gtest/gtest.h>

#include "tessera/TesseraError.h"

namespace tsr {
namespace {

TEST(Unicode, GoesBothWays) {
    const std::pair<const char*, std::u16string> rows[] = {
        {"", u""},
        {"Milk", u"Milk"},
        {"\xC3\xBC", u"\u00FC"},               // a narrow byte of the wire
        {"\xE2\x82\xAC", u"\u20AC"},           // three bytes, one unit
        {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"}, // four bytes, two units
    };
    for (const auto& [utf8, units] : rows) {
        SCOPED_TRACE(utf8);
        EXPECT_EQ(toUtf16(utf8), units);
        EXPECT_EQ(toUtf8(units), utf8);
    }
}

TEST(Unicode, RefusesBrokenUtf8) {
    for (const char* text : {"\x80", "\xC3", "\xC3(", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                             "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "a\xE2\x82"}) {
        EXPECT_THROW(toUtf16(text), TesseraError) << text;
    }
}

TEST(Unicode, RefusesUnpairedSurrogates) {
    for (const std::u16string units : {u"\xD83D", u"\xDE00", u"\xD83D\xD83D\xDE00", u"\xD83D!"}) {
        EXPECT_THROW(toUtf8(units), TesseraError);
    }
}

TEST(Unicode, KnowsPlainText) {
    EXPECT_TRUE(isPlainText("M\xC3\xBCller\tand\nsons"));
    EXPECT_FALSE(isPlainText(std::string("a\0b", 3)));
    EXPECT_FALSE(isPlainText("\x1B[2J")); // would act on the terminal that shows it
    EXPECT_FALSE(isPlainText("\x7F"));
    EXPECT_FALSE(isPlainText("\xFC"));
}

TEST(Unicode, HasLowerCaseLettersForThoseOfAHandheld) {
    // The last ones are the multiplication sign, the sharp s and a letter beyond the first 256 characters.
    EXPECT_EQ(toLowerCase("AZ az [09] \xC3\x80\xC3\x9E \xC3\x97\xC3\x9F\xC4\x80"),
              "az az [09] \xC3\xA0\xC3\xBE \xC3\x97\xC3\x9F\xC4\x80");
}

} // namespace
} // namespace tsr
