#include "handheld/MailChoice.h"
#include "handheld/forms/RecordForm.h"
#include "simulator/handheld/commands/RunHandheld.h"

namespace tsr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::SizeIs;
using Words = RunHandheld::Words;

class MailCommands : public RunHandheld {
protected:
    void SetUp() override { init(); }

    void does(const Words& words) { ASSERT_EQ(run(words), 0) << err_.str(); }
    std::vector<HandheldRecord> mail() {
        return HandheldFolder::open(folder()).handheld().find("MailDB")->records().all();
    }
    FieldValues fields(std::size_t index) { return recordForm("MailDB")->read(mail().at(index).data); }
    std::string content(const char* name) {
        const auto bytes = readFile(file(name));
        return {bytes.begin(), bytes.end()};
    }
    void write(const char* name, const std::string& text) {
        replaceFile(file(name), {text.begin(), text.end()});
    }

    // What the conduit brings of a notice of a meeting.
    void addNotice() {
        does({"add", "mail", "from=Jo Brown", "to=Pat Lee", "subject=Team", "date=2002-02-05", "time=09:30",
              "body=Please come.\n\n\n\n\n\n\n----- Vellum Info "
              "-----\nUNID:00112233445566778899aabbccddeeff;\n"
              "----- End Vellum Info -----\n",
              "--category", "Inbox"});
    }
};

TEST_F(MailCommands, AMessageThatIsWrittenGoesToTheOutbox) {
    does({"add", "mail", "to=Jo Brown", "subject=Lunch", "body=At noon?"});
    does({"add", "mail", "subject=Later", "bcc=a\nb", "priority=high", "signature=yes", "confirmRead=yes",
          "confirmDelivery=yes", "--category", "Draft"});
    EXPECT_EQ(mail()[0].category, 1);
    EXPECT_EQ(mail()[1].category, 4);
    EXPECT_THAT(fields(1),
                ElementsAre(Pair("bcc", "a\nb"), Pair("confirmDelivery", "yes"), Pair("confirmRead", "yes"),
                            Pair("priority", "high"), Pair("signature", "yes"), Pair("subject", "Later")));
}

TEST_F(MailCommands, MessagesAreEditedMovedReadAndDeleted) {
    addNotice();
    does({"edit", "mail", "1", "read=yes"});
    EXPECT_EQ(fields(0)["read"], "yes");
    EXPECT_EQ(fields(0)["subject"], "Team");
    does({"edit", "mail", "1", "read="});
    EXPECT_FALSE(fields(0).contains("read"));
    does({"edit", "mail", "1", "--category", "Deleted"});
    EXPECT_EQ(mail()[0].category, 2);
    EXPECT_EQ(mail()[0].attributes, HandheldRecord::dirty);
    expectRefused({"edit", "mail", "1", "--category", "Spam"}, 2);
    does({"delete", "mail", "1"});
    EXPECT_TRUE(mail()[0].isGone());
}

TEST_F(MailCommands, MessagesAreListedByFolder) {
    does({"add", "mail", "to=Jo Brown", "subject=Lunch"});
    addNotice();
    does({"add", "mail", "from=A name that is longer than the column", "subject=Read\tit", "read=yes",
          "--category", "Inbox"});
    does({"add", "mail", "subject=Gone"});
    does({"delete", "mail", "4"});
    does({"add", "mail", "subject=Other", "--category", "9"});
    does({"list", "mail"});
    EXPECT_EQ(out_.str(), "id        folder    new  from or to                date              subject\n"
                          "0x000002  Inbox     *    Jo Brown                  2002-02-05 09:30  Team\n"
                          "0x000003  Inbox          A name that is longer ..                    Read?it\n"
                          "0x000001  Outbox         Jo Brown                                    Lunch\n"
                          "0x000005  9         *                                                Other\n");
    does({"list", "mail", "--folder", "outbox", "--json"});
    EXPECT_EQ(json(),
              nlohmann::json::parse(R"([{"id": 1, "folder": "Outbox", "unread": false, "with": "Jo Brown",
                                                 "date": "", "subject": "Lunch"}])"));
    does({"list", "--folder", "1"});
    EXPECT_THAT(out_.str(), HasSubstr("Lunch"));
    expectRefused({"list", "mail", "--folder", "Spam"}, 2);
}

