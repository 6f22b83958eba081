#include "applications/FreeTimeReplicator.h"

#include <algorithm>
#include <functional>
#include <map>

#include "foundation/GeneralError.h"
#include "support/SessionTest.h"
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
using Entry = std::pair<std::string, int>;
using Strings = std::vector<std::string>;

constexpr int started = 19;
constexpr int finished = 20;
constexpr int aborted = 21;
constexpr int warning = 22;

const std::string utc(88, '0');
const std::string hourEast = "C4FFFFFF" + std::string(80, '0'); // a bias of -60 minutes

// Days of February 2002 as seconds since 1993; the 4th, the 11th and the 18th are Mondays.
constexpr std::uint32_t day(std::uint32_t dayOfMonth) { return 286934400 + (dayOfMonth - 4) * 86400; }

std::string span(std::uint32_t dayOfMonth, std::uint32_t hour, std::uint32_t minute) {
    return std::to_string(day(dayOfMonth) + hour * 3600 + minute * 60);
}

// A line of contents: the record `head`, the first bytes up to the bitmap, and its bytes that are not zero.
std::string week(const std::string& head, const std::map<int, std::string>& bitmap = {}) {
    std::string line = head;
    for (int byte = 0; byte < 84; ++byte) {
        const auto found = bitmap.find(byte);
        line += found == bitmap.end() ? " 00" : " " + found->second;
    }
    return line;
}

class FreeTimeReplicatorTest : public test::SessionTest {
protected:
    FreeTimeReplicatorTest() {
        test::setClock(1012998896); // 2002-02-06 12:34:56
        database = &handheld.create("VellumFreetime", 0x46524545, ownCreator);
        serve([this](const WireRequest& request) {
            if (request.code == 7) return WireAnswer{.strings = {zone}};
            if (request.code != 122) return ScriptedServer::usualAnswer(request);
            return answers.at(request.strings.at(1));
        });
    }

    void addConfiguration() { put(*database, 1, 1, "00 1E 00"); } // 30
    void addAnn() { put(*database, 5, 3, "00 41 6E 6E 00"); }
    void addBob() { put(*database, 6, 3, "00 42 6F 62 00"); }

    void answer(const std::string& name, const Strings& strings) { answers[name] = {.strings = strings}; }

    void run() {
        hotSyncLogClear();
        handheldRestartCount();
        handheldSetTracing(1);
        const CountedPtr<PalmProxy> palm(new PalmProxy(nullptr));
        EXPECT_EQ(FreeTimeReplicator(palm).run(ReplicationType::Normal), 0);
    }

    void runWell() {
        run();
        EXPECT_THAT(logEntries(), ElementsAre(Entry("FreeTime", started), Entry("FreeTime", finished)));
    }

    // Runs a session that fails in its one phase, and gives the text below that of the phase.
    std::string causeOfFailure() {
        run();
        const std::vector<Entry> entries = logEntries();
        EXPECT_EQ(entries.size(), 4U) << testing::PrintToString(entries);
        EXPECT_EQ(entries.at(1),
                  Entry("** An unrecoverable error occurred during pre-replication.", warning));
        EXPECT_EQ(entries.back(), Entry("FreeTime", aborted));
        return entries.at(2).first;
    }

    std::vector<std::string> records() const { return contents(*database); }

    // The calls from the opening of the application database on, with their arguments cut off.
    static std::vector<std::string> calls() {
        std::vector<std::string> names;
        for (std::uint64_t index = 0; index < handheldTraceCount(); ++index) {
            const std::string line = handheldTraceLine(index);
            names.push_back(line.substr(0, line.find('(')));
        }
        const auto opened = std::find(names.rbegin(), names.rend(), "SyncOpenDB");
        return {opened.base(), names.end()};
    }

    HandheldDatabase* database;
    std::string zone = utc;
    std::map<std::string, WireAnswer> answers; // to the request for free time, by the person's name
};

