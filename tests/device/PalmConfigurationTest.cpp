#include "device/PalmConfiguration.h"

#include "device/PalmProxy.h"
#include "foundation/GeneralError.h"
#include "support/ScriptedSyncManager.h"
#include "support/bytes.h"
#include "support/errorChain.h"
#include "support/testClock.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::chainRaisedBy;
using test::ScriptedSyncManager;
using testing::ElementsAre;
using testing::StartsWith;

constexpr std::int32_t notFound = 0x4003;

constexpr char failedAt1[] = "Unable to read Palm configuration record with category 1.";
constexpr char failedAt6[] = "Unable to read Palm configuration record with category 6.";

class PalmConfigurationTest : public testing::Test {
protected:
    PalmConfigurationTest() {
        sync.reset();
        test::setClock(1012998896); // 2002-02-06 12:34:56 UTC
    }

    void haveConnection(
        const std::string& record = "00 00 00 09 AB CD 4A 6F 00 70 77 00") { // server 9, "Jo", "pw"
        sync.answerRecord("SyncReadNextRecInCategory", 0, sync.record(3, 1, 0x40, bytes(record)));
    }

    void
    haveServer(const std::string& record = "73 00 68 6F 73 74 00 31 33 35 32 00") { // "s", "host", "1352"
        sync.answerRecord("SyncReadRecordById", 0, sync.record(9, 6, 0, bytes(record)));
    }

    void haveApplication(const std::string& record) {
        sync.answerRecord("SyncReadNextRecInCategory", 0, sync.record(5, 7, 0x50, bytes(record)));
    }

    PalmConfiguration read(std::int16_t category) {
        const CountedPtr<PalmDatabase> database = PalmDatabase::openByName("VellumConfig", 0);
        sync.calls.clear();
        return PalmConfiguration(*database, category);
    }

    PalmConfiguration readApplication(const std::string& record) {
        haveConnection();
        haveServer();
        haveApplication(record);
        return read(7);
    }

    std::vector<std::string> chain(std::int16_t category = 7) {
        return chainRaisedBy([&] { read(category); });
    }

    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
};

TEST_F(PalmConfigurationTest, ReadsItsThreeRecords) {
    const PalmConfiguration configuration = readApplication("06 02 00 00 00 07 00 1E");
    EXPECT_EQ(configuration.replicationType(), 6);
    EXPECT_EQ(configuration.conflictRule(), "S");
    EXPECT_EQ(configuration.userName(), "Jo");
    EXPECT_TRUE(configuration.hasUserName());
    EXPECT_EQ(configuration.password(), "pw");
    EXPECT_EQ(configuration.serverAddress(), "host");
    EXPECT_EQ(configuration.serverPort(), "1352");
    EXPECT_EQ(configuration.deviceTimeText(), "287152496"); // 1012998896 - 725846400
    EXPECT_THAT(sync.calls[4], StartsWith("SyncResetRecordIndex"));
    EXPECT_EQ(
        sync.calls[1],
        "SyncReadNextRecInCategory(handle 7, id 0, index 0, attributes 00, category 1, size 0, room 1024)");
    EXPECT_EQ(sync.calls[3],
              "SyncReadRecordById(handle 7, id 9, index 0, attributes 00, category 0, size 0, room 1024)");
    EXPECT_EQ(
        sync.calls[5],
        "SyncReadNextRecInCategory(handle 7, id 0, index 0, attributes 00, category 7, size 0, room 1024)");
    EXPECT_EQ(sync.calls[7], "SyncReadSysDateTime()");
}

TEST_F(PalmConfigurationTest, ConvertsEachConflictResolution) {
    EXPECT_EQ(readApplication("02 01 00 00 00 00 00 00").conflictRule(), "C");
    EXPECT_EQ(readApplication("02 02 00 00 00 00 00 00").conflictRule(), "S");
}

TEST_F(PalmConfigurationTest, IgnoresWhatFollowsInTheApplicationRecord) {
    const PalmConfiguration configuration =
        readApplication("02 01 FF FF 00 00 00 00 01 02 03 04 05 06 07 08 09 0A 0B 0C"); // 20 bytes
    EXPECT_EQ(configuration.replicationType(), 2);
}

