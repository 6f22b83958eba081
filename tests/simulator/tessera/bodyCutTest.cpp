#include "tessera/bodyCut.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

std::string lineOf(const std::string& count) {
    return "\n----- " + count + " more characters are in Notes -----\n";
}

TEST(BodyCut, TellsHowMuchIsMissing) {
    const struct {
        std::string text;
        std::size_t limit;
        std::string cut;
    } rows[] = {
        {"", 0, ""},
        {"abc", 3, "abc"},
        {"abcd", 3, "abc" + lineOf("1")},
        {"abc", 0, lineOf("3")},
        {"a\r\nb", 2, "a" + lineOf("3")}, // a line end stays whole
        {"a\r\nb", 3, "a\r\n" + lineOf("1")},
        {"\xC3\xA4\xC3\xB6", 1, "\xC3\xA4" + lineOf("1")}, // characters, not bytes
        {"a\xF0\x9F\x98\x80", 2, "a" + lineOf("2")},       // one of two units
        {"a\xF0\x9F\x98\x80", 3, "a\xF0\x9F\x98\x80"},
    };
    for (const auto& row : rows) EXPECT_EQ(cutText(row.text, row.limit), row.cut) << row.text << row.limit;
}

TEST(BodyCut, PutsBackWhatIsMissing) {
    const std::string whole = "0123456789";
    const std::pair<std::string, std::string> rows[] = {
        {"0123" + lineOf("6"), "0123456789"}, // as it was given
        {"ABC" + lineOf("6"), "ABC456789"},
        {"ABC" + lineOf("6") + "\n\n\n", "ABC456789"}, // line feeds that every message gains
        {lineOf("6"), "456789"},
        {"----- 6 more characters are in Notes -----", "456789"},
        {"ABC" + lineOf("6") + "Pat", "ABC456789\nPat"},                     // what was added stays
        {"ABC" + lineOf("2") + lineOf("6"), "ABC" + lineOf("2") + "456789"}, // the last line counts
        {"ABC" + lineOf("99"), "ABC0123456789"},
        {"ABC" + lineOf("0"), "ABC"},
    };
    for (const auto& [sent, completed] : rows) EXPECT_EQ(completedText(sent, whole), completed) << sent;
    EXPECT_EQ(completedText(lineOf("1"), "a\xF0\x9F\x98\x80"), ""); // half a pair is none
    EXPECT_EQ(completedText(lineOf("2"), "a\xF0\x9F\x98\x80"), "\xF0\x9F\x98\x80");
}

TEST(BodyCut, FindsNoLineInOtherTexts) {
    for (const char* const text :
         {"", "ABC", "----- 6 more", " more characters are in Notes -----",
          "----- more characters are in Notes -----", "-----  more characters are in Notes -----",
          "----- x more characters are in Notes -----",
          "----- 4294967296 more characters are in Notes -----"})
        EXPECT_FALSE(completedText(text, "0123456789").has_value()) << text;
}

} // namespace
} // namespace tsr
