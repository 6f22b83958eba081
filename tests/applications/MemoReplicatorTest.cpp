#include "applications/MemoReplicator.h"

#include "applications/ItemReplicatorTest.h"
#include "foundation/signals.h"
#include "records/NotesJournalRecord.h"
#include "records/PalmDummyRecord.h"
#include "records/PalmMemoRecord.h"
#include "support/errors.h"

namespace tsr {
namespace {

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

TEST(MemoApplicationTraits, TellsMemoPadFromTheOthers) {
    const MemoApplicationTraits traits;
    EXPECT_EQ(traits.displayName, "Memo Pad");
    EXPECT_EQ(traits.appDbName, "MemoDB");
    EXPECT_EQ(traits.appDbCreator, 0x6D656D6Fu); // memo
    EXPECT_EQ(traits.appDbType, 0x44415441u);    // DATA
    EXPECT_EQ(traits.syncDbName, "MemoSync");
    EXPECT_EQ(traits.syncDbCreator, 0x54535241u); // TSRA
    EXPECT_EQ(traits.syncDbType, 0x4D454D4Fu);    // MEMO
    EXPECT_EQ(traits.configCategory(), 7);
}

// With what the pipeline alone can reach.
class OpenReplicator : public MemoReplicator {
public:
    using MemoReplicator::appInfoToWrite;
    using MemoReplicator::categoryOfClass;
    using MemoReplicator::classNames;
    using MemoReplicator::convertToNotes;
    using MemoReplicator::convertToPalm;
    using MemoReplicator::isConfigured;
    using MemoReplicator::makeNotesRecord;
    using MemoReplicator::makePalmRecord;
    using MemoReplicator::MemoReplicator;
    using MemoReplicator::sendsWantedInFull;
};

class MemoReplicatorTest : public test::ItemReplicatorTest<MemoReplicator, MemoApplicationTraits> {
protected:
    // A server that has and wants nothing.
    static test::Answers quietServer() {
        return {{350, {"token"}}, {359, {"0"}}, {360, {"0"}}, {353, {"0"}},
                {354, {"0"}},     {356, {"0"}}, {351, {"0"}}, {352, {"0"}}};
    }

    static std::vector<std::uint8_t> textBytes(const std::string& text) {
        return {text.c_str(), text.c_str() + text.size() + 1};
    }

    OpenReplicator replicator{palm};
};

TEST_F(MemoReplicatorTest, HasOneClassWithoutACategory) {
    EXPECT_EQ(replicator.classNames(), Strings{"Memo items"});
    std::uint8_t category = 9;
    EXPECT_FALSE(replicator.categoryOfClass("Memo items", category));
    EXPECT_EQ(category, 9);
    EXPECT_TRUE(replicator.isConfigured());
    EXPECT_FALSE(replicator.sendsWantedInFull());
}

TEST_F(MemoReplicatorTest, MakesRecordsOfBothForms) {
    PalmRecordBuffer buffer;
    buffer.appendString("Milk");
    buffer.setCategoryId(1);
    const auto memo = replicator.makePalmRecord(buffer, true);
    EXPECT_EQ(memo->description(), "Milk");
    EXPECT_EQ(memo->category(), 1);
    EXPECT_TRUE(memo->archived());
    const auto journal = replicator.makeNotesRecord({{"Subject", {"Shopping"}}, {"Body", {"Milk\r\n"}}});
    const auto& typed = dynamic_cast<const NotesJournalRecord&>(*journal);
    EXPECT_EQ(typed.subject, "Shopping");
    EXPECT_EQ(typed.body, "Milk\n");
}

TEST_F(MemoReplicatorTest, ConvertsAnEntryToOneMemo) {
    const NotesJournalRecord journal(
        {{"Subject", {"Shopping"}}, {"Body", {"Milk"}}, {"Category", {"Home", "Garden"}}}, TimeZone());
    bool resendWanted = true;
    const PalmRecordGroup group = replicator.convertToPalm(journal, resendWanted);
    EXPECT_FALSE(resendWanted);
    EXPECT_EQ(group.size(), 1u);
    const auto& memo = dynamic_cast<const PalmMemoRecord&>(*group.get(0));
    EXPECT_EQ(memo.text(), "Subject: Shopping\nMilk");
    EXPECT_EQ(memo.category(), 1);
    EXPECT_FALSE(memo.archived());
    EXPECT_FALSE(replicator.appInfoToWrite());
}

TEST_F(MemoReplicatorTest, AnEntryWithoutCategoriesNeedsNoTable) {
    bool resendWanted = false;
    EXPECT_EQ(replicator.convertToPalm(NotesJournalRecord(), resendWanted).category(), 0);
    EXPECT_EQ(handheldFunctionCallCount("SyncReadDBAppInfoBlock"), 0u);
}

TEST_F(MemoReplicatorTest, AnEmptyCategoryFindsTheFirstFreeSlot) {
    const NotesJournalRecord journal({{"Category", {"", "Home"}}}, TimeZone());
    bool resendWanted = false;
    EXPECT_EQ(replicator.convertToPalm(journal, resendWanted).category(), 2);
    EXPECT_FALSE(replicator.appInfoToWrite()); // its name is there already
}

TEST_F(MemoReplicatorTest, ConvertsAMemoToAnEntry) {
    const struct {
        std::uint32_t category;
        const char* name;
    } rows[] = {{1, "Home"}, {0, ""}, {7, ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.category);
        const auto memo = makeCounted<PalmMemoRecord>();
        memo->setText("Subject: Shopping\nMilk");
        memo->setCategory(row.category);
        PalmRecordGroup group;
        group.set(0, memo);
        const auto notes = replicator.convertToNotes(group, false, 0);
        const auto& journal = dynamic_cast<const NotesJournalRecord&>(*notes);
        EXPECT_EQ(journal.subject, "Shopping");
        EXPECT_EQ(journal.body, "Milk");
        EXPECT_EQ(journal.categories, Strings{row.name});
    }
}

TEST_F(MemoReplicatorTest, RefusesAGroupOfOtherThanOneRecord) {
    PalmRecordGroup group;
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 0); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "0 were found.");
    group.set(0, makeCounted<PalmMemoRecord>());
    group.set(1, nullptr);
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 0); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "2 were found.");
}