TEST_F(PalmConfigurationTest, HasNormalsWithoutAnApplicationRecord) {
    haveConnection();
    haveServer();
    sync.answer("SyncReadNextRecInCategory", notFound);
    const PalmConfiguration configuration = read(7);
    EXPECT_EQ(configuration.replicationType(), 2);
    EXPECT_EQ(configuration.conflictRule(), "C");
    EXPECT_EQ(configuration.startLimit(TimeZone()), 287107200U); // 2002-02-06, 3323 days after 1993-01-01
    EXPECT_EQ(configuration.endLimit(TimeZone()), 287107200U);   // today to today
}

TEST_F(PalmConfigurationTest, SkipsTheApplicationRecordForCategoryZero) {
    haveConnection();
    haveServer();
    const PalmConfiguration configuration = read(0);
    EXPECT_EQ(configuration.replicationType(), 2);
    EXPECT_EQ(configuration.conflictRule(), "");
    EXPECT_THAT(chainRaisedBy([&] { configuration.startLimit(TimeZone()); }),
                ElementsAre("No start date information was available."));
    EXPECT_THAT(chainRaisedBy([&] { configuration.endLimit(TimeZone()); }),
                ElementsAre("No end date information was available."));
    EXPECT_EQ(sync.calls.size(),
              6U); // three of the walk of category 1, the server record, the clock, the close
}

TEST_F(PalmConfigurationTest, TakesEveryReplicationType) {
    for (int type = 0; type <= 6; ++type) {
        EXPECT_EQ(readApplication("0" + std::to_string(type) + " 01 00 00 00 00 00 00").replicationType(),
                  type);
    }
}

TEST_F(PalmConfigurationTest, CountsItsWindowInWholeDaysOfTheZone) {
    const PalmConfiguration configuration =
        readApplication("02 01 00 00 00 07 00 1E");              // 7 days back, 30 ahead
    EXPECT_EQ(configuration.startLimit(TimeZone()), 286502400U); // 2002-01-30
    EXPECT_EQ(configuration.endLimit(TimeZone()), 289699200U);   // 2002-03-08
    // 12:34:56 UTC is already 2002-02-07 in a zone twelve hours east.
    EXPECT_EQ(configuration.startLimit(TimeZone(12 * 3600)), 286588800U);
}

TEST_F(PalmConfigurationTest, WrapsALimitBefore1993) {
    const PalmConfiguration configuration = readApplication("02 01 00 00 0F A0 00 00"); // 4,000 days back
    EXPECT_EQ(configuration.startLimit(TimeZone()), 287107200U - 4000U * 86400U);       // 1991-02-24, wrapped
}

TEST_F(PalmConfigurationTest, WrapsADistanceOfMoreThan24855Days) {
    const PalmConfiguration configuration = readApplication("02 01 00 00 00 00 61 18"); // 24,856 days ahead
    // 24,856 days are 2,147,558,400 seconds, in signed 32 bits -2,147,408,896: 2002-02-06 12:34:56 moves back
    // to 1934-01-20 06:06:40, a day that is 13,130 days before 1970.
    EXPECT_EQ(configuration.endLimit(TimeZone()), 0U - 13130U * 86400U - 725846400U);
}

TEST_F(PalmConfigurationTest, FailsWithoutAConnectionRecord) {
    sync.answer("SyncReadNextRecInCategory", notFound);
    EXPECT_THAT(chain(), ElementsAre(failedAt1, "Record does not exist."));
}

TEST_F(PalmConfigurationTest, FailsForADamagedConnectionRecord) {
    const std::pair<const char*, const char*> rows[] = {
        {"00 00 00 09 AB CD 4A 6F 00 70 77 00 FF", "Palm record has excess data."},
        {"00 00 00 09 AB CD 4A 6F 00 70 77", "Null terminator not found in string."},
        {"00 00 00 09 AB", "Buffer underun occurred when reading a 8 bit integer."},
        {"00 00", "Buffer underun occurred when reading a 32 bit integer."},
        {"", "Buffer underun occurred when reading a 32 bit integer."},
    };
    for (const auto& [record, cause] : rows) {
        SCOPED_TRACE(record);
        haveConnection(record);
        EXPECT_THAT(chain(), ElementsAre(failedAt1, cause));
    }
}

