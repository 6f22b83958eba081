#include "device/PalmProxy.h"

#include "foundation/GeneralError.h"
#include "support/ScriptedSyncManager.h"
#include "support/bytes.h"
#include "support/errors.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::ScriptedSyncManager;
using test::textRaisedBy;
using testing::ElementsAre;
using testing::StartsWith;

constexpr std::int32_t notFound = 0x4003;
constexpr std::int32_t busy = 0x4006;

std::vector<std::string> progress;

void takeProgress(const char* text) { progress.emplace_back(text); }

class PalmProxyTest : public testing::Test {
protected:
    PalmProxyTest() {
        sync.reset();
        progress.clear();
        palm = makeCounted<PalmProxy>(takeProgress);
        palm->setApplication("Memo Pad", 0x6D656D6F, "MemoDB", 0x44415441, 0x54535241, "MemoSync",
                             0x4D454D4F);
        sync.calls.clear();
    }

    // From now on both databases are there, each found once.
    void haveDatabases(int opens) {
        for (int open = 0; open < opens; ++open) {
            sync.answerFind(0, [](DatabaseInfoBlock& found) { found.name[0] = 'D'; });
            sync.answerFind(notFound);
        }
    }

    // The calls that open, close or touch a record, by their names alone.
    std::vector<std::string> callNames() const {
        std::vector<std::string> names;
        for (const std::string& call : sync.calls) names.push_back(call.substr(0, call.find('(')));
        return names;
    }

    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
    CountedPtr<PalmProxy> palm;
};

TEST(PalmProxy, OpensAndClosesTheHotSyncLog) {
    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
    sync.reset();
    { const PalmProxy palm(nullptr); }
    EXPECT_THAT(sync.calls, ElementsAre("HsLogOpen()", "HsLogClose()"));
}

TEST_F(PalmProxyTest, ClosesItsDatabaseBeforeTheLog) {
    haveDatabases(1);
    PalmRecordBuffer buffer;
    palm->readRecordById(buffer, 1);
    sync.calls.clear();
    palm.reset();
    EXPECT_THAT(sync.calls, ElementsAre("SyncCloseDBEx(handle 7, option 00)", "HsLogClose()"));
}

TEST(PalmProxy, ClosesOnlyALogThatIsOpen) {
    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
    sync.reset();
    sync.logOpenResult = 1;
    { const PalmProxy palm(nullptr); }
    EXPECT_THAT(sync.calls, ElementsAre("HsLogOpen()"));
}

TEST_F(PalmProxyTest, OpensTheApplicationDatabaseOnceForManyCalls) {
    haveDatabases(1);
    PalmRecordBuffer buffer;
    palm->readRecordById(buffer, 1);
    palm->readRecordById(buffer, 2);
    EXPECT_THAT(callNames(), ElementsAre("SyncFindDbByTypeCreator", "SyncFindDbByTypeCreator", "SyncOpenDB",
                                         "SyncReadRecordById", "SyncReadRecordById"));
    EXPECT_EQ(sync.calls[0],
              "SyncFindDbByTypeCreator(options C0, search 80, type 44415441, creator 6D656D6F)");
}

TEST_F(PalmProxyTest, SwitchesBetweenItsTwoDatabases) {
    haveDatabases(3);
    PalmRecordBuffer buffer;
    palm->readRecordById(buffer, 1);
    palm->readSyncRecordById(buffer, 2);
    palm->readSyncRecordById(buffer, 3);
    palm->readRecordById(buffer, 4);
    EXPECT_THAT(callNames(), ElementsAre("SyncFindDbByTypeCreator", "SyncFindDbByTypeCreator", "SyncOpenDB",
                                         "SyncReadRecordById", "SyncCloseDBEx", "SyncFindDbByTypeCreator",
                                         "SyncFindDbByTypeCreator", "SyncOpenDB", "SyncReadRecordById",
                                         "SyncReadRecordById", "SyncCloseDBEx", "SyncFindDbByTypeCreator",
                                         "SyncFindDbByTypeCreator", "SyncOpenDB", "SyncReadRecordById"));
    EXPECT_EQ(sync.calls[5],
              "SyncFindDbByTypeCreator(options C0, search 80, type 4D454D4F, creator 54535241)");
}

TEST_F(PalmProxyTest, CreatesTheSyncDatabaseFlagged) {
    sync.answerFind(notFound);
    PalmRecordBuffer buffer;
    sync.answer("SyncReadNextRecInCategory", notFound);
    EXPECT_FALSE(palm->readFirstInSyncCategory(buffer, 7));
    EXPECT_EQ(sync.calls[1],
              "SyncCreateDB(MemoSync, creator 54535241, type 4D454D4F, flags 40, card 0, version 1)");
}

