#include "interchange/messageFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interchange/InterchangeError.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Importance = MailMessage::Importance;

constexpr std::int64_t noon = 1795435200; // 2026-11-23 12:00 UTC

MailMessage readBody(const std::string& headersAndBody) {
    return readMessage("From: jo@example.com\r\n" + headersAndBody);
}

MailMessage everything() {
    return {.from = "Jo Brown <jo@example.com>",
            .replyTo = {"team@example.com"},
            .to = {"Pat Lee <pat@example.com>", "max@example.com"},
            .cc = {"\"Lee, Kim\" <kim@example.com>"},
            .bcc = {"archive@example.com"},
            .subject = "Lunch",
            .date = noon,
            .zoneMinutes = 60,
            .body = "At noon?\n\nJo",
            .importance = Importance::High,
            .isRead = true,
            .id = "1@example.com",
            .inReplyTo = "0@example.com"};
}

TEST(MessageFile, GivesAMessage) {
    const MailMessage message = readMessage("From: Jo Brown <jo@example.com>\r\n"
                                            "Reply-To: team@example.com\r\n"
                                            "To: Pat Lee <pat@example.com>,\r\n"
                                            "\tmax@example.com\r\n"
                                            "Cc: \"Lee, Kim\" <kim@example.com>\r\n"
                                            "Bcc: archive@example.com\r\n"
                                            "Subject: Lunch\r\n"
                                            "Date: Mon, 23 Nov 2026 13:00:00 +0100\r\n"
                                            "Message-ID: <1@example.com>\r\n"
                                            "In-Reply-To: <0@example.com>\r\n"
                                            "Importance: High\r\n"
                                            "Status: RO\r\n"
                                            "X-Other: passed over\r\n"
                                            "\r\n"
                                            "At noon?\r\n"
                                            "\r\n"
                                            "Jo\r\n");
    EXPECT_EQ(message, everything());
}

TEST(MessageFile, IsWritten) {
    EXPECT_EQ(messageText(everything()), "From: Jo Brown <jo@example.com>\r\n"
                                         "Reply-To: team@example.com\r\n"
                                         "To: Pat Lee <pat@example.com>, max@example.com\r\n"
                                         "Cc: \"Lee, Kim\" <kim@example.com>\r\n"
                                         "Bcc: archive@example.com\r\n"
                                         "Subject: Lunch\r\n"
                                         "Date: Mon, 23 Nov 2026 13:00:00 +0100\r\n"
                                         "Message-Id: <1@example.com>\r\n"
                                         "In-Reply-To: <0@example.com>\r\n"
                                         "Importance: high\r\n"
                                         "Status: RO\r\n"
                                         "MIME-Version: 1.0\r\n"
                                         "Content-Type: text/plain; charset=us-ascii\r\n"
                                         "Content-Transfer-Encoding: 7bit\r\n"
                                         "\r\n"
                                         "At noon?\r\n"
                                         "\r\n"
                                         "Jo\r\n");
}

TEST(MessageFile, IsWrittenInUtf8WhereAsciiCannotHoldIt) {
    MailMessage message;
    message.from = "J\xC3\xB6 <jo@example.com>";
    message.subject = "Caf\xC3\xA9";
    message.body = "3 \xE2\x82\xAC = x";
    const std::string text = messageText(message);
    EXPECT_THAT(text, HasSubstr("Subject: =?UTF-8?"));
    EXPECT_THAT(text, HasSubstr("Content-Type: text/plain; charset=utf-8\r\n"
                                "Content-Transfer-Encoding: quoted-printable\r\n"
                                "\r\n"
                                "3 =E2=82=AC =3D x\r\n"));
    for (const char c : text) ASSERT_LT(static_cast<unsigned char>(c), 0x80);
    EXPECT_EQ(readMessage(text), message);
}

