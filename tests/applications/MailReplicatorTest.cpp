#include "applications/MailReplicator.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "applications/ItemReplicatorTest.h"
#include "foundation/signals.h"
#include "platform/module.h"
#include "platform/moduleName.h"
#include "records/PalmDummyRecord.h"
#include "support/environment.h"
#include "support/errors.h"

namespace tsr {
namespace {

using test::bytes;
using test::dbidText;
using test::hexText;
using test::noUnid;
using test::ScriptedServer;
using test::Strings;
using test::textRaisedBy;
using test::unidA;
using test::unidB;
using test::unidC;
using test::WireAnswer;
using test::WireRequest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

const std::string today = "287107200"; // 2002-02-06 in seconds since 1993
const std::string refused = "The mail was refused.";
const std::string badUnid = std::string(31, '0') + "x";
const std::string badDigit = "The character 'x' is not valid in a hexadecimal string.";
const std::string badDbid = std::string(15, '0') + "x";
constexpr std::int32_t deviceError = 0x4006;

constexpr std::uint8_t inbox = 0;
constexpr std::uint8_t outbox = 1;
constexpr std::uint8_t deletedFolder = 2;
constexpr std::uint8_t drafts = 4;

TEST(MailApplicationTraits, TellsMailFromTheOthers) {
    const MailApplicationTraits traits;
    EXPECT_EQ(traits.displayName, "Mail");
    EXPECT_EQ(traits.appDbName, "MailDB");
    EXPECT_EQ(traits.appDbCreator, 0x6D61696Cu); // mail
    EXPECT_EQ(traits.appDbType, 0x44415441u);    // DATA
    EXPECT_EQ(traits.syncDbName, "MailSync");
    EXPECT_EQ(traits.syncDbCreator, 0x54535241u); // TSRA
    EXPECT_EQ(traits.syncDbType, 0x4D41494Cu);    // MAIL
    EXPECT_EQ(traits.configCategory(), 3);
}

// With what the pipeline alone can reach.
class OpenReplicator : public MailReplicator {
public:
    using MailReplicator::appInfoToWrite;
    using MailReplicator::categoryOfClass;
    using MailReplicator::classNames;
    using MailReplicator::convertToNotes;
    using MailReplicator::convertToPalm;
    using MailReplicator::fetchAnomalies;
    using MailReplicator::isConfigured;
    using MailReplicator::MailReplicator;
    using MailReplicator::makeNotesRecord;
    using MailReplicator::makePalmRecord;
    using MailReplicator::sendAnomalyItem;
    using MailReplicator::sendsWantedInFull;
};

// A record without a date: flags, then the texts that are not empty.
std::vector<std::uint8_t> mail(const std::string& flags, const std::string& subject, const std::string& to,
                               const std::string& body) {
    std::vector<std::uint8_t> data = bytes("00 00 00 00 " + flags);
    const Strings texts = {subject, "", to, "", "", "", "", body};
    for (const std::string& text : texts)
        data.insert(data.end(), text.c_str(), text.c_str() + text.size() + 1);
    data.push_back(0);
    return data;
}

std::vector<std::uint8_t> draft(const std::string& subject) { return mail("04 00", subject, "", "Hi"); }

// The properties of such a message as they go to the server, after the strings that stand before them.
Strings sentMail(Strings before, const std::string& answered, const std::string& subject,
                 const std::string& to, const std::string& body) {
    const Strings properties = {"#UNID=" + answered,  "Bcc=",    "Body=" + body, "Cc=", "From=", "ReplyTo=",
                                "Subject=" + subject, "To=" + to};
    before.insert(before.end(), properties.begin(), properties.end());
    return before;
}

// A message that Notes has: 2002-02-06 12:34:56 UTC.
Strings offeredMail(const std::string& unid, const std::string& subject, const Strings& more = {}) {
    Strings strings = {"UNID=" + unid,   "DBID=fedcba9876543210", "SeqNum=4",
                       "Date=287152496", "Subject=" + subject,    "From=Ann",
                       "Body=Hi"};
    strings.insert(strings.end(), more.begin(), more.end());
    return strings;
}

// What the server has. Without anything of it, it is a quiet one.
struct Mailbox {
    Strings databases = {"Mail", dbidText};
    test::Answers lists;                                       // by class: what Notes has for the device,
    std::map<std::string, Strings> toReceive, wanted, deleted; // what it wants from it and what it deleted
    std::map<std::string, Strings> items;                      // by Unid text
    Strings sentVersion = {unidA, "1"};                        // of an item that was sent to it
    Strings notDeleted;                                        // Unid texts that it keeps
    Strings moreDeleted;                                       // Unid texts that nobody asked it to delete
    std::set<std::string> refusedSubjects;                     // of outgoing mail
};

Strings listOf(const std::map<std::string, Strings>& lists, const std::string& className) {
    const auto found = lists.find(className);
    return found == lists.end() ? Strings() : found->second;
}

Strings deletionsOf(const Mailbox& box, const WireRequest& request) {
    Strings unids = box.moreDeleted;
    for (std::size_t i = 1; i < request.strings.size(); ++i) {
        if (!std::count(box.notDeleted.begin(), box.notDeleted.end(), request.strings[i]))
            unids.push_back(request.strings[i]);
    }
    return unids;
}

bool refusesMail(const Mailbox& box, const WireRequest& request) {
    return std::any_of(box.refusedSubjects.begin(), box.refusedSubjects.end(), [&](const std::string& text) {
        return std::count(request.strings.begin(), request.strings.end(), "Subject=" + text) > 0;
    });
}

// The token of a class is "token " and its name.
WireAnswer answerFrom(const Mailbox& box, const WireRequest& request) {
    const auto className = [&request] { return request.strings.at(0).substr(6); };
    switch (request.code) {
    case 305: return {.strings = deletionsOf(box, request)};
    case 308: return {.strings = {"token " + request.strings.at(1)}};
    case 310: return {.strings = listOf(box.wanted, className())};
    case 311: return {.strings = listOf(box.deleted, className())};
    case 312: return {.strings = listOf(box.toReceive, className())};
    case 316: return {.strings = box.sentVersion};
    case 317: return {.strings = listOf(box.items, request.strings.at(1))};
    case 318: return refusesMail(box, request) ? WireAnswer{.result = 9, .message = refused} : WireAnswer{};
    case 324: return {.strings = box.databases};
    default: return ScriptedServer::usualAnswer(request);
    }
}

class MailReplicatorTest : public test::ItemReplicatorTest<MailReplicator, MailApplicationTraits> {
protected:
    static constexpr std::uint32_t mailCreator = 0x6D61696C;