TEST_F(PalmConfigurationTest, FailsWithoutAServerRecord) {
    haveConnection();
    sync.answer("SyncReadRecordById", notFound);
    EXPECT_THAT(chain(), ElementsAre(failedAt6, StartsWith("The function SyncReadRecordById( ) failed: ")));
}

TEST_F(PalmConfigurationTest, FailsForADamagedServerRecord) {
    haveConnection();
    haveServer("73 00 68 6F 73 74 00 31 33 35 32 00 00");
    EXPECT_THAT(chain(), ElementsAre(failedAt6, "Palm record has excess data."));
    haveConnection();
    haveServer("73 00 68 6F 73 74 00 31 33 35 32");
    EXPECT_THAT(chain(), ElementsAre(failedAt6, "Null terminator not found in string."));
}

TEST_F(PalmConfigurationTest, FailsForADamagedApplicationRecordUnderTheServersCategory) {
    const std::pair<const char*, const char*> rows[] = {
        {"07 01 00 00 00 00 00 00", "Invalid replication type (7)."},
        {"FF 01 00 00 00 00 00 00", "Invalid replication type (255)."},
        {"07", "Invalid replication type (7)."}, // as its byte is read, before the next one
        {"02 00 00 00 00 00 00 00", "Invalid conflict resolution type (0)."},
        {"02 03 00 00 00 00 00 00", "Invalid conflict resolution type (3)."},
        {"02 03", "Invalid conflict resolution type (3)."}, // before the words behind it
        {"02 01 00 00", "Buffer underun occurred when reading a 16 bit integer."},
        {"02 01 00 00 00", "Buffer underun occurred when reading a 16 bit integer."},
    };
    for (const auto& [record, cause] : rows) {
        SCOPED_TRACE(record);
        EXPECT_THAT(chainRaisedBy([&] { readApplication(record); }), ElementsAre(failedAt6, cause));
    }
}

TEST_F(PalmConfigurationTest, WrapsWhatIsNoErrorOfOurs) {
    sync.answerRecord("SyncReadNextRecInCategory", 0, [](RawRecordInfo&) { throw 7; });
    EXPECT_THAT(chain(), ElementsAre(failedAt1, "An exception of unknown type was caught."));
}

TEST_F(PalmConfigurationTest, LetsAFailureOfTheClockThrough) {
    haveConnection();
    haveServer();
    sync.deviceTime = 0;
    EXPECT_THAT(chain(0), ElementsAre("SyncReadSysDateTime returned an invalid time value (0)."));
}

TEST_F(PalmConfigurationTest, WritesANewUserNameAndLeavesTheRest) {
    haveConnection();
    haveServer();
    PalmConfiguration configuration = read(0);
    configuration.setUserName("Max Muster");
    const CountedPtr<PalmDatabase> database = PalmDatabase::openByName("VellumConfig", 0);
    sync.calls.clear();
    configuration.writeConnectionRecord(*database);
    EXPECT_THAT(
        sync.calls,
        ElementsAre("SyncWriteRec(handle 8, id 3, index 0, attributes 00, category 1, size 20, room 1024) "
                    "00 00 00 09 AB CD 4D 61 78 20 4D 75 73 74 65 72 00 70 77 00"));
}

TEST_F(PalmConfigurationTest, WrapsAFailedWriteOfTheName) {
    haveConnection();
    haveServer();
    const PalmConfiguration configuration = read(0);
    const CountedPtr<PalmDatabase> database = PalmDatabase::openByName("VellumConfig", 0);
    sync.answer("SyncWriteRec", 0x4009);
    EXPECT_THAT(chainRaisedBy([&] { configuration.writeConnectionRecord(*database); }),
                ElementsAre("Error writing Note username back to Vellum connection record.",
                            StartsWith("The function SyncWriteRec( ) failed: ")));
    sync.answerRecord("SyncWriteRec", 0, [](RawRecordInfo&) { throw 7; });
    EXPECT_THAT(chainRaisedBy([&] { configuration.writeConnectionRecord(*database); }),
                ElementsAre("Error writing Note username back to Vellum connection record.",
                            "An exception of unknown type was caught."));
}

