#include "records/InfoBlock.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

const std::string begin = "----- Vellum Info -----";
const std::string end = "----- End Vellum Info -----";
const std::string unid = "0123456789abcdef0123456789abcdef";

// A body with this between the markers.
std::string withEntries(const std::string& entries) {
    return "Hi\n\n\n\n\n\n" + begin + '\n' + entries + end + '\n';
}

std::string unidIn(const std::string& text) { return parseInfoBlock(text, "no such text", "").unid; }

TEST(InfoBlock, StandsBehindTheText) {
    InfoBlock block;
    EXPECT_EQ(block.render("Hi"), "Hi\n\n\n\n\n\n----- Vellum Info -----\n----- End Vellum Info -----\n");
    EXPECT_EQ(block.render(""), "\n\n\n\n\n\n----- Vellum Info -----\n----- End Vellum Info -----\n");
    block.addValue("UNID", "0123abcd");
    EXPECT_EQ(block.render("Hi\n"), "Hi\n\n\n\n\n\n\n----- Vellum Info -----\nUNID:0123abcd;\n"
                                    "----- End Vellum Info -----\n");
}

TEST(InfoBlock, HasItsValuesByKeyAndThenInTheirOrder) {
    InfoBlock block;
    block.addValue("b", "2");
    block.addValue("a", "9");
    block.addValue("B", "0"); // keys go by their bytes
    block.addValue("b", "1");
    block.addValue("b", "2"); // a second time is a second value
    block.addValue("c", "");  // ignored
    EXPECT_EQ(block.render(""), "\n\n\n\n\n\n" + begin + "\nB:0;\na:9;\nb:2;\nb:1;\nb:2;\n" + end + '\n');
}

TEST(InfoBlock, CarriesActionsUnseen) {
    InfoBlock block;
    block.setActions({"Accept", "Decline"});
    EXPECT_EQ(block.actions(), (std::vector<std::string>{"Accept", "Decline"}));
    EXPECT_EQ(block.render(""), "\n\n\n\n\n\n" + begin + '\n' + end + '\n');
}

TEST(InfoBlock, GivesTheIdentityBack) {
    InfoBlock block;
    block.addValue("UNID", unid);
    EXPECT_EQ(unidIn(block.render("Come to lunch; bring: food")), unid);
}

TEST(InfoBlock, ReadsEntries) {
    const std::pair<std::string, const char*> rows[] = {
        {"UNID:0123abcd;\n", "0123abcd"},
        {"UNID : 01-23;\n", "0123"},           // letters and digits alone count
        {"\n U-N.I,D\t:\n0\xE4 1\n;\n", "01"}, // those of ASCII
        {"UNID:1;\nUNID:2;\n", "2"},           // the last counts
        {"UNID:1;\nUNID;\n", ""},              // also one without a value
        {"UNID:1;\nother;\n", "1"},            // dropped
        {"a:9;UNID:1;b:8;", "1"},              // line feeds between entries are none
        {"UNID:1\n", "1"},                     // the end marker ends an entry too
        {"UNID:1:2;\n", "12"},                 // in a value another colon is punctuation
        {":UNID:1;\n", ""},                    // the key is empty
        {"unid:1;\n", ""},                     // the key is exact
        {"UNIDs:1;\n", ""},
        {"", ""},
        {";;;", ""},
    };
    for (const auto& [entries, expected] : rows) {
        SCOPED_TRACE(entries);
        EXPECT_EQ(unidIn(withEntries(entries)), expected);
    }
}

TEST(InfoBlock, NeedsBothMarkers) {
    const std::pair<std::string, const char*> rows[] = {
        {"", ""},
        {"UNID:1;", ""},
        {begin, ""},
        {begin + "\nUNID:1;\n", ""},                                // no end
        {begin + "UNID:1;" + end, ""},                              // no line feed behind the start
        {begin + "UNID:1;" + end + '\n', ""},                       // it stands behind the end
        {end + '\n' + begin + "\nUNID:1;\n", ""},                   // the end comes first
        {begin + " UNID:1;\nUNID:2;\n" + end, "2"},                 // the rest of the start's line isn't read
        {begin + "\nUNID:1;\n" + begin + "\nUNID:2;\n" + end, "1"}, // the second is part of a key
        {"Hi\n" + begin + "\n" + end + begin + "\nUNID:1;\n" + end, ""}, // the first block counts
        {"---- Vellum Info -----\nUNID:1;\n" + end, ""},
    };
    for (const auto& [text, expected] : rows) {
        SCOPED_TRACE(text);
        EXPECT_EQ(unidIn(text), expected);
    }
}

TEST(InfoBlock, AReplyEndsWhereTheQuotedTextBegins) {
    const std::string block = withEntries("UNID:1;\n");
    const struct {
        std::string text;
        const char* quoteMark;
        std::string body;
    } rows[] = {
        {"Yes\nAnn wrote:\n" + block, "Ann", "Yes\n"},
        {"Ann, yes\nAnn wrote:\n" + block, "Ann", ""}, // the first place counts
        {"Yes\n" + block, "Ann", "Yes\n" + block},     // nothing quoted: the block stays
        {"Yes\nAnn wrote:\n" + block, "", ""},         // an empty mark is everywhere
        {"Yes\nann wrote:\n" + block, "Ann", "Yes\nann wrote:\n" + block},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        for (const char* const signature : {"", "Bob"}) { // never used
            const ParsedBody parsed = parseInfoBlock(row.text, row.quoteMark, signature);
            EXPECT_EQ(parsed.body, row.body);
            EXPECT_EQ(parsed.unid, "1");
        }
    }
}

TEST(InfoBlock, AMessageOfItsOwnGetsTheSignature) {
    const struct {
        std::string text;
        const char* quoteMark;
        const char* signature;
        std::string body;
    } rows[] = {
        {"Hi", "Ann", "", "Hi"},
        {"Hi Ann", "Ann", "", "Hi Ann"},
        {"Hi", "Ann", "Bob", "Hi\n\nBob"},
        {"", "Ann", "Bob", "\n\nBob"},
        {"Hi Ann, hi Ann", "Ann", "Bob", "Hi \n\nBob\n\nAnn, hi Ann"},
        {"Hi", "", "Bob", "\n\nBob\n\nHi"}, // an empty mark is at the start
        {withEntries("UNID:;\n"), "Ann", "Bob", withEntries("UNID:;\n") + "\n\nBob"}, // the block stays
        {begin + "\nUNID:1;\n", "Ann", "Bob", begin + "\nUNID:1;\n\n\nBob"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const ParsedBody parsed = parseInfoBlock(row.text, row.quoteMark, row.signature);
        EXPECT_EQ(parsed.body, row.body);
        EXPECT_EQ(parsed.unid, "");
    }
}

} // namespace
} // namespace tsr
