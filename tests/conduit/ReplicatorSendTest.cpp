// Telling the server what changed, and answering its requests.

#include <algorithm>

#include "conduit/PipelineTest.h"
#include "foundation/ServerRequestError.h"

namespace tsr {
namespace {

using test::pipelineItem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

class ReplicatorSend : public test::PipelineTest {
protected:
    // Refuses what begins so, as the server does.
    void refuse(const std::string& start) {
        script.onSend = [start](const std::string& event) {
            if (event.rfind(start, 0) == 0) throw ServerRequestError(9, 9, "Not today");
        };
    }

    // Fails it in another way.
    void fail(const std::string& start) {
        script.onSend = [start](const std::string& event) {
            if (event.rfind(start, 0) == 0) throw GeneralError(Message::InvalidArgument);
        };
    }

    void stopFailing() {
        script.onSend = [](const std::string&) {};
    }
};

TEST_F(ReplicatorSend, NothingIsSentWithoutDeletions) { EXPECT_THAT(run(), ElementsAre("info")); }

TEST_F(ReplicatorSend, ADeletionThatNotesDidNotTakeIsSentAgain) {
    add("Milk");
    run();
    ASSERT_TRUE(database.deleteRecord(1));
    script.keepsDeletions = true;
    EXPECT_THAT(run(), ElementsAre("deletions 1", "info 1:1"));
    EXPECT_THAT(run(), ElementsAre("deletions 1", "info 1:1"));
    script.keepsDeletions = false;
    EXPECT_THAT(run(), ElementsAre("deletions 1", "info"));
    EXPECT_THAT(run(), ElementsAre("info"));
}

TEST_F(ReplicatorSend, ARefusedNewRecordDoesNotKeepTheOthers) {
    add("Milk");
    add("Bread");
    refuse("new 0=Milk");
    EXPECT_THAT(run(), ElementsAre("new 0=Milk", "new 0=Bread", "info 1:1"));
    EXPECT_THAT(warnings(), ElementsAre("** An error ocurred whilst sending the item with subject '0=Milk' "
                                        "to Notes.",
                                        "**** Not today"));
    stopFailing();
    EXPECT_THAT(run(), ElementsAre("new 0=Milk", "info 1:1 2:1")); // read by its id
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(ReplicatorSend, ANewRecordThatHasGoneMeanwhileIsForgotten) {
    add("Milk");
    refuse("new");
    run();
    stopFailing();
    ASSERT_TRUE(database.eraseRecord(1));
    EXPECT_THAT(run(), ElementsAre("info"));
    EXPECT_THAT(warnings(), IsEmpty());
    EXPECT_THAT(run(), ElementsAre("info"));
}

TEST_F(ReplicatorSend, AnotherFailureOfANewRecordEndsTheSession) {
    add("Milk");
    add("Bread");
    fail("new 0=Milk");
    EXPECT_THAT(run(), ElementsAre("new 0=Milk"));
    EXPECT_THAT(warnings(),
                ElementsAre(MatchesRegex("\\*\\* .*Things.*"),
                            "**** An unrecoverable error occurred whilst sending new records to Notes.",
                            "****** Invalid argument.", "aborted"));
    stopFailing();
    EXPECT_THAT(run(), ElementsAre("new 0=Milk", "new 0=Bread", "info 1:1 2:1"));
}

TEST_F(ReplicatorSend, ARecordGoesInTheClassOfItsCategory) {
    script.classes = {"Home", "Work"};
    script.categories = {{"Home", 1}, {"Work", 2}};
    add("Milk", 1);
    add("Report", 2);
    add("Stray", 3);
    EXPECT_THAT(run(), ElementsAre("new 0=Milk", "info 1:1", "new 0=Report", "info 2:1"));
    edit(1, "Cream");
    edit(2, "Memo");
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "info 2:1+"));
}

TEST_F(ReplicatorSend, AWantedItemComesUpToDate) {
    add("Milk");
    run();
    edit(1, "Cream");
    script.wanted = {pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "item 1: 0=Cream (whole)"));
    script.wanted.clear();
    edit(1, "Cream"); // flagged, but as it was sent
    EXPECT_THAT(run(), ElementsAre("info 1:40"));
}

