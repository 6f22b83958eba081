#include "handheld/commands/mailMessages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "handheld/HandheldError.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/standardDatabases.h"

namespace tsr {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using Importance = MailMessage::Importance;

class MailMessages : public testing::Test {
protected:
    MailMessages() { addStandardDatabases(handheld); }

    HandheldDatabase& mail() { return *handheld.find("MailDB"); }
    FieldValues fields(std::size_t index) {
        return recordForm("MailDB")->read(mail().records().all().at(index).data);
    }

    Handheld handheld;
};

MailMessage lunch() {
    return {.from = "\"Lee, Kim\" <kim@example.com>",
            .replyTo = {"team@example.com"},
            .to = {"Pat Lee", "Jo"},
            .cc = {"Max"},
            .bcc = {"archive@example.com"},
            .subject = "Caf\xC3\xA9",
            .date = 1795435200, // 2026-11-23 12:00 UTC
            .zoneMinutes = 60,
            .body = "At noon?\n\nKim",
            .importance = Importance::High,
            .isRead = true};
}

TEST_F(MailMessages, BecomeRecords) {
    EXPECT_THAT(importMail(handheld, {lunch(), MailMessage()}, 3), IsEmpty());
    EXPECT_THAT(fields(0),
                ElementsAre(Pair("bcc", "archive@example.com"), Pair("body", "At noon?\n\nKim"),
                            Pair("cc", "Max"), Pair("date", "2026-11-23"),
                            Pair("from", "\"Lee, Kim\" <kim@example.com>"), Pair("priority", "high"),
                            Pair("read", "yes"), Pair("replyTo", "team@example.com"),
                            Pair("subject", "Caf\xE9"), Pair("time", "13:00"), Pair("to", "Pat Lee\nJo")));
    EXPECT_THAT(fields(1), ElementsAre(Pair("priority", "normal")));
    EXPECT_EQ(mail().records().all()[0].category, 3);
    EXPECT_EQ(mail().records().all()[0].attributes, HandheldRecord::dirty);
}

TEST_F(MailMessages, ComeFromRecords) {
    importMail(handheld, {lunch()}, 0);
    importMail(handheld, {MailMessage()}, 1);
    MailMessage expected = lunch();
    expected.date = 1795438800; // an hour later: 13:00 as UTC, as the handheld knows no zones
    expected.zoneMinutes = 0;
    expected.id = "mail-1@tessera.invalid";
    MailMessage empty;
    empty.id = "mail-2@tessera.invalid";
    EXPECT_THAT(mailOf(mail(), std::nullopt), ElementsAre(expected, empty));
    EXPECT_THAT(mailOf(mail(), 0), ElementsAre(expected));
    EXPECT_THAT(mailOf(mail(), 4), IsEmpty());
    mail().deleteRecord(1);
    EXPECT_THAT(mailOf(mail(), std::nullopt), ElementsAre(empty));
}

TEST_F(MailMessages, AreRefusedAloneWhenTheHandheldCannotHoldThem) {
    MailMessage euro;
    euro.subject = "Price";
    euro.body = "3 \xE2\x82\xAC";
    MailMessage old;
    old.subject = "Old";
    old.date = -2082844801; // 1903-12-31 23:59:59
    MailMessage large;
    large.subject = "Large";
    large.body = std::string(65535, 'x');
    EXPECT_THAT(importMail(handheld, {euro, old, large, lunch()}, 0),
                ElementsAre("'Price': it has characters that the handheld has not",
                            "'Old': date=1903-12-31: a date such as 2002-02-06 is wanted",
                            "'Large': a record takes at most 65,535 bytes"));
    EXPECT_THAT(mail().records().all(), SizeIs(1));
}

TEST_F(MailMessages, HaveNoDateWhenTheRecordHasNoneThatIs) {
    // 2002-15-31, 12:34, normal priority, eight empty texts
    mail().addRecord({0xC5, 0xFF, 0x0C, 0x22, 0x04, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(mailOf(mail(), std::nullopt).at(0).date, std::nullopt);
    mail().addRecord({0xC5});
    EXPECT_THROW(mailOf(mail(), std::nullopt), HandheldError);
}

} // namespace
} // namespace tsr
