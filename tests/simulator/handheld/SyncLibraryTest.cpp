#include <cstring>
#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "handheld/HandheldFolder.h"
#include "handheld/syncControl.h"
#include "platform/syncManager.h"

namespace tsr {
namespace {

class SyncLibrary : public testing::Test {
protected:
    ~SyncLibrary() override { handheldDetach(); }

    std::uint8_t openMemos() {
        std::uint8_t handle = 0;
        EXPECT_EQ(SyncOpenDB("MemoDB", 0, &handle, 0xC0), 0);
        return handle;
    }

    std::int32_t writeMemo(std::uint8_t handle) {
        std::uint8_t data[] = {'a', 0};
        RawRecordInfo record{};
        record.fileHandle = handle;
        record.recordSize = 2;
        record.bufferSize = 2;
        record.buffer = data;
        return SyncWriteRec(&record);
    }

    static Handheld sample() {
        Handheld handheld;
        handheld.create("MemoDB", fourCharacterCode("DATA"), fourCharacterCode("memo"));
        return handheld;
    }
};

TEST_F(SyncLibrary, AnswersNothingWithoutAHandheld) {
    std::uint8_t handle = 0;
    std::uint16_t minor = 0;
    EXPECT_EQ(SyncOpenDB("MemoDB", 0, &handle, 0xC0), 0x400A);
    EXPECT_EQ(SyncGetHHOSVersion(&minor), 0);
    EXPECT_EQ(handheldAttached(), nullptr);
    EXPECT_EQ(handheldCallCount(), 0U);
    EXPECT_EQ(handheldTraceLine(0), nullptr);
}

TEST_F(SyncLibrary, WorksOnAHandheldInMemory) {
    Handheld handheld = sample();
    handheldAttach(&handheld);
    EXPECT_EQ(handheldAttached(), &handheld);
    const std::uint8_t handle = openMemos();
    EXPECT_EQ(handheldOpenDatabases(), 1U);
    EXPECT_EQ(writeMemo(handle), 0);
    EXPECT_EQ(handheld.find("MemoDB")->records().size(), 1U);
    EXPECT_EQ(handheldEndSession(), 0);
    EXPECT_EQ(handheldOpenDatabases(), 0U);
}

// One call of each function, to see that it reaches its own operation.
TEST_F(SyncLibrary, TracesEveryFunction) {
    Handheld handheld = sample();
    handheldAttach(&handheld);
    handheldSetTracing(1);
    DatabaseSearchBlock search{0xC0, 0x80, fourCharacterCode("DATA"), fourCharacterCode("memo")};
    DatabaseInfoBlock found{};
    SyncFindDbByTypeCreator(&search, &found);
    const std::uint8_t handle = openMemos();
    RawRecordInfo record{};
    record.fileHandle = handle;
    SyncWriteRec(&record);
    SyncReadRecordById(&record);
    SyncReadRecordByIndex(&record);
    SyncReadNextRecInCategory(&record);
    SyncReadNextModifiedRec(&record);
    SyncDeleteRec(&record);
    SyncResetRecordIndex(handle);
    SyncPurgeDeletedRecs(handle);
    SyncResetSyncFlags(handle);
    std::uint16_t count = 0;
    SyncGetDBRecordCount(handle, &count);
    AppInfoBlockInfo info{};
    SyncWriteDBAppInfoBlock(handle, &info);
    SyncReadDBAppInfoBlock(handle, &info);
    SyncCloseDBEx(handle, 0);
    SyncDeleteDB("MemoDB", 0);
    DatabaseCreateBlock create{};
    std::strcpy(create.name, "New");
    SyncCreateDB(&create);
    RemoteModuleBlock module{};
    SyncCallRemoteModule(&module);
    AppPreferenceBlock preference{};
    SyncReadAppPreference(&preference);
    std::uint32_t number = 0;
    std::uint16_t minor = 0;
    SyncReadSysDateTime(&number);
    SyncGetHHOSVersion(&minor);
    SyncGetAPIVersion(&number, &number);
    SyncYieldCycles(5);
    const char* const lines[] = {
        "SyncFindDbByTypeCreator('DATA', 'memo', 0x80)",
        "SyncOpenDB(\"MemoDB\", 0, 0xC0)",
        "SyncWriteRec(1, id 0x000000, category 0, 0 bytes)",
        "SyncReadRecordById(1, id 0x000001)",
        "SyncReadRecordByIndex(1, index 0)",
        "SyncReadNextRecInCategory(1, category 0)",
        "SyncReadNextModifiedRec(1) -> 0x4003",
        "SyncDeleteRec(1, id 0x000001)",
        "SyncResetRecordIndex(1)",
        "SyncPurgeDeletedRecs(1)",
        "SyncResetSyncFlags(1)",
        "SyncGetDBRecordCount(1)",
        "SyncWriteDBAppInfoBlock(1, 0 bytes)",
        "SyncReadDBAppInfoBlock(1) -> 0x4003",
        "SyncCloseDBEx(1, 0x00)",
        "SyncDeleteDB(\"MemoDB\", 0)",
        "SyncCreateDB(\"New\", 0)",
        "SyncCallRemoteModule('', '', 0x0000) -> 0x4003", // codes of four NULs
        "SyncReadAppPreference('', 0) -> 0x4003",
        "SyncReadSysDateTime()",
        "SyncGetHHOSVersion()",
        "SyncGetAPIVersion()",
        "SyncYieldCycles(5)",
    };
    ASSERT_EQ(handheldTraceCount(), std::size(lines));
    for (std::size_t i = 0; i < std::size(lines); ++i) EXPECT_STREQ(handheldTraceLine(i), lines[i]);
}

TEST_F(SyncLibrary, TurnsBytesAround) {
    EXPECT_EQ(SyncHHToHostWord(0x1234), 0x3412);
    EXPECT_EQ(SyncHostToHHWord(0x00FF), 0xFF00);
    EXPECT_EQ(SyncHHToHostDWord(0x12345678), 0x78563412U);
    EXPECT_EQ(SyncHostToHHDWord(0x000000FF), 0xFF000000U);
}

TEST_F(SyncLibrary, OrdersFaults) {
    Handheld handheld = sample();
    handheldAttach(&handheld);
    handheldFailCall(1, 0x4015);
    handheldFailFunction("SyncWriteRec", 1, 0x4014);
    std::uint8_t handle = 0;
    EXPECT_EQ(SyncOpenDB("MemoDB", 0, &handle, 0xC0), 0x4015);
    handle = openMemos();
    EXPECT_EQ(writeMemo(handle), 0x4014);
    EXPECT_EQ(writeMemo(handle), 0);
    EXPECT_EQ(handheldCallCount(), 4U);
    EXPECT_EQ(handheldFunctionCallCount("SyncWriteRec"), 2U);
    handheldRestartCount();
    handheldPullCable(2);
    EXPECT_EQ(writeMemo(handle), 0x4015); // counted anew, and the orders still stand: the first of all
    EXPECT_EQ(writeMemo(handle), 0x10006410);
    EXPECT_EQ(SyncCloseDBEx(handle, 0), 0x10006410);
    handheldMend();
    EXPECT_EQ(SyncCloseDBEx(handle, 0), 0);
}

TEST_F(SyncLibrary, SavesAFolderAsItsDatabasesClose) {
    const TemporaryFolder temporary;
    const auto path = temporary.path() / "palm";
    HandheldFolder::create(path, sample());
    ASSERT_EQ(handheldOpenFolder(path.string().c_str()), 0);
    const std::uint8_t handle = openMemos();
    EXPECT_EQ(writeMemo(handle), 0);
    EXPECT_EQ(HandheldFolder::open(path).handheld().find("MemoDB")->records().size(), 0U);
    EXPECT_EQ(SyncCloseDBEx(handle, 0), 0);
    EXPECT_EQ(HandheldFolder::open(path).handheld().find("MemoDB")->records().size(), 1U);
}

TEST_F(SyncLibrary, SavesAFolderAtTheEnd) {
    const TemporaryFolder temporary;
    const auto path = temporary.path() / "palm";
    HandheldFolder::create(path, sample());
    ASSERT_EQ(handheldOpenFolder(path.string().c_str()), 0);
    EXPECT_EQ(writeMemo(openMemos()), 0);
    EXPECT_EQ(handheldDetach(), 0);
    EXPECT_EQ(HandheldFolder::open(path).handheld().find("MemoDB")->records().size(), 1U);
}

TEST_F(SyncLibrary, TellsWhyAFolderDidNotOpen) {
    const TemporaryFolder temporary;
    EXPECT_EQ(handheldOpenFolder(temporary.path().string().c_str()), 1);
    EXPECT_NE(std::string(handheldError()).find("is no handheld"), std::string::npos);
    EXPECT_EQ(handheldAttached(), nullptr);
}

TEST_F(SyncLibrary, ReportsAFolderThatCannotBeWritten) {
    const TemporaryFolder temporary;
    const auto path = temporary.path() / "palm";
    HandheldFolder::create(path, sample());
    ASSERT_EQ(handheldOpenFolder(path.string().c_str()), 0);
    std::filesystem::create_directory(path / "MemoDB.pdb.new");
    const std::uint8_t handle = openMemos();
    EXPECT_EQ(writeMemo(handle), 0);
    EXPECT_EQ(SyncCloseDBEx(handle, 0), 0x4015);
    EXPECT_NE(std::string(handheldError()).find("MemoDB.pdb"), std::string::npos);
}

} // namespace
} // namespace tsr