TEST_F(ReplicatorSend, AFailedItemIsTriedAgain) {
    add("Milk");
    add("Bread");
    run();
    edit(1, "Cream");
    edit(2, "Toast");
    script.wanted = {pipelineItem(1), pipelineItem(2)};
    fail("item 1"); // whatever the failure is
    EXPECT_THAT(run(), ElementsAre("info 1:1+ 2:1+", "item 1: 0=Cream (whole)", "item 2: 0=Toast (whole)"));
    EXPECT_THAT(warnings(), ElementsAre("** An error ocurred whilst sending the item with subject '0=Cream "
                                        "(whole)' to Notes.",
                                        "**** Invalid argument."));
    stopFailing();
    script.wanted = {pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:1+ 2:40", "item 1: 0=Cream (whole)"));
}

TEST_F(ReplicatorSend, AnItemWhoseRecordHasGoneLeavesTheState) {
    add("Milk");
    add("Bread");
    run();
    ASSERT_TRUE(database.eraseRecord(1));
    script.sendsWantedInFull = true;
    script.wanted = {pipelineItem(1), pipelineItem(2)};
    EXPECT_THAT(run(), ElementsAre("info 1:1 2:1", "item 2: 0=Bread (whole)"));
    EXPECT_THAT(warnings(), IsEmpty());
    script.wanted.clear();
    EXPECT_THAT(run(), ElementsAre("info 2:40"));
}

TEST_F(ReplicatorSend, AnotherFailureOfTheReadEndsTheSession) {
    add("Milk");
    run();
    script.sendsWantedInFull = true;
    script.wanted = {pipelineItem(1)};
    script.onSend = [](const std::string&) {
        handheldFailFunction("SyncReadRecordById", handheldFunctionCallCount("SyncReadRecordById") + 1,
                             0x4004);
    };
    EXPECT_THAT(run(), ElementsAre("info 1:1"));
    ASSERT_FALSE(warnings().empty());
    EXPECT_EQ(warnings().back(), "aborted");
}

TEST_F(ReplicatorSend, WithoutFullItemsAnUnchangedOneHasNothingToSend) {
    haveGroup();
    script.wanted = {pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("info 1:4", "item 1: "));
}

TEST_F(ReplicatorSend, AnUnknownItemEndsTheSession) {
    script.wanted = {pipelineItem(9)};
    run();
    EXPECT_THAT(warnings(),
                ElementsAre(MatchesRegex("\\*\\* .*Things.*"),
                            "**** An unrecoverable error occurred whilst sending items to the Tessera "
                            "Server.",
                            "****** Cannot find replication information for DBID=0123456789abcdef:UNID="
                            "00000000000000000000000000000009.",
                            "aborted"));
}

TEST_F(ReplicatorSend, AWholeItemOfSeveralRecordsEndsTheSession) {
    haveGroup();
    edit(1, "Other");
    script.keepsDeletions = true; // and so it can be asked for
    script.onSend = [this](const std::string& event) {
        if (event.rfind("info", 0) == 0) script.wanted = {pipelineItem(1)};
    };
    run();
    const std::vector<std::string> lines = warnings();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines.back(), "aborted");
    EXPECT_THAT(lines, testing::Contains(MatchesRegex("\\*+ Internal error occured at line [0-9]+ in "
                                                      "Replicator\\.")));
}

TEST_F(ReplicatorSend, AnItemWithoutItsPrimarySendsTheRestWithIt) {
    haveGroup();
    ASSERT_TRUE(database.deleteRecord(1));
    script.keepsDeletions = true; // and so it can be asked for
    script.wanted = {pipelineItem(1)};
    EXPECT_THAT(run(), ElementsAre("deletions 1", "new 0=Seven", "new 0=Nine", testing::StartsWith("info"),
                                   "item 1: 0=gone 7=Seven 9=Nine"));
}

TEST_F(ReplicatorSend, AnAnomalyGetsItsNewIdentity) {
    add("Milk");
    run();
    edit(1, "Cream");
    script.anomalies = {pipelineItem(1)};
    script.newUnids = {{"1", 7}};
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "anomaly 1: 0=Cream (whole)"));
    script.anomalies.clear();
    EXPECT_THAT(run(), ElementsAre("info 7:50"));
    edit(1, "Butter");
    EXPECT_THAT(run(), ElementsAre("info 7:50+"));
}

