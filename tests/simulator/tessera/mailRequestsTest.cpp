#include "tessera/mailRequests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/ConnectionLost.h"
#include "tessera/TesseraSession.h"
#include "tessera/mailDocument.h"
#include "tessera/passwords.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Strings = std::vector<std::string>;

constexpr std::int64_t noon = 1012998896;      // 2002-02-06 12:34:56 UTC
const std::string noonText = "287152496";      // in seconds since 1993
const std::string today = "287107200";         // 2002-02-06 00:00
const std::string options = "YY0YYY++++N";     // all mail, the handheld's rule
const std::string unreadAlone = "YN0YYY++++N"; // of what is new
const std::string notesRule = "YY1YYY++++N";
const std::string outgoing = "NN2N000";
const std::string noUnid(32, '0');

class MailRequests : public ::testing::Test {
protected:
    MailRequests() : service(store, [this] { return now; }), session(service) {
        addUser("Ann");
        addUser("Pat Lee/Sales");
        authenticate(session, "Ann");
        ann = store.findUser("Ann")->id;
        pat = store.findUser("Pat Lee/Sales")->id;
        dbid = store.mailDatabase(ann).dbid;
    }

    void addUser(const std::string& name) {
        User user;
        user.name = name;
        store.addUser(user, hashPassword("secret", PasswordCost::Minimal));
    }

