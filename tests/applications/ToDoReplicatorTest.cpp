#include "applications/ToDoReplicator.h"

#include <algorithm>

#include "applications/ItemReplicatorTest.h"
#include "foundation/signals.h"
#include "records/NotesToDoRecord.h"
#include "records/PalmDummyRecord.h"
#include "records/PalmToDoRecord.h"
#include "support/errors.h"

namespace tsr {
namespace {

using test::bytes;
using test::dbidText;
using test::noDbid;
using test::noUnid;
using test::Strings;
using test::textRaisedBy;
using test::unidA;
using test::unidB;
using test::unidC;
using test::WireAnswer;
using test::WireRequest;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ToDoApplicationTraits, TellsToDoFromTheOthers) {
    const ToDoApplicationTraits traits;
    EXPECT_EQ(traits.displayName, "ToDo");
    EXPECT_EQ(traits.appDbName, "ToDoDB");
    EXPECT_EQ(traits.appDbCreator, 0x746F646Fu); // todo
    EXPECT_EQ(traits.appDbType, 0x44415441u);    // DATA
    EXPECT_EQ(traits.syncDbName, "ToDoSync");
    EXPECT_EQ(traits.syncDbCreator, 0x54535241u); // TSRA
    EXPECT_EQ(traits.syncDbType, 0x544F444Fu);    // TODO
    EXPECT_EQ(traits.configCategory(), 5);
}

// With what the pipeline alone can reach.
class OpenReplicator : public ToDoReplicator {
public:
    using ToDoReplicator::appInfoToWrite;
    using ToDoReplicator::categoryOfClass;
    using ToDoReplicator::classNames;
    using ToDoReplicator::convertToNotes;
    using ToDoReplicator::convertToPalm;
    using ToDoReplicator::isConfigured;
    using ToDoReplicator::makeNotesRecord;
    using ToDoReplicator::makePalmRecord;
    using ToDoReplicator::sendAnomalyItem;
    using ToDoReplicator::sendsWantedInFull;
    using ToDoReplicator::ToDoReplicator;
};

class ToDoReplicatorTest : public test::ItemReplicatorTest<ToDoReplicator, ToDoApplicationTraits> {
protected:
    // A server that has and wants nothing.
    static test::Answers quietServer() {
        return {{172, {"token"}}, {170, {"0"}}, {169, {"0"}}, {165, {"0"}},
                {164, {"0"}},     {168, {"0"}}, {162, {"0"}}, {161, {"0"}}};
    }

    static Strings task(const std::string& unid, const std::string& subject, const Strings& more = {}) {
        Strings strings = {"UNID=" + unid,      "DBID=" + dbidText, "SeqNum=4",  "0037001F=" + subject,
                           "00170041=666f6f64", "00260003=1",       "00040002=0"};
        strings.insert(strings.end(), more.begin(), more.end());
        return strings;
    }

    // Puts the record 1 on both sides: no due date, priority 2, "Milk".
    void haveMilk() {
        auto answers = quietServer();
        answers[176] = {dbidText, unidA, "1"};
        answerWith(answers);
        database.addRecord(bytes("FF FF 02 4D 69 6C 6B 00 00"), 0);
        EXPECT_THAT(run(), IsEmpty());
    }

    // Has the server offer one task: no body, priority 2.
    void offerTask(const std::string& subject, const std::string& isPrivate) {
        answerBy([=](const WireRequest& request) {
            if (request.code == 168) return WireAnswer{.strings = {"1"}};
            if (request.code != 177) return answerOf(quietServer(), request);
            return WireAnswer{.strings = {"UNID=" + unidA, "DBID=" + dbidText, "SeqNum=4",
                                          "0037001F=" + subject, "00260003=2", "00040002=" + isPrivate}};
        });
    }