TEST_F(PalmProxyTest, RefusesASyncDatabaseThatThereIsNot) {
    PalmRecordBuffer buffer;
    const std::tuple<std::uint32_t, const char*, std::uint32_t> rows[] = {
        {0, "S", 1}, {1, "", 1}, {1, "S", 0}}; // a creator, a name or a type is missing
    for (const auto& [creator, name, type] : rows) {
        palm->setApplication("FreeTime", 1, "A", 2, creator, name, type);
        EXPECT_EQ(textRaisedBy([&] { palm->readSyncRecordById(buffer, 1); }),
                  "Sync database is neither available nor required for this type of replication.");
    }
    EXPECT_TRUE(sync.calls.empty());
}

TEST_F(PalmProxyTest, TriesAgainAfterADatabaseCouldNotBeOpened) {
    PalmRecordBuffer buffer;
    sync.answerFind(busy);
    EXPECT_THAT(textRaisedBy([&] { palm->readSyncRecordById(buffer, 1); }),
                StartsWith("The function SyncFind"));
    haveDatabases(1);
    palm->readSyncRecordById(buffer, 1);
    EXPECT_EQ(callNames().back(), "SyncReadRecordById");
}

TEST_F(PalmProxyTest, ReleasesTheOpenDatabase) {
    haveDatabases(1);
    PalmRecordBuffer buffer;
    palm->readRecordById(buffer, 1);
    sync.calls.clear();
    palm->releaseDatabase();
    palm->releaseDatabase();
    EXPECT_THAT(sync.calls, ElementsAre("SyncCloseDBEx(handle 7, option 00)"));
}

TEST_F(PalmProxyTest, WritesUnderAnIdAndGivesTheAssignedOne) {
    haveDatabases(1);
    PalmRecordBuffer buffer;
    buffer.appendByte(9);
    sync.answerRecord("SyncWriteRec", 0, [](RawRecordInfo& raw) { raw.recordId = 77; });
    EXPECT_EQ(palm->writeRecord(0, buffer), 77U);
    EXPECT_EQ(palm->writeRecord(5, buffer), 5U);
    EXPECT_THAT(sync.calls[3], StartsWith("SyncWriteRec(handle 7, id 0,"));
    EXPECT_THAT(sync.calls[4], StartsWith("SyncWriteRec(handle 7, id 5,"));
}

TEST_F(PalmProxyTest, WritesNewSyncRecordsUnderZero) {
    haveDatabases(1);
    PalmRecordBuffer buffer;
    buffer.setRecordId(99);
    palm->writeNewSyncRecord(buffer);
    EXPECT_THAT(sync.calls[3], StartsWith("SyncWriteRec(handle 7, id 0,"));
}

TEST_F(PalmProxyTest, DeletesWithABufferOfItsOwn) {
    haveDatabases(2);
    palm->deleteRecord(0x123456);
    palm->deleteSyncRecord(0x654321);
    EXPECT_EQ(sync.calls[3],
              "SyncDeleteRec(handle 7, id 1193046, index 0, attributes 00, category 0, size 0, room 1024)");
    EXPECT_THAT(sync.calls.back(), StartsWith("SyncDeleteRec(handle 8, id 6636321,"));
}

TEST_F(PalmProxyTest, PurgesBeforeItResetsFlags) {
    haveDatabases(1);
    palm->purgeAndResetFlags();
    EXPECT_EQ(callNames()[3], "SyncPurgeDeletedRecs");
    EXPECT_EQ(callNames()[4], "SyncResetSyncFlags");
}

TEST_F(PalmProxyTest, ClearsAnApplicationAndCreatesItAnew) {
    sync.answerFind(notFound);
    palm->clearApplication();
    EXPECT_THAT(callNames(), ElementsAre("SyncDeleteDB", "SyncFindDbByTypeCreator", "SyncCreateDB"));
    EXPECT_EQ(sync.calls[0], "SyncDeleteDB(MemoDB, card 0)");
    EXPECT_EQ(sync.calls[2],
              "SyncCreateDB(MemoDB, creator 6D656D6F, type 44415441, flags 00, card 0, version 1)");
}

TEST_F(PalmProxyTest, ClearsWhatIsNotThere) {
    sync.answer("SyncDeleteDB", notFound);
    sync.answerFind(notFound);
    palm->clearApplication();
    EXPECT_EQ(callNames().back(), "SyncCreateDB");
    sync.answer("SyncDeleteDB", notFound);
    palm->deleteSyncDatabase();
    EXPECT_EQ(sync.calls.back(), "SyncDeleteDB(MemoSync, card 0)"); // and no reopening
}