    static void authenticate(TesseraSession& session, const std::string& name) {
        session.handle({1, {"0", name, "secret", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"}});
    }

    Strings ask(std::uint32_t code, const Strings& strings) {
        const Response response = session.handle({code, strings});
        EXPECT_EQ(response.result, ResultCode::Success) << response.message;
        return response.strings;
    }

    void expectRefused(std::uint32_t code, const Strings& strings, ResultCode result,
                       const std::string& message) {
        const Response response = session.handle({code, strings});
        EXPECT_EQ(response.result, result);
        EXPECT_EQ(response.message, message);
    }

    // Of the Inbox, from today on.
    std::string inform(const Strings& entries, const std::string& chosen = options,
                       const std::string& folder = inboxFolder, const Strings& formula = {"0"}) {
        Strings strings{dbid, folder, today, chosen};
        strings.insert(strings.end(), formula.begin(), formula.end());
        strings.insert(strings.end(), entries.begin(), entries.end());
        const Strings answer = ask(308, strings);
        return answer.empty() ? "" : answer[0];
    }

    Strings wanted(const std::string& token) { return ask(310, {token}); }
    Strings deleted(const std::string& token) { return ask(311, {token}); }
    Strings toReceive(const std::string& token) { return ask(312, {token}); }

    static Mail mailOf(const std::string& subject) {
        Mail mail;
        mail.from = "Max";
        mail.to = {"Ann"};
        mail.subject = subject;
        mail.body = "Hi";
        mail.date = noon;
        return mail;
    }

    std::string arrive(const std::string& subject) { return deliver(store, ann, mailOf(subject)).unid; }
    std::string draft(const std::string& subject, const std::string& body = "Hi") {
        Mail mail = mailOf(subject);
        mail.body = body;
        return saveDraft(store, ann, mail).unid;
    }

    Document find(const std::string& unid) { return *store.findDocument(store.mailDatabase(ann).id, unid); }
    Mail mail(const std::string& unid) { return toMail(find(unid).properties); }

    void change(const std::string& unid, const std::string& body) {
        Document document = find(unid);
        document.properties["Body"] = {body};
        store.changeDocument(store.mailDatabase(ann).id, unid, document.properties);
    }

    // What a handheld sends of a message.
    static Strings properties(const std::string& subject, const std::string& body, const std::string& to = "",
                              const std::string& cc = "", const std::string& bcc = "") {
        return {"#UNID=",      "Bcc=" + bcc, "Body=" + body,       "Cc=" + cc,
                "From=Nobody", "ReplyTo=",   "Subject=" + subject, "To=" + to};
    }

    Strings send(const std::string& unid, const std::string& body, const std::string& folder = draftsFolder) {
        Strings strings{dbid, unid, folder, "0"};
        const Strings sent = properties("Plan", body, "Max,Kim");
        strings.insert(strings.end(), sent.begin(), sent.end());
        return ask(316, strings);
    }

    Strings outgoingStrings(const Strings& sent, const std::string& chosen = outgoing,
                            const std::string& answered = noUnid) {
        Strings strings{dbid, chosen, answered, "0"};
        strings.insert(strings.end(), sent.begin(), sent.end());
        return strings;
    }

    std::vector<Mail> inbox(std::int64_t user) {
        std::vector<Mail> mails;
        for (const Document& document : mailIn(store, user, inboxFolder))
            mails.push_back(toMail(document.properties));
        return mails;
    }

    std::int64_t now = noon;
    Store store = Store::inMemory();
    TesseraService service;
    TesseraSession session;
    std::int64_t ann = 0;
    std::int64_t pat = 0;
    std::string dbid;
};

TEST_F(MailRequests, ListsWhatIsNewInAFolder) {
    const std::string lunch = arrive("Lunch");
    const std::string plan = draft("Plan");
    Mail sent = mailOf("Sent");
    sent.folder = sentFolder;
    Properties properties;
    setMail(properties, sent);
    store.addDocument(store.mailDatabase(ann).id, mailKind, properties);
    const std::string inbox = inform({});
    EXPECT_THAT(toReceive(inbox), ElementsAre(lunch));
    EXPECT_THAT(wanted(inbox), IsEmpty());
    EXPECT_THAT(deleted(inbox), IsEmpty());
    EXPECT_THAT(toReceive(inform({}, options, draftsFolder)), ElementsAre(plan));
}

TEST_F(MailRequests, GivesAMessageByItsIdentity) {
    Mail mail = mailOf("Lunch=noon");
    mail.to = {"Ann", "\"Lee, Pat\" <pat@home>"};
    mail.cc = {"Kim"};
    mail.replyTo = "Jo";
    const std::string unid = deliver(store, ann, mail).unid;
    EXPECT_THAT(ask(317, {dbid, unid, "4000"}),
                ElementsAre("Body=Hi", "Cc=Kim", "Date=" + noonText, "From=Max", "Importance=2", "ReplyTo=Jo",
                            "Subject=Lunch=noon", "To=Ann, \"Lee, Pat\" <pat@home>", "Unread=1",
                            "DBID=" + dbid, "UNID=" + unid, "SeqNum=1"));
    markUnread(store, ann, unid, false);
    EXPECT_THAT(ask(317, {dbid, unid, "4000"}), testing::Contains("Unread=0"));
}

TEST_F(MailRequests, GivesANoticeWithItsActions) {
    Mail mail = mailOf("Meeting");
    mail.notice = MeetingNotice{"You are invited", {"Accept", "Reply"}, "Room 1", 90};
    const Strings given = ask(317, {dbid, deliver(store, ann, mail).unid, "4000"});
    EXPECT_EQ(Strings(given.begin(), given.begin() + 2), (Strings{"ActionList=Accept", "ActionList=Reply"}));
    for (const char* const text : {"NoticeBody=You are invited", "Room=Room 1", "Duration=90"})
        EXPECT_THAT(given, testing::Contains(text));
}

TEST_F(MailRequests, ComparesWhatBothSidesHave) {
    const std::string same = draft("Same");
    const std::string edited = draft("Edited here");
    const std::string changed = draft("Changed in Notes");
    const std::string both = draft("Both");
    change(changed, "New");
    change(both, "New");
    const std::string gone(32, 'a');
    const Strings entries{same, "1", "1",  "0", edited, "1", "2",  "0", changed, "1",
                          "1",  "0", both, "1", "2",    "0", gone, "7", "8",     "0"};
    const std::string token = inform(entries, options, draftsFolder);
    EXPECT_THAT(wanted(token), ElementsAre(edited, both));
    EXPECT_THAT(toReceive(token), ElementsAre(changed));
    EXPECT_THAT(deleted(token), ElementsAre(gone));
    // Under the rule of Notes both are wanted too, as mail has no anomalies.
    const std::string other = inform(entries, notesRule, draftsFolder);
    EXPECT_THAT(wanted(other), ElementsAre(edited, both));
    EXPECT_THAT(toReceive(other), ElementsAre(changed));
}

TEST_F(MailRequests, AReadMarkThatTheHandheldHasChangedGoesToNotesAlone) {
    const std::string unid = arrive("Lunch");
    const std::string token = inform({unid, "1", "0", "0"});
    EXPECT_THAT(toReceive(token), IsEmpty());
    EXPECT_THAT(wanted(token), IsEmpty());
    EXPECT_FALSE(mail(unid).unread);
    EXPECT_EQ(find(unid).sequence, 1u);
    EXPECT_THAT(toReceive(inform({unid, "1", "1", "0"})), IsEmpty()); // the next session
    inform({unid, "1", "0", "1"});                                    // unread again
    EXPECT_TRUE(mail(unid).unread);
}

TEST_F(MailRequests, AReadMarkThatNotesHasChangedIsReceived) {
    const std::string unid = arrive("Lunch");
    markUnread(store, ann, unid, false);
    const std::string token = inform({unid, "1", "1", "1"});
    EXPECT_THAT(toReceive(token), ElementsAre(unid));
    EXPECT_FALSE(mail(unid).unread);
    EXPECT_THAT(ask(317, {dbid, unid, "4000"}), testing::Contains("SeqNum=1"));
    EXPECT_THAT(toReceive(inform({unid, "1", "1", "0"})), IsEmpty());
}

TEST_F(MailRequests, AReadMarkComesWithAChangedMessage) {
    const std::string plain = draft("Plain");
    const std::string conflict = draft("Conflict");
    change(conflict, "New");
    const Strings entries{plain, "1", "2", "1", conflict, "1", "2", "1"};
    inform(entries, notesRule, draftsFolder);
    EXPECT_TRUE(mail(plain).unread);
    EXPECT_FALSE(mail(conflict).unread); // Notes' version prevails with its mark
    inform(entries, options, draftsFolder);
    EXPECT_TRUE(mail(conflict).unread);
}

// After a reset the handheld knows no numbers, and "0" stands in the place of one.
TEST_F(MailRequests, AResetTakesTheMarksOfNotes) {
    const std::string unid = arrive("Lunch");
    const std::string token = inform({unid, "0", "0", "0"});
    EXPECT_THAT(toReceive(token), ElementsAre(unid));
    EXPECT_TRUE(mail(unid).unread);
}

TEST_F(MailRequests, TheWindowHoldsWhatIsNewInTheInbox) {
    Mail old = mailOf("Old");
    old.date = 1012953599; // 2002-02-05 23:59:59
    const std::string oldUnid = deliver(store, ann, old).unid;
    Mail first = old;
    first.date = old.date + 1;
    const std::string firstUnid = deliver(store, ann, first).unid;
    const std::string oldDraft = saveDraft(store, ann, old).unid;
    EXPECT_THAT(toReceive(inform({})), ElementsAre(firstUnid));
    EXPECT_THAT(toReceive(inform({}, options, draftsFolder)), ElementsAre(oldDraft));
    // What the handheld has stays, and is kept up to date.
    EXPECT_THAT(deleted(inform({oldUnid, "1", "1", "1"})), IsEmpty());
    EXPECT_THAT(toReceive(inform({oldUnid, "1", "1", "1"})), ElementsAre(firstUnid));
    change(oldUnid, "New");
    EXPECT_THAT(toReceive(inform({oldUnid, "1", "1", "1"})), ElementsAre(oldUnid, firstUnid));
    // Days are those of the user's zone.
    User user = *store.findUser(ann);
    user.zone = ZoneRule("CET-1");
    store.changeUser(user);
    EXPECT_THAT(toReceive(inform({})), ElementsAre(oldUnid, firstUnid)); // 00:59:59 there
}

// As many days that the window begins before 1993: the handheld counts in 32 bits.
TEST_F(MailRequests, AWindowThatBeginsInTheFutureHasNoBeginning) {
    Mail old = mailOf("Old");
    old.date = 725846400; // 1993-01-01
    const std::string unid = deliver(store, ann, old).unid;
    EXPECT_THAT(toReceive(ask(308, {dbid, "Inbox", "4294880896", options, "0"})[0]), ElementsAre(unid));
}

TEST_F(MailRequests, TheOptionForUnreadMailIsForWhatIsNewInTheInbox) {
    const std::string read = arrive("Read");
    const std::string unread = arrive("Unread");
    const std::string plan = draft("Plan");
    markUnread(store, ann, read, false);
    EXPECT_THAT(toReceive(inform({}, unreadAlone)), ElementsAre(unread));
    EXPECT_THAT(toReceive(inform({}, unreadAlone, draftsFolder)), ElementsAre(plan));
    // Once read it stays with the handheld.
    const std::string token = inform({read, "1", "1", "0"}, unreadAlone);
    EXPECT_THAT(toReceive(token), ElementsAre(unread));
    EXPECT_THAT(deleted(token), IsEmpty());
    // And one that is read in Notes is shown as that.
    markUnread(store, ann, unread, false);
    EXPECT_THAT(toReceive(inform({unread, "1", "1", "1"}, unreadAlone)), ElementsAre(unread));
}

TEST_F(MailRequests, AFormulaIsForWhatIsNewInTheInbox) {
    const std::string lunch = arrive("Lunch");
    const std::string tea = arrive("Tea");
    draft("Plan");
    const Strings formula{"1", R"(@Contains(@LowerCase(Subject);@LowerCase("LUNCH")))"};
    EXPECT_THAT(toReceive(inform({}, options, inboxFolder, formula)), ElementsAre(lunch));
    EXPECT_EQ(toReceive(inform({}, options, draftsFolder, formula)).size(), 1u);
    const std::string token = inform({tea, "1", "1", "1"}, options, inboxFolder, formula);
    EXPECT_THAT(toReceive(token), ElementsAre(lunch));
    EXPECT_THAT(deleted(token), IsEmpty());
    EXPECT_THAT(toReceive(inform({}, options, inboxFolder, {"1", R"(Body="Hi"&SendTo="Ann")"})),
                ElementsAre(lunch, tea));
}

TEST_F(MailRequests, AFormulaThatCannotBeReadIsRefused) {
    const Strings formula{"1", R"(@Contains(@LowerCase(Subject);@LowerCase("5" disks")))"};
    expectRefused(308, {dbid, "Inbox", today, options, formula[0], formula[1]}, ResultCode::BadRequest,
                  "Cannot read the selection formula at character 51, '\"))': the closing quotation mark is "
                  "missing.");
    EXPECT_THAT(ask(200, {}), testing::SizeIs(2)); // and the session goes on
}

TEST_F(MailRequests, RefuseWhatTheyCannotRead) {
    const std::string unid = arrive("Lunch");
    const std::string otherDbid = store.mailDatabase(pat).dbid;
    const std::string otherUnid = deliver(store, pat, mailOf("Not hers")).unid;
    const std::string document = "The entry of the document '" + unid + "' cannot be understood.";
    const struct {
        std::uint32_t code;
        Strings strings;
        ResultCode result;
        std::string message;
    } rows[] = {
        {308,
         {dbid, "Inbox", today, options},
         ResultCode::BadRequest,
         "The request has 4 strings in the place of 5 or more."},
        {308,
         {otherDbid, "Inbox", today, options, "0"},
         ResultCode::NotFound,
         "There is no mail database '" + otherDbid + "'."},
        {308, {dbid, "Sent", today, options, "0"}, ResultCode::NotFound, "There is no folder 'Sent'."},
        {308, {dbid, "Inbox", "today", options, "0"}, ResultCode::BadRequest, "'today' is not a number."},
        {308,
         {dbid, "Inbox", today, "YY0YYY++++", "0"},
         ResultCode::BadRequest,
         "'YY0YYY++++' are not options of mail."},
        {308,
         {dbid, "Inbox", today, "YX0YYY++++N", "0"},
         ResultCode::BadRequest,
         "'YX0YYY++++N' are not options of mail."},
        {308,
         {dbid, "Inbox", today, "YY2YYY++++N", "0"},
         ResultCode::BadRequest,
         "'YY2YYY++++N' are not options of mail."},
        {308,
         {dbid, "Inbox", today, options, "2"},
         ResultCode::BadRequest,
         "'2' does not tell of a formula."},
        {308,
         {dbid, "Inbox", today, options, "1"},
         ResultCode::BadRequest,
         "The request has 5 strings in the place of 6 or more."},
        {308,
         {dbid, "Inbox", today, options, "0", unid, "1", "1"},
         ResultCode::BadRequest,
         "The last message of the list is incomplete."},
        {308, {dbid, "Inbox", today, options, "0", unid, "1", "3", "0"}, ResultCode::BadRequest, document},
        {308, {dbid, "Inbox", today, options, "0", unid, "1", "1", "2"}, ResultCode::BadRequest, document},
        {308,
         {dbid, "Inbox", today, options, "0", unid, "x", "1", "0"},
         ResultCode::BadRequest,
         "'x' is not a number."},
        {310, {"exchange 9"}, ResultCode::NotFound, "There is no replication 'exchange 9'."},
        {311, {}, ResultCode::BadRequest, "The request has 0 strings in the place of 1."},
        {312, {"a", "b"}, ResultCode::BadRequest, "The request has 2 strings in the place of 1."},
        {317, {dbid, unid}, ResultCode::BadRequest, "The request has 2 strings in the place of 3."},
        {317, {dbid, unid, "-1"}, ResultCode::BadRequest, "'-1' is not a number."},
        {317, {dbid, otherUnid, "1"}, ResultCode::NotFound, "There is no document '" + otherUnid + "'."},
        {317,
         {otherDbid, otherUnid, "1"},
         ResultCode::NotFound,
         "There is no mail database '" + otherDbid + "'."},
        {316,
         {dbid, unid, "Inbox"},
         ResultCode::BadRequest,
         "The request has 3 strings in the place of 4 or more."},
        {316, {dbid, unid, "Inbox", "0", "Body"}, ResultCode::BadRequest, "'Body' is not a property."},
        {316, {dbid, unid, "Outbox", "0"}, ResultCode::NotFound, "There is no folder 'Outbox'."},
        {316,
         {dbid, otherUnid, "Inbox", "0"},
         ResultCode::NotFound,
         "There is no document '" + otherUnid + "'."},
        {316, {dbid, unid, "Inbox", "0"}, ResultCode::ItemRefused, "The message wasn't asked for."},
        {305, {}, ResultCode::BadRequest, "The request has 0 strings in the place of 1 or more."},
        {305, {otherDbid, otherUnid}, ResultCode::NotFound, "There is no mail database '" + otherDbid + "'."},
        {318,
         {dbid, outgoing, noUnid},
         ResultCode::BadRequest,
         "The request has 3 strings in the place of 4 or more."},
        {318,
         {otherDbid, outgoing, noUnid, "0", "To=Ann"},
         ResultCode::NotFound,
         "There is no mail database '" + otherDbid + "'."},
        {318,
         {dbid, "NN2N00", noUnid, "0", "To=Ann"},
         ResultCode::BadRequest,
         "'NN2N00' are not options of outgoing mail."},
        {318,
         {dbid, "NN4N000", noUnid, "0", "To=Ann"},
         ResultCode::BadRequest,
         "'NN4N000' are not options of outgoing mail."},
        {318,
         {dbid, outgoing, noUnid, "0", "To= , ", "Cc=", "Bcc="},
         ResultCode::ItemRefused,
         "The mail is addressed to nobody."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.code) + " " + row.message);
        expectRefused(row.code, row.strings, row.result, row.message);
    }
    EXPECT_EQ(inbox(pat).size(), 1u);
    TesseraSession stranger(service);
    for (const std::uint32_t code : {305u, 308u, 310u, 311u, 312u, 316u, 317u, 318u, 324u})
        EXPECT_EQ(stranger.handle({code, {}}).result, ResultCode::NotAuthenticated) << code;
}

