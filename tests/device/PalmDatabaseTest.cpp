#include "device/PalmDatabase.h"

#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"
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
using Lines = std::vector<std::string>;

constexpr std::int32_t notFound = 0x4003;
constexpr std::int32_t busy = 0x4006;
constexpr std::uint32_t memo = 0x6D656D6F;
constexpr std::uint32_t data = 0x44415441;

void nameIt(DatabaseInfoBlock& found, const std::string& name, std::uint32_t card) {
    found.cardNumber = card;
    std::fill(std::begin(found.name), std::end(found.name), '\0');
    name.copy(found.name, sizeof found.name);
}

std::vector<std::uint8_t> contents(const PalmRecordBuffer& buffer) {
    return std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.size());
}

std::uint32_t codeRaisedBy(const std::function<void()>& action) {
    try {
        action();
    } catch (const PalmSyncApiError& error) {
        return error.code();
    }
    return 0;
}

class PalmDatabaseTest : public testing::Test {
protected:
    PalmDatabaseTest() { sync.reset(); }

    // A database with the handle 7, the calls so far forgotten.
    CountedPtr<PalmDatabase> opened() {
        CountedPtr<PalmDatabase> database = PalmDatabase::openByName("MemoDB", 0);
        sync.calls.clear();
        return database;
    }

    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
};

TEST_F(PalmDatabaseTest, OpensByNameForReadingAndWriting) {
    const CountedPtr<PalmDatabase> database = PalmDatabase::openByName("VellumConfig", 0);
    EXPECT_THAT(sync.calls, ElementsAre("SyncOpenDB(VellumConfig, card 0, mode C0)"));
}

TEST_F(PalmDatabaseTest, RaisesWhenANameCannotBeOpened) {
    sync.answer("SyncOpenDB", notFound);
    EXPECT_EQ(textRaisedBy([] { PalmDatabase::openByName("VellumConfig", 0); }),
              "The function SyncOpenDB( ) failed: The requested database, record, resource, etc. could not "
              "be found.\n");
    EXPECT_THAT(sync.calls, ElementsAre("SyncOpenDB(VellumConfig, card 0, mode C0)")); // nothing to close
}

TEST_F(PalmDatabaseTest, ClosesWithTheLastReference) {
    CountedPtr<PalmDatabase> database = opened();
    CountedPtr<PalmDatabase> other = database;
    database.reset();
    EXPECT_TRUE(sync.calls.empty());
    other.reset();
    EXPECT_THAT(sync.calls, ElementsAre("SyncCloseDBEx(handle 7, option 00)"));
}

TEST_F(PalmDatabaseTest, ClosesWithItsOption) {
    opened()->setCloseOption(true);
    EXPECT_THAT(sync.calls, ElementsAre("SyncCloseDBEx(handle 7, option 40)"));
}

TEST_F(PalmDatabaseTest, NamesAFailedCloseWithoutItsEnding) {
    const CountedPtr<PalmDatabase> database = opened();
    sync.answer("SyncCloseDBEx", busy);
    EXPECT_THAT(textRaisedBy([&] { database->close(); }),
                testing::StartsWith("The function SyncCloseDB( ) failed: "));
}

TEST_F(PalmDatabaseTest, SwallowsAFailedCloseAtItsEnd) {
    sync.answer("SyncCloseDBEx", busy);
    { const CountedPtr<PalmDatabase> database = opened(); }
    EXPECT_THAT(sync.calls, ElementsAre("SyncCloseDBEx(handle 7, option 00)"));
}

TEST_F(PalmDatabaseTest, OpensTheOneThatIsFoundExclusively) {
    sync.answerFind(0, [](DatabaseInfoBlock& found) { nameIt(found, "MyMemos", 1); });
    sync.answerFind(notFound);
    const CountedPtr<PalmDatabase> database = PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false);
    EXPECT_THAT(sync.calls,
                ElementsAre("SyncFindDbByTypeCreator(options C0, search 80, type 44415441, creator 6D656D6F)",
                            "SyncFindDbByTypeCreator(options C0, search 00, type 44415441, creator 6D656D6F)",
                            "SyncOpenDB(MyMemos, card 1, mode E0)"));
}