    MailReplicatorTest() { have(Mailbox()); }

    void have(const Mailbox& box) {
        answerBy([box](const WireRequest& request) { return answerFrom(box, request); });
    }

    // Has the server answer one request code in another way.
    void haveBut(std::uint32_t code, const WireAnswer& answer, const Mailbox& box = {}) {
        answerBy([=](const WireRequest& request) {
            return request.code == code ? answer : answerFrom(box, request);
        });
    }

    void setPreference(std::uint16_t id, const std::vector<std::uint8_t>& data) {
        handheld.preferences[{mailCreator, id, true}].data = data;
    }
    void setFilter(const std::string& pairs) { setPreference(1, bytes(pairs)); }
    void setSignature(const std::string& text) {
        setPreference(3, {text.c_str(), text.c_str() + text.size() + 1});
    }

    void putMail(std::uint32_t id, std::uint8_t folder, const std::vector<std::uint8_t>& data,
                 std::uint8_t attributes = 0x40) {
        HandheldRecord record;
        record.id = id;
        record.category = folder;
        record.attributes = attributes;
        record.data = data;
        ASSERT_TRUE(database.putRecord(record));
    }

    // Has the message A in a folder of both sides, as the record 1 of the device.
    void haveMail(const std::string& className, const Strings& more = {}) {
        Mailbox box;
        box.toReceive[className] = {unidA};
        box.items[unidA] = offeredMail(unidA, "Lunch", more);
        have(box);
        EXPECT_THAT(run(), IsEmpty());
        ASSERT_EQ(database.records().all().size(), 1u);
        have(Mailbox());
    }

    // The bytes of the record 1 that haveMail makes: 1100010 0010 00110 and 12:34, then the flags.
    static std::string lunch(const std::string& flags) {
        return "C4 46 0C 22 " + flags + " 4C 75 6E 63 68 00 41 6E 6E 00 00 00 00 00 00 48 69 00 00";
    }

    // One session that ends early, and its warnings.
    Strings runToItsEnd() {
        hotSyncLogClear();
        MailReplicator(makeCounted<PalmProxy>(nullptr)).run(ReplicationType::Normal);
        const auto entries = logEntries();
        EXPECT_EQ(entries.back(), std::pair(traits.displayName, 21)); // aborted
        Strings warnings;
        for (std::size_t index = 1; index + 1 < entries.size(); ++index)
            warnings.push_back(entries[index].first);
        return warnings;
    }

    // The entries that told the server about a class in the last session.
    Strings entriesOf(const std::string& className) {
        Strings entries = {"no such request"};
        for (const Strings& strings : sent(308)) {
            if (strings.at(1) == className) entries.assign(strings.begin() + 5, strings.end());
        }
        return entries;
    }

    OpenReplicator replicator{palm};
};

TEST_F(MailReplicatorTest, HasAFolderForEachClass) {
    EXPECT_EQ(replicator.classNames(), (Strings{"Inbox", "Drafts"}));
    std::uint8_t category = 9;
    EXPECT_TRUE(replicator.categoryOfClass("Inbox", category));
    EXPECT_EQ(category, 0);
    EXPECT_TRUE(replicator.categoryOfClass("Drafts", category));
    EXPECT_EQ(category, 4);
    for (const char* const name : {"", "Outbox", "inbox"}) {
        EXPECT_THAT(textRaisedBy([&] { replicator.categoryOfClass(name, category); }),
                    MatchesRegex("Internal error occured at line [0-9]+ in MailReplicator\\."));
    }
    EXPECT_TRUE(replicator.isConfigured());
    EXPECT_FALSE(replicator.sendsWantedInFull());
    EXPECT_FALSE(replicator.appInfoToWrite());
}

TEST_F(MailReplicatorTest, MakesRecordsOfBothForms) {
    PalmRecordBuffer buffer;
    const auto data = mail("84 00", "Lunch", "Ann", "Hi");
    buffer.appendBytes(data.data(), data.size());
    buffer.setCategoryId(4);
    const auto palmRecord = replicator.makePalmRecord(buffer, true);
    EXPECT_EQ(dynamic_cast<const PalmMailRecord&>(*palmRecord).to, "Ann");
    EXPECT_EQ(palmRecord->category(), 4);
    EXPECT_TRUE(palmRecord->archived());
    const auto notes = replicator.makeNotesRecord({{"Subject", {"Lunch"}}, {"Date", {"287152496"}}});
    EXPECT_EQ(dynamic_cast<const NotesMailRecord&>(*notes).date, DateTime(2002, 2, 6, 12, 34, 56));
    EXPECT_EQ(notes->description(), "Lunch");
}

TEST_F(MailReplicatorTest, ConvertsAMessageToOneRecord) {
    NotesMailRecord notes;
    notes.className = "Drafts";
    notes.subject = "Lunch";
    bool resendWanted = true;
    const PalmRecordGroup group = replicator.convertToPalm(notes, resendWanted);
    EXPECT_FALSE(resendWanted);
    EXPECT_EQ(group.size(), 1u);
    EXPECT_EQ(group.category(), 4);
    EXPECT_EQ(dynamic_cast<const PalmMailRecord&>(*group.get(0)).subject, "Lunch");
    notes.className = "Sent";
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToPalm(notes, resendWanted); }),
              "Invalid class name 'Sent'.");
}

TEST_F(MailReplicatorTest, RefusesAGroupOfOtherThanOneRecord) {
    PalmRecordGroup group;
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 0); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "0 were found.");
    group.set(0, makeCounted<PalmMailRecord>());
    group.set(1, nullptr);
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 1); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "2 were found.");
}

TEST_F(MailReplicatorTest, RefusesARecordThatIsNoMail) {
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDummyRecord>());
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
    group.set(0, nullptr);
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
}

TEST_F(MailReplicatorTest, HasNoAnomalies) {
    std::vector<ItemId> items;
    replicator.fetchAnomalies("token", items); // asks nobody
    EXPECT_TRUE(items.empty());
    std::string newUnid = "untouched";
    EXPECT_THAT(textRaisedBy([&] {
                    replicator.sendAnomalyItem("token", ItemId(dbidText, unidA), NotesMailRecord(), newUnid);
                }),
                MatchesRegex("Internal error occured at line [0-9]+ in MailReplicator\\."));
    EXPECT_EQ(newUnid, "untouched");
}

