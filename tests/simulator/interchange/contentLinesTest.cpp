#include "interchange/contentLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interchange/InterchangeError.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(ContentLines, HaveANameParametersAndAValue) {
    const auto lines = readContentLines("item1.tel;type=work,\"a:b\";PREF=1;fax:555;1:2\r\nnote:\r\n");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].name, "TEL"); // in capitals, without its group
    EXPECT_THAT(lines[0].parameters, ElementsAre(Pair("TYPE", "work"), Pair("TYPE", "a:b"), Pair("PREF", "1"),
                                                 Pair("TYPE", "FAX"))); // one without a name, as of old
    EXPECT_EQ(lines[0].value, "555;1:2");
    EXPECT_EQ(lines[0].number, 1u);
    EXPECT_EQ(lines[1].value, "");
    EXPECT_EQ(lines[1].number, 2u);
}

TEST(ContentLines, ArePutTogetherWhereTheyWereFolded) {
    const auto lines = readContentLines("NOTE:one\r\n  two\n\tthree\n\nFN:x"); // CR LF, LF, no end
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].value, "one twothree");
    EXPECT_EQ(lines[1].value, "x");
    EXPECT_EQ(lines[1].number, 5u);
    EXPECT_THAT(readContentLines(""), IsEmpty());
}

TEST(ContentLines, WithoutAValueAreRefused) {
    for (const char* text : {"NOTE", "NOTE;TYPE=a", "NOTE;TYPE=\"a:b", "NOTE;TYPE", " "}) {
        try {
            readContentLines(std::string("FN:x\n\n") + text + "\n");
            if (text != std::string(" ")) ADD_FAILURE() << text; // a blank alone continues the line above
        } catch (const InterchangeError& error) {
            EXPECT_STREQ(error.what(), "line 3 has no value") << text;
        }
    }
}

TEST(ContentLines, AreFoldedAfter75Bytes) {
    EXPECT_EQ(foldedLine(std::string(75, 'a')), std::string(75, 'a') + "\r\n");
    EXPECT_EQ(foldedLine(std::string(76, 'a')), std::string(75, 'a') + "\r\n a\r\n");
    EXPECT_EQ(foldedLine(std::string(75 + 75, 'a')),
              std::string(75, 'a') + "\r\n " + std::string(74, 'a') + "\r\n a\r\n");
    // The two bytes of a character stay together.
    EXPECT_EQ(foldedLine(std::string(74, 'a') + "\xC3\xBC"), std::string(74, 'a') + "\r\n \xC3\xBC\r\n");
}

TEST(ContentLines, EscapeWhatSeparates) {
    EXPECT_EQ(escaped("a,b;c\\d\ne:f"), "a\\,b\\;c\\\\d\\ne:f");
    EXPECT_EQ(unescaped("a\\,b\\;c\\\\d\\ne\\Nf\\"), "a,b;c\\d\ne\nf\\");
    EXPECT_THAT(splitValue("a;b\\;c;;d,e", ';'), ElementsAre("a", "b;c", "", "d,e"));
    EXPECT_THAT(splitValue("", ';'), ElementsAre(""));
}

} // namespace
} // namespace tsr
