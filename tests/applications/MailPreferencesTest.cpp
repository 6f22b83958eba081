#include "applications/MailPreferences.h"

#include "support/bytes.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;

MailPreferences preferencesOf(const std::string& pairs) {
    PalmRecordBuffer buffer;
    const auto data = test::bytes(pairs);
    buffer.appendBytes(data.data(), data.size());
    return MailPreferences(buffer);
}

TEST(MailPreferences, HasDefaultsAtFirst) {
    const MailPreferences preferences;
    EXPECT_EQ(preferences.filterType, MailPreferences::All);
    EXPECT_EQ(preferences.filterTo, "");
    EXPECT_EQ(preferences.filterFrom, "");
    EXPECT_EQ(preferences.filterSubject, "");
    EXPECT_TRUE(preferences.getHigh);
    EXPECT_TRUE(preferences.filterContaining);
    EXPECT_EQ(preferences.truncateLength, 4000u);
    EXPECT_EQ(preferences.selectionFormula(), "");
}

TEST(MailPreferences, TakesItsFields) {
    // Filter; both flags; one byte that isn't read; 8000; "to", "fr", "su"
    const MailPreferences preferences = preferencesOf("02 01 01 FF 1F 40 74 6F 00 66 72 00 73 75 00");
    EXPECT_EQ(preferences.filterType, MailPreferences::Filter);
    EXPECT_TRUE(preferences.getHigh);
    EXPECT_TRUE(preferences.filterContaining);
    EXPECT_EQ(preferences.truncateLength, 8000u);
    EXPECT_EQ(preferences.filterTo, "to");
    EXPECT_EQ(preferences.filterFrom, "fr");
    EXPECT_EQ(preferences.filterSubject, "su");
}

TEST(MailPreferences, AFlagIsAnythingButZero) {
    const struct {
        const char* pairs;
        bool getHigh;
        bool filterContaining;
    } rows[] = {
        {"00 00 00 01 00 00 00 00 00", false, false},
        {"00 80 00 00 00 00 00 00 00", true, false},
        {"00 00 02 00 00 00 00 00 00", false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pairs);
        EXPECT_EQ(preferencesOf(row.pairs).getHigh, row.getHigh);
        EXPECT_EQ(preferencesOf(row.pairs).filterContaining, row.filterContaining);
        EXPECT_EQ(preferencesOf(row.pairs).truncateLength, 0u);
    }
}

TEST(MailPreferences, MayHaveMoreBehindTheFilters) {
    EXPECT_EQ(preferencesOf("03 01 01 00 FF FF 00 00 73 00 61 62").truncateLength, 65535u);
    EXPECT_EQ(preferencesOf("03 01 01 00 FF FF 00 00 73 00 61 62").filterSubject, "s");
}

TEST(MailPreferences, KnowsFourTypesOfFilter) {
    const std::pair<const char*, std::uint32_t> rows[] = {
        {"00", MailPreferences::All},
        {"01", MailPreferences::SendOnly},
        {"02", MailPreferences::Filter},
        {"03", MailPreferences::Unread},
    };
    for (const auto& [type, expected] : rows)
        EXPECT_EQ(preferencesOf(std::string(type) + " 01 01 00 0F A0 00 00 00").filterType, expected);
    EXPECT_EQ(textRaisedBy([] { preferencesOf("04 01 01 00 0F A0 00 00 00"); }),
              "Invalid mail filter type (4) found in Mail Preferences.");
    EXPECT_EQ(textRaisedBy([] { preferencesOf("FF"); }), // told before what is missing behind it
              "Invalid mail filter type (255) found in Mail Preferences.");
}

TEST(MailPreferences, RefusesOnesCutShort) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "Buffer underun occurred when reading a 8 bit integer."},
        {"02", "Buffer underun occurred when reading a 8 bit integer."},
        {"02 01", "Buffer underun occurred when reading a 8 bit integer."},
        {"02 01 01", "Buffer underun occurred when reading a 8 bit integer."},
        {"02 01 01 00", "Buffer underun occurred when reading a 16 bit integer."},
        {"02 01 01 00 0F", "Buffer underun occurred when reading a 16 bit integer."},
        {"02 01 01 00 0F A0", "Null terminator not found in string."},
        {"02 01 01 00 0F A0 61", "Null terminator not found in string."},
        {"02 01 01 00 0F A0 61 00", "Null terminator not found in string."},
        {"02 01 01 00 0F A0 61 00 62", "Null terminator not found in string."},
        {"02 01 01 00 0F A0 61 00 62 00", "Null terminator not found in string."},
        {"02 01 01 00 0F A0 61 00 62 00 63", "Null terminator not found in string."},
    };
    for (const auto& [pairs, text] : rows) {
        SCOPED_TRACE(pairs);
        EXPECT_EQ(textRaisedBy([&, bad = pairs] { preferencesOf(bad); }), text);
    }
}

TEST(MailPreferences, SelectsByTheFilter) {
    const std::string subject = R"(@Contains(@LowerCase(Subject);@LowerCase("s")))";
    const std::string to = R"(@Contains(@LowerCase(SendTo);@LowerCase("t")))";
    const std::string from = R"(@Contains(@LowerCase(From);@LowerCase("f")))";
    const struct {
        const char* subject;
        const char* to;
        const char* from;
        bool containing;
        bool high;
        std::string formula;
    } rows[] = {
        {"s", "", "", true, false, subject},
        {"", "t", "", true, false, to},
        {"", "", "f", true, false, from},
        {"s", "t", "", true, false, subject + '|' + to},
        {"s", "", "f", true, false, subject + '|' + from},
        {"", "t", "f", true, false, to + '|' + from},
        {"s", "t", "f", true, false, subject + '|' + to + '|' + from},
        {"s", "", "", false, false, "!(" + subject + ")"},
        {"s", "", "", true, true, "Importance=\"1\"|(" + subject + ")"},
        {"s", "", "", false, true, "Importance=\"1\"|(!(" + subject + "))"},
        {"s", "t", "f", false, true, "Importance=\"1\"|(!(" + subject + '|' + to + '|' + from + "))"},
        {"", "", "", true, true, ""},
        {"", "", "", true, false, ""},
        {"", "", "", false, true, ""}, // nothing to negate
        {"", "", "", false, false, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.formula);
        MailPreferences preferences;
        preferences.filterType = MailPreferences::Filter;
        preferences.filterSubject = row.subject;
        preferences.filterTo = row.to;
        preferences.filterFrom = row.from;
        preferences.filterContaining = row.containing;
        preferences.getHigh = row.high;
        EXPECT_EQ(preferences.selectionFormula(), row.formula);
        for (const auto type : {MailPreferences::All, MailPreferences::SendOnly, MailPreferences::Unread}) {
            preferences.filterType = type;
            EXPECT_EQ(preferences.selectionFormula(), "");
        }
    }
}

TEST(MailPreferences, WhatTheUserTypedStandsInTheFormulaAsItIs) {
    MailPreferences preferences;
    preferences.filterType = MailPreferences::Filter;
    preferences.getHigh = false;
    preferences.filterTo = "Ann \"B\" \\, Carl";
    EXPECT_EQ(preferences.selectionFormula(),
              "@Contains(@LowerCase(SendTo);@LowerCase(\"Ann \"B\" \\, Carl\"))");
}

} // namespace
} // namespace tsr
