#include "interchange/mailbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interchange/InterchangeError.h"

namespace tsr {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

MailMessage lunch() {
    return {.from = "Jo Brown <jo@example.com>",
            .to = {"pat@example.com"},
            .subject = "Lunch",
            .date = 1795392305, // 2026-11-23 00:05:05 UTC
            .body = "From noon on?\n>From me, too\nfine",
            .isRead = true};
}

constexpr char lunchText[] = "From jo@example.com Mon Nov 23 00:05:05 2026\n"
                             "From: Jo Brown <jo@example.com>\n"
                             "To: pat@example.com\n"
                             "Subject: Lunch\n"
                             "Date: Mon, 23 Nov 2026 00:05:05 +0000\n"
                             "Status: RO\n"
                             "MIME-Version: 1.0\n"
                             "Content-Type: text/plain; charset=us-ascii\n"
                             "Content-Transfer-Encoding: 7bit\n"
                             "\n"
                             ">From noon on?\n"
                             ">>From me, too\n"
                             "fine\n"
                             "\n";

TEST(Mailbox, IsWritten) { EXPECT_EQ(mailboxText({lunch()}), lunchText); }

TEST(Mailbox, GivesItsMessages) {
    EXPECT_THAT(readMailbox(""), IsEmpty());
    EXPECT_THAT(readMailbox(lunchText), testing::ElementsAre(lunch()));
    const auto messages =
        readMailbox("From a Mon Nov 23 00:05:05 2026\r\nSubject: one\r\n\r\nbody\r\nFrom the middle\r\n\r\n"
                    "From b\r\nSubject: two\r\n\r\n>>From\r\n>From x\r\n\r\n\r\n");
    ASSERT_THAT(messages, SizeIs(2));
    EXPECT_EQ(messages[0].subject, "one");
    EXPECT_EQ(messages[0].body, "body\nFrom the middle"); // no empty line before it
    EXPECT_EQ(messages[1].body, ">>From\nFrom x\n");      // only "From " with its blank is quoted
}

TEST(Mailbox, GoesBothWays) {
    MailMessage name;
    name.from = "Pat Lee";
    name.body = "one\n\nFrom two\n\n\n";
    MailMessage empty;
    empty.subject = "none";
    const std::vector<MailMessage> messages{lunch(), name, empty, lunch()};
    EXPECT_EQ(readMailbox(mailboxText(messages)), messages);
}

TEST(Mailbox, NamesTheSenderOfAMessage) {
    const std::pair<const char*, const char*> rows[] = {
        {"Jo Brown <jo@example.com>", "From jo@example.com Thu Jan  1 00:00:00 1970\n"},
        {"jo@example.com", "From jo@example.com Thu Jan  1 00:00:00 1970\n"},
        {"Pat Lee", "From MAILER-DAEMON Thu Jan  1 00:00:00 1970\n"},
        {"a@b\nc", "From MAILER-DAEMON Thu Jan  1 00:00:00 1970\n"},
        {"", "From MAILER-DAEMON Thu Jan  1 00:00:00 1970\n"},
    };
    for (const auto& [from, line] : rows) {
        MailMessage message;
        message.from = from;
        EXPECT_TRUE(mailboxText({message}).starts_with(line)) << from;
    }
}

TEST(Mailbox, IsRefusedWhenItIsNone) {
    const std::pair<const char*, const char*> rows[] = {
        {"Subject: one\n\nbody\n", "a mailbox begins with a line 'From '"},
        {"From a\nSubject: one\n\n\nFrom b\nnothing\n", "message 2: this is no mail message"},
        {"From a\n", "message 1: this is no mail message"},
    };
    for (const auto& [text, reason] : rows) {
        try {
            readMailbox(text);
            ADD_FAILURE() << text;
        } catch (const InterchangeError& error) {
            EXPECT_STREQ(error.what(), reason);
        }
    }
}

} // namespace
} // namespace tsr
