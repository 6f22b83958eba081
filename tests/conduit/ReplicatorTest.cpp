#include "conduit/Replicator.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <set>

#include "foundation/GeneralError.h"
#include "foundation/signals.h"
#include "platform/module.h"
#include "platform/moduleName.h"
#include "records/PalmDummyRecord.h"
#include "support/SessionTest.h"
#include "support/environment.h"
#include "support/stringsOf.h"
#include "support/testClock.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedServer;
using test::WireAnswer;
using test::WireRequest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Entry = std::pair<std::string, int>;

constexpr int started = 19;
constexpr int finished = 20;
constexpr int aborted = 21;
constexpr int warning = 22;

std::vector<std::string> progress;

void takeProgress(const char* text) { progress.emplace_back(text); }

struct TestTraits : ApplicationTraits {
    TestTraits() {
        displayName = "Test";
        appDbName = "TestDB";
        appDbCreator = 0x74657374;
        appDbType = 0x44415441;
        syncDbName = "TestSync";
        syncDbCreator = 0x54535241;
        syncDbType = 0x54455354;
    }
    std::int16_t configCategory() const override { return 7; }
};

struct TestPalmRecord : PalmApplicationRecord {
    TestPalmRecord() : PalmApplicationRecord(false) {}
    std::uint8_t category() const override { return 0; }
    std::string description() const override { return {}; }
    std::uint16_t write(PalmRecordBuffer& buffer) const override {
        buffer.appendByte(0x5A);
        return 0;
    }
};

struct TestNotesRecord : NotesApplicationRecord {
    void addTo(NotesItem&, const TimeZone&) const override {}
    std::string description() const override { return {}; }
};

// Replicates nothing but new items that a test wants received, writes down what it is asked for, and fails
// where a test wants it to.
class TestReplicator : public Replicator {
public:
    explicit TestReplicator(const CountedPtr<PalmProxy>& palm) : Replicator(traits, palm) {}

    TestTraits traits;
    std::vector<std::string> classes;
    std::vector<std::string> events;
    std::function<void(const std::string& event)> fail = [](const std::string&) {};
    std::size_t newItems = 0;             // that Notes has, at most 999
    std::vector<std::string> information; // for replication, of the last class

protected:
    PalmRecordGroup convertToPalm(const NotesApplicationRecord&, bool&) override {
        PalmRecordGroup group;
        group.set(0, Record(new TestPalmRecord));
        return group;
    }
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup&, bool, int) override {
        note("convert");
        throw BadPalmRecord();
    }
    void fetchAnomalies(const std::string& token, std::vector<ItemId>&) override {
        note("anomalies " + token);
    }
    void fetchDeletedInNotes(const std::string& token, std::vector<ItemId>&) override {
        note("deleted " + token);
    }
    void fetchWantedItems(const std::string& token, std::vector<ItemId>&) override {
        note("wanted " + token);
    }
    void receiveItem(const std::string&, const std::string&, const std::string& handle, NotesItem&,
                     ItemVersion& version) override {
        version = ItemVersion(std::string(16, 'd'), std::string(29, '0') + handle, "1");
    }
    void listItemsToReceive(const std::string& token, std::vector<std::string>& handles) override {
        note("receive " + token);
        for (std::size_t item = 0; item < newItems; ++item) {
            const std::string digits = std::to_string(item);
            handles.push_back(std::string(3 - digits.size(), '0') + digits);
        }
    }
    ItemVersion sendAnomalyItem(const std::string&, const ItemId&, const NotesApplicationRecord&,
                                std::string&) override {
        return {};
    }
    ItemVersion sendItem(const std::string&, const std::string&, const ItemId&,
                         const NotesApplicationRecord&) override {
        return {};
    }
    void sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) override {
        note("deletions");
        deleted = items;
    }
    std::string sendReplicationInfo(const std::string& className, const StringRun& list) override {
        information = test::stringsOf(list);
        note("info " + className);
        return "token of " + className;
    }
    CountedPtr<PalmRecordBuffer> appInfoToWrite() override {
        note("app info");
        CountedPtr<PalmRecordBuffer> block(new PalmRecordBuffer);
        block->appendByte(0xAB);
        return block;
    }
    std::vector<std::string> classNames() override {
        note("classes");
        return classes;
    }
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem&) override {
        return CountedPtr<NotesApplicationRecord>(new TestNotesRecord);
    }
    Record makePalmRecord(PalmRecordBuffer&, bool) override { return Record(new PalmDummyRecord); }
    void preReplicate() override { note("pre-replicate"); }
    void readApplicationPreferences() override { note("preferences"); }