TEST_F(PalmDatabaseTest, HandsOverAnEmptyInfoBlock) {
    sync.answerFind(notFound, [](DatabaseInfoBlock& found) {
        const auto* start = reinterpret_cast<const std::uint8_t*>(&found);
        EXPECT_EQ(std::vector<std::uint8_t>(start, start + sizeof found),
                  std::vector<std::uint8_t>(sizeof found));
    });
    PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false);
}

TEST_F(PalmDatabaseTest, TakesANameWithoutAnEndAsFarAsItsRoomGoes) {
    sync.answerFind(0, [](DatabaseInfoBlock& found) {
        nameIt(found, std::string(32, 'n'), 0);
        found.unreadToo[0] = 'x';
    });
    sync.answerFind(notFound);
    PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false);
    EXPECT_EQ(sync.calls[2], "SyncOpenDB(" + std::string(32, 'n') + ", card 0, mode E0)");
}

TEST_F(PalmDatabaseTest, CreatesTheOneThatIsMissing) {
    sync.answerFind(notFound);
    CountedPtr<PalmDatabase> database = PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false);
    database.reset();
    EXPECT_THAT(
        sync.calls,
        ElementsAre("SyncFindDbByTypeCreator(options C0, search 80, type 44415441, creator 6D656D6F)",
                    "SyncCreateDB(MemoDB, creator 6D656D6F, type 44415441, flags 00, card 0, version 1)",
                    "SyncCloseDBEx(handle 7, option 00)")); // the create has opened it
}

TEST_F(PalmDatabaseTest, FlagsItsOwnAsItCreatesThem) {
    sync.answerFind(notFound);
    PalmDatabase::openOrCreate(memo, data, "MemoSync", 0, true);
    EXPECT_EQ(sync.calls[1],
              "SyncCreateDB(MemoSync, creator 6D656D6F, type 44415441, flags 40, card 0, version 1)");
}

TEST_F(PalmDatabaseTest, NeverChoosesBetweenTwo) {
    sync.answerFind(0, [](DatabaseInfoBlock& found) { nameIt(found, "MemoDB", 0); });
    sync.answerFind(0, [](DatabaseInfoBlock& found) { nameIt(found, "Copy", 1); });
    EXPECT_EQ(textRaisedBy([] { PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false); }),
              "Duplicate databases with creator 'memo' and type 'DATA': card=0, name='MemoDB', "
              "card=1,name='Copy'.");
    EXPECT_EQ(sync.calls.size(), 2U);
}

TEST_F(PalmDatabaseTest, RaisesWhatElseASearchAnswers) {
    sync.answerFind(busy);
    EXPECT_THAT(textRaisedBy([] { PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false); }),
                testing::StartsWith("The function SyncFindDbByTypeCreator( ) failed: "));
    sync.answerFind(0);
    sync.answerFind(busy);
    EXPECT_THAT(textRaisedBy([] { PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false); }),
                testing::StartsWith("The function SyncFindDbByTypeCreator( ) failed: "));
    sync.answerFind(0);
    sync.answerFind(notFound);
    sync.answer("SyncOpenDB", busy);
    EXPECT_THAT(textRaisedBy([] { PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false); }),
                testing::StartsWith("The function SyncOpenDB( ) failed: "));
    sync.answerFind(notFound);
    sync.answer("SyncCreateDB", busy);
    EXPECT_THAT(textRaisedBy([] { PalmDatabase::openOrCreate(memo, data, "MemoDB", 0, false); }),
                testing::StartsWith("The function SyncCreateDB( ) failed: "));
}

TEST_F(PalmDatabaseTest, DeletesByNameAndToleratesNothing) {
    PalmDatabase::deleteDatabase("MemoDB", 0);
    EXPECT_THAT(sync.calls, ElementsAre("SyncDeleteDB(MemoDB, card 0)"));
    sync.answer("SyncDeleteDB", notFound);
    EXPECT_EQ(codeRaisedBy([] { PalmDatabase::deleteDatabase("MemoDB", 0); }), 0x4003U);
}

