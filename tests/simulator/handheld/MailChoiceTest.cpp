#include "handheld/MailChoice.h"

#include <gtest/gtest.h>

#include "handheld/HandheldError.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;

const PreferenceKey filterKey{fourCharacterCode("mail"), 1, true};
const PreferenceKey signatureKey{fourCharacterCode("mail"), 3, true};

TEST(MailChoice, IsForAllMailWithoutAPreference) {
    const MailFilter filter = mailFilter(Handheld());
    EXPECT_EQ(filter.kind, MailFilter::Kind::All);
    EXPECT_TRUE(filter.passesHigh);
    EXPECT_TRUE(filter.wantsMatching);
    EXPECT_EQ(filter.longestBody, 4000);
    EXPECT_EQ(filter.to + filter.from + filter.subject, "");
    EXPECT_EQ(mailSignature(Handheld()), "");
}

TEST(MailChoice, GoesBothWays) {
    const std::pair<MailFilter, const char*> rows[] = {
        {{}, "00 01 01 00 0F A0 00 00 00"}, // 4000 bytes of a body
        {{MailFilter::Kind::Matching, false, true, 258, "a", "b", "c"},
         "02 00 01 00 01 02 61 00 62 00 63 00"},
        {{MailFilter::Kind::SendOnly, true, false, 0, "", "", "\xE4"}, "01 01 00 00 00 00 00 00 E4 00"},
        {{MailFilter::Kind::Unread, true, true, 65535, "", "", ""}, "03 01 01 00 FF FF 00 00 00"},
    };
    for (const auto& [filter, data] : rows) {
        SCOPED_TRACE(data);
        Handheld handheld;
        setMailFilter(handheld, filter);
        EXPECT_EQ(handheld.preferences.at(filterKey), (Preference{1, bytes(data)}));
        EXPECT_EQ(mailFilter(handheld), filter);
    }
    Handheld handheld;
    setMailSignature(handheld, "Pat");
    EXPECT_EQ(handheld.preferences.at(signatureKey), (Preference{1, bytes("50 61 74 00")}));
    EXPECT_EQ(mailSignature(handheld), "Pat");
    setMailSignature(handheld, "");
    EXPECT_TRUE(handheld.preferences.empty());
}

TEST(MailChoice, KeepsTheVersionOfAPreference) {
    Handheld handheld;
    handheld.preferences[filterKey] = {7, bytes("00 01 01 00 0F A0 00 00 00")};
    setMailFilter(handheld, MailFilter());
    EXPECT_EQ(handheld.preferences.at(filterKey).version, 7);
}

TEST(MailChoice, IsRefusedWhenItIsDamaged) {
    for (const char* data : {"", "00 01 01 00 0F", "00 01 01 00 0F A0 61", "00 01 01 00 0F A0 00 00",
                             "04 01 01 00 0F A0 00 00 00"}) {
        SCOPED_TRACE(data);
        Handheld handheld;
        handheld.preferences[filterKey] = {1, bytes(data)};
        EXPECT_THROW(mailFilter(handheld), HandheldError);
    }
    Handheld handheld;
    handheld.preferences[signatureKey] = {1, bytes("50")};
    EXPECT_THROW(mailSignature(handheld), HandheldError);
}

// The conduit asks for 1,024 bytes.
TEST(MailChoice, IsAsLongAsTheDesktopReads) {
    Handheld handheld;
    setMailSignature(handheld, std::string(1023, 'a'));
    EXPECT_THROW(setMailSignature(handheld, std::string(1024, 'a')), HandheldError);
    MailFilter filter;
    filter.to = std::string(1015, 'a'); // with 6 bytes before it and three NULs
    setMailFilter(handheld, filter);
    filter.from = "b";
    EXPECT_THROW(setMailFilter(handheld, filter), HandheldError);
    EXPECT_EQ(mailFilter(handheld).from, "");
}

} // namespace
} // namespace tsr
