// Finding what changed on the device.

#include "conduit/PipelineTest.h"

namespace tsr {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReplicatorGather : public test::PipelineTest {
protected:
    // Replaces the attributes of a record and flags it as modified.
    void setAttributes(std::uint32_t id, std::uint8_t attributes) {
        HandheldRecord record = *database.records().find(id);
        record.attributes = attributes | HandheldRecord::dirty;
        ASSERT_TRUE(database.eraseRecord(id));
        ASSERT_TRUE(database.putRecord(record));
    }
};

TEST_F(ReplicatorGather, ARecordIsNewOnce) {
    add("Milk");
    EXPECT_THAT(run(), ElementsAre("new 0=Milk", "info 1:1"));
    EXPECT_THAT(run(), ElementsAre("info 1:1"));
}

TEST_F(ReplicatorGather, AFlagWithoutAChangeSendsNothing) {
    add("Milk");
    run();
    edit(1, "Milk");
    EXPECT_THAT(run(), ElementsAre("info 1:1"));
}

TEST_F(ReplicatorGather, ANewTextOrCategoryIsAChange) {
    add("Milk");
    add("Bread");
    add("Butter");
    run();
    edit(1, "Cream");
    ASSERT_TRUE(database.moveRecord(2, 3));
    EXPECT_THAT(run(), ElementsAre("info 1:1+ 2:1+ 3:1"));
}

TEST_F(ReplicatorGather, UserDataAloneIsKeptButNotSent) {
    add("Milk");
    run();
    EXPECT_EQ(stateRecords(2).at(0).substr(18, 2), "00"); // user data 0, category 0
    setAttributes(1, HandheldRecord::secret);
    EXPECT_THAT(run(), ElementsAre("info 1:1"));
    EXPECT_THAT(run(), ElementsAre("info 1:1")); // nor is it left over
    EXPECT_EQ(stateRecords(2).at(0).substr(18, 2), "50");
}

TEST_F(ReplicatorGather, ASlowSessionMissesWhatIsGone) {
    add("Milk");
    add("Bread");
    add("Butter");
    run();
    ASSERT_TRUE(database.eraseRecord(2)); // without a trace
    edit(3, "Cream");
    EXPECT_THAT(run(slow), ElementsAre("deletions 2", "info 1:1 3:1+"));
}

TEST_F(ReplicatorGather, ANormalSessionSeesDeletionsThatAreFlagged) {
    add("Milk");
    add("Bread");
    run();
    ASSERT_TRUE(database.deleteRecord(1));
    ASSERT_TRUE(database.eraseRecord(2));
    EXPECT_THAT(run(), ElementsAre("deletions 1", "info 2:1"));
}

TEST_F(ReplicatorGather, ASlowSessionCountsADeletedRecordOnce) {
    add("Milk");
    run();
    ASSERT_TRUE(database.deleteRecord(1)); // flagged, and known
    EXPECT_THAT(run(slow), ElementsAre("deletions 1", "info"));
}

TEST_F(ReplicatorGather, ARecordThatCameAndWentIsNothing) {
    add("Milk");
    ASSERT_TRUE(database.deleteRecord(1));
    EXPECT_THAT(run(), ElementsAre("info"));
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(ReplicatorGather, AResetSessionReadsNothing) {
    add("Milk");
    run();
    edit(1, "Cream");
    add("Bread");
    script.sendsWantedInFull = true;
    script.wanted = {test::pipelineItem(1)};
    EXPECT_THAT(run(reset), ElementsAre("info 1:0", "item 1: 0=Cream (whole)")); // read as it was asked for
    EXPECT_EQ(handheldFunctionCallCount("SyncReadNextModifiedRec"), 0U);
}

TEST_F(ReplicatorGather, AnUnreadableRecordIsToldAndPassedOver) {
    put(database, 1, 0, "4D", HandheldRecord::dirty); // no NUL
    add("Bread");
    EXPECT_THAT(run(), ElementsAre("new 0=Bread", "info 1:1"));
    EXPECT_THAT(warnings(),
                ElementsAre("** Unable to read record with uid=00000001 from the device.",
                            "**** Null terminator not found in string.",
                            "** An error occurred sending an item to Notes, probably the result of a "
                            "previous error."));
    EXPECT_EQ(logEntries().back().second, 20); // the session finished
}

TEST_F(ReplicatorGather, AKnownRecordThatBecameUnreadableIsKept) {
    add("Milk");
    run();
    ASSERT_TRUE(database.editRecord(1, test::bytes("4D")));
    script.wanted = {test::pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:1+"));
    EXPECT_EQ(warnings().size(), 3U); // at its reading, and at its turn
    edit(1, "Cream");
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "item 1: 0=Cream (whole)"));
}

// It stands there without user data, as it has no field of its own.
TEST_F(ReplicatorGather, AnUnreadableRecordTakesTheUserDataOfItsEntry) {
    add("Milk");
    run();
    setAttributes(1, HandheldRecord::secret);
    run();
    EXPECT_EQ(stateRecords(2).at(0).substr(18, 2), "50");
    ASSERT_TRUE(database.editRecord(1, test::bytes("4D")));
    EXPECT_THAT(run(), ElementsAre("info 1:1+"));
    EXPECT_EQ(stateRecords(2).at(0).substr(18, 2), "00");
}

TEST_F(ReplicatorGather, AnArchivedRecordIsSentFromItsCopy) {
    add("Milk");
    run();
    ASSERT_TRUE(database.archiveRecord(1));
    script.wanted = {test::pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "item 1: 0=Milk archived (whole)"));
}