TEST_F(PalmDatabaseTest, ReadsARecordByItsId) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    buffer.setAttributes(0x80);
    sync.answerRecord("SyncReadRecordById", 0, sync.record(5, 3, 0x40, bytes("01 02")));
    database->readRecordById(buffer, 5);
    EXPECT_THAT(sync.calls,
                ElementsAre("SyncReadRecordById(handle 7, id 5, index 0, attributes 00, category 0, "
                            "size 0, room 1024)"));
    EXPECT_EQ(contents(buffer), bytes("01 02"));
    EXPECT_EQ(buffer.categoryId(), 3);
    EXPECT_EQ(buffer.attributes(), 0x40);
}

TEST_F(PalmDatabaseTest, RaisesForAMissingId) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answer("SyncReadRecordById", notFound);
    EXPECT_THAT(textRaisedBy([&] { database->readRecordById(buffer, 5); }),
                testing::StartsWith("The function SyncReadRecordById( ) failed: "));
}

TEST_F(PalmDatabaseTest, ReadsARecordOf1024BytesAtOnce) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answerRecord("SyncReadRecordById", 0, sync.record(5, 3, 0, std::vector<std::uint8_t>(1024, 9)));
    database->readRecordById(buffer, 5);
    EXPECT_EQ(sync.calls.size(), 1U);
    EXPECT_EQ(buffer.capacity(), 1024U);
}

TEST_F(PalmDatabaseTest, ReadsALargerRecordOnceMore) {
    const CountedPtr<PalmDatabase> database = opened();
    const auto large = sync.record(5, 3, 0, std::vector<std::uint8_t>(1025, 9));
    const std::pair<const char*, std::function<void(PalmRecordBuffer&)>> reads[] = {
        {"SyncReadRecordByIndex", [&](PalmRecordBuffer& buffer) { database->readRecordByIndex(buffer, 2); }},
        {"SyncReadRecordById", [&](PalmRecordBuffer& buffer) { database->readRecordById(buffer, 5); }},
    };
    for (const auto& [function, read] : reads) {
        SCOPED_TRACE(function);
        sync.calls.clear();
        sync.answerRecord(function, 0, large);
        sync.answerRecord(function, 0, large);
        PalmRecordBuffer buffer;
        read(buffer);
        EXPECT_EQ(sync.calls.size(), 2U);
        EXPECT_EQ(buffer.capacity(), 2048U);
        EXPECT_EQ(contents(buffer), std::vector<std::uint8_t>(1025, 9));
    }
}

TEST_F(PalmDatabaseTest, GrowsStraightToASizeThatTwiceTheRoomWouldNotHold) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    const auto large = sync.record(5, 3, 0, std::vector<std::uint8_t>(5000, 9));
    sync.answerRecord("SyncReadRecordById", 0, large);
    sync.answerRecord("SyncReadRecordById", 0, large);
    database->readRecordById(buffer, 5);
    EXPECT_EQ(buffer.capacity(), 5000U);
}

TEST_F(PalmDatabaseTest, TreatsAFailedRetryAsAFailedRead) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answerRecord("SyncReadRecordById", 0, sync.record(5, 3, 0, std::vector<std::uint8_t>(1025)));
    sync.answer("SyncReadRecordById", busy);
    EXPECT_EQ(codeRaisedBy([&] { database->readRecordById(buffer, 5); }), 0x4006U);

    PalmRecordBuffer other;
    sync.answerRecord("SyncReadRecordByIndex", 0, sync.record(5, 3, 0, std::vector<std::uint8_t>(1025)));
    sync.answer("SyncReadRecordByIndex", notFound);
    EXPECT_FALSE(database->readRecordByIndex(other, 2));
}

TEST_F(PalmDatabaseTest, FailsForARecordThatNoBufferHolds) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answerRecord("SyncReadRecordById", 0, [](RawRecordInfo& raw) { raw.recordSize = 65536; });
    EXPECT_EQ(textRaisedBy([&] { database->readRecordById(buffer, 5); }), "Buffer length exceeded.");
}

