#include "replication/MemoItems.h"
#include "replication/ReplicationTest.h"
#include "tessera/Memo.h"

namespace tsr {
namespace {

using test::Strings;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class MemoReplication : public test::ApplicationTest<test::MemoItems> {
protected:
    std::uint32_t add(const std::string& text, std::uint8_t category = 0) {
        return database().addRecord(textBytes(text), category);
    }

    void edit(std::uint32_t id, const std::string& text) {
        ASSERT_TRUE(database().editRecord(id, textBytes(text)));
    }

    void addToNotes(const Memo& memo) { Replica::addToNotes(toProperties(memo)); }

    void change(Document document, const Memo& memo) {
        setMemo(document.properties, memo);
        replaceInNotes(document);
    }

private:
    static std::vector<std::uint8_t> textBytes(const std::string& text) {
        return {text.c_str(), text.c_str() + text.size() + 1};
    }
};

TEST_F(MemoReplication, NewMemosGoBothWays) {
    add("Shopping\nMilk");
    add("Subject: Report\nDone", 1);
    addToNotes({.subject = "Lunch", .body = "Bring food", .categories = {"Personal"}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Lunch | Bring food | Personal", "Report | Done | Business",
                                       "Shopping | Shopping\nMilk | "));
    EXPECT_EQ(database().records().size(), 3U);
    EXPECT_EQ(database().records().find(3)->category, 2);
}

TEST_F(MemoReplication, ChangesGoBothWays) {
    const std::uint32_t id = add("Milk");
    addToNotes({.subject = "Lunch", .body = "Bring food", .categories = {}});
    syncAndSettle();
    edit(id, "Cream");
    ASSERT_TRUE(database().moveRecord(id, 2));
    change(documents()[0], {.subject = "Dinner", .body = "Bring wine", .categories = {"Business"}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Cream | Cream | Personal", "Dinner | Bring wine | Business"));
}

TEST_F(MemoReplication, DeletionsGoBothWays) {
    const std::uint32_t milk = add("Milk");
    add("Bread");
    addToNotes({.subject = "Lunch", .body = "", .categories = {}});
    syncAndSettle();
    ASSERT_TRUE(database().deleteRecord(milk));
    for (const Document& document : documents()) {
        if (toMemo(document).subject == "Lunch") removeFromNotes(document);
    }
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | "));
}

TEST_F(MemoReplication, AnArchivedMemoStaysInNotesAlone) {
    const std::uint32_t milk = add("Milk");
    add("Bread");
    syncAndSettle();
    ASSERT_TRUE(database().archiveRecord(milk));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | "));
    EXPECT_THAT(onDevice(), ElementsAre("Bread | Bread | "));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | "));
    EXPECT_THAT(onDevice(), ElementsAre("Bread | Bread | "));
}

TEST_F(MemoReplication, AMemoArchivedBeforeItsFirstHotSyncReachesNotes) {
    ASSERT_TRUE(database().archiveRecord(add("Milk")));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Milk | Milk | "));
    EXPECT_THAT(onDevice(), IsEmpty());
}

TEST_F(MemoReplication, ACategoryThatIsUnknownToTheDeviceTakesAFreeSlot) {
    addToNotes({.subject = "Lunch", .body = "", .categories = {"Garden"}});
    syncAndSettle();
    EXPECT_EQ(categoryName(3), "Garden"); // behind Unfiled, Business and Personal
    EXPECT_EQ(database().records().at(0).category, 3);
}

TEST_F(MemoReplication, UnderTheDevicesRuleAConflictEndsWithItsVersion) {
    const std::uint32_t id = add("Milk");
    syncAndSettle();
    edit(id, "Cream");
    change(documents()[0], {.subject = "Butter", .body = "", .categories = {}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Cream | Cream | "));
}

TEST_F(MemoReplication, UnderNotesRuleAConflictEndsWithBoth) {
    startAfresh('S');
    const std::uint32_t id = add("Milk");
    syncAndSettle();
    edit(id, "Cream");
    change(documents()[0], {.subject = "Butter", .body = "", .categories = {}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Butter |  | ", "Cream | Cream | "));
}

TEST_F(MemoReplication, AChangeLosesAgainstADeletionOnTheOtherSide) {
    const std::uint32_t milk = add("Milk");
    const std::uint32_t bread = add("Bread");
    syncAndSettle();
    edit(milk, "Cream");
    ASSERT_TRUE(database().deleteRecord(bread));
    for (const Document& document : documents()) {
        if (toMemo(document).subject == "Milk") {
            removeFromNotes(document);
        } else {
            change(document, {.subject = "Toast", .body = "", .categories = {}});
        }
    }
    syncAndSettle();
    EXPECT_THAT(inNotes(), IsEmpty());
}

TEST_F(MemoReplication, AClearStartsTheDeviceAnewFromNotes) {
    addToNotes({.subject = "Lunch", .body = "", .categories = {"Personal"}});
    addToNotes({.subject = "Dinner", .body = "", .categories = {}});
    syncAndSettle();
    add("Never sent");
    configure(NextReplication::Clear);
    hotSync();
    // The database is made anew, without a category table until the application is started.
    EXPECT_THAT(onDevice(), ElementsAre("Dinner |  | "));
    EXPECT_THAT(inNotes(), ElementsAre("Dinner |  | ", "Lunch |  | Personal"));
    EXPECT_EQ(nextReplication(), NextReplication::Normal);
    startApplication();
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Dinner |  | ", "Lunch |  | Personal"));
}

TEST_F(MemoReplication, AResetTakesWhatNotesHasAndLeavesTheRest) {
    const std::uint32_t milk = add("Milk", 1);
    syncAndSettle();
    edit(milk, "Cream");
    add("Bread");
    configure(NextReplication::Reset);
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Milk | Milk | Business"));
    EXPECT_THAT(onDevice(), UnorderedElementsAre("Milk | Milk | Business", "Bread | Bread | "));
    EXPECT_EQ(nextReplication(), NextReplication::Normal);
    configure(NextReplication::Slow); // finds the new record, whose flag the reset took
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | Business"));
}

TEST_F(MemoReplication, ASlowSessionFindsWhatTheFlagsDoNotTell) {
    const std::uint32_t milk = add("Milk");
    const std::uint32_t bread = add("Bread");
    syncAndSettle();
    ASSERT_TRUE(database().eraseRecord(milk));
    ASSERT_TRUE(database().patchRecord(bread, 0, {'#'}));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | "));
    syncAndSettle(true);
    EXPECT_THAT(inNotes(), ElementsAre("#read | #read | "));
}

TEST_F(MemoReplication, AFastSessionIsANormalOne) {
    add("Milk");
    configure(NextReplication::Fast);
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Milk | Milk | "));
}

TEST_F(MemoReplication, ManyMemosComeInSeveralPasses) {
    for (int i = 0; i < 1200; ++i) {
        addToNotes({.subject = "Memo " + std::to_string(i), .body = "text", .categories = {}});
    }
    syncAndSettle();
    EXPECT_EQ(database().records().size(), 1200U);
}

TEST_F(MemoReplication, ADamagedStateEndsTheSessionAndNothingIsTouched) {
    const std::uint32_t milk = add("Milk");
    addToNotes({.subject = "Lunch", .body = "", .categories = {}});
    syncAndSettle();
    edit(milk, "Cream");
    HandheldDatabase& state = *handheld.find("MemoSync");
    const HandheldDatabase before = state;
    for (const HandheldRecord& record : before.records().all()) {
        if (record.category == 4) state.writeRecord(record.id, 4, false, {0, 1}); // no whole entry
    }
    const std::vector<HandheldRecord> records = database().records().all();
    const Strings versions = versionsInNotes();
    hotSync();
    ASSERT_GE(log().size(), 3U);
    EXPECT_THAT(log()[1], testing::EndsWith(" ** An unrecoverable error occurred whilst retrieving the "
                                            "replication state from the Palm device."));
    EXPECT_THAT(log()[2],
                testing::MatchesRegex("[0-9]+ \\*\\*\\*\\* CRC record with UID=[0-9]+ has an invalid "
                                      "length\\."));
    EXPECT_EQ(database().records().all(), records);
    EXPECT_EQ(versionsInNotes(), versions);
    state = before;
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Cream | Cream | ", "Lunch |  | "));
}

// Each call of a HotSync fails in its turn, and a good one follows.
TEST_F(MemoReplication, AFailedCallLosesNothing) {
    const Strings expected = {"Cream | Cream | ", "Dinner |  | Garden", "New | New | ", "Notice |  | "};
    Strings untidy;
    for (std::uint64_t number = 1;; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        startAfresh();
        const std::uint32_t milk = add("Milk");
        const std::uint32_t bread = add("Bread");
        addToNotes({.subject = "Lunch", .body = "noon", .categories = {"Personal"}});
        sync();
        edit(milk, "Cream");
        ASSERT_TRUE(database().deleteRecord(bread));
        add("New");
        for (const Document& document : documents()) {
            if (toMemo(document).subject == "Lunch")
                change(document, {.subject = "Dinner", .body = "", .categories = {"Garden"}});
        }
        addToNotes({.subject = "Notice", .body = "", .categories = {}});
        const std::string call = hotSyncWithFailedCall(number);
        sync();
        EXPECT_THAT(onDevice(), testing::IsSupersetOf(expected));
        EXPECT_THAT(inNotes(), testing::IsSupersetOf(expected));
        if (onDevice() != expected || inNotes() != expected) untidy.push_back(call);
        if (call.empty()) break;
    }
    // Without the index of its blocks, whose old records are deleted first, the state knows nothing, and all
    // counts as new. The last is the record that comes and goes as flags are reset, and stays.
    EXPECT_THAT(untidy, ElementsAre(testing::HasSubstr("category 4"), testing::StartsWith("SyncDeleteRec(")));
}

} // namespace
} // namespace tsr
