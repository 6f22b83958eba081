#include "conduit/openConduit.h"

#include <cstring>
#include <filesystem>
#include <fstream>

#include "platform/module.h"
#include "platform/moduleName.h"
#include "support/SessionTest.h"
#include "support/environment.h"
#include "support/testClock.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using testing::ElementsAre;
using Entry = std::pair<std::string, int>;

constexpr int started = 19;
constexpr int finished = 20;
constexpr int aborted = 21;
constexpr std::uint32_t freeTime = 0x54535241; // TSRA

std::vector<std::string> progress;

void takeProgress(const char* text) { progress.emplace_back(text); }

std::int32_t open(std::int32_t syncType, std::uint32_t creator) {
    SyncProperties properties;
    std::memset(&properties, 0xAA, sizeof properties); // what is not read may hold anything
    properties.syncType = syncType;
    properties.creator = creator;
    return openConduit(takeProgress, &properties);
}

class OpenConduit : public test::SessionTest {
protected:
    OpenConduit() {
        test::setClock(1012998896);
        progress.clear();
        std::filesystem::remove(logPath);
        put(handheld.create("VellumFreetime", 0x46524545, freeTime), 1, 1, "00 1E 00");
    }
    ~OpenConduit() override { std::filesystem::remove(logPath); }

    // The replication type that the session tells its debug log, which stands beside this program.
    std::string typeFor(std::int32_t syncType) {
        const test::ScopedVariable on{"TSR_DEBUG_LOG", "1"};
        std::filesystem::remove(logPath);
        EXPECT_EQ(open(syncType, freeTime), 0);
        const std::string mark = "Replication type: ";
        std::ifstream file(logPath);
        for (std::string line; std::getline(file, line);) {
            const std::size_t at = line.find(mark);
            if (at != std::string::npos) return line.substr(at + mark.size());
        }
        return "none";
    }

    const std::string logPath = platform::moduleDirectory(moduleName) + "TsrFreeTime.log";
};

TEST_F(OpenConduit, RunsTheSessionOfTheCreator) {
    EXPECT_EQ(open(0, freeTime), 0);
    EXPECT_THAT(logEntries(), ElementsAre(Entry("FreeTime", started), Entry("FreeTime", finished)));
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 19));
    EXPECT_THAT(progress, ElementsAre("FreeTime: reading replication state"));
    EXPECT_EQ(hotSyncLogIsOpen(), 0);
    EXPECT_EQ(handheldOpenDatabases(), 0U);
}

TEST_F(OpenConduit, PicksTheApplicationByItsCreator) {
    const std::pair<std::uint32_t, const char*> rows[] = {
        {0x61646472, "Address"},  {0x64617465, "Date Book"}, {0x6D61696C, "Mail"},
        {0x6D656D6F, "Memo Pad"}, {0x746F646F, "ToDo"},      {freeTime, "FreeTime"},
    };
    for (const auto& [creator, name] : rows) {
        SCOPED_TRACE(name);
        hotSyncLogClear();
        EXPECT_EQ(open(0, creator), 0);
        EXPECT_EQ(logEntries().front(), Entry(name, started)); // each call logs its own start
    }
}

TEST_F(OpenConduit, AsksForASlowSessionForTheSyncTypeOneAlone) {
    EXPECT_EQ(typeFor(1), "Slow");
    for (const std::int32_t other : {0, 2, 3, 6, 7, -1, 0x01000000, 257}) {
        SCOPED_TRACE(other);
        EXPECT_EQ(typeFor(other), "Normal");
    }
}

TEST_F(OpenConduit, KnowsNoOtherCreator) {
    for (const std::uint32_t creator : {0x00000000u, 0x41525354u, 0x74737261u, 0x54535240u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(creator);
        EXPECT_EQ(open(0, creator), -1);
    }
    EXPECT_THAT(logEntries(), testing::IsEmpty());
    EXPECT_THAT(progress, testing::IsEmpty());
    EXPECT_THAT(server->codes(), testing::IsEmpty());
    EXPECT_EQ(handheldCallCount(), 0U);
    EXPECT_EQ(hotSyncLogIsOpen(), 0);
}

TEST_F(OpenConduit, SharesNothingBetweenTwoCalls) {
    open(0, freeTime);
    open(0, 0);
    open(1, freeTime);
    EXPECT_THAT(logEntries(), ElementsAre(Entry("FreeTime", started), Entry("FreeTime", finished),
                                          Entry("FreeTime", started), Entry("FreeTime", finished)));
    EXPECT_THAT(server->codes(), ElementsAre(1, 7, 19, 1, 7, 19)); // a connection each
}

TEST_F(OpenConduit, GivesNothingOfAFailureToTheNextCall) {
    handheldFailFunction("SyncReadRecordById", 1, 0x4015); // the server record of the configuration
    EXPECT_EQ(open(0, freeTime), 0);
    EXPECT_EQ(logEntries().back(), Entry("FreeTime", aborted));
    hotSyncLogClear();
    EXPECT_EQ(open(0, freeTime), 0);
    EXPECT_THAT(logEntries(), ElementsAre(Entry("FreeTime", started), Entry("FreeTime", finished)));
}

TEST_F(OpenConduit, GivesZeroForEveryFailureOfTheDevice) {
    open(0, freeTime);
    const std::uint64_t calls = handheldCallCount();
    ASSERT_GT(calls, 10U);
    for (std::uint64_t number = 1; number <= calls; ++number) {
        SCOPED_TRACE(number);
        handheldRestartCount();
        handheldMend();
        handheldPullCable(number);
        EXPECT_EQ(open(0, freeTime), 0);
        EXPECT_EQ(hotSyncLogIsOpen(), 0);
        EXPECT_EQ(handheldEndSession(), 0);
    }
}

} // namespace
} // namespace tsr