TEST_F(PalmDatabaseTest, EndsWhenARecordGrowsWithEveryRead) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    for (int read = 0; read < 100; ++read) {
        sync.answerRecord("SyncReadRecordById", 0,
                          [](RawRecordInfo& raw) { raw.recordSize = raw.bufferSize + 1U; });
    }
    EXPECT_EQ(textRaisedBy([&] { database->readRecordById(buffer, 5); }), "Buffer length exceeded.");
    EXPECT_EQ(sync.calls.size(), 7U); // rooms of 1, 2, 4, 8, 16, 32 KiB and 65,535 bytes
}

TEST_F(PalmDatabaseTest, GivesFalseForAnIndexThatIsNotThere) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answer("SyncReadRecordByIndex", notFound);
    EXPECT_FALSE(database->readRecordByIndex(buffer, 9));
    EXPECT_THAT(sync.calls,
                ElementsAre("SyncReadRecordByIndex(handle 7, id 0, index 9, attributes 00, category 0, "
                            "size 0, room 1024)"));
    sync.answer("SyncReadRecordByIndex", busy);
    EXPECT_THAT(textRaisedBy([&] { database->readRecordByIndex(buffer, 9); }),
                testing::StartsWith("The function SyncReadRecordByIndex( ) failed: "));
}

TEST_F(PalmDatabaseTest, WalksACategoryWithTwoCallsARecord) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answerRecord("SyncReadNextRecInCategory", 0, [&](RawRecordInfo& raw) {
        sync.record(5, 3, 0x40, bytes("01 02"))(raw);
        raw.recordIndex = 4;
    });
    sync.answer("SyncReadNextRecInCategory", notFound);
    EXPECT_TRUE(database->readFirstInCategory(buffer, 3));
    EXPECT_EQ(contents(buffer), bytes("01 02"));
    EXPECT_FALSE(database->readNextInCategory(buffer));
    EXPECT_THAT(
        sync.calls,
        ElementsAre("SyncResetRecordIndex(handle 7)",
                    "SyncReadNextRecInCategory(handle 7, id 0, index 0, attributes 00, category 3, size 0, "
                    "room 1024)",
                    "SyncReadRecordByIndex(handle 7, id 5, index 4, attributes 40, category 3, size 2, "
                    "room 1024)",
                    "SyncReadNextRecInCategory(handle 7, id 5, index 4, attributes 40, category 3, size 2, "
                    "room 1024)"));
}

TEST_F(PalmDatabaseTest, FindsNothingInAnEmptyCategory) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answer("SyncReadNextRecInCategory", notFound);
    EXPECT_FALSE(database->readNextInCategory(buffer));
    EXPECT_EQ(sync.calls.size(), 1U);
}

TEST_F(PalmDatabaseTest, WalksWithThreeCallsForARecordThatDoesNotFit) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    const auto large = sync.record(5, 3, 0, std::vector<std::uint8_t>(1500, 9));
    sync.answerRecord("SyncReadNextModifiedRec", 0, large);
    sync.answerRecord("SyncReadRecordByIndex", 0, large);
    sync.answerRecord("SyncReadRecordByIndex", 0, large);
    EXPECT_TRUE(database->readFirstModified(buffer));
    EXPECT_EQ(contents(buffer), std::vector<std::uint8_t>(1500, 9));
    EXPECT_THAT(
        sync.calls,
        ElementsAre("SyncResetRecordIndex(handle 7)",
                    "SyncReadNextModifiedRec(handle 7, id 0, index 0, attributes 00, category 0, size 0, "
                    "room 1024)",
                    "SyncReadRecordByIndex(handle 7, id 5, index 0, attributes 00, category 3, size 1500, "
                    "room 2048)",
                    "SyncReadRecordByIndex(handle 7, id 5, index 0, attributes 00, category 3, size 1500, "
                    "room 2048)"));
}