TEST_F(MailRequests, TakeANewDraft) {
    const Strings answer = send(noUnid, "First\n\n");
    ASSERT_EQ(answer.size(), 2u);
    EXPECT_EQ(answer[1], "1");
    EXPECT_EQ(find(answer[0]).properties, (Properties{{"Body", {"First\n\n"}},
                                                      {"Date", {noonText}},
                                                      {"Folder", {"Drafts"}},
                                                      {"From", {"Nobody"}},
                                                      {"Importance", {"2"}},
                                                      {"Subject", {"Plan"}},
                                                      {"To", {"Max", "Kim"}}}));
    EXPECT_THAT(toReceive(inform({answer[0], "1", "1", "0"}, options, draftsFolder)), IsEmpty());
}

TEST_F(MailRequests, KnowANewDraftThatComesAgain) {
    const std::string unid = send(noUnid, "First")[0];
    const std::string second = send(noUnid, "First")[0]; // equal, in the same session
    EXPECT_NE(second, unid);
    now += 60;
    TesseraSession next(service); // the first one broke off
    authenticate(next, "Ann");
    Strings strings{dbid, noUnid, "Drafts", "0"};
    const Strings sent = properties("Plan", "First", "Max,Kim");
    strings.insert(strings.end(), sent.begin(), sent.end());
    const std::set<std::string> again{next.handle({316, strings}).strings.at(0),
                                      next.handle({316, strings}).strings.at(0)};
    EXPECT_EQ(again, (std::set<std::string>{unid, second}));
    EXPECT_EQ(mailIn(store, ann, draftsFolder).size(), 2u);
    next.handle({19, {}});
    EXPECT_EQ(send(noUnid, "First").size(), 2u);
    EXPECT_EQ(mailIn(store, ann, draftsFolder).size(), 3u);
}

