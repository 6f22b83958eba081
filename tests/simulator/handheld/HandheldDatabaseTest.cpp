#include "handheld/HandheldDatabase.h"

#include <gtest/gtest.h>

#include "device/fourCharacterCode.h"
#include "handheld/Handheld.h"

namespace tsr {
namespace {

HandheldDatabase memoDatabase() {
    DatabaseHeader header;
    header.name = "MemoDB";
    return HandheldDatabase(header);
}

TEST(HandheldDatabase, TheUsersChangesAreDirty) {
    HandheldDatabase database = memoDatabase();
    const std::uint32_t id = database.addRecord({'a'}, 3, HandheldRecord::secret);
    EXPECT_EQ(*database.records().find(id), (HandheldRecord{id, 0x50, 3, {'a'}}));
    database.resetSyncFlags();
    EXPECT_TRUE(database.editRecord(id, {'b'}));
    EXPECT_EQ(*database.records().find(id), (HandheldRecord{id, 0x50, 3, {'b'}}));
    database.resetSyncFlags();
    EXPECT_TRUE(database.moveRecord(id, 4));
    EXPECT_EQ(*database.records().find(id), (HandheldRecord{id, 0x50, 4, {'b'}}));
    database.resetSyncFlags();
    EXPECT_TRUE(database.markSecret(id, false));
    EXPECT_EQ(*database.records().find(id), (HandheldRecord{id, 0x40, 4, {'b'}}));
    EXPECT_TRUE(database.markSecret(id, true));
    EXPECT_EQ(*database.records().find(id), (HandheldRecord{id, 0x50, 4, {'b'}}));
}

TEST(HandheldDatabase, ADeletedRecordLosesItsDataAnArchivedOneKeepsThem) {
    HandheldDatabase database = memoDatabase();
    const std::uint32_t first = database.addRecord({'a'});
    const std::uint32_t second = database.addRecord({'b'});
    EXPECT_TRUE(database.deleteRecord(first));
    EXPECT_TRUE(database.archiveRecord(second));
    EXPECT_EQ(*database.records().find(first), (HandheldRecord{first, 0xC0, 0, {}}));
    EXPECT_EQ(*database.records().find(second), (HandheldRecord{second, 0x48, 0, {'b'}}));
    EXPECT_FALSE(database.editRecord(first, {'c'}));
    EXPECT_FALSE(database.markSecret(first, true));
    EXPECT_FALSE(database.deleteRecord(second));
    EXPECT_FALSE(database.archiveRecord(99));
    database.purgeDeletedRecords();
    EXPECT_EQ(database.records().size(), 0U);
}

TEST(HandheldDatabase, TheDesktopsChangesAreClean) {
    HandheldDatabase database = memoDatabase();
    const std::uint32_t id = database.addRecord({'a'});
    EXPECT_EQ(database.writeRecord(id, 2, true, {'b'}), id);
    EXPECT_EQ(*database.records().find(id), (HandheldRecord{id, 0x10, 2, {'b'}}));
    database.deleteRecord(id);
    EXPECT_EQ(database.writeRecord(id, 2, false, {'c'}), id); // back to life
    EXPECT_EQ(*database.records().find(id), (HandheldRecord{id, 0, 2, {'c'}}));
}

TEST(HandheldDatabase, NeverGivesAnIdTwice) {
    HandheldDatabase database = memoDatabase();
    const std::uint32_t first = database.writeRecord(0, 0, false, {});
    database.eraseRecord(first);
    const std::uint32_t second = database.writeRecord(0, 0, false, {});
    EXPECT_NE(second, first);
    EXPECT_EQ(database.writeRecord(500, 0, false, {}), 500U); // unknown: a new record of that id
    database.eraseRecord(500);
    EXPECT_GT(database.writeRecord(0, 0, false, {}), 500U);
}

TEST(HandheldDatabase, RunsOutOfIdsAfter24Bits) {
    HandheldDatabase database = memoDatabase();
    EXPECT_EQ(database.writeRecord(0xFFFFFF, 0, false, {}), 0xFFFFFFU);
    EXPECT_EQ(database.writeRecord(0, 0, false, {}), 0U);
    EXPECT_EQ(database.addRecord({}), 0U);
}

TEST(HandheldDatabase, Holds65535Records) {
    HandheldDatabase database = memoDatabase();
    for (int i = 0; i < 65535; ++i) ASSERT_NE(database.writeRecord(0, 0, false, {}), 0U);
    EXPECT_EQ(database.writeRecord(0, 0, false, {}), 0U);
    EXPECT_EQ(database.writeRecord(1, 0, false, {'a'}), 1U); // one that is there may still change
}

TEST(HandheldDatabase, PatchesInsideARecordOnly) {
    HandheldDatabase database = memoDatabase();
    database.putRecord({7, 0, 2, {1, 2, 3, 4}});
    EXPECT_TRUE(database.patchRecord(7, 1, {8, 9, 10}));
    EXPECT_EQ(database.records().find(7)->data, (std::vector<std::uint8_t>{1, 8, 9, 10}));
    EXPECT_FALSE(database.patchRecord(7, 2, {0, 0, 0}));
    EXPECT_FALSE(database.patchRecord(7, 5, {}));
    EXPECT_FALSE(database.patchRecord(8, 0, {}));
}

TEST(HandheldDatabase, KnowsWhetherItHasChanged) {
    HandheldDatabase database = memoDatabase();
    EXPECT_TRUE(database.isUnsaved()); // it is new
    const std::uint32_t id = database.addRecord({});
    database.markSaved();
    database.resetSyncFlags();
    EXPECT_TRUE(database.isUnsaved());
    database.markSaved();
    database.resetSyncFlags(); // nothing was dirty
    database.purgeDeletedRecords();
    EXPECT_FALSE(database.isUnsaved());
    database.eraseRecord(id);
    EXPECT_TRUE(database.isUnsaved());
}

TEST(Handheld, RefusesNamesThatNoFileCanHold) {
    Handheld handheld;
    EXPECT_THROW(handheld.create("", 0, 0), std::invalid_argument);
    EXPECT_THROW(handheld.create(std::string(32, 'a'), 0, 0), std::invalid_argument);
    handheld.create(std::string(31, 'a'), 0, 0);
}

TEST(Handheld, StampsNewDatabasesWithItsClock) {
    Handheld handheld;
    handheld.clock = 1;
    // 66 years with 17 leap days lie between 1904 and 1970: 24107 days of 86400 seconds.
    EXPECT_EQ(handheld.create("MemoDB", 0, 0).header().creationTime, 24107U * 86400U + 1U);
}

TEST(Handheld, WritesCodesAsFourCharacters) {
    EXPECT_EQ(fourCharacterCode("memo"), 0x6D656D6FU);
    EXPECT_EQ(fourCharacterCode("me"), 0x6D652020U);
    EXPECT_EQ(fourCharacters(0x54535241), "TSRA");
}

} // namespace
} // namespace tsr