private:
    void note(const std::string& event) {
        events.push_back(event);
        fail(event);
    }
};

class ReplicatorTest : public test::SessionTest {
protected:
    ReplicatorTest() {
        test::setClock(1012998896);
        progress.clear();
        configureType(2);
    }

    std::int32_t run(ReplicationType type = ReplicationType::Normal) {
        handheldSetTracing(1);
        const CountedPtr<PalmProxy> palm(new PalmProxy(takeProgress));
        TestReplicator replicator(palm);
        replicator.classes = classes;
        if (fail) replicator.fail = fail;
        replicator.newItems = newItems;
        const std::int32_t result = replicator.run(type);
        events = replicator.events;
        information = replicator.information;
        return result;
    }

    // Runs a session in which `event` raises, and gives the lines of its chain.
    std::vector<std::string> chainWhenFailing(const std::string& event) {
        fail = [event](const std::string& each) {
            if (each == event) throw GeneralError(Message::InvalidArgument);
        };
        return chain();
    }

    std::vector<std::string> chain() {
        hotSyncLogClear();
        EXPECT_EQ(run(), 0);
        const std::vector<Entry> entries = logEntries();
        EXPECT_EQ(entries.front(), Entry("Test", started));
        EXPECT_EQ(entries.back(), Entry("Test", aborted));
        std::vector<std::string> lines;
        for (std::size_t index = 1; index + 1 < entries.size(); ++index) {
            EXPECT_EQ(entries[index].second, warning);
            lines.push_back(entries[index].first);
        }
        return lines;
    }

    std::vector<std::string> trace() const {
        std::vector<std::string> lines;
        for (std::uint64_t index = 0; index < handheldTraceCount(); ++index)
            lines.emplace_back(handheldTraceLine(index));
        return lines;
    }

    int storedType() { return handheld.find("VellumConfig")->records().find(3)->data[0]; }

    std::vector<std::string> classes;
    std::vector<std::string> events;
    std::function<void(const std::string&)> fail;
    std::size_t newItems = 0;
    std::vector<std::string> information;

    // Brings one item to the device, which copies it into place; gives the record's id.
    std::uint32_t receiveOneItem() {
        classes = {"First"};
        newItems = 1;
        run();
        newItems = 0;
        const std::vector<HandheldRecord> records = handheld.find("TestDB")->records().all();
        EXPECT_EQ(records.size(), 1U);
        return records.at(0).id;
    }
};

TEST_F(ReplicatorTest, RunsASessionWithoutClasses) {
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(logEntries(), ElementsAre(Entry("Test", started), Entry("Test", finished)));
    EXPECT_THAT(events, ElementsAre("preferences", "classes", "pre-replicate"));
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 19));
    EXPECT_THAT(progress, ElementsAre("Test: reading replication state"));
    EXPECT_EQ(handheld.find("TestSync"), nullptr); // no state is read
    EXPECT_EQ(handheld.find("TestDB"), nullptr);
}

TEST_F(ReplicatorTest, RunsEveryPhaseForEachClass) {
    classes = {"First", "Second"};
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(logEntries(), ElementsAre(Entry("Test", started), Entry("Test", finished)));
    EXPECT_THAT(events,
                ElementsAre("preferences", "classes", "pre-replicate", // no deletions: nothing is sent
                            "info First", "anomalies token of First", "wanted token of First",
                            "receive token of First", "deleted token of First", "info Second",
                            "anomalies token of Second", "wanted token of Second", "receive token of Second",
                            "deleted token of Second", "app info"));
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 200, 19));
    EXPECT_THAT(progress, ElementsAre("Test: reading replication state", "Test: reading modified records",
                                      "Test: processing deleted records", "Test: send new/deleted records",
                                      "Test: sending replication info", "Test: sending anomalies",
                                      "Test: sending modified records", "Test: receiving items",
                                      "Test: receiving deletions", "Test: send new/deleted records",
                                      "Test: sending replication info", "Test: sending anomalies",
                                      "Test: sending modified records", "Test: receiving items",
                                      "Test: receiving deletions", "Test: writing replication state",
                                      "Test: copying records"));
    EXPECT_EQ(handheld.find("TestDB")->appInfo(), test::bytes("AB"));
    EXPECT_THAT(contents(*handheld.find("TestSync")), ElementsAre("1/7: 00 09"));
}