TEST_F(MailRequests, TakeAChangedDraft) {
    const std::string unid = draft("Old");
    inform({unid, "1", "2", "0"}, options, draftsFolder);
    EXPECT_THAT(send(unid, "New\n\n"), ElementsAre(unid, "2"));
    EXPECT_EQ(mail(unid).body, "New\n\n");
    EXPECT_EQ(mail(unid).subject, "Plan");
    EXPECT_THAT(mail(unid).to, ElementsAre("Max", "Kim"));
    EXPECT_THAT(toReceive(inform({unid, "2", "2", "0"}, options, draftsFolder)), IsEmpty());
}

TEST_F(MailRequests, AConflictUnderNotesRuleEndsWithTwoDrafts) {
    const std::string unid = draft("Old");
    change(unid, "Notes");
    const std::string token = inform({unid, "1", "2", "0"}, notesRule, draftsFolder);
    EXPECT_THAT(send(unid, "Handheld"), ElementsAre(unid, "2"));
    EXPECT_THAT(send(unid, "Handheld"), ElementsAre(unid, "2")); // once more, to no effect
    EXPECT_EQ(mail(unid).body, "Notes");
    const Strings both = toReceive(token);
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0], unid);
    EXPECT_EQ(mail(both[1]).body, "Handheld");
    EXPECT_EQ(mail(both[1]).folder, "Drafts");
    EXPECT_EQ(mail(both[1]).date, noon);
}