TEST_F(MailCommands, AMessageTellsWhatAnAnswerGoesTo) {
    addNotice();
    does({"show", "mail", "1"});
    EXPECT_THAT(out_.str(), HasSubstr("    subject       Team\n"));
    EXPECT_THAT(
        out_.str(),
        HasSubstr("    information   an answer goes to the Notes item 00112233445566778899aabbccddeeff\n"));
    does({"show", "mail", "1", "--json"});
    EXPECT_EQ(json()["records"][0]["answersTo"], "00112233445566778899aabbccddeeff");
    does({"add", "mail", "body=plain"});
    does({"show", "mail", "2"});
    EXPECT_THAT(out_.str(), testing::Not(HasSubstr("information")));
}

// Up to the name that it goes to, a reply is sent; the block behind it names the item that is answered.
TEST_F(MailCommands, AReplyQuotesTheMessageWithItsBlock) {
    addNotice();
    does({"reply", "1", "--body", "I'll be there."});
    EXPECT_EQ(out_.str(), "2\n");
    EXPECT_EQ(mail()[1].category, 1);
    EXPECT_THAT(
        fields(1),
        ElementsAre(Pair("body", "I'll be there.\n\nJo Brown wrote:\n> Please come.\n> \n> \n> \n> \n> \n> \n"
                                 "> ----- Vellum Info -----\n"
                                 "> UNID:00112233445566778899aabbccddeeff;\n"
                                 "> ----- End Vellum Info -----\n> "),
                    Pair("priority", "normal"), Pair("subject", "Re: Team"), Pair("to", "Jo Brown")));
    does({"show", "mail", "2", "--json"});
    EXPECT_EQ(json()["records"][0]["answersTo"], "00112233445566778899aabbccddeeff");
}

TEST_F(MailCommands, AReplyGoesWhereTheMessageWantsIt) {
    does({"add", "mail", "from=Jo", "replyTo=Team\nMax", "subject=Re: Lunch", "body=Caf\xC3\xA9"});
    does({"reply", "1", "--body", "Yes", "cc=Kim", "priority=high", "signature=yes"});
    EXPECT_THAT(fields(1), ElementsAre(Pair("body", "Yes\n\nTeam\nMax wrote:\n> Caf\xE9"), Pair("cc", "Kim"),
                                       Pair("priority", "high"), Pair("signature", "yes"),
                                       Pair("subject", "Re: Lunch"), Pair("to", "Team\nMax")));
    does({"add", "mail", "subject=From nobody"});
    expectRefused({"reply", "3", "--body", "Who?"}, 1);
    expectRefused({"reply", "9", "--body", "Who?"}, 1);
    expectRefused({"reply", "1"}, 2);
    expectRefused({"reply", "1", "--body", "x", "colour=red"}, 2);
    expectRefused({"reply", "1", "--body", std::string(65535, 'x')}, 2);
}

TEST_F(MailCommands, TheFilterAndTheSignatureAreChosen) {
    does({"configure"});
    EXPECT_THAT(out_.str(), HasSubstr("mail         all, at most 4000 bytes of a body\nsignature    none\n"));
    does({"configure", "--mail-filter", "matching", "--filter-from", "Jo", "--filter-subject", "Caf\xC3\xA9",
          "--filter-without", "--no-pass-high", "--longest-body", "500", "--signature", "Pat\nAcme"});
    const Handheld handheld = HandheldFolder::open(folder()).handheld();
    EXPECT_EQ(mailFilter(handheld),
              (MailFilter{MailFilter::Kind::Matching, false, false, 500, "", "Jo", "Caf\xE9"}));
    EXPECT_EQ(mailSignature(handheld), "Pat\nAcme");
    does({"configure"});
    EXPECT_THAT(out_.str(), HasSubstr("mail         matching, at most 500 bytes of a body\n"
                                      "matching     without to '', from 'Jo', subject 'Caf\xC3\xA9'\n"
                                      "signature    Pat/Acme\n"));
    does({"configure", "--filter-containing", "--pass-high", "--filter-from", ""}); // the rest stays
    does({"configure", "--json"});
    EXPECT_EQ(json()["mail"],
              nlohmann::json::parse(R"({"filter": "matching", "to": "", "from": "", "subject": "Café",
        "containing": true, "passHigh": true, "longestBody": 500, "signature": "Pat\nAcme"})"));
    does({"configure", "--signature", "", "--mail-filter", "unread"});
    EXPECT_EQ(mailSignature(HandheldFolder::open(folder()).handheld()), "");
    for (const Words& words : {Words{"configure", "--mail-filter", "some"},
                               {"configure", "--longest-body", "65536"},
                               {"configure", "--filter-containing", "--filter-without"},
                               {"configure", "--pass-high", "--no-pass-high"},
                               {"configure", "--filter-to", "\xE2\x82\xAC"}}) {
        expectRefused(words, 2);
    }
    expectRefused({"configure", "--signature", std::string(1024, 'x')}, 1);
}