TEST_F(FreeTimeReplicatorTest, LaysAnAnswerIntoAWeek) {
    addConfiguration();
    addAnn();
    answer("Ann", {span(4, 9, 7), "60"});
    runWell();
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 122, 19));
    EXPECT_THAT(server->requests()[2].strings, ElementsAre("30", "Ann"));
    // 09:15, 09:30 and 09:45 are the slots 37 to 39. The CRC is that of the 90 bytes.
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00",
                                       week("6/4: 00 00 00 05 C4 44", {{4, "07"}}),
                                       "7/2: 00 00 00 05 01 C4 44 00 00 06 0A 17"));
}

TEST_F(FreeTimeReplicatorTest, WorksThroughTheDeviceInOrder) {
    addConfiguration();
    addAnn();
    put(*database, 8, 4, "00 00 00 05 C4 3D"); // a week that no CRC record knows
    answer("Ann", {span(4, 9, 7), "60"});
    runWell();
    EXPECT_THAT(calls(),
                ElementsAre("SyncResetRecordIndex", "SyncReadNextRecInCategory", "SyncReadRecordByIndex",
                            "SyncReadNextRecInCategory", // the people
                            "SyncResetRecordIndex", "SyncReadNextRecInCategory", "SyncReadRecordByIndex",
                            "SyncReadNextRecInCategory",                         // the configuration
                            "SyncResetRecordIndex", "SyncReadNextRecInCategory", // no CRC record
                            "SyncResetRecordIndex", "SyncReadNextRecInCategory", "SyncReadRecordByIndex",
                            "SyncReadNextRecInCategory", "SyncDeleteRec", // the weeks
                            "SyncWriteRec",                               // the week
                            "SyncWriteRec",                               // the CRC record
                            "SyncCloseDBEx"));
}

TEST_F(FreeTimeReplicatorTest, DeletesAllWeeksWithoutACrcRecord) {
    addConfiguration();
    put(*database, 5, 4, "00 00 00 09 C4 44");
    put(*database, 6, 4, "");
    put(*database, 7, 4, "01");
    runWell();
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 19)); // nobody to ask for
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "8/2: 00"));
}

TEST_F(FreeTimeReplicatorTest, LeavesWeeksAloneThatStayTheSame) {
    addConfiguration();
    addAnn();
    answer("Ann", {span(4, 9, 7), "60"});
    runWell();
    const std::vector<std::string> first = records();
    runWell();
    EXPECT_EQ(handheldFunctionCallCount("SyncWriteRec"), 1U); // the CRC record, which is always a new one
    EXPECT_EQ(handheldFunctionCallCount("SyncDeleteRec"), 1U);
    EXPECT_THAT(records(),
                ElementsAre(first[0], first[1], first[2], "8/2: 00 00 00 05 01 C4 44 00 00 06 0A 17"));
}

TEST_F(FreeTimeReplicatorTest, WritesAWeekThatChangedUnderItsId) {
    addConfiguration();
    addAnn();
    put(*database, 7, 2, "00 00 00 05 01 C4 44 00 00 09 12 34");
    put(*database, 9, 4, "AA");
    answer("Ann", {span(4, 9, 7), "60"});
    runWell();
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00",
                                       week("9/4: 00 00 00 05 C4 44", {{4, "07"}}),
                                       "A/2: 00 00 00 05 01 C4 44 00 00 09 0A 17"));
    EXPECT_THAT(calls(),
                ElementsAre("SyncResetRecordIndex", "SyncReadNextRecInCategory", "SyncReadRecordByIndex",
                            "SyncReadNextRecInCategory", "SyncResetRecordIndex", "SyncReadNextRecInCategory",
                            "SyncReadRecordByIndex", "SyncReadNextRecInCategory", "SyncResetRecordIndex",
                            "SyncReadNextRecInCategory", "SyncReadRecordByIndex",
                            "SyncReadNextRecInCategory", // is there a second one?
                            "SyncDeleteRec",             // before anybody is asked for
                            "SyncWriteRec", "SyncWriteRec", "SyncCloseDBEx"));
}

TEST_F(FreeTimeReplicatorTest, DeletesAllWeeksOfAPersonWithoutFreeTime) {
    addConfiguration();
    addAnn();
    put(*database, 7, 2, "00 00 00 05 02 C4 44 00 00 09 12 34 C4 4B 00 00 0A 56 78");
    put(*database, 9, 4, "AA");
    put(*database, 10, 4, "BB");
    answer("Ann", {});
    runWell();
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00", "B/2: 00"));
}