TEST_F(MailRequests, AConflictOfEqualVersionsIsNone) {
    const std::string unid = draft("Old");
    inform({unid, "1", "2", "0"}, notesRule, draftsFolder);
    send(unid, "New"); // and the handheld forgets it
    const std::string token = inform({unid, "1", "2", "0"}, notesRule, draftsFolder);
    EXPECT_THAT(wanted(token), ElementsAre(unid));
    EXPECT_THAT(send(unid, "New"), ElementsAre(unid, "2"));
    EXPECT_THAT(toReceive(token), IsEmpty());
}

TEST_F(MailRequests, ADraftThatNotesChangesMeanwhileIsTheNextSessions) {
    const std::string unid = draft("Old");
    inform({unid, "1", "2", "0"}, notesRule, draftsFolder);
    change(unid, "Notes");
    Strings strings{dbid, unid, "Drafts", "0", "Subject=Plan"};
    expectRefused(316, strings, ResultCode::ItemRefused, "The document was changed in Notes meanwhile.");
    EXPECT_EQ(mail(unid).body, "Notes");
}

TEST_F(MailRequests, ANoticeKeepsItsBody) {
    Mail notice = mailOf("Meeting");
    notice.notice = MeetingNotice{"You are invited", {"Accept"}, "Room 1", 90};
    const std::string unid = deliver(store, ann, notice).unid;
    inform({unid, "1", "2", "1"});
    EXPECT_THAT(send(unid, "You are invited\n\n\n\n\n\n----- Vellum Info -----\n", inboxFolder),
                ElementsAre(unid, "2"));
    EXPECT_EQ(mail(unid).notice->body, "You are invited");
    EXPECT_EQ(mail(unid).body, "Hi");
    EXPECT_EQ(mail(unid).subject, "Plan");
}