TEST_F(ReplicatorSend, AnAnomalyMayKeepItsIdentity) {
    add("Milk");
    run();
    edit(1, "Cream");
    script.anomalies = {pipelineItem(1)}; // no new Unid in the answer
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "anomaly 1: 0=Cream (whole)"));
    script.anomalies.clear();
    EXPECT_THAT(run(), ElementsAre("info 1:50"));
}

TEST_F(ReplicatorSend, AnAnomalyWithABadIdentityIsTriedAgain) {
    add("Milk");
    run();
    edit(1, "Cream");
    script.anomalies = {pipelineItem(1)};
    script.badUnid = "x";
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "anomaly 1: 0=Cream (whole)"));
    EXPECT_THAT(warnings(), ElementsAre("** An error ocurred whilst sending the item with subject '0=Cream "
                                        "(whole)' to Notes.",
                                        "**** 'x' is an invalid representation of a UNID.",
                                        "****** The character 'x' is not valid in a hexadecimal string."));
    script.badUnid.clear();
    EXPECT_THAT(run(), ElementsAre("info 1:1+", "anomaly 1: 0=Cream (whole)"));
    script.anomalies.clear();
    EXPECT_THAT(run(), ElementsAre("info 1:50"));
}

TEST_F(ReplicatorSend, ACopyThatIsDoneAtOnceTakesOneCall) {
    run();
    EXPECT_EQ(handheldFunctionCallCount("SyncCallRemoteModule"), 1U);
}

TEST_F(ReplicatorSend, ACopyGoesOnUntilTheDeviceIsDone) {
    for (std::uint32_t i = 0; i < 501; ++i) { // one more than it takes in one pass
        script.offers.push_back({.version = ItemVersion(pipelineItem(i + 1), 1), .parts = {{0, "Milk"}}});
    }
    run();
    EXPECT_EQ(handheldFunctionCallCount("SyncCallRemoteModule"), 2U);
    EXPECT_EQ(database.records().size(), 501U);
}

TEST_F(ReplicatorSend, ReadsTheAnswerOfACopy) {
    const std::string strings = "The return value from copying application records from the sync database ";
    const std::pair<std::string, std::string> rows[] = {
        {"0 17 ", ""}, // blanks stand for NULs
        {"5 17 ", ""}, // complete, whatever the first is
        {"", strings + "contains 0 strings."},
        {"17 ", strings + "contains 1 strings."},
        {"0 17 0 ", strings + "contains 3 strings."},
        {"0 17", "Null terminator not found in string."},
        {"1 0 ", strings + "is (1, 0)."},
        {"0 5 ", strings + "is (0, 5)."},
        {"17 1 ", strings + "is (17, 1)."},
        {"0 x ", "Cannot convert string 'x' to unsigned."},
    };
    for (const auto& [answer, cause] : rows) {
        SCOPED_TRACE(answer);
        std::string bytes = answer;
        std::replace(bytes.begin(), bytes.end(), ' ', '\0');
        handheldAnswerModule(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
        run();
        EXPECT_EQ(handheldFunctionCallCount("SyncCallRemoteModule"), 1U);
        if (cause.empty()) {
            EXPECT_THAT(warnings(), IsEmpty());
        } else {
            EXPECT_THAT(warnings(),
                        ElementsAre("** An unrecoverable error occurred whilst copying application "
                                    "record from the sync database to the application datebase.",
                                    "**** " + cause, "aborted"));
        }
    }
}

TEST_F(ReplicatorSend, ADeviceThatNeverEndsItsCopyEndsTheSession) {
    handheldAnswerModule("0\0000", 4); // "0" and "0": there is more
    run();
    EXPECT_EQ(handheldFunctionCallCount("SyncCallRemoteModule"), 65536U);
    EXPECT_EQ(warnings().back(), "aborted");
}

TEST_F(ReplicatorSend, ACopyThatFailsEndsTheSession) {
    std::uint32_t id = 0;
    script.beforeRewrite = [&] {
        id = handheld.find("TestSync")->writeRecord(0, 6, false, {0, 1}); // no whole entry
    };
    run();
    EXPECT_THAT(warnings(),
                ElementsAre("** An unrecoverable error occurred whilst copying application record from the "
                            "sync database to the application datebase.",
                            "**** The return value from copying application records from the sync database "
                            "is (1, "
                                + std::to_string(id) + ").",
                            "aborted"));
}

} // namespace
} // namespace tsr
