#include "handheld/SyncManager.h"

#include <cstring>
#include <gtest/gtest.h>

namespace tsr {
namespace {

using Bytes = std::vector<std::uint8_t>;

class SyncManagerTest : public testing::Test {
protected:
    SyncManagerTest() {
        HandheldDatabase& memos = handheld_.create("MemoDB", 0x44415441, 0x6D656D6F);
        memos.putRecord({0x10, 0, 1, {'a'}});
        memos.putRecord({0x20, 0x40, 2, {'b', 'b'}});
        memos.putRecord({0x30, 0xC0, 1, {}});
        memos.putRecord({0x40, 0x08, 1, {'d'}});
        memos.putRecord({0x50, 0x10, 1, {'e', 'e', 'e'}});
    }

    HandheldDatabase& memos() { return *handheld_.find("MemoDB"); }

    std::uint8_t open(const char* name = "MemoDB", std::uint8_t mode = 0xC0) {
        std::uint8_t handle = 0;
        EXPECT_EQ(sync_.openDb(name, 0, &handle, mode), 0);
        return handle;
    }

    RawRecordInfo block(std::uint8_t handle) {
        RawRecordInfo record{};
        record.fileHandle = handle;
        record.bufferSize = sizeof buffer_;
        record.buffer = buffer_;
        return record;
    }

    RawRecordInfo blockToWrite(std::uint8_t handle, std::uint32_t id, const Bytes& data) {
        RawRecordInfo record = block(handle);
        record.recordId = id;
        record.recordSize = static_cast<std::uint32_t>(data.size());
        std::copy(data.begin(), data.end(), buffer_);
        return record;
    }