TEST_F(MailRequests, DeleteMessages) {
    const std::string unid = arrive("Lunch");
    const std::string gone(32, 'a');
    EXPECT_THAT(ask(305, {dbid, unid, gone}), ElementsAre(unid, gone));
    EXPECT_THAT(inbox(ann), IsEmpty());
    EXPECT_THAT(store.deletedUnids(store.mailDatabase(ann).id), ElementsAre(unid));
    EXPECT_THAT(ask(305, {dbid}), IsEmpty());
}

TEST_F(MailRequests, CutALongBody) {
    const std::string unid = draft("Plan", "0123456789");
    EXPECT_THAT(ask(317, {dbid, unid, "10"}), testing::Contains("Body=0123456789"));
    EXPECT_FALSE(find(unid).properties.contains("Cut"));
    EXPECT_THAT(ask(317, {dbid, unid, "4"}),
                testing::Contains("Body=0123\n----- 6 more characters are in Notes -----\n"));
    EXPECT_TRUE(find(unid).properties.contains("Cut"));
    EXPECT_EQ(find(unid).sequence, 1u);
    EXPECT_EQ(mail(unid).body, "0123456789");
}

TEST_F(MailRequests, ABeginningThatComesBackLeavesTheRest) {
    const std::string unid = draft("Plan", "0123456789");
    ask(317, {dbid, unid, "4"});
    inform({unid, "1", "2", "0"}, options, draftsFolder);
    send(unid, "AB\n----- 6 more characters are in Notes -----\n\n\n");
    EXPECT_EQ(mail(unid).body, "AB456789");
    inform({unid, "2", "3", "0"}, options, draftsFolder); // as the handheld has it still
    send(unid, "CDE\n----- 6 more characters are in Notes -----\n\n\n");
    EXPECT_EQ(mail(unid).body, "CDE456789");
    EXPECT_EQ(find(unid).sequence, 3u);
}

TEST_F(MailRequests, ABeginningWithoutItsLineBecomesADraftOfItsOwn) {
    const std::string unid = draft("Plan", "0123456789");
    ask(317, {dbid, unid, "4"});
    const std::string token = inform({unid, "1", "2", "0"}, options, draftsFolder);
    EXPECT_THAT(send(unid, "AB\n\n"), ElementsAre(unid, "1"));
    EXPECT_EQ(mail(unid).body, "0123456789");
    const Strings both = toReceive(token);
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0], unid);
    EXPECT_EQ(mail(both[1]).body, "AB\n\n");
}

TEST_F(MailRequests, ABeginningDoesNotReplaceWhatNotesHasChanged) {
    const std::string unid = draft("Plan", "0123456789");
    ask(317, {dbid, unid, "4"});
    change(unid, "9876543210");
    const std::string token = inform({unid, "1", "2", "0"}, options, draftsFolder);
    send(unid, "AB\n----- 6 more characters are in Notes -----\n\n");
    EXPECT_EQ(mail(unid).body, "9876543210");
    const Strings both = toReceive(token);
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(mail(both[1]).body, "AB543210");
}