TEST_F(MailReplicatorTest, AsksForBothClassesInTheirOrder) {
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->requests(), (std::vector<WireRequest>{
                                      server->requests()[0], // the user
                                      {7, {}},
                                      {324, {}},
                                      {308, {dbidText, "Inbox", today, "YY0YYY++++N", "0"}},
                                      {310, {"token Inbox"}},
                                      {312, {"token Inbox"}},
                                      {311, {"token Inbox"}},
                                      {308, {dbidText, "Drafts", today, "YY0YYY++++N", "0"}},
                                      {310, {"token Drafts"}},
                                      {312, {"token Drafts"}},
                                      {311, {"token Drafts"}},
                                      {200, {}},
                                      {19, {}},
                                  }));
}

TEST_F(MailReplicatorTest, SendsANewDraft) {
    database.addRecord(draft("Lunch"), drafts);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->codes(),
              (std::vector<std::uint32_t>{1, 7, 324, 308, 310, 312, 311, 316, 308, 310, 312, 311, 200, 19}));
    EXPECT_THAT(sent(316),
                ElementsAre(sentMail({dbidText, noUnid, "Drafts", "0"}, "", "Lunch", "", "Hi\n\n")));
    EXPECT_THAT(entriesOf("Inbox"), IsEmpty());
    EXPECT_THAT(entriesOf("Drafts"), ElementsAre(unidA, "1", "1", "0"));
}

TEST_F(MailReplicatorTest, ADraftIsNeitherSignedNorAnAnswer) {
    setSignature("Max");
    const std::string body = "Hi\n\n\n\n\n\n----- Vellum Info -----\nUNID:1;\n----- End Vellum Info -----\n";
    database.addRecord(mail("44 00", "Lunch", "Ann\nBob", body), drafts);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(316), ElementsAre(sentMail({dbidText, noUnid, "Drafts", "0"}, "", "Lunch", "Ann,Bob",
                                                body + "\n\n")));
    EXPECT_EQ(handheldFunctionCallCount("SyncReadAppPreference"),
              2u); // the signature is fetched all the same
}

TEST_F(MailReplicatorTest, ReceivesMailOfBothClasses) {
    Mailbox box;
    box.toReceive = {{"Inbox", {unidA, unidC}}, {"Drafts", {unidB}}};
    box.items[unidA] = offeredMail(unidA, "Lunch", {"Unread=1", "To=Max, Bob"});
    box.items[unidC] = offeredMail(unidC, "Tea", {"Importance=1"});
    box.items[unidB] = offeredMail(unidB, "Offer", {"Importance=3"});
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(317), ElementsAre(Strings{dbidText, unidA, "4000"}, Strings{dbidText, unidC, "4000"},
                                       Strings{dbidText, unidB, "4000"}));
    EXPECT_THAT(
        contents(database),
        ElementsAre("1/0: C4 46 0C 22 04 00 4C 75 6E 63 68 00 41 6E 6E 00 4D 61 78 2C 20 42 6F 62 00 "
                    "00 00 00 00 48 69 00 00",
                    "2/0: C4 46 0C 22 80 00 54 65 61 00 41 6E 6E 00 00 00 00 00 00 48 69 00 00",
                    "3/4: C4 46 0C 22 88 00 4F 66 66 65 72 00 41 6E 6E 00 00 00 00 00 00 48 69 00 00"));

    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "4", "1", unidC, "4", "4", "0"));
    EXPECT_THAT(entriesOf("Drafts"), ElementsAre(unidB, "4", "4", "0"));
}

TEST_F(MailReplicatorTest, ItsDatesAreOfTheUsersZone) {
    Mailbox box;
    box.toReceive["Inbox"] = {unidA};
    box.items[unidA] = offeredMail(unidA, "Lunch");
    haveBut(7, {.strings = {"C4FFFFFF" + std::string(80, '0')}}, box); // a bias of -60 minutes
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(contents(database)[0], HasSubstr("1/0: C4 46 0D 22 84 00 ")); // 13:34
}

TEST_F(MailReplicatorTest, TheSizeLimitIsTheUsers) {
    setFilter("00 01 01 00 FF FF 00 00 00");
    haveMail("Inbox");
    setFilter("00 01 01 00 00 00 00 00 00");
    Mailbox box;
    box.toReceive["Inbox"] = {unidA};
    box.items[unidA] = offeredMail(unidA, "Lunch");
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(317), ElementsAre(Strings{dbidText, unidA, "0"}));
}

TEST_F(MailReplicatorTest, ANoticeCarriesItsIdentity) {
    haveMail("Inbox", {"ActionList=Accept", "ActionList=Reply", "NoticeBody=Come!", "Room=7"});
    const std::string block =
        "Come!\n\n\n\n\n\n----- Vellum Info -----\nUNID:" + unidA + ";\n----- End Vellum Info -----\n";
    const auto& data = database.records().find(1)->data;
    EXPECT_EQ(std::string(data.begin() + 21, data.end() - 2), block); // 6 bytes, "Lunch", "Ann", five NULs
    // The bytes that were written are those that are read: nothing has changed.
    ASSERT_TRUE(database.editRecord(1, data));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "4", "0"));
}

TEST_F(MailReplicatorTest, TellsOfAMessageThatTheUserHasRead) {
    haveMail("Inbox", {"Unread=1"});
    EXPECT_THAT(contents(database), ElementsAre("1/0: " + lunch("04 00")));
    ASSERT_TRUE(database.editRecord(1, bytes(lunch("84 00"))));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "0", "0"));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "4", "0")); // once
}

TEST_F(MailReplicatorTest, TakesTheMarkOfAMessageThatWasReadInNotes) {
    haveMail("Inbox", {"Unread=1"});
    Mailbox box;
    box.toReceive["Inbox"] = {unidA};
    box.items[unidA] = offeredMail(unidA, "Lunch");
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "4", "1"));
    EXPECT_THAT(contents(database), ElementsAre("1/0: " + lunch("84 00"))); // though its CRC is the same
    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "4", "0"));
}