TEST_F(PalmDatabaseTest, NeverLooksAtTheLastReadByIndex) {
    const CountedPtr<PalmDatabase> database = opened();
    for (const std::int32_t result : {notFound, busy}) {
        PalmRecordBuffer buffer;
        sync.answerRecord("SyncReadNextModifiedRec", 0, sync.record(5, 3, 0, bytes("01 02")));
        sync.answer("SyncReadRecordByIndex", result);
        EXPECT_TRUE(database->readFirstModified(buffer));
        EXPECT_EQ(contents(buffer), bytes("01 02"));
    }
}

TEST_F(PalmDatabaseTest, LooksAtTheRetryOfAWalkForNotFoundAlone) {
    const CountedPtr<PalmDatabase> database = opened();
    const auto large = sync.record(5, 3, 0, std::vector<std::uint8_t>(1500, 9));
    PalmRecordBuffer gone;
    sync.answerRecord("SyncReadNextModifiedRec", 0, large);
    sync.answer("SyncReadRecordByIndex", notFound);
    EXPECT_FALSE(database->readFirstModified(gone));

    PalmRecordBuffer failed;
    sync.answerRecord("SyncReadNextModifiedRec", 0, large);
    sync.answer("SyncReadRecordByIndex", busy);
    sync.answer("SyncReadRecordByIndex", busy);
    EXPECT_TRUE(database->readFirstModified(failed));
    std::vector<std::uint8_t> firstRead(1500); // what the first good read gave, and zeros
    std::fill_n(firstRead.begin(), 1024, std::uint8_t{9});
    EXPECT_EQ(contents(failed), firstRead);
}

TEST_F(PalmDatabaseTest, NamesTheSequentialCallInAFailedWalk) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answer("SyncReadNextRecInCategory", busy);
    EXPECT_THAT(textRaisedBy([&] { database->readFirstInCategory(buffer, 1); }),
                testing::StartsWith("The function SyncReadNextRecInCategory( ) failed: "));
    sync.answer("SyncReadNextModifiedRec", busy);
    EXPECT_THAT(textRaisedBy([&] { database->readFirstModified(buffer); }),
                testing::StartsWith("The function SyncReadNextModifiedRec( ) failed: "));
    for (int order = 0; order < 2; ++order) sync.answer("SyncResetRecordIndex", busy);
    EXPECT_THAT(textRaisedBy([&] { database->readFirstModified(buffer); }),
                testing::StartsWith("The function SyncResetRecordIndex( ) failed: "));
    EXPECT_THAT(textRaisedBy([&] { database->readFirstInCategory(buffer, 1); }),
                testing::StartsWith("The function SyncResetRecordIndex( ) failed: "));
}

TEST_F(PalmDatabaseTest, GivesFalseForAnEmptyCategory) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    sync.answer("SyncReadNextRecInCategory", notFound);
    EXPECT_FALSE(database->readFirstInCategory(buffer, 1));
    sync.answer("SyncReadNextModifiedRec", notFound);
    EXPECT_FALSE(database->readFirstModified(buffer));
}

TEST_F(PalmDatabaseTest, EndsAWalkThatNeverEnds) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    std::size_t records = 0;
    EXPECT_THAT(textRaisedBy([&] {
                    for (bool more = database->readFirstModified(buffer); more;
                         more = database->readNextModified(buffer)) {
                        ++records;
                    }
                }),
                testing::StartsWith("The function SyncReadNextModifiedRec( ) failed: A data limit"));
    EXPECT_EQ(records, 65535U);
}

TEST_F(PalmDatabaseTest, WritesARecordAndTakesItsId) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    buffer.setCategoryId(2);
    buffer.setAttributes(0x10);
    buffer.appendWord(0x0102);
    sync.answerRecord("SyncWriteRec", 0, [](RawRecordInfo& raw) { raw.recordId = 77; });
    database->writeRecord(buffer);
    EXPECT_EQ(sync.calls[0],
              "SyncWriteRec(handle 7, id 0, index 0, attributes 10, category 2, size 2, room 1024) 01 02");
    EXPECT_EQ(buffer.recordId(), 77U);
    sync.answer("SyncWriteRec", busy);
    EXPECT_THAT(textRaisedBy([&] { database->writeRecord(buffer); }),
                testing::StartsWith("The function SyncWriteRec( ) failed: "));
}