// The draft that a broken session took is completed to what it is already.
TEST_F(MailRequests, ABeginningThatComesAgainIsNoOtherDraft) {
    const std::string unid = draft("Plan", "0123456789");
    ask(317, {dbid, unid, "4"});
    const std::string edited = "AB\n----- 6 more characters are in Notes -----\n\n";
    inform({unid, "1", "2", "0"}, options, draftsFolder);
    send(unid, edited);
    const std::string token = inform({unid, "1", "2", "0"}, options, draftsFolder);
    EXPECT_THAT(send(unid, edited), ElementsAre(unid, "2"));
    EXPECT_THAT(toReceive(token), IsEmpty());
    EXPECT_EQ(mail(unid).body, "AB456789");
}

TEST_F(MailRequests, DeliverOutgoingMail) {
    EXPECT_THAT(
        ask(318, outgoingStrings(properties("Lunch", "Noon?\n\n", "pat lee", "ANN", "Ann"), "NC1N100")),
        IsEmpty());
    const auto arrived = mailIn(store, pat, inboxFolder);
    ASSERT_EQ(arrived.size(), 1u);
    EXPECT_EQ(arrived[0].properties, (Properties{{"Body", {"Noon?\n\n"}},
                                                 {"Cc", {"ANN"}},
                                                 {"Date", {noonText}},
                                                 {"DeliveryReport", {"1"}},
                                                 {"Folder", {"Inbox"}},
                                                 {"From", {"Ann"}},
                                                 {"Importance", {"1"}},
                                                 {"ReturnReceipt", {"1"}},
                                                 {"Subject", {"Lunch"}},
                                                 {"To", {"pat lee"}},
                                                 {"Unread", {"1"}}}));
    EXPECT_EQ(inbox(ann).size(), 1u); // two of the addresses are hers
    const auto sent = mailIn(store, ann, sentFolder);
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_THAT(toMail(sent[0].properties).bcc, ElementsAre("Ann"));
    EXPECT_FALSE(toMail(sent[0].properties).unread);
    EXPECT_EQ(toMail(sent[0].properties).date, noon);
}

TEST_F(MailRequests, AnAnswerNamesWhatItAnswers) {
    const std::string unid = arrive("Lunch");
    ask(318, outgoingStrings(properties("Re: Lunch", "Yes", "Pat Lee"), outgoing, unid));
    EXPECT_EQ(inbox(pat).at(0).answers, unid);
    // A text that is no identity, such as one that the user has touched, is not.
    ask(318, outgoingStrings(properties("Re: Lunch", "Yes", "Pat Lee"), outgoing, "my message"));
    EXPECT_EQ(inbox(pat).at(1).answers, "");
}

TEST_F(MailRequests, AnUnknownAddresseeIsReportedToTheSender) {
    addUser("Pat Lee/Stock");
    ask(318, outgoingStrings(properties("Lunch", "Noon?", "Pat Lee/Sales,Kim", "", "Pat Lee")));
    EXPECT_EQ(inbox(pat).size(), 1u);
    const auto reports = inbox(ann);
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].from, "Mail Delivery");
    EXPECT_THAT(reports[0].to, ElementsAre("Ann"));
    EXPECT_TRUE(reports[0].unread);
    EXPECT_EQ(reports[0].subject, "Delivery failure: Lunch");
    EXPECT_EQ(reports[0].body, "This message was not delivered to\n\n"
                               "  Kim: there is no user of this name\n"
                               "  Pat Lee: several users have this name\n\n"
                               "Its text:\n\nNoon?");
}

TEST_F(MailRequests, ThousandAddressesAreTheMost) {
    std::string addresses = "Pat Lee";
    for (int i = 0; i < 999; ++i) addresses += ",Pat Lee";
    ask(318, outgoingStrings(properties("Lunch", "Noon?", addresses)));
    EXPECT_EQ(inbox(pat).size(), 1u);
    expectRefused(318, outgoingStrings(properties("Lunch", "Noon?", addresses + ",Kim")),
                  ResultCode::ItemRefused, "The mail has more than 1000 addresses.");
}

TEST_F(MailRequests, AMailWhoseAnswerWasLostIsNotDeliveredTwice) {
    const Strings strings = outgoingStrings(properties("Lunch", "Noon?", "Pat Lee"));
    service.orderFaults({.lostAnswers = {1}});
    EXPECT_THROW(session.handle({318, strings}), ConnectionLost);
    service.orderFaults({});
    now += 60;
    TesseraSession next(service);
    authenticate(next, "Ann");
    EXPECT_EQ(next.handle({318, strings}).result, ResultCode::Success);
    EXPECT_EQ(inbox(pat).size(), 1u);
    EXPECT_EQ(next.handle({318, strings}).result, ResultCode::Success); // a second one of the same words
    EXPECT_EQ(inbox(pat).size(), 2u);
}