    Handheld handheld_;
    SyncManager sync_{handheld_};
    std::uint8_t buffer_[64] = {};
};

TEST_F(SyncManagerTest, FindsADatabaseByTypeAndCreator) {
    DatabaseSearchBlock search{0xC0, 0x80, 0x44415441, 0x6D656D6F};
    DatabaseInfoBlock found{};
    found.cardNumber = 9;
    EXPECT_EQ(sync_.findDbByTypeCreator(&search, &found), 0);
    EXPECT_STREQ(found.name, "MemoDB");
    EXPECT_EQ(+found.cardNumber, 0U);
    search.searchFlags = 0;
    EXPECT_EQ(sync_.findDbByTypeCreator(&search, &found), 0x4003);
    search.creator = 0x746F646F;
    search.searchFlags = 0x80;
    EXPECT_EQ(sync_.findDbByTypeCreator(&search, &found), 0x4003);
}

TEST_F(SyncManagerTest, AContinuedSearchFindsTheDuplicate) {
    handheld_.create("MemoDB copy", 0x44415441, 0x6D656D6F);
    handheld_.create("Between", 0x44415441, 0x746F646F);
    DatabaseSearchBlock search{0xC0, 0x80, 0x44415441, 0x6D656D6F};
    DatabaseInfoBlock found{};
    EXPECT_EQ(sync_.findDbByTypeCreator(&search, &found), 0);
    search.searchFlags = 0;
    EXPECT_EQ(sync_.findDbByTypeCreator(&search, &found), 0);
    EXPECT_STREQ(found.name, "MemoDB copy");
    EXPECT_EQ(sync_.findDbByTypeCreator(&search, &found), 0x4003);
}

TEST_F(SyncManagerTest, OpensByName) {
    std::uint8_t handle = 0;
    EXPECT_EQ(sync_.openDb("Nothing", 0, &handle, 0xC0), 0x4003);
    EXPECT_EQ(sync_.openDb("MemoDB", 1, &handle, 0xC0), 0x4003); // there is one card
    EXPECT_EQ(sync_.openDb("MemoDB", 0, &handle, 0x00), 0x4017);
    EXPECT_EQ(sync_.openDb("a name without an end in its 32 bytes", 0, &handle, 0xC0), 0x4003);
    EXPECT_EQ(sync_.openDatabases(), 0U);
    EXPECT_EQ(sync_.openDb("MemoDB", 0, &handle, 0xE0), 0);
    EXPECT_NE(handle, 0);
}

TEST_F(SyncManagerTest, AnExclusiveOpenSharesWithNobody) {
    const std::uint8_t first = open();
    const std::uint8_t second = open();
    EXPECT_NE(first, second);
    std::uint8_t third = 0;
    EXPECT_EQ(sync_.openDb("MemoDB", 0, &third, 0xE0), 0x400C);
    sync_.closeDb(first, 0);
    sync_.closeDb(second, 0x40);
    EXPECT_EQ(sync_.openDb("MemoDB", 0, &third, 0xE0), 0);
    EXPECT_EQ(sync_.openDb("MemoDB", 0, &third, 0x80), 0x400C);
}

TEST_F(SyncManagerTest, TellsABadHandleFromNoOpenDatabase) {
    RawRecordInfo record = block(1);
    EXPECT_EQ(sync_.readRecordByIndex(&record), 0x400D);
    EXPECT_EQ(sync_.closeDb(1, 0), 0x400D);
    record.fileHandle = static_cast<std::uint8_t>(open() + 1);
    EXPECT_EQ(sync_.readRecordByIndex(&record), 0x400F);
    EXPECT_EQ(sync_.resetSyncFlags(record.fileHandle), 0x400F);
}

TEST_F(SyncManagerTest, HandlesRunOut) {
    for (int i = 0; i < 254; ++i) open("MemoDB", 0x80);
    std::uint8_t handle = 0;
    EXPECT_EQ(sync_.openDb("MemoDB", 0, &handle, 0x80), 0x10004403);
}

TEST_F(SyncManagerTest, WritesNeedAWritableDatabase) {
    const std::uint8_t handle = open("MemoDB", 0x80);
    RawRecordInfo record = blockToWrite(handle, 0x10, {'z'});
    EXPECT_EQ(sync_.writeRec(&record), 0x4009);
    EXPECT_EQ(sync_.deleteRec(&record), 0x4009);
    EXPECT_EQ(sync_.purgeDeletedRecs(handle), 0x4009);
    handheld_.create("Rom", 0, 0, DatabaseHeader::readOnly);
    std::uint8_t rom = 0;
    EXPECT_EQ(sync_.openDb("Rom", 0, &rom, 0xC0), 0x4009);
    EXPECT_EQ(sync_.openDb("Rom", 0, &rom, 0x80), 0);
}

TEST_F(SyncManagerTest, CreatesAnOpenDatabase) {
    DatabaseCreateBlock create{};
    create.creator = 0x54535241;
    create.type = 0x4D454D4F;
    create.flags = 0x40;
    create.version = 1;
    std::strcpy(create.name, "MemoSync");
    EXPECT_EQ(sync_.createDb(&create), 0);
    std::uint16_t count = 9;
    EXPECT_EQ(sync_.getDbRecordCount(create.fileHandle, &count), 0);
    EXPECT_EQ(count, 0);
    const DatabaseHeader& header = handheld_.find("MemoSync")->header();
    EXPECT_EQ(header.creator, 0x54535241U);
    EXPECT_EQ(header.type, 0x4D454D4FU);
    EXPECT_EQ(header.attributes, 0x40);
    EXPECT_EQ(header.version, 1);
    EXPECT_EQ(sync_.createDb(&create), 0x400B);
}

TEST_F(SyncManagerTest, RefusesToCreateWhatCannotBe) {
    DatabaseCreateBlock create{};
    EXPECT_EQ(sync_.createDb(&create), 0x4017); // no name
    std::memset(create.name, 'a', sizeof create.name);
    EXPECT_EQ(sync_.createDb(&create), 0x4017); // no NUL
    create.name[31] = 0;
    create.cardNumber = 1;
    EXPECT_EQ(sync_.createDb(&create), 0x4017);
    create.cardNumber = 0;
    create.flags = 1;
    EXPECT_EQ(sync_.createDb(&create), 0x400E);
    create.flags = 0;
    EXPECT_EQ(sync_.createDb(&create), 0);
}

TEST_F(SyncManagerTest, DeletesAClosedDatabase) {
    const std::uint8_t handle = open();
    EXPECT_EQ(sync_.deleteDb("MemoDB", 0), 0x400C);
    sync_.closeDb(handle, 0);
    EXPECT_EQ(sync_.deleteDb("MemoDB", 1), 0x4003);
    EXPECT_EQ(sync_.deleteDb("MemoDB", 0), 0);
    EXPECT_EQ(sync_.deleteDb("MemoDB", 0), 0x4003);
    EXPECT_TRUE(handheld_.databases.empty());
}

TEST_F(SyncManagerTest, ReadsById) {
    RawRecordInfo record = block(open());
    record.recordId = 0x50;
    EXPECT_EQ(sync_.readRecordById(&record), 0);
    EXPECT_EQ(+record.recordIndex, 4);
    EXPECT_EQ(record.attributes, 0x10);
    EXPECT_EQ(+record.categoryId, 1);
    EXPECT_EQ(+record.recordSize, 3U);
    EXPECT_EQ(std::string(buffer_, buffer_ + 3), "eee");
    record.recordId = 0x51;
    EXPECT_EQ(sync_.readRecordById(&record), 0x4003);
}

TEST_F(SyncManagerTest, ReadsByIndexToTheEnd) {
    RawRecordInfo record = block(open());
    const std::uint32_t ids[] = {0x10, 0x20, 0x30, 0x40, 0x50};
    for (std::uint16_t index = 0; index < 5; ++index) {
        record.recordIndex = index;
        EXPECT_EQ(sync_.readRecordByIndex(&record), 0);
        EXPECT_EQ(+record.recordId, ids[index]);
    }
    record.recordIndex = 5;
    EXPECT_EQ(sync_.readRecordByIndex(&record), 0x4003);
}

TEST_F(SyncManagerTest, ReportsTheTrueSizeAndFillsWhatFits) {
    RawRecordInfo record = block(open());
    record.recordId = 0x50;
    record.bufferSize = 2;
    EXPECT_EQ(sync_.readRecordById(&record), 0);
    EXPECT_EQ(+record.recordSize, 3U);
    EXPECT_EQ(+record.bufferSize, 2);
    EXPECT_EQ(Bytes(buffer_, buffer_ + 3), (Bytes{'e', 'e', 0}));
    record.bufferSize = 0;
    record.buffer = nullptr;
    EXPECT_EQ(sync_.readRecordById(&record), 0);
    EXPECT_EQ(+record.recordSize, 3U);
}

TEST_F(SyncManagerTest, WalksTheModifiedInIndexOrder) {
    RawRecordInfo record = block(open());
    const std::pair<std::uint32_t, std::uint8_t> rows[] = {{0x20, 0x40}, {0x30, 0xC0}, {0x40, 0x08}};
    for (int round = 0; round < 2; ++round) {
        for (const auto& [id, attributes] : rows) {
            EXPECT_EQ(sync_.readNextModifiedRec(&record), 0);
            EXPECT_EQ(+record.recordId, id);
            EXPECT_EQ(unsigned{record.recordIndex}, id / 0x10 - 1);
            EXPECT_EQ(record.attributes, attributes);
        }
        EXPECT_EQ(sync_.readNextModifiedRec(&record), 0x4003);
        EXPECT_EQ(sync_.resetRecordIndex(record.fileHandle), 0);
    }
}

TEST_F(SyncManagerTest, WalksACategoryWithoutWhatIsGone) {
    RawRecordInfo record = block(open());
    for (std::uint32_t id : {0x10U, 0x50U}) {
        record.categoryId = 1;
        EXPECT_EQ(sync_.readNextRecInCategory(&record), 0);
        EXPECT_EQ(+record.recordId, id);
        EXPECT_EQ(sync_.readRecordByIndex(&record), 0); // leaves the walk where it is
        EXPECT_EQ(+record.recordId, id);
    }
    EXPECT_EQ(sync_.readNextRecInCategory(&record), 0x4003);
    sync_.resetRecordIndex(record.fileHandle);
    record.categoryId = 15;
    EXPECT_EQ(sync_.readNextRecInCategory(&record), 0x4003);
    for (std::int16_t category : {std::int16_t{-1}, std::int16_t{16}}) {
        record.categoryId = category;
        EXPECT_EQ(sync_.readNextRecInCategory(&record), 0x4017);
    }
}

TEST_F(SyncManagerTest, EachHandleWalksOnItsOwn) {
    RawRecordInfo first = block(open());
    RawRecordInfo second = block(open());
    EXPECT_EQ(sync_.readNextModifiedRec(&first), 0);
    EXPECT_EQ(sync_.readNextModifiedRec(&second), 0);
    EXPECT_EQ(+second.recordId, 0x20U);
}

// The position is an index: the record behind the deleted one moves to it and is passed over.
TEST_F(SyncManagerTest, DeletingDisturbsAWalk) {
    RawRecordInfo record = block(open());
    EXPECT_EQ(sync_.readNextModifiedRec(&record), 0);
    EXPECT_EQ(sync_.deleteRec(&record), 0);
    EXPECT_EQ(sync_.readNextModifiedRec(&record), 0);
    EXPECT_EQ(+record.recordId, 0x40U);
}

TEST_F(SyncManagerTest, AWriteLeavesTheRecordClean) {
    const std::uint8_t handle = open();
    RawRecordInfo record = blockToWrite(handle, 0x20, {'x'});
    record.attributes = 0xD8; // all but "secret" is the handheld's
    record.categoryId = 15;
    EXPECT_EQ(sync_.writeRec(&record), 0);
    EXPECT_EQ(*memos().records().find(0x20), (HandheldRecord{0x20, 0x10, 15, {'x'}}));
    EXPECT_EQ(memos().records().indexOf(0x20), 1U);
}

TEST_F(SyncManagerTest, AnIdOf0AsksForAFreshOne) {
    const std::uint8_t handle = open();
    RawRecordInfo record = blockToWrite(handle, 0, {'x'});
    EXPECT_EQ(sync_.writeRec(&record), 0);
    EXPECT_EQ(+record.recordId, 0x51U);
    EXPECT_EQ(memos().records().at(5).id, 0x51U);
    record.recordId = 0x1234; // unknown, so it is made
    EXPECT_EQ(sync_.writeRec(&record), 0);
    EXPECT_EQ(+record.recordId, 0x1234U);
    EXPECT_TRUE(memos().records().contains(0x1234));
}

TEST_F(SyncManagerTest, RefusesWritesOutOfRange) {
    const std::uint8_t handle = open();
    const Handheld before = handheld_;
    std::vector<RawRecordInfo> rows(5, blockToWrite(handle, 0, {'x'}));
    rows[0].recordId = 0x1000000; // 25 bits
    rows[1].categoryId = 16;
    rows[2].categoryId = -1;
    rows[3].recordSize = sizeof buffer_ + 1; // behind the end of the buffer
    rows[4].buffer = nullptr;
    for (RawRecordInfo& row : rows) EXPECT_EQ(sync_.writeRec(&row), 0x4017);
    EXPECT_EQ(sync_.writeRec(nullptr), 0x4017);
    EXPECT_EQ(handheld_, before);
}

TEST_F(SyncManagerTest, ARecordTakes65535Bytes) {
    const std::uint8_t handle = open();
    Bytes data(65535, 7);
    RawRecordInfo record = block(handle);
    record.buffer = data.data();
    record.bufferSize = 65535;
    record.recordSize = 65535;
    EXPECT_EQ(sync_.writeRec(&record), 0);
    EXPECT_EQ(memos().records().find(record.recordId)->data, data);
    record.recordSize = 65536;
    EXPECT_EQ(sync_.writeRec(&record), 0x4017);
}

TEST_F(SyncManagerTest, AFullDatabaseRefusesNewRecords) {
    const std::uint8_t handle = open();
    while (memos().records().size() < 65535) memos().writeRecord(0, 0, false, {});
    RawRecordInfo record = blockToWrite(handle, 0, {'x'});
    EXPECT_EQ(sync_.writeRec(&record), 0x4014);
    std::uint16_t count = 0;
    EXPECT_EQ(sync_.getDbRecordCount(handle, &count), 0);
    EXPECT_EQ(count, 65535);
}

TEST_F(SyncManagerTest, DeletesById) {
    RawRecordInfo record = block(open());
    record.recordId = 0x20;
    EXPECT_EQ(sync_.deleteRec(&record), 0);
    EXPECT_EQ(sync_.deleteRec(&record), 0x4003);
    EXPECT_FALSE(memos().records().contains(0x20));
}

TEST_F(SyncManagerTest, PurgesAndResetsFlags) {
    const std::uint8_t handle = open();
    EXPECT_EQ(sync_.purgeDeletedRecs(handle), 0);
    EXPECT_EQ(sync_.resetSyncFlags(handle), 0);
    const std::vector<HandheldRecord> left = {
        {0x10, 0, 1, {'a'}}, {0x20, 0, 2, {'b', 'b'}}, {0x50, 0x10, 1, {'e', 'e', 'e'}}};
    EXPECT_EQ(memos().records().all(), left);
}

TEST_F(SyncManagerTest, ReadsAndWritesTheApplicationInfoBlock) {
    const std::uint8_t handle = open();
    AppInfoBlockInfo block{};
    block.totalBytes = 2;
    block.buffer = buffer_;
    EXPECT_EQ(sync_.readDbAppInfoBlock(handle, &block), 0x4003);
    memos().setAppInfo({1, 2, 3});
    EXPECT_EQ(sync_.readDbAppInfoBlock(handle, &block), 0);
    EXPECT_EQ(+block.bytesRead, 3);
    EXPECT_EQ(Bytes(buffer_, buffer_ + 3), (Bytes{1, 2, 0}));
    block.bytesRead = 2;
    EXPECT_EQ(sync_.writeDbAppInfoBlock(handle, &block), 0);
    EXPECT_EQ(memos().appInfo(), (Bytes{1, 2}));
    block.bytesRead = 3; // above what the buffer holds
    EXPECT_EQ(sync_.writeDbAppInfoBlock(handle, &block), 0x4017);
}

TEST_F(SyncManagerTest, ReadsPreferences) {
    handheld_.preferences[{0x6D61696C, 3, true}] = {7, {1, 2, 3}};
    AppPreferenceBlock block{};
    block.creator = 0x6D61696C;
    block.preferenceId = 3;
    block.backedUp = 1;
    block.requestedBytes = 0x400;
    block.bufferSize = 2;
    block.buffer = buffer_;
    EXPECT_EQ(sync_.readAppPreference(&block), 0);
    EXPECT_EQ(+block.version, 7);
    EXPECT_EQ(+block.actualBytes, 3);
    EXPECT_EQ(Bytes(buffer_, buffer_ + 3), (Bytes{1, 2, 0}));
    block.bufferSize = 64;
    block.requestedBytes = 1;
    buffer_[1] = 0;
    EXPECT_EQ(sync_.readAppPreference(&block), 0);
    EXPECT_EQ(buffer_[1], 0);
    block.backedUp = 0;
    EXPECT_EQ(sync_.readAppPreference(&block), 0x4003);
    block.backedUp = 1;
    block.preferenceId = 1;
    EXPECT_EQ(sync_.readAppPreference(&block), 0x4003);
}

TEST_F(SyncManagerTest, TellsVersionsAndTime) {
    handheld_.systemVersion = {3, 5};
    handheld_.apiVersion = {2, 4};
    handheld_.clock = 1012998896;
    std::uint16_t minor = 0;
    EXPECT_EQ(sync_.getHandheldOsVersion(&minor), 3);
    EXPECT_EQ(minor, 5);
    std::uint32_t apiMajor = 0;
    std::uint32_t apiMinor = 0;
    EXPECT_EQ(sync_.getApiVersion(&apiMajor, &apiMinor), 0);
    EXPECT_EQ(apiMajor, 2U);
    EXPECT_EQ(apiMinor, 4U);
    std::uint32_t time = 0;
    EXPECT_EQ(sync_.readSysDateTime(&time), 0);
    EXPECT_EQ(time, 1012998896U);
    EXPECT_EQ(sync_.yieldCycles(1), 0);
    sync_.calls().pullCable(1);
    EXPECT_EQ(sync_.getHandheldOsVersion(&minor), 0);
}

TEST_F(SyncManagerTest, RefusesNullPointers) {
    EXPECT_EQ(sync_.findDbByTypeCreator(nullptr, nullptr), 0x4017);
    EXPECT_EQ(sync_.openDb(nullptr, 0, nullptr, 0xC0), 0x4017);
    EXPECT_EQ(sync_.createDb(nullptr), 0x4017);
    EXPECT_EQ(sync_.deleteDb(nullptr, 0), 0x4017);
    EXPECT_EQ(sync_.readRecordById(nullptr), 0x4017);
    EXPECT_EQ(sync_.readRecordByIndex(nullptr), 0x4017);
    EXPECT_EQ(sync_.readNextRecInCategory(nullptr), 0x4017);
    EXPECT_EQ(sync_.readNextModifiedRec(nullptr), 0x4017);
    EXPECT_EQ(sync_.deleteRec(nullptr), 0x4017);
    EXPECT_EQ(sync_.getDbRecordCount(1, nullptr), 0x4017);
    EXPECT_EQ(sync_.readDbAppInfoBlock(1, nullptr), 0x4017);
    EXPECT_EQ(sync_.writeDbAppInfoBlock(1, nullptr), 0x4017);
    EXPECT_EQ(sync_.callRemoteModule(nullptr), 0x4017);
    EXPECT_EQ(sync_.readAppPreference(nullptr), 0x4017);
    EXPECT_EQ(sync_.readSysDateTime(nullptr), 0x4017);
    EXPECT_EQ(sync_.getHandheldOsVersion(nullptr), 0);
    EXPECT_EQ(sync_.getApiVersion(nullptr, nullptr), 0x4017);
}

TEST_F(SyncManagerTest, SavesAsADatabaseCloses) {
    int saves = 0;
    bool good = true;
    sync_.setSave([&] {
        ++saves;
        return good;
    });
    const std::uint8_t handle = open();
    EXPECT_EQ(saves, 0);
    EXPECT_EQ(sync_.closeDb(handle, 0), 0);
    EXPECT_EQ(saves, 1);
    good = false;
    EXPECT_EQ(sync_.deleteDb("MemoDB", 0), 0x4015);
    EXPECT_EQ(saves, 2);
}

TEST_F(SyncManagerTest, TracesItsCalls) {
    sync_.calls().setTracing(true);
    RawRecordInfo record = block(open("MemoDB", 0xE0));
    record.recordId = 0x99;
    sync_.readRecordById(&record);
    sync_.closeDb(record.fileHandle, 0);
    EXPECT_EQ(sync_.calls().trace(), (std::vector<std::string>{"SyncOpenDB(\"MemoDB\", 0, 0xE0)",
                                                               "SyncReadRecordById(1, id 0x000099) -> 0x4003",
                                                               "SyncCloseDBEx(1, 0x00)"}));
}

TEST_F(SyncManagerTest, AnsweredRemoteCallsReportTheTrueSize) {
    handheld_.create("MemoSync", 0x4D454D4F, 0x54535241);
    std::string parameter("6\0000\0000\000MemoDB\000MemoSync\000", 22);
    RemoteModuleBlock block{};
    block.creator = 0x54535241;
    block.type = 0x6170706C;
    block.actionCode = 0x8000;
    block.parameter = reinterpret_cast<std::uint8_t*>(parameter.data());
    block.parameterSize = static_cast<std::uint32_t>(parameter.size());
    block.resultBuffer = buffer_;
    block.resultBufferSize = 2;
    const std::uint8_t handle = open();
    EXPECT_EQ(sync_.callRemoteModule(&block), 0x400C); // the desktop holds the database
    sync_.closeDb(handle, 0);
    EXPECT_EQ(sync_.callRemoteModule(&block), 0);
    EXPECT_EQ(+block.resultCode, 0U);
    EXPECT_EQ(+block.resultSize, 5U);
    EXPECT_EQ(Bytes(buffer_, buffer_ + 4), (Bytes{'0', 0, 0, 0}));
    sync_.calls().answerModule({'5', 0}); // by order, without looking at the request
    block.parameterSize = 0;
    EXPECT_EQ(sync_.callRemoteModule(&block), 0);
    EXPECT_EQ(+block.resultSize, 2U);
    EXPECT_EQ(Bytes(buffer_, buffer_ + 2), (Bytes{'5', 0}));
    sync_.calls().mend();
    EXPECT_EQ(sync_.callRemoteModule(&block), 0);
    EXPECT_NE(+block.resultCode, 0U); // the module itself takes five strings
    block.creator = 0x6D656D6F;
    EXPECT_EQ(sync_.callRemoteModule(&block), 0x4003);
}

// Walks and single reads of a large database must not take a time that grows with its square.
TEST_F(SyncManagerTest, EmptiesALargeDatabase) {
    HandheldDatabase& large = handheld_.create("Large", 0, 0);
    for (int i = 0; i < 50000; ++i) large.addRecord({1}, static_cast<std::uint8_t>(i % 16));
    RawRecordInfo record = block(open("Large"));
    int modified = 0;
    while (sync_.readNextModifiedRec(&record) == 0) ++modified;
    EXPECT_EQ(modified, 50000);
    for (std::uint32_t id = 1; id <= 50000; ++id) {
        record.recordId = id;
        ASSERT_EQ(sync_.deleteRec(&record), 0);
    }
    EXPECT_EQ(large.records().size(), 0U);
}

} // namespace
} // namespace tsr