TEST_F(MailReplicatorTest, SendsADraftThatWasEdited) {
    haveMail("Drafts");
    ASSERT_TRUE(database.editRecord(1, draft("Tea"))); // and unread, which counts for less
    Mailbox box;
    box.wanted["Drafts"] = {unidA};
    box.sentVersion = {unidA, "5"};
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Drafts"), ElementsAre(unidA, "4", "5", "1"));
    EXPECT_THAT(sent(316), ElementsAre(sentMail({dbidText, unidA, "Drafts", "0"}, "", "Tea", "", "Hi\n\n")));
    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Drafts"), ElementsAre(unidA, "5", "5", "1"));
}

TEST_F(MailReplicatorTest, AMessageThatChangesItsClassChangesItsFolder) {
    haveMail("Drafts");
    Mailbox box;
    box.toReceive["Inbox"] = {unidA};
    box.items[unidA] = offeredMail(unidA, "Lunch");
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(contents(database), ElementsAre("1/0: " + lunch("84 00")));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "4", "0"));
    EXPECT_THAT(entriesOf("Drafts"), IsEmpty());
}

TEST_F(MailReplicatorTest, SendsTheDeletionsOfBothSides) {
    haveMail("Inbox");
    ASSERT_TRUE(database.deleteRecord(1));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(305), ElementsAre(Strings{dbidText, unidA}));
    EXPECT_THAT(entriesOf("Inbox"), IsEmpty());

    haveMail("Drafts");
    Mailbox box;
    box.deleted["Drafts"] = {unidA};
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(contents(database), IsEmpty());
    EXPECT_THAT(sent(305), IsEmpty());
}

TEST_F(MailReplicatorTest, SendsTheOutboxInTheOrderOfItsRecords) {
    putMail(9, outbox, mail("04 00", "Tea", "Ann", "Second"));
    putMail(5, outbox, mail("30 00", "Lunch", "Ann\nBob", "First"));
    putMail(7, inbox, mail("84 00", "Not this one", "", ""), 0);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->requests(),
              (std::vector<WireRequest>{
                  server->requests()[0], // the user
                  {7, {}},
                  {324, {}},
                  {318, sentMail({dbidText, "NC1N100", noUnid, "0"}, "", "Lunch", "Ann,Bob", "First\n\n")},
                  {318, sentMail({dbidText, "NN2N000", noUnid, "0"}, "", "Tea", "Ann", "Second\n\n")},
                  {308, {dbidText, "Inbox", today, "YY0YYY++++N", "0"}},
                  {310, {"token Inbox"}},
                  {312, {"token Inbox"}},
                  {311, {"token Inbox"}},
                  {308, {dbidText, "Drafts", today, "YY0YYY++++N", "0"}},
                  {310, {"token Drafts"}},
                  {312, {"token Drafts"}},
                  {311, {"token Drafts"}},
                  {200, {}},
                  {19, {}},
              }));
    EXPECT_EQ(contents(database), Strings{"7/0: " + hexText(mail("84 00", "Not this one", "", ""))});
}

TEST_F(MailReplicatorTest, TellsTheOptionsOfOutgoingMail) {
    const std::pair<const char*, const char*> rows[] = {
        {"00 00", "NN1N000"}, {"04 00", "NN2N000"}, {"08 00", "NN3N000"}, {"0C 00", "NN2N000"},
        {"14 00", "NC2N000"}, {"24 00", "NN2N100"}, {"C4 00", "NN2N000"}, // read, or signed, tells nothing
    };
    std::uint32_t id = 0;
    for (const auto& [flags, options] : rows) putMail(++id, outbox, mail(flags, "Lunch", "Ann", ""));
    EXPECT_THAT(run(), IsEmpty());
    const auto requests = sent(318);
    ASSERT_EQ(requests.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(rows[i].first);
        EXPECT_EQ(requests[i][1], rows[i].second);
    }
}

TEST_F(MailReplicatorTest, AReplyCarriesTheIdentityOfWhatItAnswers) {
    setSignature("Max");
    putMail(1, outbox,
            mail("44 00", "Re: Lunch", "Ann",
                 "Yes\nAnn wrote:\n\n\n\n\n\n----- Vellum Info -----\nUNID:" + unidB
                     + ";\n----- End Vellum Info -----\n"));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(318), ElementsAre(sentMail({dbidText, "NN2N000", unidB, "0"}, unidB, "Re: Lunch", "Ann",
                                                "Yes\n\n\n"))); // no signature
}

TEST_F(MailReplicatorTest, SignsWhereTheUserWantsIt) {
    setSignature("Max\n");
    putMail(1, outbox, mail("04 00", "a", "Ann", "Hi"));
    putMail(2, outbox, mail("44 00", "b", "Ann", "Hi"));
    putMail(3, outbox, mail("44 00", "c", "Ann", "Hi\nAnn wrote:"));
    putMail(4, outbox, mail("04 00", "d", "Ann", "Hi"));
    EXPECT_THAT(run(), IsEmpty());
    const Strings before = {dbidText, "NN2N000", noUnid, "0"};
    EXPECT_THAT(sent(318),
                ElementsAre(sentMail(before, "", "a", "Ann", "Hi\n\n"),
                            sentMail(before, "", "b", "Ann", "Hi\n\nMax\n\n\n"), // one gains two
                            sentMail(before, "", "c", "Ann", "Hi\n\n\nMax\n\n\nAnn wrote:\n\n"),
                            sentMail(before, "", "d", "Ann", "Hi\n\n"))); // though it is at hand by now
    EXPECT_EQ(handheldFunctionCallCount("SyncReadAppPreference"), 2u);    // the filter's, and this one once
}

TEST_F(MailReplicatorTest, TheSignatureIsTriedOnce) {
    const std::vector<std::uint8_t> nothing;
    for (const bool exists : {false, true}) {
        if (exists) setPreference(3, nothing);
        putMail(1, outbox, mail("44 00", "a", "Ann", "Hi"));
        putMail(2, outbox, mail("44 00", "b", "Ann", "Hi"));
        handheldRestartCount();
        have(Mailbox());
        EXPECT_THAT(run(), IsEmpty());
        const Strings before = {dbidText, "NN2N000", noUnid, "0"};
        EXPECT_THAT(sent(318), ElementsAre(sentMail(before, "", "a", "Ann", "Hi\n\n"),
                                           sentMail(before, "", "b", "Ann", "Hi\n\n")));
        EXPECT_EQ(handheldFunctionCallCount("SyncReadAppPreference"), 2u);
    }
}