TEST_F(ReplicatorTest, TellsTheServerWhoTheUserIs) {
    run();
    EXPECT_THAT(server->requests()[0].strings,
                ElementsAre("287152496", "Max", "pw", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"));
}

TEST_F(ReplicatorTest, ResetsFlagsBehindARecordThatComesAndGoes) {
    classes = {"First"};
    handheld.create("TestDB", 0x44415441, 0x74657374).addRecord({1, 2}, 0);
    run();
    const std::vector<std::string> lines = trace();
    const auto module = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
        return line.find("SyncCallRemoteModule") != std::string::npos;
    });
    ASSERT_NE(module, lines.end()) << testing::PrintToString(logEntries()) << testing::PrintToString(lines);
    std::vector<std::string> names;
    for (auto line = module; line != lines.end(); ++line) names.push_back(line->substr(0, line->find('(')));
    EXPECT_THAT(names, ElementsAre("SyncCallRemoteModule", "SyncFindDbByTypeCreator",
                                   "SyncFindDbByTypeCreator", "SyncOpenDB", "SyncWriteRec", "SyncDeleteRec",
                                   "SyncPurgeDeletedRecs", "SyncResetSyncFlags", "SyncCloseDBEx"));
    EXPECT_EQ(handheld.find("TestDB")->records().size(), 1U);
    EXPECT_EQ(handheld.find("TestDB")->records().at(0).attributes, 0); // no longer dirty
}

TEST_F(ReplicatorTest, RefusesToRunBeforeATypeIsChosen) {
    configureType(0);
    EXPECT_THAT(chain(),
                ElementsAre("** An unrecoverable error occurred whilst retrieving Palm configuration "
                            "information.",
                            "**** Before you can replicate information on the Palm device with Notes, you "
                            "must choose a first-time replication type."));
    EXPECT_THAT(server->codes(), IsEmpty());
}

TEST_F(ReplicatorTest, DoesNothingWhenThatIsConfigured) {
    configureType(1);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(logEntries(), ElementsAre(Entry("Test", started), Entry("Configured to do nothing.", -1)));
    EXPECT_THAT(server->codes(), IsEmpty());
}

TEST_F(ReplicatorTest, TellsOfAConfigurationThatCannotBeRead) {
    handheld.databases.erase("VellumConfig");
    EXPECT_THAT(
        chain(),
        ElementsAre("** An unrecoverable error occurred whilst retrieving Palm configuration information.",
                    "**** Unable to retrieve configuration from the Palm device.",
                    "****** Unable to read Palm configuration record with category 1.",
                    "******** Record does not exist."));
}

TEST_F(ReplicatorTest, FetchesTheUserNameOnceAndKeepsIt) {
    HandheldDatabase& configuration = *handheld.find("VellumConfig");
    configuration.eraseRecord(1);
    put(configuration, 1, 1, "00 00 00 02 AB CD 00 70 77 00"); // no name
    run();
    EXPECT_THAT(server->codes(), ElementsAre(3, 1, 7, 19));
    EXPECT_EQ(server->requests()[1].strings[1], "Max Muster");
    EXPECT_EQ(configuration.records().find(1)->data,
              test::bytes("00 00 00 02 AB CD 4D 61 78 20 4D 75 73 74 65 72 00 70 77 00"));
    run();
    EXPECT_THAT(server->codes(), ElementsAre(3, 1, 7, 19, 1, 7, 19));
}

TEST_F(ReplicatorTest, LeavesAConfiguredUserNameAlone) {
    const std::vector<std::uint8_t> before = handheld.find("VellumConfig")->records().find(1)->data;
    run();
    EXPECT_EQ(handheld.find("VellumConfig")->records().find(1)->data, before);
    EXPECT_EQ(handheldFunctionCallCount("SyncWriteRec"), 0U);
}

