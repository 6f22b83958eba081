#include <iterator>

#include <nlohmann/json.hpp>

#include "commands/RunTesseraTest.h"
#include "tessera/mailDocument.h"

namespace tsr {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Words = std::vector<std::string>;

class MailCommandsTest : public RunTesseraTest {
protected:
    void SetUp() override {
        RunTesseraTest::SetUp();
        addUser("Ann"); // an hour east of Greenwich in winter
    }

    void does(const Words& words) { ASSERT_EQ(run(words), 0) << err; }

    std::string addMail(const Words& words) {
        Words all{"add", "mail", "--user", "Ann", "--date", "2026-11-23 08:00"};
        all.insert(all.end(), words.begin(), words.end());
        EXPECT_EQ(run(all), 0) << err;
        return out.substr(std::string("added mail ").size(), 8);
    }
    Document document(const std::string& id) {
        Store store(file);
        for (const Document& each :
             store.documents(store.mailDatabase(store.findUser("Ann")->id).id, mailKind)) {
            if (each.unid.starts_with(id)) return each;
        }
        ADD_FAILURE() << "there is no mail " << id;
        return {};
    }
    Mail mail(const std::string& id) { return toMail(document(id).properties); }
    static std::string content(const std::string& name) {
        std::ifstream stream(name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(MailCommandsTest, PutsAMessageIntoTheInbox) {
    const std::string id = addMail({"--from", "Bob", "--subject", "Lunch", "--body", "At noon?"});
    EXPECT_EQ(mail(id).folder, "Inbox");
    EXPECT_TRUE(mail(id).unread);
    EXPECT_EQ(mail(id).to, Words{"Ann"});
    EXPECT_EQ(mail(id).date, 1795417200); // 2026-11-23 07:00 UTC
    EXPECT_EQ(mail(id).importance, Mail::Normal);
    does({"show", "mail", id, "--user", "Ann"});
    EXPECT_EQ(out, "Id          " + document(id).unid
                       + "\n"
                         "Sequence    1\n"
                         "Folder      Inbox\n"
                         "From        Bob\n"
                         "To          Ann\n"
                         "Subject     Lunch\n"
                         "Date        2026-11-23 08:00\n"
                         "Importance  normal\n"
                         "Unread      yes\n"
                         "\nAt noon?\n");
}

TEST_F(MailCommandsTest, TakesDraftsAndWhatWasSent) {
    const std::string draft = addMail({"--folder", "drafts", "--to", "Bob, Eve", "--to", "\"X, Y\" <x@y>",
                                       "--cc", "C", "--bcc", "D", "--reply-to", "E", "--subject", "Plan",
                                       "--importance", "high", "--file", writeFile("b", "a\nb")});
    EXPECT_EQ(mail(draft).folder, "Drafts");
    EXPECT_FALSE(mail(draft).unread);
    EXPECT_EQ(mail(draft).from, "Ann");
    EXPECT_EQ(mail(draft).to, (Words{"Bob", "Eve", "\"X, Y\" <x@y>"}));
    EXPECT_EQ(mail(draft).cc, Words{"C"});
    EXPECT_EQ(mail(draft).bcc, Words{"D"});
    EXPECT_EQ(mail(draft).replyTo, "E");
    EXPECT_EQ(mail(draft).importance, Mail::High);
    EXPECT_EQ(mail(draft).body, "a\nb");
    const std::string sent = addMail({"--folder", "Sent", "--subject", "Old", "--unread"});
    EXPECT_EQ(mail(sent).folder, "Sent");
    EXPECT_TRUE(mail(sent).unread);
    does({"show", "mail", draft, "--user", "Ann"});
    EXPECT_THAT(
        out,
        HasSubstr("Reply to    E\nTo          Bob, Eve, \"X, Y\" <x@y>\nCc          C\nBcc         D\n"));
}

TEST_F(MailCommandsTest, TakesNoticesOfMeetings) {
    const std::string id =
        addMail({"--from", "Bob", "--subject", "Invitation", "--body", "plain", "--action", "Accept",
                 "--action", "Decline", "--room", "R1", "--minutes", "45", "--notice-body", "Come"});
    ASSERT_TRUE(mail(id).notice);
    EXPECT_EQ(mail(id).notice->actions, (Words{"Accept", "Decline"}));
    EXPECT_EQ(mail(id).notice->room, "R1");
    EXPECT_EQ(mail(id).notice->minutes, 45U);
    EXPECT_EQ(mail(id).notice->body, "Come");
    does({"show", "mail", id, "--user", "Ann"});
    EXPECT_THAT(out,
                HasSubstr("Actions     Accept, Decline\nRoom        R1\nMinutes     45\n\nCome\n\nplain\n"));
    does({"edit", "mail", id, "--user", "Ann", "--room", "R2"});
    EXPECT_EQ(mail(id).notice->room, "R2");
    EXPECT_EQ(mail(id).notice->minutes, 45U);
}

TEST_F(MailCommandsTest, ListsByFolder) {
    const std::string sent = addMail({"--folder", "Sent", "--to", "Bob, Eve", "--subject", "Old"});
    const std::string read = addMail({"--from", "Bob\x1B", "--subject", "Lunch", "--read"});
    const std::string unread = addMail({"--from", "Eve", "--subject", "Tea"});
    does({"list", "mail", "--user", "Ann"});
    EXPECT_EQ(out, "ID        FOLDER  NEW  FROM OR TO  DATE              SUBJECT\n" + read
                       + "  Inbox        Bob?        2026-11-23 08:00  Lunch\n" + unread
                       + "  Inbox   *    Eve         2026-11-23 08:00  Tea\n" + sent
                       + "  Sent         Bob, Eve    2026-11-23 08:00  Old\n");
    does({"list", "mail", "--user", "Ann", "--folder", "sent", "--json"});
    const auto json = nlohmann::json::parse(out);
    ASSERT_EQ(json.size(), 1U);
    EXPECT_EQ(json[0]["subject"], "Old");
    EXPECT_EQ(json[0]["date"], "2026-11-23 08:00");
    EXPECT_EQ(json[0]["to"], (Words{"Bob", "Eve"}));
    EXPECT_EQ(json[0]["sequence"], 1);
}

// Handhelds compare the mark of what was read by itself.
TEST_F(MailCommandsTest, MarksAMessageWithoutChangingIt) {
    const std::string id = addMail({"--subject", "Lunch"});
    does({"edit", "mail", id, "--user", "Ann", "--read"});
    EXPECT_FALSE(mail(id).unread);
    EXPECT_EQ(document(id).sequence, 1U);
    does({"edit", "mail", id, "--user", "Ann", "--unread", "--subject", "Tea", "--importance", "low"});
    EXPECT_TRUE(mail(id).unread);
    EXPECT_EQ(mail(id).subject, "Tea");
    EXPECT_EQ(mail(id).importance, Mail::Low);
    EXPECT_EQ(document(id).sequence, 2U);
}

TEST_F(MailCommandsTest, EditsMovesAndDeletes) {
    const std::string id =
        addMail({"--folder", "Drafts", "--to", "Bob", "--subject", "Plan", "--body", "one"});
    does({"edit", "mail", id, "--user", "Ann", "--body", "two", "--cc", "Eve", "--date", "2026-11-24"});
    EXPECT_EQ(out, "changed mail " + id + "\n");
    EXPECT_EQ(mail(id).body, "two");
    EXPECT_EQ(mail(id).to, Words{"Bob"});
    EXPECT_EQ(mail(id).cc, Words{"Eve"});
    EXPECT_EQ(mail(id).date, 1795474800); // 2026-11-23 23:00 UTC
    does({"edit", "mail", id, "--user", "Ann", "--folder", "Sent", "--cc", ""});
    EXPECT_EQ(mail(id).folder, "Sent");
    EXPECT_TRUE(mail(id).cc.empty());
    does({"delete", "mail", id, "--user", "Ann"});
    EXPECT_EQ(out, "deleted mail " + id + "\n");
    expectFailure(1, {"show", "mail", id, "--user", "Ann"}, "there is no mail '" + id + "' of Ann");
}

TEST_F(MailCommandsTest, RefusesMessages) {
    const std::string id = addMail({"--subject", "Lunch"});
    const auto add = [](const Words& words) {
        Words all{"add", "mail", "--user", "Ann", "--subject", "x"};
        all.insert(all.end(), words.begin(), words.end());
        return all;
    };
    expectFailure(2, {"add", "mail", "--user", "Ann"}, "--subject is required");
    expectFailure(2, {"add", "mail", "--subject", "x"}, "--user is required");
    expectFailure(2, add({"--body", "a", "--file", "b"}), "excludes");
    expectFailure(1, add({"--file", folder + "/none"}), "cannot read");
    expectFailure(2, add({"--importance", "1"}), "'1' is not an importance");
    expectFailure(2, add({"--folder", "Spam"}), "'Spam' is not a folder");
    expectFailure(2, add({"--date", "soon"}), "'soon' is not a date and time");
    expectFailure(1, add({"--date", "1992-12-31"}), "must be after 1992");
    expectFailure(2, add({"--room", "R1"}), "has an --action or a --notice-body");
    expectFailure(2, add({"--minutes", "-1"}), "--minutes");
    expectFailure(1, {"list", "mail", "--user", "Bob"}, "there is no user 'Bob'");
    expectFailure(2, {"list", "mail", "--user", "Ann", "--folder", "Spam"}, "'Spam' is not a folder");
    expectFailure(1, {"edit", "mail", "ffff", "--user", "Ann", "--read"}, "there is no mail 'ffff' of Ann");
    expectFailure(2,
                  {"edit", "mail", id, "--user", "Ann", "--read", "--subject", "x", "--importance", "none"},
                  "'none' is not an importance");
    EXPECT_TRUE(mail(id).unread); // nothing of it happened
}

TEST_F(MailCommandsTest, TakesMessagesInAndOut) {
    const std::string one =
        writeFile("one.eml", "From: Bob <bob@example.com>\nTo: ann@example.com\nSubject: One\n"
                             "Date: Mon, 23 Nov 2026 08:00:00 +0100\nImportance: low\n"
                             "In-Reply-To: <00112233445566778899aabbccddeeff@tessera.invalid>\n"
                             "\n3 \xE2\x82\xAC\n");
    does({"import", "--user", "Ann", one});
    EXPECT_EQ(out, "imported " + one + "\n");
    does({"list", "mail", "--user", "Ann", "--json"});
    const std::string id = nlohmann::json::parse(out)[0]["id"];
    EXPECT_EQ(mail(id).from, "Bob <bob@example.com>");
    EXPECT_EQ(mail(id).date, 1795417200);
    EXPECT_EQ(mail(id).importance, Mail::Low);
    EXPECT_EQ(mail(id).body, "3 \xE2\x82\xAC");
    EXPECT_EQ(mail(id).answers, "00112233445566778899aabbccddeeff");
    EXPECT_TRUE(mail(id).unread);
    does({"export", "--user", "Ann", "--mail", id.substr(0, 8), "--output", folder + "/out.eml"});
    EXPECT_EQ(content(folder + "/out.eml"),
              "From: Bob <bob@example.com>\r\nTo: ann@example.com\r\nSubject: One\r\n"
              "Date: Mon, 23 Nov 2026 07:00:00 +0000\r\nMessage-Id: <"
                  + id
                  + "@tessera.invalid>\r\n"
                    "In-Reply-To: <00112233445566778899aabbccddeeff@tessera.invalid>\r\n"
                    "Importance: low\r\nStatus: O\r\nMIME-Version: 1.0\r\n"
                    "Content-Type: text/plain; charset=utf-8\r\n"
                    "Content-Transfer-Encoding: quoted-printable\r\n\r\n3 =E2=82=AC\r\n");
}

TEST_F(MailCommandsTest, TakesMailboxesInAndOut) {
    const std::string box =
        writeFile("in.mbox", "From a\nFrom: Bob\nSubject: One\nDate: Mon, 23 Nov 2026 07:00:00 "
                             "+0000\nStatus: RO\n\nHi\n\n"
                             "From b\nSubject: Ancient\nDate: Tue, 1 Jan 1980 00:00:00 +0000\n\n");
    does({"import", "--user", "Ann", "--folder", "sent", box});
    EXPECT_THAT(err, HasSubstr("tessera: not imported: 'Ancient': the date of a message must be after 1992"));
    addMail({"--subject", "Two", "--notice-body", "Come", "--body", "plain"});
    does({"export", "--user", "Ann", "--format", "mbox"});
    EXPECT_THAT(out, HasSubstr("Subject: One\n"));
    EXPECT_THAT(out, HasSubstr("Status: RO\n"));
    EXPECT_THAT(out, HasSubstr("\n\nCome\n\n"));
    does({"export", "--user", "Ann", "--folder", "Sent", "--format", "mbox"});
    EXPECT_THAT(out, Not(HasSubstr("Subject: Two\n")));
    const auto box2 = writeFile("out.mbox", out);
    does({"import", "--user", "Ann", box2});
    does({"list", "mail", "--user", "Ann", "--folder", "Inbox"});
    EXPECT_THAT(out, HasSubstr("Two\n"));
    EXPECT_THAT(out, HasSubstr("One\n"));
}

TEST_F(MailCommandsTest, RefusesFilesThatAreNoMail) {
    const std::string none = writeFile("none.eml", "nonsense");
    const std::string box = writeFile("none.mbox", "nonsense");
    expectFailure(1, {"import", "--user", "Ann", none},
                  "'" + none + "' cannot be imported: this is no mail message");
    expectFailure(1, {"import", "--user", "Ann", box}, "a mailbox begins with a line 'From '");
    expectFailure(2, {"import", none}, "--user tells whose these become");
    expectFailure(2, {"export", "--output", folder + "/x.mbox"}, "--user tells whose these are to be");
    expectFailure(2, {"export", "--user", "Ann", "--format", "eml"}, "name it with --mail");
    expectFailure(1, {"export", "--user", "Ann", "--format", "eml", "--mail", "ff"},
                  "there is no mail 'ff' of Ann");
    expectFailure(2, {"export", "--user", "Ann", "--format", "mbox", "--folder", "Spam"}, "is not a folder");
}

} // namespace
} // namespace tsr