TEST_F(MailReplicatorTest, AnyFailureLeavesMailUnsigned) {
    setSignature("Max");
    putMail(1, outbox, mail("44 00", "a", "Ann", "Hi"));
    putMail(2, outbox, mail("44 00", "b", "Ann", "Hi"));
    handheldFailFunction("SyncReadAppPreference", 2, deviceError);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(sent(318).size(), 2u);
    for (const Strings& strings : sent(318)) EXPECT_EQ(strings[6], "Body=Hi\n\n");
}

TEST_F(MailReplicatorTest, RefusedMailStaysInTheOutbox) {
    Mailbox box;
    box.refusedSubjects = {"Lunch"};
    putMail(1, outbox, mail("04 00", "Lunch", "Nobody", "Hi"));
    putMail(2, outbox, mail("04 00", "Tea", "Ann", "Hi"));
    for (int session = 0; session < 2; ++session) {
        SCOPED_TRACE(session);
        have(box);
        EXPECT_THAT(run(),
                    ElementsAre("** An error occurred whilst sending the mail item with subject 'Lunch'.",
                                "**** " + refused));
        EXPECT_EQ(sent(318).size(), session == 0 ? 2u : 1u); // the other one has gone
        EXPECT_THAT(sent(316), IsEmpty());                   // the Outbox is of no class
        EXPECT_EQ(contents(database), Strings{"1/1: " + hexText(mail("04 00", "Lunch", "Nobody", "Hi"))});
    }
    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(sent(318).size(), 1u);
    EXPECT_THAT(contents(database), IsEmpty());
}

TEST_F(MailReplicatorTest, UnreadableMailStaysInTheOutbox) {
    const std::string bad = "B1 9F 00 00 04 00 00 00 00 00 00 00 00 00"; // of 1992-12-31
    putMail(1, outbox, bytes(bad), 0);
    putMail(2, outbox, mail("04 00", "Tea", "Ann", "Hi"));
    const auto warnings = run();
    EXPECT_THAT(
        warnings,
        ElementsAre("** Unable to read record with uid=00000001 from the device.",
                    "**** Dates prior to 1993 are not supported (bad date is 12/31/92).",
                    "** An error occurred whilst sending the mail item with subject ''.",
                    MatchesRegex("\\*\\*\\*\\* Internal error occured at line [0-9]+ in PalmDummyRec\\.")));
    EXPECT_EQ(sent(318).size(), 1u);
    EXPECT_EQ(contents(database), Strings{"1/1: " + bad});
}

TEST_F(MailReplicatorTest, UnreadableMailThatIsNewIsRejectedInEachClass) {
    putMail(1, outbox, bytes("B1 9F 00 00 04 00 00 00 00 00 00 00 00 00"));
    const auto warnings = run();
    const std::string unreadable = "** Unable to read record with uid=00000001 from the device.";
    const std::string rejected = "** An error occurred sending an item to Notes, probably the result of a "
                                 "previous error.";
    EXPECT_EQ(std::count(warnings.begin(), warnings.end(), unreadable), 2); // for the Outbox, and as modified
    EXPECT_EQ(std::count(warnings.begin(), warnings.end(), rejected), 2);
    EXPECT_THAT(sent(316), IsEmpty());
}

TEST_F(MailReplicatorTest, WhatTheUserHasDeletedIsInNoFolder) {
    putMail(1, outbox, {}, 0xC0);
    putMail(2, deletedFolder, {}, 0xC0);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->codes(),
              (std::vector<std::uint32_t>{1, 7, 324, 308, 310, 312, 311, 308, 310, 312, 311, 200, 19}));
}

TEST_F(MailReplicatorTest, ADraftThatIsSentOffIsForgotten) {
    haveMail("Drafts");
    ASSERT_TRUE(database.moveRecord(1, outbox));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(sent(318).size(), 1u);
    EXPECT_THAT(sent(305), IsEmpty());
    EXPECT_THAT(entriesOf("Drafts"), IsEmpty());
    EXPECT_THAT(contents(database), IsEmpty());
}

TEST_F(MailReplicatorTest, EmptiesTheDeletedFolder) {
    Mailbox box;
    box.toReceive["Inbox"] = {unidB, unidA};
    box.items[unidA] = offeredMail(unidA, "Lunch");
    box.items[unidB] = offeredMail(unidB, "Tea");
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    have(Mailbox());
    ASSERT_TRUE(database.moveRecord(1, deletedFolder));
    ASSERT_TRUE(database.moveRecord(2, deletedFolder));
    putMail(7, deletedFolder, mail("04 00", "Never replicated", "", ""));
    putMail(8, outbox, mail("04 00", "Sent first", "", ""));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->codes(), (std::vector<std::uint32_t>{1, 7, 324, 318, 305, 308, 310, 312, 311, 308, 310,
                                                           312, 311, 200, 19}));
    EXPECT_THAT(sent(305), ElementsAre(Strings{dbidText, unidB, unidA})); // in the order of the walk
    EXPECT_THAT(entriesOf("Inbox"), IsEmpty());
    EXPECT_THAT(contents(database), IsEmpty());
}

TEST_F(MailReplicatorTest, WhatNobodyElseKnowsIsDeletedWithoutTheServer) {
    putMail(7, deletedFolder, mail("04 00", "Never replicated", "", ""));
    putMail(8, deletedFolder, bytes("B1 9F")); // not even read
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(305), IsEmpty());
    EXPECT_THAT(contents(database), IsEmpty());
}

TEST_F(MailReplicatorTest, WhatTheServerKeepsStaysInTheDeletedFolder) {
    haveMail("Inbox");
    ASSERT_TRUE(database.moveRecord(1, deletedFolder));
    putMail(7, deletedFolder, mail("04 00", "Never replicated", "", ""));
    Mailbox box;
    box.notDeleted = {unidA};
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(305), ElementsAre(Strings{dbidText, unidA}));
    EXPECT_EQ(contents(database), Strings{"1/2: " + lunch("84 00")});
    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(305), ElementsAre(Strings{dbidText, unidA})); // asked again
    EXPECT_THAT(contents(database), IsEmpty());
}