TEST(MessageFile, GoesBothWays) {
    MailMessage names;
    names.from = "Pat Lee";
    names.to = {"Jo Brown/Acme", "M\xC3\xBCller", "\xE2\x82\xAC", "kim@example.com"};
    MailMessage lines;
    lines.from = "Pat";
    lines.body = "\n one\n\n two \n.\nFrom here\n" + std::string(2000, 'x') + "\n\n";
    lines.importance = Importance::Low;
    MailMessage old;
    old.from = "Pat";
    old.date = -1; // 1969-12-31 23:59:59
    old.zoneMinutes = -570;
    MailMessage subject;
    subject.subject =
        std::string(300, 'a') + " " + std::string(100, 'b') + " \xC3\xA4" + std::string(100, 'c');
    for (const MailMessage& message : {everything(), names, lines, old, subject})
        EXPECT_EQ(readMessage(messageText(message)), message) << messageText(message);
}

// Names of Notes are no addresses of the Internet.
TEST(MessageFile, GivesNamesAnAddressThatLeadsNowhere) {
    MailMessage message;
    message.to = {"Pat Lee/Acme"};
    EXPECT_THAT(messageText(message), HasSubstr("<pat.lee.acme@tessera.invalid>\r\n"));
}

TEST(MessageFile, LetsNoTextBecomeAHeader) {
    MailMessage message;
    message.from = "Pat\r\nBcc: all@example.com";
    message.to = {"a@example.com\nX-To: b"};
    message.subject = "a\r\nX-Bad: 1\n\nbody";
    message.id = "1\n2@x";
    message.inReplyTo = "<1>";
    const std::string text = messageText(message);
    EXPECT_THAT(text, Not(HasSubstr("\nBcc")));
    EXPECT_THAT(text, Not(HasSubstr("\nX-")));
    EXPECT_THAT(text, Not(HasSubstr("\nMessage-Id")));
    EXPECT_THAT(text, Not(HasSubstr("\nIn-Reply-To")));
    EXPECT_EQ(readMessage(text).subject, "a  X-Bad: 1  body");
}

TEST(MessageFile, LeavesOutADateThatNoCalendarHas) {
    MailMessage message;
    message.date = INT64_MAX;
    EXPECT_THAT(messageText(message), Not(HasSubstr("Date")));
}

TEST(MessageFile, ReadsHeaders) {
    const struct {
        const char* header;
        const char* subject;
    } rows[] = {
        {"Subject: one\r\n two\r\n\tthree\r\n", "one two three"}, // folded
        {"Subject: =?UTF-8?Q?Caf=C3=A9?=\r\n", "Caf\xC3\xA9"},
        {"Subject: =?iso-8859-1?B?5A==?= =?iso-8859-1?Q?_x?=\r\n", "\xC3\xA4 x"}, // the blank between goes
        {"Subject: =?no-such-set?Q?abc?=\r\n", "abc"},
        {"subject: small\r\n", "small"},
        {"Subject: Caf\xC3\xA9\r\n", "Caf\xC3\xA9"}, // not encoded
        {"Subject:\r\n", ""},
        {"", ""},
    };
    for (const auto& row : rows) EXPECT_EQ(readBody(std::string(row.header) + "\r\n").subject, row.subject);
}