TEST_F(ReplicatorTest, EndsWithoutAUserName) {
    serve([](const WireRequest& request) {
        if (request.code == 3) return WireAnswer{.strings = {"S", "", "Max"}}; // not "P"
        return ScriptedServer::usualAnswer(request);
    });
    HandheldDatabase& configuration = *handheld.find("VellumConfig");
    configuration.eraseRecord(1);
    put(configuration, 1, 1, "00 00 00 02 00 00 00 00");
    EXPECT_THAT(
        chain(),
        ElementsAre("** An unrecoverable error occurred whilst attempting to auto configure the Notes "
                    "name.",
                    "**** You must configure your Lotus Notes user name in the Vellu utility on the "
                    "Palm device."));
}

TEST_F(ReplicatorTest, TellsOfAServerThatCannotBeReached) {
    HandheldDatabase& configuration = *handheld.find("VellumConfig");
    configuration.eraseRecord(2);
    put(configuration, 2, 6, "00 78 00 78 00"); // port "x"
    EXPECT_THAT(chain(), ElementsAre("** Unable to connect to Tessera Services.",
                                     "**** Cannot convert string 'x' to unsigned."));
}

TEST_F(ReplicatorTest, WrapsWhatEachRequestOfTheSessionRaises) {
    const std::pair<std::uint32_t, const char*> rows[] = {
        {1, "** The request to authenticate with Tessera Services failed."},
        {7, "** An unrecoverable error occurred whilst retrieving the configured time zone information."},
        {200, "** An error occurred whilst retrieving errors for the session."},
    };
    classes = {"First"};
    for (const auto& [code, outer] : rows) {
        SCOPED_TRACE(outer);
        serve([code = code](const WireRequest& request) {
            if (request.code == code) return WireAnswer{.result = 9, .message = "Not today"};
            return ScriptedServer::usualAnswer(request);
        });
        configureType(2);
        EXPECT_THAT(chain(), ElementsAre(outer, "**** Not today"));
    }
}

TEST_F(ReplicatorTest, SwallowsAFailedClose) {
    serve([](const WireRequest& request) {
        if (request.code == 19) return WireAnswer{.hangUp = true};
        return ScriptedServer::usualAnswer(request);
    });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(logEntries().back(), Entry("Test", finished));
}

TEST_F(ReplicatorTest, WrapsWhatEachPhaseRaises) {
    const std::pair<const char*, const char*> rows[] = {
        {"preferences", "** An unrecoverable error occurred whilst retrieving Palm application preferences."},
        {"pre-replicate", "** An unrecoverable error occurred during pre-replication."},
        {"app info", "** An unrecoverable error occurred whilst writing the application info block."},
    };
    classes = {"First"};
    for (const auto& [event, outer] : rows) {
        EXPECT_THAT(chainWhenFailing(event), ElementsAre(outer, "**** Invalid argument."));
    }
    EXPECT_THAT(chainWhenFailing("classes"), ElementsAre("** Invalid argument.")); // has no guard of its own
}

TEST_F(ReplicatorTest, WrapsWhatEachStepOfAClassRaises) {
    const std::pair<const char*, const char*> rows[] = {
        {"info First",
         "**** An unrecoverable error occurred whilst sending replication information to the Tessera "
         "Server."},
        {"anomalies token of First",
         "**** An unrecoverable error occurred whilst sending anomalies to the Tessera Server."},
        {"wanted token of First",
         "**** An unrecoverable error occurred whilst sending items to the Tessera Server."},
        {"receive token of First",
         "**** An unrecoverable error occurred whilst receiving items from the Tessera Server."},
        {"deleted token of First",
         "**** An unrecoverable error occurred whilst process the list of items that have "
         "been deleted in Notes."},
    };
    classes = {"First", "Second"};
    for (const auto& [event, inner] : rows) {
        EXPECT_THAT(chainWhenFailing(event),
                    ElementsAre("** An error occurred whilst replicating items of class 'First'.", inner,
                                "****** Invalid argument."));
    }
}

TEST_F(ReplicatorTest, WrapsWhatSendingNewRecordsRaises) {
    classes = {"First"};
    handheld.create("TestDB", 0x44415441, 0x74657374).addRecord({1, 2}, 0);
    EXPECT_THAT(chainWhenFailing("convert"),
                ElementsAre("** An error occurred whilst replicating items of class 'First'.",
                            "**** An unrecoverable error occurred whilst sending new records to Notes.",
                            "****** Invalid argument."));
}