TEST_F(PalmDatabaseTest, MovesTheCursorOfABufferByReadsAlone) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    buffer.appendWord(0x0102);
    buffer.readByte();
    database->writeRecord(buffer);
    database->deleteRecord(buffer);
    EXPECT_EQ(buffer.remaining(), 1U);
    EXPECT_EQ(buffer.readByte(), 2);
    database->readRecordById(buffer, 5);
    EXPECT_TRUE(buffer.atEnd()); // binds afresh
    EXPECT_EQ(buffer.position(), 0U);
}

TEST_F(PalmDatabaseTest, RaisesWhatItsPlainCallsAnswer) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"SyncDeleteRec", [&] { database->deleteRecord(buffer); }},
        {"SyncPurgeDeletedRecs", [&] { database->purgeDeletedRecords(); }},
        {"SyncResetSyncFlags", [&] { database->resetSyncFlags(); }},
        {"SyncResetRecordIndex", [&] { database->resetRecordIndex(); }},
        {"SyncGetDBRecordCount", [&] { database->recordCount(); }},
        {"SyncReadDBAppInfoBlock",
         [&] { database->readAppInfoBlock(buffer); }}, // also for a block that isn't there
        {"SyncWriteDBAppInfoBlock", [&] { database->writeAppInfoBlock(buffer); }},
    };
    for (const auto& [name, action] : rows) {
        SCOPED_TRACE(name);
        sync.answer(name, notFound);
        EXPECT_EQ(textRaisedBy(action),
                  std::string("The function ") + name
                      + "( ) failed: The requested database, record, resource, etc. could not be "
                        "found.\n");
    }
}

TEST_F(PalmDatabaseTest, CountsItsRecords) { EXPECT_EQ(opened()->recordCount(), 3); }

TEST_F(PalmDatabaseTest, ReadsTheAppInfoBlockBehindWhatIsThere) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    buffer.appendByte(0xFF);
    sync.answerAppInfo("SyncReadDBAppInfoBlock", 0, [](AppInfoBlockInfo& block) {
        block.bytesRead = 2;
        block.buffer[0] = 1;
        block.buffer[1] = 2;
    });
    database->readAppInfoBlock(buffer);
    EXPECT_THAT(sync.calls, ElementsAre("SyncReadDBAppInfoBlock(handle 7, total 1024, read 0)"));
    EXPECT_EQ(contents(buffer), bytes("FF 01 02"));
}

TEST_F(PalmDatabaseTest, ReadsALargeAppInfoBlockOnceMore) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    const auto told = [](std::uint16_t size) {
        return [size](AppInfoBlockInfo& block) {
            block.bytesRead = size;
            if (block.totalBytes >= size) block.buffer[size - 1] = 0xEE;
        };
    };
    sync.answerAppInfo("SyncReadDBAppInfoBlock", 0, told(1025)); // twice the room is enough
    sync.answerAppInfo("SyncReadDBAppInfoBlock", 0, told(5000)); // it has grown meanwhile
    sync.answerAppInfo("SyncReadDBAppInfoBlock", 0, told(5000));
    database->readAppInfoBlock(buffer);
    EXPECT_THAT(sync.calls, ElementsAre("SyncReadDBAppInfoBlock(handle 7, total 1024, read 0)",
                                        "SyncReadDBAppInfoBlock(handle 7, total 2048, read 1025)",
                                        "SyncReadDBAppInfoBlock(handle 7, total 5000, read 5000)"));
    EXPECT_EQ(buffer.size(), 5000U);
    EXPECT_EQ(buffer.byteAt(4999), 0xEE);
}

TEST_F(PalmDatabaseTest, WritesTheAppInfoBlockWhole) {
    const CountedPtr<PalmDatabase> database = opened();
    PalmRecordBuffer buffer;
    buffer.appendWord(0x0102);
    database->writeAppInfoBlock(buffer);
    EXPECT_THAT(sync.calls, ElementsAre("SyncWriteDBAppInfoBlock(handle 7, total 2, read 2) (01 02)"));
}

} // namespace
} // namespace tsr