TEST_F(MailReplicatorTest, AnAnswerDeletesNothingThatWasNotAskedFor) {
    Mailbox box;
    box.toReceive["Inbox"] = {unidA, unidB};
    box.items[unidA] = offeredMail(unidA, "Lunch");
    box.items[unidB] = offeredMail(unidB, "Tea");
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.moveRecord(1, deletedFolder));
    box = Mailbox();
    box.moreDeleted = {unidB, unidC, unidA}; // one that is in the Inbox, one that nobody knows, one twice
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(database.records().all().size(), 1u);
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidB, "4", "4", "0"));
}

TEST_F(MailReplicatorTest, AMessageOfAnotherMailDatabaseIsNotTheOneThatWasDeleted) {
    haveMail("Inbox");
    ASSERT_TRUE(database.moveRecord(1, deletedFolder));
    Mailbox box;
    box.databases = {"Mail", "fedcba9876543210"};
    have(box);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(305), ElementsAre(Strings{"fedcba9876543210", unidA}));
    EXPECT_EQ(contents(database), Strings{"1/2: " + lunch("84 00")});
}

TEST_F(MailReplicatorTest, ABadAnswerAboutTheDeletedFolderEndsTheSession) {
    haveMail("Inbox");
    ASSERT_TRUE(database.moveRecord(1, deletedFolder));
    putMail(7, deletedFolder, mail("04 00", "Never replicated", "", ""));
    haveBut(305, {.strings = {badUnid}});
    EXPECT_THAT(runToItsEnd(), ElementsAre("** An unrecoverable error occurred during pre-replication.",
                                           "**** '" + badUnid + "' is an invalid representation of a UNID.",
                                           "****** " + badDigit));
    haveBut(305, {.result = 9, .message = "No deletions today"});
    EXPECT_THAT(runToItsEnd(), ElementsAre("** An unrecoverable error occurred during pre-replication.",
                                           "**** No deletions today"));
    EXPECT_EQ(database.records().all().size(), 2u);
}

TEST_F(MailReplicatorTest, MayBeForSendingAlone) {
    haveMail("Inbox");
    setFilter("01 01 01 00 0F A0 00 00 00");
    ASSERT_TRUE(database.moveRecord(1, deletedFolder)); // nothing is known: it goes without the server
    putMail(7, outbox, mail("04 00", "Lunch", "Ann", "Hi"));
    putMail(8, drafts, draft("Tea"));
    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->requests(),
              (std::vector<WireRequest>{
                  server->requests()[0], // the user
                  {7, {}},
                  {324, {}},
                  {318, sentMail({dbidText, "NN2N000", noUnid, "0"}, "", "Lunch", "Ann", "Hi\n\n")},
                  {19, {}},
              }));
    EXPECT_EQ(contents(database), Strings{"8/4: " + hexText(draft("Tea"))});
}

TEST_F(MailReplicatorTest, TellsTheServerOfTheFilter) {
    const struct {
        const char* filter;
        const char* options;
        Strings formula;
    } rows[] = {
        {"00 01 01 00 0F A0 61 00 62 00 63 00", "YY0YYY++++N", {"0"}}, // all: the terms count for nothing
        {"03 01 01 00 0F A0 61 00 62 00 63 00", "YN0YYY++++N", {"0"}},
        {"02 00 00 00 0F A0 00 00 00", "YY0YYY++++N", {"0"}},
        {"02 00 01 00 0F A0 61 00 00 00",
         "YY0YYY++++N",
         {"1", "@Contains(@LowerCase(SendTo);@LowerCase(\"a\"))"}},
        {"02 01 00 00 0F A0 00 00 63 22 00",
         "YY0YYY++++N",
         {"1", "Importance=\"1\"|(!(@Contains(@LowerCase(Subject);@LowerCase(\"c\"\"))))"}},
    };
    haveMail("Inbox");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.filter);
        setFilter(row.filter);
        have(Mailbox());
        EXPECT_THAT(run(), IsEmpty());
        Strings inboxStrings = {dbidText, "Inbox", today, row.options};
        inboxStrings.insert(inboxStrings.end(), row.formula.begin(), row.formula.end());
        Strings draftsStrings = inboxStrings;
        draftsStrings[1] = "Drafts";
        inboxStrings.insert(inboxStrings.end(), {unidA, "4", "4", "0"});
        EXPECT_THAT(sent(308), ElementsAre(inboxStrings, draftsStrings));
    }
}

TEST_F(MailReplicatorTest, TellsTheServerOfTheConflictRuleAndTheWindow) {
    HandheldDatabase& configuration = *handheld.find("VellumConfig");
    configuration.eraseRecord(3);
    put(configuration, 3, 3, "02 02 00 00 00 03 00 00"); // conflict rule S, three days before today
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(308), ElementsAre(Strings{dbidText, "Inbox", "286848000", "YY1YYY++++N", "0"},
                                       Strings{dbidText, "Drafts", "286848000", "YY1YYY++++N", "0"}));
}

TEST_F(MailReplicatorTest, RefusesBadPreferences) {
    const std::string phase =
        "** An unrecoverable error occurred whilst retrieving Palm application preferences.";
    setFilter("04 01 01 00 0F A0 00 00 00");
    EXPECT_THAT(runToItsEnd(),
                ElementsAre(phase, "**** Invalid mail filter type (4) found in Mail Preferences."));
    setFilter("00 01 01 00 0F A0 00 00");
    EXPECT_THAT(runToItsEnd(), ElementsAre(phase, "**** Null terminator not found in string."));
    setFilter("00 01 01 00 0F A0 00 00 00");
    handheldRestartCount();
    handheldFailFunction("SyncReadAppPreference", 1, deviceError);
    const Strings warnings = runToItsEnd();
    ASSERT_EQ(warnings.size(), 2u);
    EXPECT_EQ(warnings[0], phase);
    EXPECT_THAT(warnings[1], HasSubstr("SyncReadAppPreference"));
    EXPECT_THAT(server->codes(), IsEmpty());
}