TEST_F(ReplicatorGather, WhatAnEarlierSessionCouldNotSendComesBack) {
    add("Milk");
    run();
    edit(1, "Cream");
    EXPECT_THAT(run(), ElementsAre("info 1:1+"));         // the server doesn't ask for it
    EXPECT_EQ(database.records().find(1)->attributes, 0); // and the device has forgotten
    script.wanted = {test::pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "item 1: 0=Cream (whole)"));
    script.wanted.clear();
    edit(1, "Cream"); // its CRC is up to date, though it was read by its id
    EXPECT_THAT(run(), ElementsAre("info 1:40"));
}

TEST_F(ReplicatorGather, AChangedInstanceGoesAsADifference) {
    haveGroup();
    edit(2, "Seventh");
    script.wanted = {test::pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:4+", "item 1: 7=Seventh"));
}

TEST_F(ReplicatorGather, ADeletedInstanceGoesAsADifference) {
    haveGroup();
    ASSERT_TRUE(database.deleteRecord(3));
    script.wanted = {test::pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:4+", "item 1: 9=gone"));
    script.wanted.clear();
    EXPECT_THAT(run(), ElementsAre("info 1:40"));
}

TEST_F(ReplicatorGather, AChangeOfThePrimaryGivesTheItemUp) {
    haveGroup();
    edit(1, "Other");
    EXPECT_THAT(run(),
                ElementsAre("deletions 1", "new 0=Other", "new 0=Seven", "new 0=Nine", "info 2:1 3:1 4:1"));
}

TEST_F(ReplicatorGather, ADeletionOfThePrimaryGivesTheItemUp) {
    haveGroup();
    ASSERT_TRUE(database.deleteRecord(1));
    EXPECT_THAT(run(), ElementsAre("deletions 1", "new 0=Seven", "new 0=Nine", "info 2:1 3:1"));
}

TEST_F(ReplicatorGather, AnItemToBeSentWholeIsGivenUpForAnyChange) {
    haveGroup(true);
    edit(3, "Ninth");
    EXPECT_THAT(run(),
                ElementsAre("deletions 1", "new 0=Main", "new 0=Seven", "new 0=Ninth", "info 2:1 3:1 4:1"));
}

TEST_F(ReplicatorGather, AnItemIsDeletedWithTheLastOfItsRecords) {
    haveGroup();
    for (const std::uint32_t id : {1u, 2u, 3u}) ASSERT_TRUE(database.deleteRecord(id));
    EXPECT_THAT(run(), ElementsAre("deletions 1", "info"));
}

} // namespace
} // namespace tsr