TEST_F(ReplicatorTest, WrapsWhatSendingDeletionsRaises) {
    const std::uint32_t uid = receiveOneItem();
    ASSERT_TRUE(handheld.find("TestDB")->deleteRecord(uid));
    EXPECT_THAT(chainWhenFailing("deletions"),
                ElementsAre("** An unrecoverable error occurred whilst sending deletions to Notes.",
                            "**** Invalid argument."));
}

TEST_F(ReplicatorTest, EndsAtTheSecondClassAndWritesNothing) {
    classes = {"First", "Second"};
    handheld.create("TestSync", 0x54455354, ownCreator);
    put(*handheld.find("TestSync"), 1, 7, "00 09");
    const Handheld before = handheld;
    EXPECT_EQ(chainWhenFailing("info Second")[0],
              "** An error occurred whilst replicating items of class 'Second'.");
    EXPECT_THAT(events, testing::Contains("deleted token of First"));
    EXPECT_EQ(*handheld.find("TestSync"), *before.find("TestSync"));
    EXPECT_EQ(server->codes().back(), 7U); // no orderly close
}

TEST_F(ReplicatorTest, MakesAnErrorOfWhatIsNone) {
    fail = [](const std::string& event) {
        if (event == "pre-replicate") throw 7;
    };
    EXPECT_THAT(chain(), ElementsAre("** An unrecoverable error occurred during pre-replication.",
                                     "**** An exception of unknown type was caught."));
    fail = [](const std::string& event) {
        if (event == "classes") throw 7;
    };
    EXPECT_THAT(chain(), ElementsAre("** An exception of unknown type was caught."));
    classes = {"First"};
    fail = [](const std::string& event) {
        if (event == "info First") throw 7;
    };
    EXPECT_EQ(chain().back(), "****** An exception of unknown type was caught.");
}

TEST_F(ReplicatorTest, WrapsWhatTheDeviceRefuses) {
    classes = {"First"};
    const std::tuple<const char*, std::uint64_t, const char*> rows[] = {
        {"SyncReadNextModifiedRec", 1,
         "** An unrecoverable error occurred whilst retrieving modified and deleted records."},
        {"SyncFindDbByTypeCreator", 3, // behind the two of the configuration
         "** An unrecoverable error occurred whilst retrieving the replication state from the Palm device."},
        {"SyncWriteRec", 1, // the status record
         "** An unrecoverable error occurred whilst persisting the replication state to the Palm device."},
        {"SyncWriteRec", 3, "** An error occurred whilst resetting the sync flags on the Palm device."},
        {"SyncDeleteRec", 1, "** An error occurred whilst resetting the sync flags on the Palm device."},
        {"SyncCallRemoteModule", 1,
         "** An unrecoverable error occurred whilst copying application record from the sync database to the "
         "application datebase."},
        {"SyncWriteDBAppInfoBlock", 1,
         "** An unrecoverable error occurred whilst writing the application info block."},
        {"SyncGetAPIVersion", 1, "** The function SyncGetAPIVersion( ) failed: "}, // no phase of its own
    };
    for (const auto& [function, number, outer] : rows) {
        SCOPED_TRACE(function);
        handheld.databases.erase("TestSync");
        handheld.databases.erase("TestDB");
        handheldMend();
        handheldRestartCount();
        handheldFailFunction(function, number, 0x4006);
        EXPECT_THAT(chain()[0], StartsWith(outer));
    }
}

TEST_F(ReplicatorTest, FillsFixupRecordsAsFarAsTheDeviceCopes) {
    const std::tuple<VersionNumber, std::vector<std::size_t>> rows[] = {
        {{3, 5}, {30, 30, 30, 11}}, {{4, 0}, {100, 1}},
        {{4, 1}, {100, 1}},         {{10, 0}, {30, 30, 30, 11}}, // as a text it stands before "4.0"
        {{0, 0}, {100, 1}},                                      // "?.?" stands behind it
    };
    classes = {"First"};
    newItems = 101;
    for (const auto& [version, entries] : rows) {
        SCOPED_TRACE(version.major);
        handheld.databases.erase("TestSync");
        handheld.systemVersion = version;
        handheldRestartCount();
        handheldFailFunction("SyncCallRemoteModule", 1, 0x4015); // the records stay for us to see
        run();
        std::vector<std::size_t> sizes;
        for (const HandheldRecord& record : handheld.find("TestSync")->records().all()) {
            if (record.category == 6) sizes.push_back(record.data.size());
        }
        std::vector<std::size_t> expected;
        for (const std::size_t count : entries) expected.push_back(1 + 8 * count);
        EXPECT_EQ(sizes, expected);
    }
}