TEST_F(FreeTimeReplicatorTest, DeletesTheWeeksOfAPersonThatIsGone) {
    addConfiguration();
    put(*database, 7, 2, "00 00 00 05 01 C4 44 00 00 09 12 34");
    put(*database, 9, 4, "AA");
    runWell();
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 19));
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "A/2: 00"));
}

TEST_F(FreeTimeReplicatorTest, PassesOverAPersonThatWaitsToBePurged) {
    addConfiguration();
    addAnn();
    ASSERT_TRUE(database->deleteRecord(5));
    runWell();
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 19));
}

TEST_F(FreeTimeReplicatorTest, AsksForNobodyWithoutAName) {
    addConfiguration();
    put(*database, 5, 3, "00 00");
    runWell();
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 19));
}

TEST_F(FreeTimeReplicatorTest, DeletesPastWeeksAndEmptiesLaterOnes) {
    addConfiguration();
    addAnn();
    put(*database, 7, 2,
        "00 00 00 05 03"
        " C4 44 00 00 09 12 34"   // the 4th: before the answer
        " C4 4B 00 00 0A 42 71"   // the 11th: as the answer has it
        " C4 52 00 00 0B 56 78"); // the 18th: behind the answer, and empty from now on
    put(*database, 9, 4, "AA");
    put(*database, 10, 4, "BB");
    put(*database, 11, 4, "CC");
    answer("Ann", {span(11, 0, 0), "15"});
    runWell();
    EXPECT_THAT(records(),
                ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00", "A/4: BB", week("B/4: 00 00 00 05 C4 52"),
                            "C/2: 00 00 00 05 02 C4 4B 00 00 0A 42 71 C4 52 00 00 0B 79 61"));
}

TEST_F(FreeTimeReplicatorTest, DropsAPastWeekThatHasNoRecord) {
    addConfiguration();
    addAnn();
    put(*database, 7, 2, "00 00 00 05 01 C4 44 00 00 00 FF FF");
    answer("Ann", {});
    runWell();
    EXPECT_EQ(handheldFunctionCallCount("SyncDeleteRec"), 1U); // the CRC record
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00", "8/2: 00"));
}

TEST_F(FreeTimeReplicatorTest, TakesASpanOfNoSlotForAnEmptyWeek) {
    addConfiguration();
    addAnn();
    answer("Ann", {span(4, 9, 7), "10"});
    runWell();
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00", week("6/4: 00 00 00 05 C4 44"),
                                       "7/2: 00 00 00 05 01 C4 44 00 00 06 87 B3"));
}

TEST_F(FreeTimeReplicatorTest, IgnoresTheSecondsOfAStart) {
    addConfiguration();
    addAnn();
    answer("Ann", {std::to_string(day(4) + 9 * 3600 + 7 * 60 + 59), "60"});
    runWell();
    EXPECT_THAT(records(), testing::Contains(week("6/4: 00 00 00 05 C4 44", {{4, "07"}})));
}

TEST_F(FreeTimeReplicatorTest, RunsOnIntoTheNextDay) {
    addConfiguration();
    addAnn();
    answer("Ann", {span(4, 23, 45), "30"});
    runWell();
    EXPECT_THAT(records(), testing::Contains(week("6/4: 00 00 00 05 C4 44", {{11, "01"}, {12, "80"}})));
}

TEST_F(FreeTimeReplicatorTest, CountsInTheZoneOfTheServer) {
    zone = hourEast;
    addConfiguration();
    addAnn();
    answer("Ann", {span(3, 23, 0), "15"}); // Monday 00:00 there
    runWell();
    EXPECT_THAT(records(), testing::Contains(week("6/4: 00 00 00 05 C4 44", {{0, "80"}})));
}

TEST_F(FreeTimeReplicatorTest, SendsTheWholeRangeOfTheSearchLength) {
    put(*database, 1, 1, "FF FE 01 02"); // unsigned; what follows is nothing to us
    addAnn();
    answer("Ann", {});
    runWell();
    EXPECT_THAT(server->requests()[2].strings, ElementsAre("65534", "Ann"));
}