TEST_F(PalmConfigurationTest, ResetsTheTypeInTheRecordAsItWasRead) {
    PalmConfiguration configuration = readApplication("04 02 12 34 00 07 00 1E 99");
    const CountedPtr<PalmDatabase> database = PalmDatabase::openByName("VellumConfig", 0);
    sync.calls.clear();
    configuration.resetType(*database);
    EXPECT_THAT(
        sync.calls,
        ElementsAre("SyncWriteRec(handle 8, id 5, index 0, attributes 50, category 7, size 9, room 1024) "
                    "02 02 12 34 00 07 00 1E 99"));
}

TEST_F(PalmConfigurationTest, ResetsNothingWithoutAnApplicationRecord) {
    haveConnection();
    haveServer();
    sync.answer("SyncReadNextRecInCategory", notFound);
    PalmConfiguration configuration = read(7);
    const CountedPtr<PalmDatabase> database = PalmDatabase::openByName("VellumConfig", 0);
    sync.calls.clear();
    configuration.resetType(*database); // the connection record stays what it is
    EXPECT_TRUE(sync.calls.empty());
}

class PalmProxyConfiguration : public PalmConfigurationTest {
protected:
    PalmProxy palm{nullptr};
};

TEST_F(PalmProxyConfiguration, IsReadFromADatabaseOpenedForIt) {
    sync.calls.clear();
    sync.answerFind(0, [](DatabaseInfoBlock& found) { found.name[0] = 'V'; });
    sync.answerFind(notFound);
    haveConnection();
    haveServer();
    EXPECT_EQ(palm.readConfiguration(0)->userName(), "Jo");
    EXPECT_EQ(sync.calls[0],
              "SyncFindDbByTypeCreator(options C0, search 80, type 434E4647, creator 54535241)");
    EXPECT_EQ(sync.calls[2], "SyncOpenDB(V, card 0, mode E0)");
    EXPECT_EQ(sync.calls.back(), "SyncCloseDBEx(handle 7, option 00)");
}

TEST_F(PalmProxyConfiguration, FailsForADatabaseThatHadToBeCreated) {
    sync.calls.clear();
    sync.answerFind(notFound);
    sync.answer("SyncReadNextRecInCategory", notFound);
    EXPECT_THAT(chainRaisedBy([&] { palm.readConfiguration(7); }),
                ElementsAre(failedAt1, "Record does not exist."));
    EXPECT_EQ(sync.calls[1],
              "SyncCreateDB(VellumConfig, creator 54535241, type 434E4647, flags 40, card 0, version 1)");
    EXPECT_EQ(sync.calls.back(), "SyncCloseDBEx(handle 7, option 00)");
}

TEST_F(PalmProxyConfiguration, DoesNotWrapDuplicateDatabases) {
    sync.answerFind(0);
    sync.answerFind(0);
    EXPECT_THAT(chainRaisedBy([&] { palm.readConfiguration(7); }),
                ElementsAre("Duplicate databases with creator 'TSRA' and type 'CNFG': card=0, name='', "
                            "card=0,name=''."));
}

TEST_F(PalmProxyConfiguration, IsWrittenAndResetInADatabaseOpenedForIt) {
    sync.answerFind(0);
    sync.answerFind(notFound);
    haveConnection();
    haveServer();
    haveApplication("06 01 00 00 00 00 00 00");
    const CountedPtr<PalmConfiguration> configuration = palm.readConfiguration(7);
    sync.calls.clear();
    sync.answerFind(0);
    sync.answerFind(notFound);
    palm.writeConfiguration(*configuration);
    EXPECT_THAT(sync.calls[3], StartsWith("SyncWriteRec(handle 8, id 3,"));
    EXPECT_EQ(sync.calls[4], "SyncCloseDBEx(handle 8, option 00)");
    sync.calls.clear();
    palm.resetReplicationType(*configuration);
    EXPECT_THAT(
        sync.calls,
        ElementsAre("SyncOpenDB(VellumConfig, card 0, mode C0)",
                    "SyncWriteRec(handle 9, id 5, index 0, attributes 50, category 7, size 8, room 1024) "
                    "02 01 00 00 00 00 00 00",
                    "SyncCloseDBEx(handle 9, option 00)"));
}

} // namespace
} // namespace tsr