// The client went on behind the answer and so has noted it, also when the session broke off later.
TEST_F(MailRequests, AMailOfTheSameWordsInTheNextSessionIsAnother) {
    const Strings strings = outgoingStrings(properties("Lunch", "Noon?", "Pat Lee"));
    ask(318, strings);
    inform({});
    TesseraSession next(service);
    authenticate(next, "Ann");
    EXPECT_EQ(next.handle({318, strings}).result, ResultCode::Success);
    EXPECT_EQ(inbox(pat).size(), 2u);
}

// A session may end between an answer that the client has had and its next request. In the next one it has
// nothing left to send.
TEST_F(MailRequests, AMailOfTheSameWordsLaterOnIsAnother) {
    const Strings strings = outgoingStrings(properties("Lunch", "Noon?", "Pat Lee"));
    const std::pair<std::uint32_t, Strings> goesOn[] = {
        {308, {dbid, "Inbox", today, options, "0"}}, {305, {dbid}}, {19, {}}};
    std::size_t delivered = 0;
    for (const auto& [code, request] : goesOn) {
        SCOPED_TRACE(code);
        TesseraSession first(service);
        authenticate(first, "Ann");
        EXPECT_EQ(first.handle({318, strings}).result, ResultCode::Success);
        EXPECT_EQ(inbox(pat).size(), ++delivered);
        TesseraSession next(service);
        authenticate(next, "Ann");
        EXPECT_EQ(next.handle({324, {}}).result, ResultCode::Success);
        EXPECT_EQ(next.handle({code, request}).result, ResultCode::Success);
    }
}

TEST_F(MailRequests, AMailThatIsRefusedAsItComesAgainIsNotDeliveredTwice) {
    const Strings strings = outgoingStrings(properties("Lunch", "Noon?", "Pat Lee"));
    const FaultOrders refusals[] = {
        {.refusedItems = {1}}, {.failedRequests = {3}}, {.refusedSubjects = {"Lunch"}}};
    for (const FaultOrders& orders : refusals) {
        TesseraSession first(service);
        authenticate(first, "Ann");
        first.handle({318, strings}); // and its answer is lost
        service.orderFaults(orders);
        TesseraSession next(service);
        authenticate(next, "Ann");
        next.handle({324, {}});
        EXPECT_NE(next.handle({318, strings}).result, ResultCode::Success);
        EXPECT_EQ(next.handle({308, {dbid, "Inbox", today, options, "0"}}).result, ResultCode::Success);
    }
    EXPECT_EQ(inbox(pat).size(), 1u);
}

// Nor is a draft confirmed with the mail.
TEST_F(MailRequests, ADraftWaitsForItsOwnConfirmation) {
    const std::string unid = send(noUnid, "First")[0];
    TesseraSession next(service);
    authenticate(next, "Ann");
    next.handle({324, {}});
    next.handle({308, {dbid, "Inbox", today, options, "0"}});
    Strings strings{dbid, noUnid, "Drafts", "0"};
    const Strings sent = properties("Plan", "First", "Max,Kim");
    strings.insert(strings.end(), sent.begin(), sent.end());
    EXPECT_EQ(next.handle({316, strings}).strings.at(0), unid);
}

TEST_F(MailRequests, AnAddressThatIsNeverClosedKeepsNobodyOut) {
    ask(318, outgoingStrings(properties("Lunch", "Noon?", "Pat Lee <pat,Ann")));
    EXPECT_EQ(inbox(pat).size(), 1u);
    EXPECT_EQ(inbox(ann).size(), 1u);
}

TEST_F(MailRequests, RefuseAMailByOrder) {
    service.orderFaults({.refusedItems = {3}, .refusedSubjects = {"Tea"}});
    for (int time = 0; time < 2; ++time) {
        expectRefused(318, outgoingStrings(properties("Tea", "Four?", "Pat Lee")), ResultCode::ItemRefused,
                      "The mail is refused by order.");
    }
    expectRefused(318, outgoingStrings(properties("Lunch", "Noon?", "Pat Lee")), ResultCode::ItemRefused,
                  "The item is refused by order.");
    EXPECT_THAT(inbox(pat), IsEmpty());
    EXPECT_THAT(mailIn(store, ann, sentFolder), IsEmpty());
    ask(318, outgoingStrings(properties("Lunch", "Noon?", "Pat Lee")));
    EXPECT_EQ(inbox(pat).size(), 1u);
}

} // namespace
} // namespace tsr