TEST_F(FreeTimeReplicatorTest, TakesPeopleInTheOrderOfTheirIds) {
    addConfiguration();
    addBob();
    addAnn(); // behind Bob by index, before him by id
    answer("Ann", {span(4, 9, 7), "60"});
    answer("Bob", {span(6, 0, 0), "15"});
    runWell();
    EXPECT_EQ(server->requests()[2].strings[1], "Ann");
    EXPECT_EQ(server->requests()[3].strings[1], "Bob");
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "6/3: 00 42 6F 62 00", "5/3: 00 41 6E 6E 00",
                                       week("7/4: 00 00 00 05 C4 44", {{4, "07"}}),
                                       week("8/4: 00 00 00 06 C4 44", {{24, "80"}}),
                                       "9/2: 00 00 00 05 01 C4 44 00 00 07 0A 17"
                                       " 00 00 06 01 C4 44 00 00 08 33 9F"));
}

TEST_F(FreeTimeReplicatorTest, KeepsTheWeeksOfAPersonWhoseRequestFailed) {
    addConfiguration();
    addAnn();
    addBob();
    put(*database, 7, 2, "00 00 00 05 02 C4 3D 00 00 09 12 34 C4 44 00 00 0A 56 78");
    put(*database, 9, 4, "AA");
    put(*database, 10, 4, "BB");
    answers["Ann"] = {.result = 9, .message = "Not today"};
    answer("Bob", {span(6, 0, 0), "15"});
    run();
    EXPECT_THAT(logEntries(),
                ElementsAre(Entry("FreeTime", started),
                            Entry("** An error occurred whilst attempting to find free time for user 'Ann'.",
                                  warning),
                            Entry("**** Not today", warning), Entry("FreeTime", finished)));
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00", "6/3: 00 42 6F 62 00",
                                       "9/4: AA", "A/4: BB", week("B/4: 00 00 00 06 C4 44", {{24, "80"}}),
                                       "C/2: 00 00 00 05 02 C4 3D 00 00 09 12 34 C4 44 00 00 0A 56 78"
                                       " 00 00 06 01 C4 44 00 00 0B 33 9F"));
}

TEST_F(FreeTimeReplicatorTest, TellsOfAnAnswerThatIsNoFreeTime) {
    const std::pair<Strings, const char*> rows[] = {
        {{"soon", "60"}, "**** Cannot convert string 'soon' to unsigned."},
        {{span(4, 9, 0), "long"}, "**** Cannot convert string 'long' to unsigned."},
        {{span(10, 23, 30), "45"}, "**** An exception of unknown type was caught."}, // past the week
    };
    for (const auto& [strings, cause] : rows) {
        SCOPED_TRACE(cause);
        handheld.databases.erase("VellumFreetime");
        database = &handheld.create("VellumFreetime", 0x46524545, ownCreator);
        addConfiguration();
        addAnn();
        answer("Ann", strings);
        run();
        EXPECT_THAT(logEntries(), ElementsAre(Entry("FreeTime", started), testing::_, Entry(cause, warning),
                                              Entry("FreeTime", finished)));
    }
}

TEST_F(FreeTimeReplicatorTest, TellsOfAnAnswerThatEndsInAPair) {
    addConfiguration();
    addAnn();
    answer("Ann", {span(4, 9, 0)});
    run();
    const std::vector<Entry> entries = logEntries();
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[1].first, "** An error occurred whilst attempting to find free time for user 'Ann'.");
    EXPECT_EQ(entries[3], Entry("FreeTime", finished));
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00", "6/2: 00"));
}

TEST_F(FreeTimeReplicatorTest, WritesNoWeekWhenASpanRunsPastItButNotesIt) {
    addConfiguration();
    addAnn();
    answer("Ann", {span(10, 23, 30), "45"});
    run();
    EXPECT_EQ(logEntries()[1].first,
              "** An error occurred whilst attempting to find free time for user 'Ann'.");
    // No record, and a CRC that is not known.
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00",
                                       "6/2: 00 00 00 05 01 C4 44 00 00 00 FF FF"));
    answer("Ann", {span(10, 23, 30), "30"});
    runWell(); // the next session mends it
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00",
                                       week("7/4: 00 00 00 05 C4 44", {{83, "03"}}),
                                       "8/2: 00 00 00 05 01 C4 44 00 00 07 B7 D0"));
}