TEST_F(ReplicatorTest, LetsAStoredTypeWin) {
    classes = {"First"};
    configureType(5);
    run(ReplicationType::Slow);
    EXPECT_EQ(handheldFunctionCallCount("SyncReadNextModifiedRec"), 1U); // Fast reads the flagged records
    EXPECT_EQ(storedType(), 2);                                          // and holds for one session
}

TEST_F(ReplicatorTest, LetsASlowSyncOfTheManagerThrough) {
    classes = {"First"};
    run(ReplicationType::Slow);
    EXPECT_EQ(handheldFunctionCallCount("SyncReadNextModifiedRec"), 0U);
    EXPECT_EQ(storedType(), 2);
    EXPECT_THAT(trace(), testing::Contains("SyncOpenDB(\"VellumConfig\", 0, 0xC0)")); // to set the type back
}

TEST_F(ReplicatorTest, LeavesTheTypeAloneInANormalSession) {
    classes = {"First"};
    run();
    EXPECT_THAT(trace(), testing::Not(testing::Contains("SyncOpenDB(\"VellumConfig\", 0, 0xC0)")));
}

TEST_F(ReplicatorTest, ResetsSequenceNumbersAndReadsNothing) {
    const std::uint32_t uid = receiveOneItem();
    const std::string dbid(16, 'd');
    const std::string unid(32, '0');
    run();
    EXPECT_THAT(information, ElementsAre(dbid, unid, "1", "1"));
    ASSERT_TRUE(handheld.find("TestDB")->editRecord(uid, {9}));
    configureType(3);
    handheldRestartCount();
    run();
    EXPECT_THAT(information, ElementsAre(dbid, unid, "0", "0")); // and not as modified
    EXPECT_EQ(handheldFunctionCallCount("SyncReadNextModifiedRec"), 0U);
    EXPECT_EQ(handheld.find("TestDB")->records().at(0).data, test::bytes("09")); // the data stays
    EXPECT_EQ(storedType(), 2);
}

TEST_F(ReplicatorTest, ClearsBothDatabases) {
    classes = {"First"};
    configureType(4);
    put(handheld.create("TestDB", 0x44415441, 0x74657374), 1, 0, "01");
    put(handheld.create("TestSync", 0x54455354, ownCreator), 1, 7, "00 09");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(logEntries().back(), Entry("Test", finished));
    EXPECT_THAT(contents(*handheld.find("TestDB")), IsEmpty());
    EXPECT_THAT(contents(*handheld.find("TestSync")), ElementsAre("1/7: 00 09")); // made anew
    EXPECT_EQ(storedType(), 2);
}

TEST_F(ReplicatorTest, ClearsWhatIsNotThere) {
    classes = {"First"};
    configureType(4);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(logEntries().back(), Entry("Test", finished));
}

TEST_F(ReplicatorTest, WrapsWhatAClearRaises) {
    configureType(4);
    handheldFailFunction("SyncDeleteDB", 1, 0x4006);
    EXPECT_EQ(chain()[0], "** An unrecoverable error occurred whilst clearing replication history and data.");
}

TEST_F(ReplicatorTest, WrapsWhatSettingTheTypeBackRaises) {
    classes = {"First"};
    configureType(5);
    handheldFailFunction("SyncWriteRec", 4, 0x4006); // behind the status record, twice, and the flags' record
    EXPECT_EQ(
        chain()[0],
        "** An unrecoverable error occurred whilst resetting the next replication type back to 'Normal'.");
    EXPECT_EQ(storedType(), 5);
}

TEST_F(ReplicatorTest, NeedsNoFinishOfAnEarlierOne) {
    EXPECT_EQ(chainWhenFailing("pre-replicate").size(), 2U);
    fail = nullptr;
    hotSyncLogClear();
    run();
    EXPECT_THAT(logEntries(), ElementsAre(Entry("Test", started), Entry("Test", finished)));
}