    OpenReplicator replicator{palm};
};

TEST_F(ToDoReplicatorTest, HasOneClassWithoutACategory) {
    EXPECT_EQ(replicator.classNames(), Strings{"ToDo items"});
    std::uint8_t category = 9;
    EXPECT_FALSE(replicator.categoryOfClass("ToDo items", category));
    EXPECT_EQ(category, 9);
    EXPECT_TRUE(replicator.isConfigured());
    EXPECT_FALSE(replicator.sendsWantedInFull());
}

TEST_F(ToDoReplicatorTest, MakesRecordsOfBothForms) {
    PalmRecordBuffer buffer;
    const auto data = bytes("FF FF 83 61 00 00");
    buffer.appendBytes(data.data(), data.size());
    buffer.setCategoryId(1);
    const auto palmRecord = replicator.makePalmRecord(buffer, true);
    EXPECT_EQ(dynamic_cast<const PalmToDoRecord&>(*palmRecord).priority(), 3);
    EXPECT_EQ(palmRecord->category(), 1);
    EXPECT_TRUE(palmRecord->archived());
    const auto notes = replicator.makeNotesRecord({{"0037001F", {"Lunch"}}, {"00260003", {"7"}}});
    const auto& typed = dynamic_cast<const NotesToDoRecord&>(*notes);
    EXPECT_EQ(typed.subject, "Lunch");
    EXPECT_EQ(typed.priority, 7);
}

TEST_F(ToDoReplicatorTest, ConvertsATaskToOneRecord) {
    NotesToDoRecord notes;
    notes.subject = "Lunch";
    notes.categories = {"Home", "Garden"};
    bool resendWanted = true;
    const PalmRecordGroup group = replicator.convertToPalm(notes, resendWanted);
    EXPECT_FALSE(resendWanted);
    EXPECT_EQ(group.size(), 1u);
    const auto& palmRecord = dynamic_cast<const PalmToDoRecord&>(*group.get(0));
    EXPECT_EQ(palmRecord.description(), "Lunch");
    EXPECT_EQ(palmRecord.category(), 1);
    EXPECT_FALSE(replicator.appInfoToWrite());
}

TEST_F(ToDoReplicatorTest, AnEmptyCategoryFindsTheFirstFreeSlot) {
    NotesToDoRecord notes;
    notes.categories = {"", "Home"};
    bool resendWanted = false;
    EXPECT_EQ(replicator.convertToPalm(notes, resendWanted).category(), 2);
}

TEST_F(ToDoReplicatorTest, ConvertsARecordToATask) {
    for (const auto& [category, name] : {std::pair(1u, "Home"), std::pair(0u, "")}) {
        SCOPED_TRACE(category);
        const auto palmRecord = makeCounted<PalmToDoRecord>();
        palmRecord->setDescription("Lunch");
        palmRecord->setCategory(category);
        PalmRecordGroup group;
        group.set(0, palmRecord);
        const auto notes = replicator.convertToNotes(group, false, 0);
        const auto& typed = dynamic_cast<const NotesToDoRecord&>(*notes);
        EXPECT_EQ(typed.subject, "Lunch");
        EXPECT_EQ(typed.categories, Strings{name});
    }
}

TEST_F(ToDoReplicatorTest, RefusesAGroupOfOtherThanOneRecord) {
    PalmRecordGroup group;
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 0); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "0 were found.");
    group.set(0, makeCounted<PalmToDoRecord>());
    group.set(1, nullptr);
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 0); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "2 were found.");
}

TEST_F(ToDoReplicatorTest, RefusesARecordThatIsNoTask) {
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDummyRecord>());
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
    group.set(0, nullptr);
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
}

TEST_F(ToDoReplicatorTest, SendsNoAnomaly) {
    std::string newUnid = "untouched";
    EXPECT_EQ(textRaisedBy([&] {
                  replicator.sendAnomalyItem("token", ItemId(dbidText, unidA), NotesToDoRecord(), newUnid);
              }),
              "Not implemented yet.");
    EXPECT_EQ(newUnid, "untouched");
}