TEST_F(FreeTimeReplicatorTest, GoesOnWhenAWeekCannotBeWritten) {
    addConfiguration();
    addAnn();
    addBob();
    answer("Ann", {span(4, 9, 7), "60"});
    answer("Bob", {span(6, 0, 0), "15"});
    handheldFailFunction("SyncWriteRec", 1, 0x4014);
    run();
    EXPECT_THAT(logEntries().at(2).first, testing::StartsWith("**** The function SyncWriteRec( ) failed: "));
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "5/3: 00 41 6E 6E 00", "6/3: 00 42 6F 62 00",
                                       week("7/4: 00 00 00 06 C4 44", {{24, "80"}}),
                                       "8/2: 00 00 00 05 01 C4 44 00 00 00 FF FF"
                                       " 00 00 06 01 C4 44 00 00 07 33 9F"));
}

// The number of weeks is one byte, and so a person with more of them takes a second run.
TEST_F(FreeTimeReplicatorTest, KeepsMoreWeeksThanAByteCounts) {
    addConfiguration();
    addAnn();
    Strings spans;
    for (std::uint32_t number = 0; number < 256; ++number) {
        spans.push_back(std::to_string(day(4) + number * 7 * 86400));
        spans.push_back("60");
    }
    answer("Ann", spans);
    runWell();
    const HandheldRecord* index = nullptr;
    database->records().forEach([&index](const HandheldRecord& record) {
        if (record.category == 2) index = &record;
    });
    ASSERT_NE(index, nullptr);
    ASSERT_EQ(index->data.size(), 1U + 4 + 255 * 7 + 4 + 7);
    EXPECT_EQ(index->data[4], 255);
    const std::size_t second = 1 + 4 + 255 * 7;
    EXPECT_EQ(test::hexText({index->data.begin() + second, index->data.begin() + second + 4}), "00 00 05 01");
    const std::vector<HandheldRecord> before = database->records().all();
    runWell();
    for (const HandheldRecord& record : before) { // read back, all weeks are known, and none is written again
        if (record.category != 4) continue;
        EXPECT_EQ(*database->records().find(record.id), record);
    }
    EXPECT_EQ(handheldFunctionCallCount("SyncWriteRec"), 1U); // the new CRC record
}

TEST_F(FreeTimeReplicatorTest, NeedsItsConfiguration) {
    addAnn();
    EXPECT_EQ(causeOfFailure(), "**** Free time search configuration record not found.");
    EXPECT_THAT(records(), ElementsAre("5/3: 00 41 6E 6E 00"));
}

TEST_F(FreeTimeReplicatorTest, RefusesASecondConfiguration) {
    addConfiguration();
    put(*database, 2, 1, "00 1E 00");
    EXPECT_EQ(causeOfFailure(), "**** Multiple free time search configuration records found.");
}

TEST_F(FreeTimeReplicatorTest, RefusesASecondCrcRecordAndDeletesNeither) {
    addConfiguration();
    put(*database, 7, 2, "00");
    put(*database, 8, 2, "00");
    EXPECT_EQ(causeOfFailure(), "**** Multiple free time CRC records found.");
    EXPECT_THAT(records(), ElementsAre("1/1: 00 1E 00", "7/2: 00", "8/2: 00"));
}