TEST_F(PalmProxyTest, RaisesWhatElseADeleteAnswers) {
    sync.answer("SyncDeleteDB", busy);
    EXPECT_THAT(textRaisedBy([&] { palm->clearApplication(); }),
                StartsWith("The function SyncDeleteDB( ) failed"));
    sync.answer("SyncDeleteDB", busy);
    EXPECT_THAT(textRaisedBy([&] { palm->deleteSyncDatabase(); }),
                StartsWith("The function SyncDeleteDB( ) failed"));
}

TEST_F(PalmProxyTest, DeletesTheDatabaseThatItHoldsOpenWithoutReleasingIt) {
    haveDatabases(1);
    PalmRecordBuffer buffer;
    palm->readRecordById(buffer, 1);
    sync.calls.clear();
    palm->clearApplication();
    EXPECT_THAT(callNames(), ElementsAre("SyncDeleteDB"));
}

TEST_F(PalmProxyTest, ReadsAPreferenceOfTheApplication) {
    PalmRecordBuffer buffer;
    sync.answerPreference(0, [](AppPreferenceBlock& block) {
        block.actualBytes = 2;
        block.buffer[0] = 1;
        block.buffer[1] = 2;
    });
    palm->readPreference(buffer, 3);
    EXPECT_THAT(sync.calls,
                ElementsAre("SyncReadAppPreference(creator 6D656D6F, id 3, requested 1024, version 0, "
                            "actual 0, backed up 1, room 1024)"));
    EXPECT_EQ(buffer.size(), 2U);
    EXPECT_EQ(buffer.byteAt(1), 2);
}

TEST_F(PalmProxyTest, CutsAPreferenceAt1024Bytes) {
    PalmRecordBuffer buffer;
    sync.answerPreference(0, [](AppPreferenceBlock& block) {
        block.actualBytes = 1500;
        std::fill_n(block.buffer, 1024, std::uint8_t{5});
    });
    palm->readPreference(buffer, 3);
    EXPECT_EQ(buffer.size(), 1024U);
    EXPECT_EQ(buffer.byteAt(1023), 5);
}

TEST_F(PalmProxyTest, RaisesForAPreferenceThatCannotBeRead) {
    PalmRecordBuffer buffer;
    sync.answer("SyncReadAppPreference", notFound);
    EXPECT_THAT(textRaisedBy([&] { palm->readPreference(buffer, 3); }),
                StartsWith("The function SyncReadAppPreference( ) failed: "));
}

TEST_F(PalmProxyTest, CallsTheModuleWithFiveStrings) {
    haveDatabases(1);
    PalmRecordBuffer buffer;
    palm->readRecordById(buffer, 1);
    sync.calls.clear();
    sync.answerModule(0, [](RemoteModuleBlock& block) {
        const std::vector<std::uint8_t> answer = bytes("30 00 31 37 00"); // "0", "17"
        std::copy(answer.begin(), answer.end(), block.resultBuffer);
        block.resultSize = 5;
    });
    EXPECT_THAT(palm->callModule(6), ElementsAre("0", "17"));
    EXPECT_THAT(
        sync.calls,
        ElementsAre("SyncCloseDBEx(handle 7, option 00)", // so that the module has the databases to itself
                    "SyncCallRemoteModule(creator 54535241, type 6170706C, action 8000, room 100, code 0, "
                    "size 0) (36 00 30 00 30 00 4D 65 6D 6F 44 42 00 4D 65 6D 6F 53 79 6E 63 00)"));
}

TEST_F(PalmProxyTest, ShowsProgressUnderTheDisplayName) {
    palm->showProgress(Message::ReadingState);
    EXPECT_THAT(progress, ElementsAre("Memo Pad: reading replication state"));
}

TEST_F(PalmProxyTest, CutsProgressToItsRoom) {
    palm->setApplication(std::string(200, 'n'), 1, "A", 2, 3, "S", 4);
    palm->showProgress(Message::ReadingState);
    EXPECT_EQ(progress[0], std::string(127, 'n'));
}

TEST_F(PalmProxyTest, NeedsNobodyToShowProgressTo) {
    PalmProxy(nullptr).showProgress(Message::ReadingState);
    EXPECT_TRUE(progress.empty());
}

TEST_F(PalmProxyTest, AddsEntriesWithTheirActivity) {
    palm->logToHotSync("Memo Pad", HotSyncActivity::Started);
    palm->logToHotSync(std::string("cut\0here", 8), HotSyncActivity::Text);
    EXPECT_THAT(sync.log, ElementsAre(std::pair("Memo Pad", 19), std::pair("cut", -1)));
}

} // namespace
} // namespace tsr
