// Whole HotSyncs of messages.

#include "handheld/forms/MailForm.h"
#include "handheld/forms/fieldText.h"
#include "replication/MailItems.h"
#include "replication/RandomWords.h"
#include "replication/ReplicationTest.h"
#include "replication/deviceText.h"
#include "replication/mailboxes.h"

namespace tsr {
namespace {

using test::Strings;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::uint8_t inbox = 0;
constexpr std::uint8_t outbox = 1;
constexpr std::uint8_t deletedFolder = 2;
constexpr std::uint8_t filed = 3;
constexpr std::uint8_t drafts = 4;

const std::string refusal = "**** The mail is refused by order.";

class MailReplication : public test::ApplicationTest<test::MailItems, test::Replica> {
protected:
    Store& store() { return office->store(); }
    std::int64_t max() const { return office->userId(); }

    std::int64_t addUser(const std::string& name) { return office->addUser(name); }

    static Mail mailOf(const std::string& subject, const std::string& body = "Hi") {
        Mail mail;
        mail.from = "Ann";
        mail.to = {"Max"};
        mail.subject = subject;
        mail.body = body;
        mail.date = test::noon;
        return mail;
    }

    std::string arrive(const std::string& subject, const std::string& body = "Hi") {
        return deliver(store(), max(), mailOf(subject, body)).unid;
    }

    std::string draftInNotes(const std::string& subject, const std::string& body = "Hi") {
        return saveDraft(store(), max(), mailOf(subject, body)).unid;
    }

    void changeInNotes(const std::string& unid, const std::string& body) {
        Document document = find(unid);
        document.properties["Body"] = {body};
        replaceInNotes(document);
    }

    Document find(const std::string& unid) { return *store().findDocument(databaseId(), unid); }
    Mail mail(const std::string& unid) { return toMail(find(unid).properties); }
    std::int64_t databaseId() { return store().mailDatabase(max()).id; }

    // A message that the user writes on the handheld. He has read his own.
    std::uint32_t write(std::uint8_t folder, const std::string& subject, const std::string& to,
                        const std::string& body, FieldValues more = {}) {
        more.insert(
            {{"subject", subject}, {"to", to}, {"body", body}, {"date", "2002-02-06"}, {"read", "yes"}});
        return database().addRecord(MailForm().write(more), folder);
    }

    std::uint32_t idOf(const std::string& subject) {
        for (const HandheldRecord& record : database().records().all()) {
            if (!record.isGone() && fieldsOf(record.id).at("subject") == subject) return record.id;
        }
        ADD_FAILURE() << "no " << subject;
        return 0;
    }

    FieldValues fieldsOf(std::uint32_t id) { return MailForm().read(database().records().find(id)->data); }

    void edit(const std::string& subject, const std::string& field, const std::string& value) {
        const std::uint32_t id = idOf(subject);
        FieldValues values = fieldsOf(id);
        values[field] = value;
        ASSERT_TRUE(database().editRecord(id, MailForm().write(values)));
    }

    void markOnDevice(const std::string& subject, bool read) { edit(subject, "read", read ? "yes" : "no"); }

    Strings onDevice() { return test::mailOnDevice(database()); }
    Strings inNotes() { return test::mailInNotes(documents()); }

    void syncAndSettle(bool slow = false) {
        sync(slow);
        EXPECT_EQ(onDevice(), inNotes());
        expectNothingMoves();
        EXPECT_EQ(onDevice(), inNotes());
    }

    void setPreference(std::uint16_t id, const std::string& data) {
        const PreferenceKey key{kind().application().creator, id, true};
        handheld.preferences[key].data.assign(data.begin(), data.end());
    }

    struct Filter {
        char type = 2;
        char getHigh = 0;
        char containing = 1;
        std::uint16_t limit = 4000;
        std::string to{};
        std::string from{};
        std::string subject{};
    };

    void setFilter(const Filter& filter) {
        std::string data{filter.type, filter.getHigh, filter.containing, '\0'};
        data += static_cast<char>(filter.limit >> 8);
        data += static_cast<char>(filter.limit & 0xFF);
        for (const std::string* const text : {&filter.to, &filter.from, &filter.subject})
            data.append(text->c_str(), text->size() + 1);
        setPreference(1, data);
    }

