#include <sstream>
#include <string>

#include "foundation/Dbid.h"
#include "foundation/ItemId.h"
#include "foundation/ItemVersion.h"
#include "foundation/Unid.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

const std::string dbidText = "0123456789abcdef";
const std::string unidText = "00112233445566778899aabbccddeeff";

// A text that is too short runs into its terminator.
const std::string terminatorRefused =
    std::string("The character '") + '\0' + "' is not valid in a hexadecimal string.";

template <typename Value>
std::string printed(const Value& value) {
    std::ostringstream stream;
    stream << std::uppercase << value;
    return stream.str();
}

TEST(Dbid, TheDefaultIsNull) {
    EXPECT_TRUE(Dbid().isNull());
    EXPECT_EQ(Dbid().text(), "0000000000000000");
    EXPECT_FALSE(Dbid("0000000000000001").isNull());
    EXPECT_FALSE(Dbid("0000000100000000").isNull());
}

TEST(Dbid, GoesBothWays) {
    EXPECT_EQ(Dbid(dbidText).words(), (Dbid::Words{0x01234567, 0x89ABCDEF}));
    EXPECT_EQ(Dbid(Dbid::Words{0x01234567, 0x89ABCDEF}).text(), dbidText);
    EXPECT_EQ(printed(Dbid(dbidText)), dbidText);
}

TEST(Dbid, UppercaseComesBackLowercase) { EXPECT_EQ(Dbid("0123456789ABCDEF").text(), dbidText); }

TEST(Dbid, RefusesOtherLengthsAndCharacters) {
    const auto refusal = [](const std::string& text) {
        return "'" + text + "' is an invalid representation of a DBID.";
    };
    for (const std::string text : {"", "0123456789abcde", "0123456789abcdef0", "0123456789abcdeg"})
        EXPECT_EQ(test::textRaisedBy([&] { Dbid{text}; }), refusal(text));
    EXPECT_EQ(test::causeRaisedBy([] { Dbid{std::string("0123456789abcde")}; }), terminatorRefused);
    EXPECT_EQ(test::causeRaisedBy([] { Dbid{std::string("0123456789abcdeg")}; }),
              "The character 'g' is not valid in a hexadecimal string.");
    EXPECT_EQ(test::causeRaisedBy([] { Dbid{dbidText + "0"}; }), "no cause");
}

TEST(Dbid, SortsByUnsignedWords) {
    EXPECT_LT(Dbid("00000001ffffffff"), Dbid("0000000200000000"));
    EXPECT_LT(Dbid("7fffffff00000000"), Dbid("8000000000000000"));
    EXPECT_LT(Dbid("0000000000000001"), Dbid("0000000000000002"));
    EXPECT_EQ(Dbid(dbidText), Dbid(dbidText));
}

TEST(Unid, GoesBothWays) {
    EXPECT_EQ(Unid(unidText).words(), (Unid::Words{0x00112233, 0x44556677, 0x8899AABB, 0xCCDDEEFF}));
    EXPECT_EQ(Unid("00112233445566778899AABBCCDDEEFF").text(), unidText);
    EXPECT_EQ(Unid().text(), std::string(32, '0'));
    EXPECT_EQ(printed(Unid(unidText)), unidText);
}

TEST(Unid, RefusesOneDigitLessAndOneMore) {
    const std::string shortText = unidText.substr(1);
    const std::string longText = unidText + "0";
    EXPECT_EQ(test::textRaisedBy([&] { Unid{shortText}; }),
              "'" + shortText + "' is an invalid representation of a UNID.");
    EXPECT_EQ(test::causeRaisedBy([&] { Unid{shortText}; }), terminatorRefused);
    EXPECT_EQ(test::textRaisedBy([&] { Unid{longText}; }),
              "'" + longText + "' is an invalid representation of a UNID.");
    EXPECT_EQ(test::causeRaisedBy([&] { Unid{longText}; }), "no cause");
}

TEST(Unid, SortsByUnsignedWords) {
    EXPECT_LT(Unid("000000000000000000000000ffffffff"), Unid("00000000000000000000000100000000"));
    EXPECT_LT(Unid("7fffffffffffffffffffffffffffffff"), Unid("80000000000000000000000000000000"));
}

TEST(ItemId, IsBuiltFromAndGivesTexts) {
    const ItemId id(dbidText, unidText);
    EXPECT_EQ(id.dbidText(), dbidText);
    EXPECT_EQ(id.unidText(), unidText);
    EXPECT_EQ(id, ItemId(Dbid(dbidText), Unid(unidText)));
}

TEST(ItemId, SortsByDatabaseFirst) {
    const Dbid low("0000000000000001");
    const Dbid high("0000000000000002");
    EXPECT_LT(ItemId(low, Unid(unidText)), ItemId(high, Unid()));
    EXPECT_LT(ItemId(low, Unid()), ItemId(low, Unid(unidText)));
}

TEST(ItemVersion, HasASequenceNumber) {
    const ItemVersion version(dbidText, unidText, "42");
    EXPECT_EQ(version.id(), ItemId(dbidText, unidText));
    EXPECT_EQ(version.sequenceNumber(), 42u);
    EXPECT_EQ(test::textRaisedBy([] { ItemVersion(dbidText, unidText, "4x"); }),
              "Cannot convert string '4x' to unsigned.");
}

} // namespace
} // namespace tsr