TEST_F(ToDoReplicatorTest, SendsANewTask) {
    auto answers = quietServer();
    answers[176] = {dbidText, unidA, "1"};
    answerWith(answers);
    // 2002-03-04, completed, priority 5, "Milk", "fresh"; the record is secret
    put(database, 1, 1, "C4 64 85 4D 69 6C 6B 00 66 72 65 73 68 00", 0x50);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->requests(),
              (std::vector<WireRequest>{
                  server->requests()[0], // the user
                  {7, {}},
                  {176,
                   {"", noDbid, noUnid, "", "", "#Differences=0", "00040002=3", "00170041=fresh",
                    "00260003=99", "0037001F=Milk", "41050040=289353600", "410F0002=1", "Category=Home"}},
                  {172, {"287152496", "C", "", "", dbidText, unidA, "1", "1"}},
                  {170, {"token"}},
                  {169, {"token", "0", "0"}},
                  {165, {"token"}},
                  {164, {"token", "0", "0"}},
                  {168, {"token"}},
                  {162, {"token"}},
                  {161, {"token", "0", "0"}},
                  {200, {}},
                  {19, {}},
              }));
}

TEST_F(ToDoReplicatorTest, AnswersWhatTheServerWants) {
    haveMilk();
    ASSERT_TRUE(database.editRecord(1, bytes("FF FF 02 54 65 61 00 00"))); // "Tea"
    auto answers = quietServer();
    answers[165] = {"1"};
    answers[164] = {"1", dbidText, unidA};
    answers[176] = {dbidText, unidA, "2"};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(172), ElementsAre(Strings{"287152496", "C", "", "", dbidText, unidA, "1", "2"}));
    EXPECT_THAT(sent(176),
                ElementsAre(Strings{"token", dbidText, unidA, "", "", "#Differences=0",
                                    "00170041=", "00260003=2", "0037001F=Tea", "410F0002=0", "Category="}));

    ASSERT_TRUE(database.deleteRecord(1));
    answers = quietServer();
    answers[174] = {dbidText, unidA}; // no count before them
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(174), ElementsAre(Strings{dbidText, unidA}));
    EXPECT_THAT(sent(172), ElementsAre(Strings{"287152496", "C", "", ""}));
}

TEST_F(ToDoReplicatorTest, AnAnomalyIsRefusedAndTheNextItemIsTaken) {
    haveMilk();
    auto answers = quietServer();
    answers[176] = {dbidText, unidB, "1"};
    answerWith(answers);
    const std::uint32_t tea = database.addRecord(bytes("FF FF 02 54 65 61 00 00"), 0);
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.editRecord(1, bytes("FF FF 01 4D 69 6C 6B 00 00")));
    ASSERT_TRUE(database.editRecord(tea, bytes("FF FF 01 54 65 61 00 00")));

    answers = quietServer();
    answers[170] = {"2"};
    answers[169] = {"2", dbidText, unidA, dbidText, unidB};
    answers[165] = {"1"};
    answers[164] = {"1", dbidText, unidB};
    answers[176] = {dbidText, unidB, "2"};
    answerWith(answers);
    EXPECT_THAT(run(),
                ElementsAre("** An error ocurred whilst sending the item with subject 'Milk' to Notes.",
                            "**** Not implemented yet.",
                            "** An error ocurred whilst sending the item with subject 'Tea' to Notes.",
                            "**** Not implemented yet."));
    EXPECT_EQ(sent(176).size(), 1u); // "Tea", in the list of what is wanted

    answers = quietServer();
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    // The item that was refused is as it was: still changed on the device.
    EXPECT_THAT(sent(172), ElementsAre(Strings{"287152496", "C", "", "", dbidText, unidA, "1", "2", dbidText,
                                               unidB, "2", "2"}));
}