    void editRandomly(test::RandomWords& random) {
        const std::string words = random.linesOfText();
        switch (random.below(3)) {
        case 0: return editDevice(random, words);
        case 1: return editNotes(random, words);
        default: addRandomly(random, words);
        }
    }

    void addRandomly(test::RandomWords& random, const std::string& words) {
        const std::string subject = random.word() + random.serial();
        switch (random.below(3)) {
        case 0: arrive(subject, words); break;
        case 1: draftInNotes(subject, words); break;
        default: write(drafts, test::toDeviceText(subject), "Max", test::toDeviceText(words));
        }
    }

    void editDevice(test::RandomWords& random, const std::string& words) {
        const std::vector<HandheldRecord> records = database().records().all();
        if (records.empty()) return;
        const HandheldRecord& record = records[random.below(static_cast<std::uint32_t>(records.size()))];
        if (record.isGone()) return;
        FieldValues values = fieldsOf(record.id);
        switch (random.below(5)) {
        case 0: database().deleteRecord(record.id); return;
        case 1: database().moveRecord(record.id, deletedFolder); return;
        case 2: values["body"] = test::toDeviceText(words); break;
        default:
            if (record.category == drafts) return; // of a new one the mark counts for nothing
            values["read"] = values.contains("read") ? "no" : "yes";
        }
        if (record.category != deletedFolder) database().editRecord(record.id, MailForm().write(values));
    }

    void editNotes(test::RandomWords& random, const std::string& words) {
        const std::vector<Document> all = documents();
        if (all.empty()) return;
        const Document& document = all[random.below(static_cast<std::uint32_t>(all.size()))];
        switch (random.below(4)) {
        case 0: return removeFromNotes(document);
        case 1: return changeInNotes(document.unid, words);
        default: markUnread(store(), max(), document.unid, random.flag());
        }
    }

