#include "foundation/lines.h"

#include <string>
#include <utility>

#include "gtest/gtest.h"

namespace tsr {
namespace {

using List = std::vector<std::string>;

TEST(SplitOn, LeavesEmptyPiecesOut) {
    EXPECT_EQ(splitOn("a;b", ';'), (List{"a", "b"}));
    EXPECT_EQ(splitOn(";;a;;bc;", ';'), (List{"a", "bc"}));
    EXPECT_EQ(splitOn("", ';'), List());
    EXPECT_EQ(splitOn("whole", ';'), List{"whole"});
    EXPECT_EQ(splitLines("\n\n"), List());
    EXPECT_EQ(splitLines("a\r\nb"), (List{"a\r", "b"}));
}

TEST(JoinLines, LeavesEmptyStringsOut) {
    EXPECT_EQ(joinLines({"a", "", "b"}), "a\nb");
    EXPECT_EQ(joinLines({"", "a", ""}), "a");
    EXPECT_EQ(joinLines({}), "");
}

TEST(NormalizeLineEnds, ReplacesEachCarriageReturnWithItsLineFeed) {
    const std::pair<const char*, const char*> rows[] = {
        {"\r\r\n", "\n\n"}, {"\n\r", "\n\n"}, {"a\r\nb\rc\nd", "a\nb\nc\nd"}, {"", ""}, {"\r", "\n"},
    };
    for (const auto& [text, result] : rows) EXPECT_EQ(normalizeLineEnds(text), result);
    EXPECT_EQ(normalizeLineEnds("a\r\nb\nc", ' '), "a b\nc"); // a lone line feed stays
}

TEST(FirstLine, SkipsLineFeedsAtTheStart) {
    EXPECT_EQ(firstLine("\n\nab\nc"), "ab");
    EXPECT_EQ(firstLine("ab"), "ab");
    EXPECT_EQ(firstLine("ab\n"), "ab");
    EXPECT_EQ(firstLine("\n\n"), "");
    EXPECT_EQ(firstLine(""), "");
}

TEST(RemoveFirstLine, CountsFromTheStartOfTheText) {
    const std::pair<const char*, const char*> rows[] = {
        {"\n\nab\nc", "b\nc"},                           // three characters go
        {"ab\nc", "c"},        {"ab\n", ""}, {"ab", ""}, // the line runs to the end: all goes
        {"\n\nab", ""},                                  // the same
        {"\n\n", ""},          {"", ""},
    };
    for (const auto& [before, after] : rows) {
        std::string text = before;
        removeFirstLine(text);
        EXPECT_EQ(text, after);
    }
}

TEST(LineFeedsToCommas, ChangesNothingElse) {
    EXPECT_EQ(lineFeedsToCommas("a\nb\r\n\nc"), "a,b\r,,c");
    EXPECT_EQ(lineFeedsToCommas(""), "");
}

} // namespace
} // namespace tsr