TEST(MessageFile, ReadsAddresses) {
    const struct {
        const char* header;
        std::vector<std::string> to;
    } rows[] = {
        {"To: a@example.com, <b@example.com>\r\n", {"a@example.com", "b@example.com"}},
        {"To: pat@example.com (Pat Lee)\r\n", {"Pat Lee <pat@example.com>"}}, // a name as it was once written
        {"To: \"Lee, Pat\" <pat@example.com>\r\n", {"\"Lee, Pat\" <pat@example.com>"}},
        {"To: =?UTF-8?Q?J=C3=B6?= <jo@example.com>\r\n", {"J\xC3\xB6 <jo@example.com>"}},
        {"To: Team: a@example.com, b@example.com;\r\n", {"a@example.com", "b@example.com"}},
        {"To: undisclosed-recipients:;\r\n", {}},
        {"To: Pat Lee <pat.lee@tessera.invalid>\r\n", {"Pat Lee"}},
        {"To:\r\n", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(readBody(std::string(row.header) + "\r\n").to, row.to) << row.header;
}

TEST(MessageFile, ReadsDates) {
    const struct {
        const char* header;
        std::optional<std::int64_t> date;
        int zoneMinutes;
    } rows[] = {
        {"Date: Mon, 23 Nov 2026 12:00:00 +0000\r\n", noon, 0},
        {"Date: Mon, 23 Nov 2026 07:00:00 -0500\r\n", noon, -300},
        {"Date: 23 Nov 2026 17:30 +0530\r\n", noon, 330},
        {"Date: Mon, 23 Nov 2026 12:00:00 GMT\r\n", noon, 0},
        {"Date: soon\r\n", std::nullopt, 0},
        {"", std::nullopt, 0},
    };
    for (const auto& row : rows) {
        const MailMessage message = readBody(std::string(row.header) + "\r\n");
        EXPECT_EQ(message.date, row.date) << row.header;
        EXPECT_EQ(message.zoneMinutes, row.zoneMinutes) << row.header;
    }
}

TEST(MessageFile, ReadsImportanceAndReadMark) {
    const std::pair<const char*, Importance> rows[] = {
        {"", Importance::Normal},
        {"Importance: low\r\n", Importance::Low},
        {"Importance: normal\r\n", Importance::Normal},
        {"X-Priority: 1 (Highest)\r\n", Importance::High},
        {"X-Priority: 3\r\n", Importance::Normal},
        {"X-Priority: 4\r\n", Importance::Low},
        {"Importance: low\r\nX-Priority: 1\r\n", Importance::Low},
    };
    for (const auto& [header, importance] : rows)
        EXPECT_EQ(readBody(std::string(header) + "\r\n").importance, importance) << header;
    EXPECT_TRUE(readBody("Status: R\r\n\r\n").isRead);
    EXPECT_FALSE(readBody("Status: O\r\n\r\n").isRead);
    EXPECT_FALSE(readBody("\r\n").isRead);
}

TEST(MessageFile, ReadsABodyByItsEncodingAndCharacterSet) {
    const std::pair<const char*, const char*> rows[] = {
        {"\r\nplain\r\n", "plain"},
        {"\nplain\ntwo\n", "plain\ntwo"},
        {"\r\n", ""},
        {"Content-Type: text/plain; charset=iso-8859-1\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n"
         "Caf=E9 =\r\nbar\r\n",
         "Caf\xC3\xA9 bar"},
        {"Content-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: base64\r\n\r\nw6Q=\r\n",
         "\xC3\xA4"},
        {"Content-Type: text/plain\r\n\r\n\xE4\r\n", "\xC3\xA4"},
        {"Content-Type: text/html\r\n\r\n<p>one</p><p>two &amp; three</p>\r\n", "one\n\ntwo & three"},
        {"Content-Transfer-Encoding: base64\r\n\r\n!!!\r\n", ""},
    };
    for (const auto& [rest, body] : rows) EXPECT_EQ(readBody(rest).body, body) << rest;
}

TEST(MessageFile, PrefersPlainText) {
    const std::string head = "Content-Type: multipart/alternative; boundary=b\r\n\r\n";
    const std::string html = "--b\r\nContent-Type: text/html\r\n\r\n<p>html</p>\r\n";
    const std::string plain = "--b\r\nContent-Type: text/plain\r\n\r\nplain\r\n";
    EXPECT_EQ(readBody(head + html + plain + "--b--\r\n").body, "plain");
    EXPECT_EQ(readBody(head + plain + html + "--b--\r\n").body, "plain");
    EXPECT_EQ(readBody(head + html + "--b--\r\n").body, "html");
    EXPECT_EQ(readBody(head + "--b--\r\n").body, "");
    EXPECT_EQ(readBody(head
                       + "--b\r\nContent-Type: multipart/related; boundary=c\r\n\r\n"
                         "--c\r\nContent-Type: text/html\r\n\r\n<p>inner</p>\r\n"
                         "--c\r\nContent-Type: image/png; name=dot.png\r\n\r\n\r\n--c--\r\n--b--\r\n")
                  .body,
              "inner\n\n[attachment: dot.png]");
}

TEST(MessageFile, NamesAttachmentsAtTheEnd) {
    const std::string mixed =
        "Content-Type: multipart/mixed; boundary=\"a b\"\r\n\r\nfor old programs\r\n"
        "--a b\r\nContent-Type: text/plain\r\n\r\none\r\n"
        "--a b\r\nContent-Type: application/pdf\r\nContent-Disposition: attachment; filename=\"plan.pdf\"\r\n"
        "Content-Transfer-Encoding: base64\r\n\r\nAAAA\r\n"
        "--a b\r\nContent-Type: text/plain\r\nContent-Disposition: attachment; "
        "filename*=utf-8''n%C3%B6.txt\r\n"
        "\r\nnot shown\r\n"
        "--a b\r\nContent-Type: image/png\r\n\r\n\r\n"
        "--a b\r\nContent-Type: message/rfc822\r\n\r\nSubject: inner\r\n\r\nnot shown\r\n"
        "--a b\r\n\r\ntwo\r\n--a b--\r\n";
    EXPECT_EQ(readBody(mixed).body, "one\n\ntwo\n\n[attachment: plan.pdf]\n[attachment: n\xC3\xB6.txt]\n"
                                    "[attachment: image/png]\n[attachment: message/rfc822]");
    EXPECT_EQ(readBody("Content-Type: image/png; name=dot.png\r\n\r\n").body, "[attachment: dot.png]");
}

TEST(MessageFile, IsReadAsFarAsItGoes) {
    const std::string text =
        "Content-Type: multipart/mixed; boundary=b\r\n\r\n"
        "--b\r\nContent-Type: text/plain\r\nContent-Transfer-Encoding: base64\r\n\r\nYWJj\r\n"
        "--b\r\nContent-Type: image/png; name=dot.png\r\n\r\nx\r\n--b--\r\n";
    for (std::size_t size = text.find("--b"); size <= text.size(); ++size)
        EXPECT_NO_THROW(readBody(text.substr(0, size))) << size;
    EXPECT_EQ(readBody(text.substr(0, text.find("YWJj") + 4)).body, "abc");
    EXPECT_EQ(readBody(text.substr(0, text.find("--b--"))).body, "abc\n\n[attachment: dot.png]");
}

std::string nested(int depth) {
    std::string text = "From: a@example.com\r\n";
    for (int i = 0; i < depth; ++i) {
        const std::string boundary = "b" + std::to_string(i);
        text += "Content-Type: multipart/mixed; boundary=" + boundary + "\r\n\r\n--" + boundary + "\r\n";
    }
    return text + "Content-Type: text/plain\r\n\r\ndeep\r\n";
}

std::string parts(int count) {
    std::string text = "From: a@example.com\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n";
    for (int i = 0; i < count; ++i) text += "--b\r\n\r\n\r\n";
    return text + "--b--\r\n";
}

TEST(MessageFile, IsRefusedWhenItIsNoneOrTooMuch) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "this is no mail message"},
        {"nonsense\r\n", "this is no mail message"},
        {"Subject: one\r\nTo", "this is no mail message"}, // cut within its header
        {"X-Only: this\r\n\r\nbody\r\n", "this is no mail message: it has no From, To, Subject or Date"},
        {"Subject: " + std::string(1 << 20, 'x') + "\r\n\r\n", "its header is longer than 1 MiB"},
        {std::string(32 << 20, 'x') + "x", "a message has at most 32 MiB"},
        {"Subject: one\n" + std::string(500000, '\n'), "a message has at most 500,000 lines"},
        {nested(33), "its parts lie more than 32 deep in each other"},
        {nested(20000), "its parts lie more than 32 deep in each other"},
        {parts(1000), "it has more than 1,000 parts"},
    };
    for (const auto& [text, reason] : rows) {
        try {
            readMessage(text);
            ADD_FAILURE() << reason;
        } catch (const InterchangeError& error) {
            EXPECT_STREQ(error.what(), reason);
        }
    }
    EXPECT_EQ(readMessage("Subject: one\n" + std::string(499999, '\n')).subject, "one");
    EXPECT_EQ(readMessage(nested(32)).body, "deep");
    EXPECT_EQ(readMessage(parts(999)).body, "");
}

} // namespace
} // namespace tsr