    std::vector<Mail> folder(std::int64_t user, const std::string& name) {
        std::vector<Mail> mails;
        for (const Document& document : mailIn(store(), user, name))
            mails.push_back(toMail(document.properties));
        return mails;
    }
};

TEST_F(MailReplication, MessagesArriveInTheirFolders) {
    arrive("Lunch", "At noon?\r\nAnn");
    draftInNotes("Plan");
    syncAndSettle();
    EXPECT_THAT(onDevice(), ElementsAre("Drafts - Plan | Max | Hi", "Inbox * Lunch | Max | At noon?\nAnn"));
    EXPECT_EQ(database().records().find(idOf("Lunch"))->category, inbox);
    EXPECT_EQ(database().records().find(idOf("Plan"))->category, drafts);
    const FieldValues lunch = fieldsOf(idOf("Lunch"));
    EXPECT_EQ(lunch.at("from"), "Ann");
    EXPECT_EQ(lunch.at("date"), "2002-02-06");
    EXPECT_EQ(lunch.at("time"), "12:34");
}

TEST_F(MailReplication, DraftsGoBothWays) {
    write(drafts, "Here", "Ann\nKim", "One");
    draftInNotes("There");
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Drafts - Here | Ann, Kim | One", "Drafts - There | Max | Hi"));
    edit("There", "body", "Two");
    for (const Document& document : documents()) {
        if (toMail(document.properties).subject == "Here") changeInNotes(document.unid, "Three");
    }
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Drafts - Here | Ann, Kim | Three", "Drafts - There | Max | Two"));
}

// The conduit counts a new record as read, whatever its mark says, and hears of the mark with its next
// change.
TEST_F(MailReplication, ANewDraftIsReadInNotes) {
    write(drafts, "Plan", "Ann", "One", {{"read", "no"}});
    sync();
    expectNothingMoves();
    EXPECT_THAT(onDevice(), ElementsAre("Drafts * Plan | Ann | One"));
    EXPECT_THAT(inNotes(), ElementsAre("Drafts - Plan | Ann | One"));
    edit("Plan", "body", "Two");
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Drafts * Plan | Ann | Two"));
}

TEST_F(MailReplication, AReadMarkGoesToNotesAlone) {
    const std::string unid = arrive("Lunch");
    arrive("Tea");
    syncAndSettle();
    const Strings versions = versionsInNotes();
    markOnDevice("Lunch", true);
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Inbox * Tea | Max | Hi", "Inbox - Lunch | Max | Hi"));
    markOnDevice("Lunch", false);
    syncAndSettle();
    EXPECT_TRUE(mail(unid).unread);
    EXPECT_EQ(versionsInNotes(), versions);
}

TEST_F(MailReplication, AReadMarkComesFromNotesAlone) {
    const std::string unid = arrive("Lunch");
    syncAndSettle();
    for (const bool unread : {false, true}) {
        markUnread(store(), max(), unid, unread);
        syncAndSettle();
        EXPECT_EQ(onDevice()[0], unread ? "Inbox * Lunch | Max | Hi" : "Inbox - Lunch | Max | Hi");
    }
    EXPECT_EQ(find(unid).sequence, 1u);
}

TEST_F(MailReplication, AMessageThatIsReadOnBothSidesIsRead) {
    const std::string unid = arrive("Lunch");
    const std::string changed = arrive("Tea");
    syncAndSettle();
    markOnDevice("Lunch", true);
    markUnread(store(), max(), unid, false);
    markOnDevice("Tea", true);
    changeInNotes(changed, "Coffee");
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Inbox - Lunch | Max | Hi", "Inbox - Tea | Max | Coffee"));
}

TEST_F(MailReplication, UnderTheDevicesRuleAConflictEndsWithItsVersion) {
    const std::string unid = draftInNotes("Plan");
    syncAndSettle();
    edit("Plan", "body", "Here");
    changeInNotes(unid, "There");
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Drafts - Plan | Max | Here"));
}

TEST_F(MailReplication, UnderNotesRuleAConflictEndsWithBoth) {
    startAfresh('S');
    const std::string unid = draftInNotes("Plan");
    syncAndSettle();
    edit("Plan", "body", "Here");
    changeInNotes(unid, "There");
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Drafts - Plan | Max | Here", "Drafts - Plan | Max | There"));
    EXPECT_EQ(mail(unid).body, "There");
}

TEST_F(MailReplication, DeletionsGoBothWays) {
    arrive("Lunch");
    const std::string tea = arrive("Tea");
    draftInNotes("Plan");
    syncAndSettle();
    ASSERT_TRUE(database().deleteRecord(idOf("Lunch")));
    ASSERT_TRUE(database().deleteRecord(idOf("Plan")));
    removeFromNotes(find(tea));
    syncAndSettle();
    EXPECT_THAT(inNotes(), IsEmpty());
    EXPECT_EQ(store().deletedUnids(databaseId()).size(), 3u);
}

TEST_F(MailReplication, AChangeLosesAgainstADeletionOnTheOtherSide) {
    const std::string here = draftInNotes("Here");
    const std::string there = draftInNotes("There");
    syncAndSettle();
    edit("Here", "body", "New");
    removeFromNotes(find(here));
    ASSERT_TRUE(database().deleteRecord(idOf("There")));
    changeInNotes(there, "New");
    syncAndSettle();
    EXPECT_THAT(inNotes(), IsEmpty());
}

TEST_F(MailReplication, TheDeletedFolderIsEmptied) {
    arrive("Lunch");
    arrive("Tea");
    syncAndSettle();
    ASSERT_TRUE(database().moveRecord(idOf("Lunch"), deletedFolder));
    write(deletedFolder, "Never sent", "Ann", "One");
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Inbox * Tea | Max | Hi"));
    EXPECT_EQ(database().records().size(), 1u);
}

TEST_F(MailReplication, AFiledMessageStaysAndIsKeptUpToDate) {
    const std::string unid = arrive("Lunch");
    syncAndSettle();
    ASSERT_TRUE(database().moveRecord(idOf("Lunch"), filed));
    sync();
    expectNothingMoves();
    EXPECT_EQ(database().records().find(idOf("Lunch"))->category, filed);
    EXPECT_THAT(inNotes(), ElementsAre("Inbox * Lunch | Max | Hi"));
    removeFromNotes(find(unid));
    sync();
    EXPECT_EQ(database().records().size(), 0u);
}

TEST_F(MailReplication, OutgoingMailReachesOthers) {
    const std::int64_t ann = addUser("Ann");
    write(outbox, "Lunch", "ann\nMax", "Noon?",
          {{"priority", "high"}, {"confirmRead", "yes"}, {"bcc", "Kim"}});
    syncAndSettle();
    const auto arrived = folder(ann, inboxFolder);
    ASSERT_EQ(arrived.size(), 1u);
    EXPECT_EQ(arrived[0].from, "Max");
    EXPECT_THAT(arrived[0].to, ElementsAre("ann", "Max"));
    EXPECT_THAT(arrived[0].bcc, IsEmpty());
    EXPECT_EQ(arrived[0].body, "Noon?\n\n");
    EXPECT_EQ(arrived[0].importance, Mail::High);
    EXPECT_EQ(arrived[0].date, test::noon);
    EXPECT_TRUE(arrived[0].unread && arrived[0].returnReceipt && !arrived[0].deliveryReport);
    EXPECT_EQ(folder(max(), sentFolder).size(), 1u);
    // His own copy and the report that there is no Kim arrive at once.
    ASSERT_EQ(onDevice().size(), 2u);
    EXPECT_THAT(onDevice()[0], StartsWith("Inbox * Delivery failure: Lunch | Max | "));
    EXPECT_EQ(onDevice()[1], "Inbox * Lunch | ann, Max | Noon?");
    EXPECT_EQ(database().records().size(), 2u); // the Outbox is empty
}

// Nothing in it tells which draft it was.
TEST_F(MailReplication, ADraftThatIsSentStaysInDrafts) {
    addUser("Ann");
    draftInNotes("Plan");
    syncAndSettle();
    edit("Plan", "to", "Ann");
    ASSERT_TRUE(database().moveRecord(idOf("Plan"), outbox));
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Drafts - Plan | Max | Hi"));
}

TEST_F(MailReplication, AReplyNamesWhatItAnswersAndLeavesOutWhatItQuotes) {
    const std::int64_t ann = addUser("Ann");
    const std::string unid = arrive("Lunch");
    syncAndSettle();
    write(outbox, "Re: Lunch", "Ann",
          "Yes\n\nAnn wrote:\n> Hi\n\n\n\n\n\n\n----- Vellum Info -----\nUNID:" + unid
              + ";\n----- End Vellum Info -----\n");
    syncAndSettle();
    const auto arrived = folder(ann, inboxFolder);
    ASSERT_EQ(arrived.size(), 1u);
    EXPECT_EQ(arrived[0].body, "Yes\n\n\n\n\n"); // two line feeds and three more
    EXPECT_EQ(arrived[0].answers, unid);
    EXPECT_EQ(folder(max(), sentFolder).at(0).answers, unid);
}

TEST_F(MailReplication, ASignatureIsPutUnderAMail) {
    const std::int64_t ann = addUser("Ann");
    setPreference(3, std::string("Regards, Max") + '\0');
    write(outbox, "Lunch", "Ann", "Noon?", {{"signature", "yes"}});
    write(outbox, "Tea", "Ann", "Four?");
    syncAndSettle();
    const auto arrived = folder(ann, inboxFolder);
    ASSERT_EQ(arrived.size(), 2u);
    EXPECT_EQ(arrived[0].body, "Noon?\n\nRegards, Max\n\n");
    EXPECT_EQ(arrived[1].body, "Four?\n\n");
}

TEST_F(MailReplication, ANoticeShowsItsMeeting) {
    Mail notice = mailOf("Meeting");
    notice.notice = MeetingNotice{"You are invited", {"Accept", "Reply"}, "Room 1", 90};
    const std::string unid = deliver(store(), max(), notice).unid;
    syncAndSettle();
    EXPECT_EQ(fieldsOf(idOf("Meeting")).at("body"),
              "You are invited\n\n\n\n\n\n----- Vellum Info -----\nUNID:" + unid
                  + ";\n----- End Vellum Info -----\n");
    markOnDevice("Meeting", true);
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Inbox - Meeting | Max | You are invited"));
    EXPECT_EQ(find(unid).sequence, 1u);
}

TEST_F(MailReplication, AFilterChoosesWhatArrives) {
    const struct {
        const char* reason;
        Filter filter;
        Strings arrive;
    } rows[] = {
        {"all", {.type = 0, .subject = "lunch"}, {"Lunch", "Tea", "Urgent"}},
        {"the subject", {.subject = "LUN"}, {"Lunch"}},
        {"the sender", {.from = "kim"}, {"Tea"}},
        {"the addressee", {.to = "jo"}, {"Urgent"}},
        {"any of them", {.to = "jo", .subject = "lunch"}, {"Lunch", "Urgent"}},
        {"what it doesn't hold", {.containing = 0, .subject = "lunch"}, {"Tea", "Urgent"}},
        {"or high importance", {.getHigh = 1, .from = "kim"}, {"Tea", "Urgent"}},
        {"both", {.getHigh = 1, .containing = 0, .from = "ann"}, {"Tea", "Urgent"}},
        {"nothing to look for", {.getHigh = 0}, {"Lunch", "Tea", "Urgent"}},
        {"unread mail", {.type = 3}, {"Lunch", "Urgent"}},
        {"none", {.type = 1}, {}},
    };
    for (const auto& [reason, filter, subjects] : rows) {
        SCOPED_TRACE(reason);
        startAfresh();
        arrive("Lunch");
        Mail tea = mailOf("Tea");
        tea.from = "Kim";
        markUnread(store(), max(), deliver(store(), max(), tea).unid, false);
        Mail urgent = mailOf("Urgent");
        urgent.to = {"Max", "Jo"};
        urgent.importance = Mail::High;
        deliver(store(), max(), urgent);
        draftInNotes("Plan");
        setFilter(filter);
        sync();
        expectNothingMoves();
        Strings arrived;
        for (const HandheldRecord& record : database().records().all()) {
            if (record.category == inbox) arrived.push_back(fieldsOf(record.id).at("subject"));
        }
        std::sort(arrived.begin(), arrived.end());
        EXPECT_EQ(arrived, subjects);
        EXPECT_EQ(database().records().size(), subjects.size() + (filter.type == 1 ? 0 : 1)); // and the draft
    }
}

TEST_F(MailReplication, WhatHasArrivedStaysWhateverTheFilter) {
    const std::string lunch = arrive("Lunch");
    const std::string tea = arrive("Tea");
    syncAndSettle();
    setFilter({.subject = "lunch"});
    syncAndSettle();
    changeInNotes(tea, "Coffee");
    markOnDevice("Tea", true);
    markUnread(store(), max(), lunch, false);
    syncAndSettle();
    EXPECT_THAT(onDevice(), ElementsAre("Inbox - Lunch | Max | Hi", "Inbox - Tea | Max | Coffee"));
    setFilter({.type = 3}); // unread mail: both are read
    syncAndSettle();
    removeFromNotes(find(tea));
    syncAndSettle();
    EXPECT_EQ(onDevice().size(), 1u);
}

TEST_F(MailReplication, WhatIsOlderThanTheWindowDoesNotArrive) {
    Mail old = mailOf("Old");
    old.date = test::noon - 8 * 86400; // the window begins seven days ago, at midnight
    deliver(store(), max(), old);
    Mail older = mailOf("Week");
    older.date = test::noon - 7 * 86400 - 12 * 3600;
    deliver(store(), max(), older);
    sync();
    EXPECT_THAT(onDevice(), ElementsAre("Inbox * Week | Max | Hi"));
    expectNothingMoves();
}

TEST_F(MailReplication, AQuotationMarkInAFilterIsToldAndTouchesNothing) {
    arrive("Lunch");
    syncAndSettle();
    setFilter({.subject = "5\" disks"});
    arrive("Tea");
    const std::vector<HandheldRecord> state = handheld.find("MailSync")->records().all();
    const std::vector<HandheldRecord> records = database().records().all();
    const std::string trace = tracedHotSync();
    const std::string reason =
        "Cannot read the selection formula at character 51, '\"))': the closing quotation "
        "mark is missing.";
    const std::string phase =
        "An unrecoverable error occurred whilst sending replication information to the Tessera Server.";
    ASSERT_EQ(log().size(), 5u);
    EXPECT_EQ(log()[0], "19 Mail");
    EXPECT_THAT(log()[2], HasSubstr(phase));
    EXPECT_THAT(log()[3], HasSubstr(reason));
    EXPECT_THAT(trace, HasSubstr(phase));
    EXPECT_THAT(trace, HasSubstr(reason));
    EXPECT_EQ(handheld.find("MailSync")->records().all(), state);
    EXPECT_EQ(database().records().all(), records);
    setFilter({.subject = "tea"});
    syncAndSettle();
    EXPECT_EQ(onDevice().size(), 2u);
}

TEST_F(MailReplication, RefusedMailStaysInTheOutbox) {
    const std::int64_t ann = addUser("Ann");
    office->service().orderFaults({.refusedSubjects = {"Tea"}});
    const std::uint32_t tea = write(outbox, "Tea", "Ann", "Four?");
    write(outbox, "Lunch", "Ann", "Noon?");
    const std::string failed = "** An error occurred whilst sending the mail item with subject 'Tea'.";
    for (int session = 0; session < 2; ++session) {
        SCOPED_TRACE(session);
        const std::string trace = tracedHotSync();
        EXPECT_THAT(log(), ElementsAre("19 Mail", "22 " + failed, "22 " + refusal, "20 Mail"));
        EXPECT_THAT(trace, HasSubstr(failed));
        EXPECT_THAT(trace, HasSubstr(refusal));
        EXPECT_EQ(database().records().size(), 1u);
        EXPECT_EQ(database().records().find(tea)->category, outbox);
        EXPECT_EQ(folder(ann, inboxFolder).size(), 1u);
    }
    office->service().orderFaults({});
    sync();
    EXPECT_EQ(database().records().size(), 0u);
    EXPECT_EQ(folder(ann, inboxFolder).size(), 2u);
}

TEST_F(MailReplication, AMailToNobodyStaysInTheOutbox) {
    write(outbox, "Lunch", "", "Noon?");
    hotSync();
    EXPECT_THAT(log(),
                ElementsAre("19 Mail",
                            "22 ** An error occurred whilst sending the mail item with subject 'Lunch'.",
                            "22 **** The mail is addressed to nobody.", "20 Mail"));
    EXPECT_EQ(database().records().size(), 1u);
}

TEST_F(MailReplication, AMailWhoseAnswerIsLostArrivesOnce) {
    const std::int64_t ann = addUser("Ann");
    write(outbox, "Lunch", "Ann", "Noon?");
    office->service().orderFaults({.lostAnswers = {4}}); // behind the user, his zone and the database
    hotSync();
    office->service().orderFaults({});
    EXPECT_EQ(folder(ann, inboxFolder).size(), 1u);
    EXPECT_EQ(database().records().size(), 1u);
    sync();
    EXPECT_EQ(folder(ann, inboxFolder).size(), 1u);
    EXPECT_EQ(database().records().size(), 0u);
}

TEST_F(MailReplication, ALongDraftIsCutAndPutTogetherAgain) {
    setFilter({.type = 0, .limit = 4});
    const std::string unid = draftInNotes("Plan", "0123456789");
    sync();
    const std::string line = "\n----- 6 more characters are in Notes -----\n";
    EXPECT_EQ(fieldsOf(idOf("Plan")).at("body"), "0123" + line);
    expectNothingMoves();
    edit("Plan", "body", "ABC" + line);
    sync();
    EXPECT_EQ(mail(unid).body, "ABC456789");
    expectNothingMoves();
    edit("Plan", "body", "All new"); // without the line
    sync();
    expectNothingMoves();
    EXPECT_EQ(mail(unid).body, "ABC456789");
    EXPECT_THAT(inNotes(), ElementsAre("Drafts - Plan | Max | ABC456789", "Drafts - Plan | Max | All new"));
    EXPECT_THAT(onDevice(),
                ElementsAre("Drafts - Plan | Max | ABC4\n----- 5 more characters are in Notes -----",
                            "Drafts - Plan | Max | All \n----- 5 more characters are in Notes -----"));
}

// Each time that a draft is sent its body gains line feeds. They come back only with a change in Notes, and
// never make one.
TEST_F(MailReplication, LineFeedsThatADraftGainsMoveNothing) {
    write(drafts, "Plan", "Ann", "One");
    syncAndSettle();
    const std::string unid = documents()[0].unid;
    EXPECT_EQ(mail(unid).body, "One\n\n");
    Document document = find(unid);
    document.properties["Subject"] = {"New plan"};
    replaceInNotes(document);
    syncAndSettle();
    EXPECT_EQ(fieldsOf(idOf("New plan")).at("body"), "One\n\n");
    edit("New plan", "cc", "Kim");
    syncAndSettle();
    EXPECT_EQ(mail(unid).body, "One\n\n\n\n\n"); // two, and three for these and the letter before
    edit("New plan", "cc", "Jo");
    syncAndSettle();
    EXPECT_EQ(mail(unid).body, "One\n\n\n\n\n"); // the handheld has two still
    EXPECT_EQ(fieldsOf(idOf("New plan")).at("body"), "One\n\n");
}

TEST_F(MailReplication, AClearStartsTheDeviceAnewFromNotes) {
    arrive("Lunch");
    draftInNotes("Plan");
    syncAndSettle();
    markOnDevice("Lunch", true);
    write(drafts, "Never sent", "Ann", "One");
    configure(NextReplication::Clear);
    hotSync();
    EXPECT_THAT(onDevice(), ElementsAre("Drafts - Plan | Max | Hi", "Inbox * Lunch | Max | Hi"));
    syncAndSettle();
}

TEST_F(MailReplication, AResetTakesWhatNotesHas) {
    const std::string unid = arrive("Lunch");
    draftInNotes("Plan");
    syncAndSettle();
    markOnDevice("Lunch", true);
    edit("Plan", "body", "New");
    configure(NextReplication::Reset);
    syncAndSettle();
    EXPECT_THAT(onDevice(), ElementsAre("Drafts - Plan | Max | Hi", "Inbox * Lunch | Max | Hi"));
    EXPECT_EQ(find(unid).sequence, 1u);
}

TEST_F(MailReplication, ASlowSessionFindsWhatTheFlagsDoNotTell) {
    arrive("Lunch");
    arrive("Tea");
    syncAndSettle();
    ASSERT_TRUE(database().eraseRecord(idOf("Lunch")));
    ASSERT_TRUE(database().patchRecord(idOf("Tea"), 4, {0x84})); // read
    syncAndSettle(true);
    EXPECT_THAT(inNotes(), ElementsAre("Inbox - Tea | Max | Hi"));
}

TEST_F(MailReplication, ManyMessagesComeInSeveralPasses) {
    for (int i = 0; i < 1200; ++i) arrive("Message " + std::to_string(i));
    syncAndSettle();
    EXPECT_EQ(database().records().size(), 1200u);
}

// Each call of a HotSync fails in its turn, and a good one follows.
TEST_F(MailReplication, AFailedCallLosesNothing) {
    const Strings expected = {"Drafts - New | Ann | One", "Drafts - Plan | Max | Here",
                              "Inbox * Tea | Max | Hi", "Inbox - Lunch | Max | Hi"};
    Strings untidy;
    for (std::uint64_t number = 1;; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        startAfresh();
        const std::int64_t ann = addUser("Ann");
        arrive("Lunch");
        arrive("Old");
        draftInNotes("Plan");
        sync();
        markOnDevice("Lunch", true);
        edit("Plan", "body", "Here");
        ASSERT_TRUE(database().moveRecord(idOf("Old"), deletedFolder));
        write(drafts, "New", "Ann", "One");
        write(outbox, "Sent", "Ann", "Two");
        arrive("Tea");
        const std::string call = hotSyncWithFailedCall(number);
        sync();
        EXPECT_THAT(onDevice(), testing::IsSupersetOf(expected));
        EXPECT_THAT(inNotes(), testing::IsSupersetOf(expected));
        EXPECT_GE(folder(ann, inboxFolder).size(), 1u);
        if (onDevice() != expected || inNotes() != expected || folder(ann, inboxFolder).size() != 1)
            untidy.push_back(call);
        if (call.empty()) break;
    }
    // The first is that of the mail that was sent: it stays in the Outbox and is sent once more. The others
    // are as in MemoReplication.AFailedCallLosesNothing.
    EXPECT_THAT(untidy, ElementsAre(StartsWith("SyncDeleteRec("), HasSubstr("category 4"),
                                    StartsWith("SyncDeleteRec(")));
}

// Random edits on both sides.
TEST_F(MailReplication, BothSidesAgreeAfterEachHotSync) {
    for (std::uint32_t seed = 1; seed <= 60 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        startAfresh(seed % 2 == 0 ? 'C' : 'S');
        test::RandomWords random(seed);
        for (int round = 0; round < 6 && !HasFailure(); ++round) {
            for (int edits = 0; edits < 6; ++edits) editRandomly(random);
            syncAndSettle(random.below(8) == 0);
        }
    }
}

} // namespace
} // namespace tsr