// The debug log stands beside this program, one file for each display name.
class ReplicatorDebugLog : public ReplicatorTest {
protected:
    ReplicatorDebugLog() { std::filesystem::remove(path); }
    ~ReplicatorDebugLog() override { std::filesystem::remove(path); }

    std::vector<std::string> logLines() const {
        std::vector<std::string> lines;
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }

    const std::string path = platform::moduleDirectory(moduleName) + "TsrTest.log";
    const test::ScopedVariable zone{"TZ", "CET-1CEST,M3.5.0,M10.5.0/3"};
};

TEST_F(ReplicatorDebugLog, TracesASession) {
    const test::ScopedVariable on{"TSR_DEBUG_LOG", "1"};
    classes = {"First"};
    serve([](const WireRequest& request) {
        if (request.code == 200) return WireAnswer{.strings = {"", "Too $late", "Too early"}};
        return ScriptedServer::usualAnswer(request);
    });
    configureType(6);
    run();
    std::vector<std::string> lines = logLines();
    const std::string time = "13:34:56 "; // the clock stands still at 12:34:56 UTC
    for (std::string& line : lines) {
        EXPECT_THAT(line, StartsWith(time));
        line.erase(0, time.size());
    }
    EXPECT_THAT(
        lines,
        ElementsAre(
            "----------------------------------------------",
            "Test replication started at Wed Feb  6 13:34:56 2002", "SyncManager API Version: 2.3",
            "PalmOS Version: 4.1", "Conduit version: 2.4.2.0", "Getting application preferences",
            "Getting palm configuration", "Replication type: Slow",
            "Connecting to Tessera server (ip=127.0.0.1, port=" + std::to_string(server->port()) + ")",
            "Connected.", "--- Reading sync data ----------------------",
            "0 application records deleted from sync database", "0 fixup records deleted from sync database",
            "--- Finished reading sync data -------------", "Getting modified application records ...",
            "Sending replication information (0 modified, 0 non-modified) ...",
            "There are 0 anomalies to send", "There are 0 items to send", "There are 0 items to receive",
            "There are 0 items to delete from the handheld",
            "--- Start rewrite of sync information ------------",
            "--- End rewrite of sync information ------------", "Copying from sync db to appl db",
            "Resetting sync flags", "------ Session errors begin -----------------", "Too $late", "Too early",
            "------ Session errors end -------------------",
            "Test replication finished at Wed Feb  6 13:34:56 2002"));
}

TEST_F(ReplicatorDebugLog, TracesErrorChainsAndAppends) {
    const test::ScopedVariable on{"TSR_DEBUG_LOG", "1"};
    configureType(0);
    run();
    run();
    const std::vector<std::string> lines = logLines();
    ASSERT_EQ(lines.size(), 18U);
    EXPECT_EQ(
        lines[7],
        "13:34:56 ** An unrecoverable error occurred whilst retrieving Palm configuration information.");
    EXPECT_THAT(lines[8], StartsWith("13:34:56 **** Before you can replicate"));
}

TEST_F(ReplicatorDebugLog, LeavesNoLineHalfWritten) {
    const test::ScopedVariable on{"TSR_DEBUG_LOG", "1"};
    handheldFailFunction("SyncGetAPIVersion", 1, 0x4015);
    handheldFailFunction("SyncGetAPIVersion", 2, 0x4019); // the repeat, whose code is told
    run();
    EXPECT_THAT(logLines(),
                ElementsAre("13:34:56 ----------------------------------------------",
                            "13:34:56 Test replication started at Wed Feb  6 13:34:56 2002",
                            "13:34:56 ** The function SyncGetAPIVersion( ) failed: This request (command) is "
                            "not supported by the handheld.",
                            "")); // the error's own line end
}

TEST_F(ReplicatorDebugLog, IsMadeButEmptyWhenNobodyAsksForIt) {
    for (const char* off : {"", "0"}) {
        const test::ScopedVariable variable{"TSR_DEBUG_LOG", off};
        run();
        EXPECT_TRUE(std::filesystem::exists(path));
        EXPECT_EQ(std::filesystem::file_size(path), 0U);
    }
}

} // namespace
} // namespace tsr