TEST_F(MemoReplicatorTest, RefusesARecordThatIsNoMemo) {
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDummyRecord>());
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
    group.set(0, nullptr);
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
}

TEST_F(MemoReplicatorTest, SendsANewMemo) {
    auto answers = quietServer();
    answers[355] = {dbidText, unidA, "1"};
    answerWith(answers);
    database.addRecord(textBytes("Shopping\nMilk"), 0);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(
        server->requests(),
        (std::vector<WireRequest>{
            server->requests()[0], // the user
            {7, {}},
            {355,
             {"", noDbid, noUnid, "#Differences=0", "Body=Shopping\nMilk", "Category=", "Subject=Shopping"}},
            {350, {"287152496", "C", dbidText, unidA, "1", "1"}},
            {359, {"token"}},
            {360, {"token", "0", "0"}},
            {353, {"token"}},
            {354, {"token", "0", "0"}},
            {356, {"token"}},
            {351, {"token"}},
            {352, {"token", "0", "0"}},
            {200, {}},
            {19, {}},
        }));
    EXPECT_EQ(handheldFunctionCallCount("SyncReadDBAppInfoBlock"), 0u); // no category is in use
    EXPECT_EQ(handheldFunctionCallCount("SyncWriteDBAppInfoBlock"), 0u);
}

TEST_F(MemoReplicatorTest, AnswersWhatTheServerWants) {
    auto answers = quietServer();
    answers[355] = {dbidText, unidA, "1"};
    answerWith(answers);
    database.addRecord(textBytes("Milk"), 0);
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.editRecord(1, textBytes("Bread")));

    answers[353] = {"1"};
    answers[354] = {"1", dbidText, unidA};
    answers[355] = {dbidText, unidA, "2"};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(350), ElementsAre(Strings{"287152496", "C", dbidText, unidA, "1", "2"}));
    EXPECT_THAT(sent(354), ElementsAre(Strings{"token", "0", "1"}));
    EXPECT_THAT(sent(355), ElementsAre(Strings{"token", dbidText, unidA, "#Differences=0", "Body=Bread",
                                               "Category=", "Subject=Bread"}));

    ASSERT_TRUE(database.editRecord(1, textBytes("Butter")));
    answers = quietServer();
    answers[359] = {"1"};
    answers[360] = {"1", dbidText, unidA};
    answers[361] = {dbidText, unidB, "1"};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(361), ElementsAre(Strings{"token", dbidText, unidA, "0", "#Differences=0", "Body=Butter",
                                               "Category=", "Subject=Butter"}));

    ASSERT_TRUE(database.deleteRecord(1));
    answers = quietServer();
    answers[358] = {dbidText, unidB};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(358), ElementsAre(Strings{dbidText, unidB})); // under its new identity
    EXPECT_THAT(sent(350), ElementsAre(Strings{"287152496", "C"}));
}

TEST_F(MemoReplicatorTest, TakesWhatTheServerHas) {
    auto answers = quietServer();
    answers[356] = {"2"};
    answerBy([answers](const WireRequest& request) {
        if (request.code == 357 && request.strings[1] == "0") {
            return WireAnswer{.strings = {"UNID=" + unidA, "DBID=" + dbidText, "SeqNum=4", "Subject=Shopping",
                                          "Body=Milk", "Category=Shops"}};
        }
        if (request.code == 357) {
            return WireAnswer{.strings = {"UNID=" + unidC, "DBID=" + dbidText, "SeqNum=5", "Subject=Lunch",
                                          "Body=", "Category=Home"}};
        }
        return answerOf(answers, request);
    });
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(357), ElementsAre(Strings{"token", "0", "1"}, Strings{"token", "1", "1"}));
    EXPECT_EQ(contents(database), (Strings{"1/2: " + test::hexText(textBytes("Subject: Shopping\nMilk")),
                                           "2/1: " + test::hexText(textBytes("Subject: Lunch\n"))}));
    EXPECT_EQ(categoryName(2), "Shops"); // unknown to the handheld until now

    answers = quietServer();
    answers[351] = {"1"};
    answers[352] = {"1", dbidText, unidA};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(350),
                ElementsAre(Strings{"287152496", "C", dbidText, unidA, "4", "4", dbidText, unidC, "5", "5"}));
    EXPECT_EQ(contents(database), Strings{"2/1: " + test::hexText(textBytes("Subject: Lunch\n"))});
}

} // namespace
} // namespace tsr
