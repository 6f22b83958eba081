// Putting what Notes sends, and what it deletes, on the device.

#include "conduit/PipelineTest.h"

namespace tsr {
namespace {

using test::Offer;
using test::pipelineItem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

class ReplicatorReceive : public test::PipelineTest {
protected:
    void offer(std::uint32_t sequence, const std::vector<test::ThingPart>& parts, bool resendWanted = false) {
        script.offers = {{.version = ItemVersion(pipelineItem(1), sequence),
                          .parts = parts,
                          .resendWanted = resendWanted}};
    }
};

TEST_F(ReplicatorReceive, ANewItemWaitsInTheSyncDatabase) {
    offer(4, {{0, "Main", 3}, {7, "Seven", 3}, {9, "Nine", 3}});
    std::vector<std::string> pending;
    script.beforeRewrite = [&] {
        pending = stateRecords(3);
        EXPECT_THAT(things(), IsEmpty());
    };
    EXPECT_THAT(run(), ElementsAre("info"));
    EXPECT_THAT(pending, ElementsAre("00 03 4D 61 69 6E 00",    // zero, category, "Main", NUL
                                     "00 03 53 65 76 65 6E 00", // "Seven"
                                     "00 03 4E 69 6E 65 00"));  // "Nine"
    EXPECT_THAT(things(), ElementsAre("1/3 Main", "2/3 Seven", "3/3 Nine"));
    EXPECT_THAT(stateRecords(3), IsEmpty());
    script.beforeRewrite = [] {};
    script.offers.clear();
    EXPECT_THAT(run(), ElementsAre("info 1:4"));
    ASSERT_TRUE(database.deleteRecord(2)); // the copy has put the real ids in
    EXPECT_THAT(run(), ElementsAre("info 1:4+"));
}

TEST_F(ReplicatorReceive, NoChangeAtAllMovesTheVersionOn) {
    haveGroup();
    for (const std::uint32_t id : {1u, 2u, 3u}) scratch(id);
    offer(5, {{0, "Main"}, {7, "Seven"}, {9, "Nine"}});
    run();
    EXPECT_THAT(things(), ElementsAre("1/0 #ain", "2/0 #even", "3/0 #ine")); // not written
    script.offers.clear();
    EXPECT_THAT(run(), ElementsAre("info 1:5"));
}

TEST_F(ReplicatorReceive, OneExceptionFewerDeletesOneRecord) {
    haveGroup();
    for (const std::uint32_t id : {1u, 2u}) scratch(id);
    offer(5, {{0, "Main"}, {9, "Nine"}});
    run();
    EXPECT_THAT(things(), ElementsAre("1/0 #ain", "3/0 Nine"));
    script.offers.clear();
    edit(3, "Ninth");
    script.wanted = {pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:5+", "item 1: 9=Ninth"));
}

TEST_F(ReplicatorReceive, OneExceptionMoreIsWrittenAtOnce) {
    haveGroup();
    scratch(1);
    offer(5, {{0, "Main"}, {7, "Seven"}, {8, "Eight"}, {9, "Ninth"}});
    script.beforeRewrite = [this] {
        EXPECT_EQ(things().size(), 4U);
        EXPECT_THAT(stateRecords(3), IsEmpty());
    };
    run();
    script.beforeRewrite = [] {};
    EXPECT_THAT(things(), ElementsAre("1/0 #ain", "2/0 Seven", "3/0 Ninth", "5/0 Eight"));
    script.offers.clear();
    edit(5, "Eighth");
    script.wanted = {pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:5+", "item 1: 8=Eighth"));
}

TEST_F(ReplicatorReceive, AResetSessionRewritesWhatItKeeps) {
    haveGroup();
    for (const std::uint32_t id : {1u, 2u, 3u}) scratch(id);
    offer(5, {{0, "Main"}, {7, "Seven"}, {9, "Nine"}});
    EXPECT_THAT(run(reset), ElementsAre("info 1:0"));
    EXPECT_THAT(things(), ElementsAre("1/0 Main", "2/0 Seven", "3/0 Nine"));
}

TEST_F(ReplicatorReceive, ANewCategoryOrUserDataAloneIsWritten) {
    offer(4, {{0, "Milk"}});
    run();
    scratch(1);
    offer(5, {{0, "Milk", 2}});
    run();
    EXPECT_THAT(things(), ElementsAre("1/2 Milk"));
    scratch(1);
    offer(6, {{0, "Milk", 2, 3}});
    run();
    EXPECT_THAT(things(), ElementsAre("1/2 Milk"));
    scratch(1);
    offer(7, {{0, "Milk", 2, 3}});
    run();
    EXPECT_THAT(things(), ElementsAre("1/2 #ilk"));
}

TEST_F(ReplicatorReceive, WhatComesFromNotesDoesNotGoBack) {
    offer(4, {{0, "Milk"}});
    run();
    offer(5, {{0, "Cream"}});
    run();
    script.offers.clear();
    EXPECT_THAT(run(), ElementsAre("info 1:5"));
    edit(1, "Cream");
    EXPECT_THAT(run(), ElementsAre("info 1:5"));
}

TEST_F(ReplicatorReceive, AnItemThatLostSomethingIsSentWhole) {
    haveGroup();
    offer(5, {{0, "Main"}, {7, "Seven"}, {9, "Nine"}}, true);
    run();
    script.offers.clear();
    edit(2, "Seventh");
    EXPECT_THAT(run(),
                ElementsAre("deletions 1", "new 0=Main", "new 0=Seventh", "new 0=Nine", "info 2:1 3:1 4:1"));
}

TEST_F(ReplicatorReceive, AnItemThatIsWholeAgainLosesTheMark) {
    haveGroup(true);
    offer(5, {{0, "Main"}, {7, "Seven"}, {9, "Nine"}}, false);
    run();
    script.offers.clear();
    edit(2, "Seventh");
    EXPECT_THAT(run(), ElementsAre("info 1:5+"));
}

TEST_F(ReplicatorReceive, AFailureIsThatOfItsItemAlone) {
    const struct {
        const char* failAt;
        const char* text;
        const char* outer;
        const char* cause;
    } rows[] = {
        {"receive", "Milk", "** An error occurred whilst receiving the item with item id '0' from Notes.",
         "**** Invalid argument."},
        {"make", "Milk", "** An error occurred whilst receiving the item with item id '0' from Notes.",
         "**** Invalid argument."},
        {"convert", "Milk",
         "** Unable to convert Notes record with DBID 0123456789abcdef and UNID "
         "00000000000000000000000000000001 to Palm record group.",
         "**** Invalid argument."},
        {"", "unwritable",
         "** Unable to write Palm record group for Notes record with DBID 0123456789abcdef and UNID "
         "00000000000000000000000000000001.",
         "**** Buffer length exceeded."},
    };
    std::uint32_t number = 10;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.outer);
        const std::size_t before = things().size();
        script.offers = {
            {.version = ItemVersion(pipelineItem(1), 4), .parts = {{0, row.text}}, .failAt = row.failAt},
            {.version = ItemVersion(pipelineItem(number++), 4), .parts = {{0, "Bread"}}}};
        run();
        EXPECT_THAT(warnings(), ElementsAre(row.outer, row.cause));
        EXPECT_EQ(things().size(), before + 1); // the other has come
    }
    script.offers.clear();
    EXPECT_THAT(run(), ElementsAre("info 10:4 11:4 12:4 13:4")); // the server offers the first again
}

TEST_F(ReplicatorReceive, ADeletionTakesEveryRecord) {
    haveGroup();
    add("Milk");
    run();
    script.deletedInNotes = {pipelineItem(1)};
    run();
    EXPECT_THAT(things(), ElementsAre("5/0 Milk")); // 4 came and went as the flags were reset
    script.deletedInNotes.clear();
    EXPECT_THAT(run(), ElementsAre("info 2:1"));
}

TEST_F(ReplicatorReceive, ADeletionOfWhatHasGonePassesQuietly) {
    haveGroup();
    ASSERT_TRUE(database.eraseRecord(1));
    script.deletedInNotes = {pipelineItem(1)};
    run();
    EXPECT_THAT(warnings(), IsEmpty());
    EXPECT_THAT(things(), IsEmpty());
    script.deletedInNotes.clear();
    EXPECT_THAT(run(), ElementsAre("info"));
}

TEST_F(ReplicatorReceive, ADeletionThatFailsIsLeftForTheNextSession) {
    haveGroup();
    script.deletedInNotes = {pipelineItem(1)};
    script.onSend = [](const std::string&) { handheldFailFunction("SyncDeleteRec", 1, 0x4006); };
    run();
    EXPECT_THAT(warnings(), IsEmpty()); // deliberate: not a word
    EXPECT_THAT(things(), ElementsAre("1/0 Main", "2/0 Seven", "3/0 Nine"));
    script.onSend = [](const std::string&) {};
    EXPECT_THAT(run(), ElementsAre("info 1:4")); // still known, and listed again
    EXPECT_THAT(things(), IsEmpty());
}

TEST_F(ReplicatorReceive, ADeletionOfAnUnknownItemEndsTheSession) {
    script.deletedInNotes = {pipelineItem(9)};
    run();
    EXPECT_THAT(warnings(),
                ElementsAre(MatchesRegex("\\*\\* .*Things.*"),
                            "**** An unrecoverable error occurred whilst process the list of items that have "
                            "been deleted in Notes.",
                            "****** Cannot find replication information for DBID=0123456789abcdef:UNID="
                            "00000000000000000000000000000009.",
                            "aborted"));
}

} // namespace
} // namespace tsr