TEST_F(MailCommands, MessagesComeFromFilesAndGoIntoThem) {
    write("a.eml", "From: Jo <jo@example.com>\nSubject: One\nDate: Tue, 5 Feb 2002 09:30:00 +0100\n\nHi\n");
    write("b.mbox",
          "From a\nFrom: Max\nSubject: Two\n\nHi\n\nFrom b\nFrom: Max\nSubject: \xE2\x82\xAC\n\nHi\n");
    does({"import", file("a.eml"), "--folder", "Filed"});
    does({"import", file("b.mbox")});
    EXPECT_EQ(err_.str(),
              "handheld: not imported: '\xE2\x82\xAC': it has characters that the handheld has not\n");
    ASSERT_THAT(mail(), SizeIs(2));
    EXPECT_EQ(mail()[0].category, 3);
    EXPECT_EQ(mail()[1].category, 0);
    EXPECT_EQ(fields(0)["time"], "09:30"); // as it stands in its own zone
    does({"export", "mail", file("out.mbox")});
    EXPECT_THAT(content("out.mbox"),
                HasSubstr("From jo@example.com Tue Feb  5 09:30:00 2002\nFrom: Jo <jo@"));
    EXPECT_THAT(content("out.mbox"), HasSubstr("\n\nHi\n\nFrom MAILER-DAEMON "));
    does({"export", "mail", file("out.mbox"), "--folder", "Inbox"});
    EXPECT_THAT(content("out.mbox"), testing::Not(HasSubstr("Subject: One")));
    does({"export", "mail", file("out.eml"), "--record", "1"});
    EXPECT_THAT(content("out.eml"), HasSubstr("Subject: One\r\n"));
    does({"export", "mail", file("out.eml"), "--folder", "Inbox"});
    EXPECT_THAT(content("out.eml"), HasSubstr("Subject: Two\r\n"));
}

TEST_F(MailCommands, AMessageThatIsNotTakenDoesNotActOnTheTerminal) {
    write("a.eml", "Subject: =?utf-8?Q?a=1B=C2=9B=C2=A0=E2=82=AC?=\n\n");
    does({"import", file("a.eml")});
    EXPECT_THAT(err_.str(), HasSubstr("'a ?\xC2\xA0\xE2\x82\xAC'"));
}

TEST_F(MailCommands, FilesThatAreNoMailAreRefused) {
    write("a.eml", "nonsense");
    write("b.mbox", "nonsense");
    write("c.eml", "Subject: One\n\n");
    expectRefused({"import", file("a.eml")}, 1);
    expectRefused({"import", file("b.mbox")}, 1);
    expectRefused({"import", file("none.eml")}, 1);
    expectRefused({"import", file("c.eml"), "--folder", "Spam"}, 1);
    expectRefused({"export", "mail", file("x.eml")}, 2); // there is none
    does({"import", file("c.eml"), file("c.eml")});
    expectRefused({"export", "mail", file("x.eml")}, 2); // there are two
    expectRefused({"export", "mail", file("x.eml"), "--record", "7"}, 1);
    expectRefused({"export", "mail", file("x.mbox"), "--folder", "Spam"}, 2);
}

} // namespace
} // namespace tsr