TEST_F(FreeTimeReplicatorTest, EndsForADamagedRecord) {
    const std::tuple<std::uint8_t, const char*, const char*> rows[] = {
        {1, "00", "**** Buffer underun occurred when reading a 16 bit integer."},
        {1, "00 1E", "**** Buffer underun occurred when reading a 8 bit integer."},
        {2, "", "**** Buffer underun occurred when reading a 8 bit integer."},
        {2, "00 00 00", "**** Buffer underun occurred when reading a 24 bit integer."},
        {2, "00 00 00 05", "**** Buffer underun occurred when reading a 8 bit integer."},
        {2, "00 00 00 05 01", "**** Buffer underun occurred when reading a 16 bit integer."},
        {2, "00 00 00 05 01 C4 44 00 00", "**** Buffer underun occurred when reading a 24 bit integer."},
        {2, "00 00 00 05 01 C4 44 00 00 06 0A",
         "**** Buffer underun occurred when reading a 16 bit integer."},
        {2, "00 00 00 05 01 C4 40 00 00 06 0A 17", // the 0th
         "**** The specified year(2002), month(2) and day(0) do not form a valid date."},
        {3, "", "**** Buffer underun occurred when reading a 8 bit integer."},
        {3, "00 41 6E", "**** Null terminator not found in string."},
    };
    for (const auto& [category, data, cause] : rows) {
        SCOPED_TRACE(testing::Message() << int{category} << ": " << data);
        handheld.databases.erase("VellumFreetime");
        database = &handheld.create("VellumFreetime", 0x46524545, ownCreator);
        if (category != 1) addConfiguration();
        put(*database, 7, category, data);
        EXPECT_EQ(causeOfFailure(), cause);
    }
}

TEST_F(FreeTimeReplicatorTest, NeedsNoSyncDatabaseAndMakesNone) {
    addConfiguration();
    runWell();
    EXPECT_EQ(handheld.databases.size(), 2U); // its own and the configuration
}

TEST(FreeTimeReplicator, HasNoOperationsOnItems) {
    struct Opened : FreeTimeReplicator {
        using FreeTimeReplicator::classNames;
        using FreeTimeReplicator::convertToNotes;
        using FreeTimeReplicator::convertToPalm;
        using FreeTimeReplicator::fetchAnomalies;
        using FreeTimeReplicator::fetchDeletedInNotes;
        using FreeTimeReplicator::fetchWantedItems;
        using FreeTimeReplicator::FreeTimeReplicator;
        using FreeTimeReplicator::listItemsToReceive;
        using FreeTimeReplicator::makeNotesRecord;
        using FreeTimeReplicator::makePalmRecord;
        using FreeTimeReplicator::receiveItem;
        using FreeTimeReplicator::sendAnomalyItem;
        using FreeTimeReplicator::sendDeletionList;
        using FreeTimeReplicator::sendItem;
        using FreeTimeReplicator::sendReplicationInfo;
    };
    struct NoRecord : NotesApplicationRecord {
        void addTo(NotesItem&, const TimeZone&) const override {}
        std::string description() const override { return {}; }
    };
    Opened replicator(CountedPtr<PalmProxy>(new PalmProxy(nullptr)));
    EXPECT_THAT(replicator.classNames(), IsEmpty());
    const NoRecord record;
    std::vector<ItemId> items;
    Strings handles;
    NotesItem item;
    ItemVersion version;
    std::string unid;
    bool resend = false;
    PalmRecordBuffer buffer;
    const std::function<void()> rows[] = {
        [&] { replicator.convertToPalm(record, resend); },
        [&] { replicator.convertToNotes({}, false, 0); },
        [&] { replicator.fetchAnomalies("", items); },
        [&] { replicator.fetchDeletedInNotes("", items); },
        [&] { replicator.fetchWantedItems("", items); },
        [&] { replicator.receiveItem("", "", "", item, version); },
        [&] { replicator.listItemsToReceive("", handles); },
        [&] { replicator.sendAnomalyItem("", {}, record, unid); },
        [&] { replicator.sendItem("", "", {}, record); },
        [&] { replicator.sendDeletionList({}, items); },
        [&] { replicator.sendReplicationInfo("", StringRun()); },
        [&] { replicator.makeNotesRecord(item); },
        [&] { replicator.makePalmRecord(buffer, false); },
    };
    for (const std::function<void()>& row : rows) {
        SCOPED_TRACE(&row - rows);
        try {
            row();
            ADD_FAILURE() << "nothing raised";
        } catch (const GeneralError& error) {
            EXPECT_THAT(
                errorText(error),
                testing::MatchesRegex("Internal error occured at line [0-9]+ in FreeTimeReplicator\\."));
        }
    }
}

} // namespace
} // namespace tsr