TEST_F(MailReplicatorTest, NeedsTheMailDatabaseForWhatIsInIt) {
    putMail(1, outbox, mail("04 00", "Lunch", "Ann", "Hi"));
    haveBut(324, {.result = 9, .message = "No mail"});
    EXPECT_THAT(runToItsEnd(),
                ElementsAre("** An unrecoverable error occurred during pre-replication.", "**** No mail"));
    EXPECT_EQ(database.records().all().size(), 1u);

    Mailbox box;
    box.databases = {};
    have(box);
    EXPECT_THAT(run(), IsEmpty()); // what it is asked with is the server's matter
    EXPECT_THAT(sent(308), ElementsAre(Strings{"", "Inbox", today, "YY0YYY++++N", "0"},
                                       Strings{"", "Drafts", today, "YY0YYY++++N", "0"}));

    box.databases = {"", badDbid, "", dbidText}; // the first that isn't empty counts
    box.toReceive["Inbox"] = {unidA};
    have(box);
    EXPECT_THAT(runToItsEnd(),
                ElementsAre("** An error occurred whilst replicating items of class 'Inbox'.",
                            "**** An unrecoverable error occurred whilst receiving items from the Tessera "
                            "Server.",
                            "****** '" + badDbid + "' is an invalid representation of a DBID.",
                            "******** " + badDigit));
}

TEST_F(MailReplicatorTest, OneBadMessageDoesNotKeepTheOthersAway) {
    Mailbox box;
    box.toReceive = {{"Inbox", {unidA, unidB, unidC}}};
    box.items[unidA] = {"UNID=" + unidA, "SeqNum=4", "Subject=No date"};
    box.items[unidB] = {"UNID=" + unidB, "Date=0", "Subject=No number"};
    box.items[unidC] = offeredMail(unidC, "Tea");
    have(box);
    EXPECT_THAT(
        run(),
        ElementsAre("** An error occurred whilst receiving the item with item id '" + unidA + "' from Notes.",
                    "**** Cannot convert string '' to unsigned.",
                    "** An error occurred whilst receiving the item with item id '" + unidB + "' from Notes.",
                    "**** No sequence number was found on an item received from Notes."));
    EXPECT_EQ(contents(database),
              Strings{"1/0: C4 46 0C 22 84 00 54 65 61 00 41 6E 6E 00 00 00 00 00 00 48 69 00 00"});
}

TEST_F(MailReplicatorTest, AMessageThatNoRecordCanHoldIsRefusedAlone) {
    Mailbox box;
    box.toReceive = {{"Inbox", {unidA, unidB}}};
    box.items[unidA] = offeredMail(unidA, std::string(65536, 'a'));
    box.items[unidB] = offeredMail(unidB, "Tea");
    have(box);
    EXPECT_THAT(run(), ElementsAre("** Unable to write Palm record group for Notes record with DBID "
                                       + dbidText + " and UNID " + unidA + ".",
                                   "**** Buffer length exceeded."));
    EXPECT_EQ(database.records().all().size(), 1u);
}

TEST_F(MailReplicatorTest, BadListsEndTheSession) {
    const std::string inClass = "** An error occurred whilst replicating items of class 'Inbox'.";
    const struct {
        std::uint32_t code;
        Strings answer;
        const char* phase;
        std::string cause;
    } rows[] = {
        {308,
         {},
         "**** An unrecoverable error occurred whilst sending replication information to the Tessera Server.",
         "****** Null terminator not found in string."},
        {310,
         {badUnid},
         "**** An unrecoverable error occurred whilst sending items to the Tessera Server.",
         "****** '" + badUnid + "' is an invalid representation of a UNID."},
        {310,
         {unidC},
         "**** An unrecoverable error occurred whilst sending items to the Tessera Server.",
         "****** Cannot find replication information for DBID=" + dbidText + ":UNID=" + unidC + "."},
        {312,
         {unidA, badUnid},
         "**** An unrecoverable error occurred whilst receiving items from the Tessera Server.",
         "****** '" + badUnid + "' is an invalid representation of a UNID."},
        {311,
         {unidC},
         "**** An unrecoverable error occurred whilst process the list of items that have been deleted in "
         "Notes.",
         "****** Cannot find replication information for DBID=" + dbidText + ":UNID=" + unidC + "."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.code);
        haveBut(row.code, {.strings = row.answer});
        const Strings warnings = runToItsEnd();
        ASSERT_GE(warnings.size(), 3u);
        EXPECT_EQ(warnings[0], inClass);
        EXPECT_EQ(warnings[1], row.phase);
        EXPECT_EQ(warnings[2], row.cause);
    }
}

TEST_F(MailReplicatorTest, ADraftThatIsRefusedIsSentAgain) {
    database.addRecord(draft("Lunch"), drafts);
    haveBut(316, {.result = 9, .message = refused});
    EXPECT_THAT(run(),
                ElementsAre("** An error ocurred whilst sending the item with subject 'Lunch' to Notes.",
                            "**** " + refused));
    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(sent(316).size(), 1u);
}

TEST_F(MailReplicatorTest, AConnectionThatBreaksIsToldForEachMail) {
    putMail(1, outbox, mail("04 00", "Lunch", "Ann", "Hi"));
    putMail(2, outbox, mail("04 00", "Tea", "Ann", "Hi"));
    haveBut(318, {.hangUp = true});
    const Strings warnings = runToItsEnd();
    const auto failed = [](const std::string& subject) {
        return "** An error occurred whilst sending the mail item with subject '" + subject + "'.";
    };
    EXPECT_EQ(std::count(warnings.begin(), warnings.end(), failed("Lunch")), 1);
    EXPECT_EQ(std::count(warnings.begin(), warnings.end(), failed("Tea")), 1);
    EXPECT_EQ(database.records().all().size(), 2u);
}

TEST_F(MailReplicatorTest, SentMailThatCannotBeDeletedGoesAgain) {
    putMail(1, outbox, mail("04 00", "Lunch", "Ann", "Hi"));
    putMail(2, outbox, mail("04 00", "Tea", "Ann", "Hi"));
    handheldFailFunction("SyncDeleteRec", 1, deviceError);
    const Strings warnings = run();
    ASSERT_EQ(warnings.size(), 2u);
    EXPECT_EQ(warnings[0], "** An error occurred whilst sending the mail item with subject 'Lunch'.");
    EXPECT_THAT(warnings[1], HasSubstr("SyncDeleteRec"));
    EXPECT_EQ(contents(database), Strings{"1/1: " + hexText(mail("04 00", "Lunch", "Ann", "Hi"))});
    handheldMend();
    have(Mailbox());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(sent(318).size(), 1u);
    EXPECT_THAT(contents(database), IsEmpty());
}