TEST_F(ToDoReplicatorTest, TakesWhatTheServerHas) {
    answerBy([answers = quietServer()](const WireRequest& request) {
        if (request.code == 168) return WireAnswer{.strings = {"2"}};
        if (request.code == 177 && request.strings[1] == "0")
            return WireAnswer{.strings = task(unidA, "Lunch", {"Category=Shops", "41050040=289353600"})};
        if (request.code == 177) return WireAnswer{.strings = task(unidC, "Tea", {"410F0002=1"})};
        return answerOf(answers, request);
    });
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(177), ElementsAre(Strings{"token", "0", "1"}, Strings{"token", "1", "1"}));
    EXPECT_EQ(contents(database), (Strings{"1/2: C4 64 01 4C 75 6E 63 68 00 66 6F 6F 64 00",
                                           "2/0: FF FF 81 54 65 61 00 66 6F 6F 64 00"}));
    EXPECT_EQ(categoryName(2), "Shops"); // unknown to the handheld until now

    auto answers = quietServer();
    answers[162] = {"1"};
    answers[161] = {"1", dbidText, unidA};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(172), ElementsAre(Strings{"287152496", "C", "", "", dbidText, unidA, "4", "4", dbidText,
                                               unidC, "4", "4"}));
    EXPECT_EQ(contents(database), Strings{"2/0: FF FF 81 54 65 61 00 66 6F 6F 64 00"});
}

TEST_F(ToDoReplicatorTest, ANewPrivateTaskWaitsAsASecretRecord) {
    offerTask("Tea", "1");
    handheldFailFunction("SyncCallRemoteModule", 1, 0x4015); // so that the record still waits
    ToDoReplicator(makeCounted<PalmProxy>(nullptr)).run(ReplicationType::Normal);
    handheldMend();
    const auto& records = handheld.find("ToDoSync")->records().all();
    const auto waits = [](const HandheldRecord& record) {
        return record.category == 3 && record.attributes == 0x10;
    };
    EXPECT_EQ(std::count_if(records.begin(), records.end(), waits), 1);
}

TEST_F(ToDoReplicatorTest, APrivateTaskIsSecretOnTheHandheld) {
    haveMilk();
    offerTask("Milk", "1"); // the attribute is outside the CRC: on its own it isn't written
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(database.records().find(1)->attributes, 0);
    offerTask("Tea", "1");
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(database.records().find(1)->attributes, 0x10);
    offerTask("Milk", "0");
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(database.records().find(1)->attributes, 0);
}

TEST_F(ToDoReplicatorTest, ARepeatingTaskIsRefusedAlone) {
    answerBy([answers = quietServer()](const WireRequest& request) {
        if (request.code == 168) return WireAnswer{.strings = {"3"}};
        if (request.code == 177 && request.strings[1] == "0")
            return WireAnswer{.strings = task(unidA, "Water plants", {"Recurs=1"})};
        if (request.code == 177 && request.strings[1] == "1")
            return WireAnswer{.strings = {"UNID=" + unidB, "DBID=" + dbidText, "SeqNum=4"}};
        if (request.code == 177) return WireAnswer{.strings = task(unidC, "Tea")};
        return answerOf(answers, request);
    });
    EXPECT_THAT(run(),
                ElementsAre("** An error occurred whilst receiving the item with item id '0' from Notes.",
                            "**** Cannot replicate todo item 'Water plants' : repeating todo items are not "
                            "supported in this release.",
                            "** An error occurred whilst receiving the item with item id '1' from Notes.",
                            "**** Cannot convert string '' to unsigned."));
    EXPECT_EQ(contents(database), Strings{"1/0: FF FF 01 54 65 61 00 66 6F 6F 64 00"});
}

TEST_F(ToDoReplicatorTest, ARecordThatCannotBeReadIsLeftAlone) {
    auto answers = quietServer();
    answers[176] = {dbidText, unidA, "1"};
    answerWith(answers);
    put(database, 1, 0, "B1 9F 01 00 00", 0x40); // due on 1992-12-31
    put(database, 2, 0, "FF FF 01 54 65 61 00 00", 0x40);
    EXPECT_THAT(run(), ElementsAre("** Unable to read record with uid=00000001 from the device.",
                                   "**** Dates prior to 1993 are not supported (bad date is 12/31/92).",
                                   "** An error occurred sending an item to Notes, probably the result of a "
                                   "previous error."));
    EXPECT_EQ(sent(176).size(), 1u);
}

} // namespace
} // namespace tsr