TEST_F(MailReplicatorTest, ADraftThatIsRefusedInTheOutboxIsStillKnown) {
    haveMail("Drafts");
    ASSERT_TRUE(database.moveRecord(1, outbox));
    Mailbox box;
    box.refusedSubjects = {"Lunch"};
    have(box);
    EXPECT_EQ(run().size(), 2u);
    EXPECT_THAT(sent(316), IsEmpty());
    EXPECT_EQ(entriesOf("Drafts").at(0), unidA);
}

TEST_F(MailReplicatorTest, AResetTellsOfNothingThatIsKnown) {
    haveMail("Inbox");
    ASSERT_TRUE(database.editRecord(1, bytes(lunch("04 00"))));
    configureType(3, 3);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "0", "0", "0")); // nor is the mark looked at
}

TEST_F(MailReplicatorTest, ASlowSessionSeesMarksThatNoFlagTellsOf) {
    haveMail("Inbox", {"Unread=1"});
    ASSERT_TRUE(database.patchRecord(1, 4, bytes("84")));
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "4", "1"));
    configureType(6, 3);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(entriesOf("Inbox"), ElementsAre(unidA, "4", "0", "0"));
}

// Folder and bytes of each message, whatever ids the device gave. The byte by which a session resets the
// flags is none; it stays behind where it can't be deleted.
Strings messages(const HandheldDatabase& database) {
    Strings lines;
    for (const HandheldRecord& record : database.records().all()) {
        if (record.data.size() == 1) continue;
        lines.push_back(std::to_string(record.category) + ": " + hexText(record.data));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

TEST_F(MailReplicatorTest, AGoodSessionMendsWhatABadOneLeft) {
    haveMail("Inbox");
    ASSERT_TRUE(database.moveRecord(1, deletedFolder));
    putMail(7, outbox, mail("44 00", "Re: Lunch", "Ann", "Yes"));
    putMail(8, drafts, draft("Offer"));
    setSignature("Max");
    Mailbox box;
    box.toReceive["Inbox"] = {unidB};
    box.items[unidB] = offeredMail(unidB, "Lunch");
    box.sentVersion = {unidC, "1"};
    have(box);
    const Handheld before = handheld;
    bool reached = true;
    for (std::uint64_t number = 1; reached; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        handheld = before;
        handheldRestartCount();
        handheldFailCall(number, deviceError);
        MailReplicator(makeCounted<PalmProxy>(nullptr)).run(ReplicationType::Normal);
        reached = handheldCallCount() >= number;
        handheldMend();
        handheldEndSession(); // closes what could not be closed
        EXPECT_THAT(run(), IsEmpty());
        EXPECT_EQ(messages(*handheld.find("MailDB")),
                  (Strings{"0: " + lunch("84 00"), "4: " + hexText(draft("Offer"))}));
        EXPECT_EQ(handheldOpenDatabases(), 0u);
    }
}

// The debug log stands beside this program.
class MailReplicatorLog : public MailReplicatorTest {
protected:
    MailReplicatorLog() { std::filesystem::remove(path); }
    ~MailReplicatorLog() override { std::filesystem::remove(path); }

    // The lines of one session between its connection and the rewrite of the state, without their time.
    Strings trace() {
        std::filesystem::remove(path);
        run();
        Strings lines;
        bool inside = false;
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) {
            line.erase(0, std::min(time.size(), line.size()));
            if (line.starts_with("--- Start rewrite") || line.starts_with("Mail replication finished"))
                inside = false;
            if (inside) lines.push_back(line);
            if (line == "Connected.") inside = true;
        }
        return lines;
    }

    const std::string path = platform::moduleDirectory(moduleName) + "TsrMail.log";
    const std::string time = "13:34:56 ";
    const test::ScopedVariable zone{"TZ", "CET-1CEST,M3.5.0,M10.5.0/3"};
    const test::ScopedVariable on{"TSR_DEBUG_LOG", "1"};
};

TEST_F(MailReplicatorLog, TellsOfWhatIsSentOff) {
    setFilter("01 01 01 00 0F A0 00 00 00");
    Mailbox box;
    box.refusedSubjects = {"Lunch"};
    have(box);
    putMail(1, outbox, mail("04 00", "Lunch", "Nobody", "Hi"));
    putMail(2, outbox, mail("04 00", "Tea", "Ann", "Hi"));
    for (int session = 0; session < 2; ++session) {
        have(box);
        Strings lines = {"Sending new mail",
                         "Sending new outgoing mail ('Lunch')",
                         "** An error occurred whilst sending the mail item with subject 'Lunch'.",
                         "**** " + refused,
                         "Sending new outgoing mail ('Tea')",
                         "Processing deleted folder"};
        if (session == 1) lines.erase(lines.begin() + 4);
        EXPECT_EQ(trace(), lines);
    }
}

TEST_F(MailReplicatorLog, CountsWhatWasChangedForEachClass) {
    haveMail("Drafts");
    putMail(7, drafts, draft("Tea"));
    ASSERT_TRUE(database.editRecord(1, draft("Lunch")));
    Mailbox box;
    box.sentVersion = {unidB, "1"};
    have(box);
    const Strings lines = trace();
    std::vector<std::string> counts;
    for (const std::string& line : lines) {
        if (line.starts_with("Sending replication information")) counts.push_back(line);
    }
    EXPECT_THAT(counts, ElementsAre("Sending replication information (0 modified, 0 non-modified) ...",
                                    "Sending replication information (1 modified, 1 non-modified) ..."));
    const auto read = std::find(lines.begin(), lines.end(), "--- Finished reading sync data -------------");
    ASSERT_GE(lines.end() - read, 4);
    EXPECT_EQ(Strings(read + 1, read + 4), (Strings{"Sending new mail", "Processing deleted folder",
                                                    "Getting modified application records ..."}));
}

// Progress texts of the session that is under way.
Strings shown;
void noteProgress(const char* text) { shown.emplace_back(text); }

TEST_F(MailReplicatorTest, ShowsHowFarItHasCome) {
    shown.clear();
    MailReplicator(makeCounted<PalmProxy>(noteProgress)).run(ReplicationType::Normal);
    ASSERT_GE(shown.size(), 4u);
    EXPECT_EQ(shown[0], "Mail: reading replication state");
    EXPECT_EQ(shown[1], "Mail: sending mail");
    EXPECT_EQ(shown[2], "Mail: process deleted folder");
    EXPECT_EQ(shown[3], "Mail: reading modified records");
}

} // namespace
} // namespace tsr
