#include "handheld/CategoryTable.h"

#include "handheld/HandheldError.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

class CategoryTableTest : public testing::Test {
protected:
    CategoryTableTest() { database.setAppInfo(CategoryTable::newBlock({"Unfiled", "Home"})); }

    std::uint8_t byteAt(std::size_t offset) const { return database.appInfo()->at(offset); }

    HandheldDatabase database{DatabaseHeader{.name = "MemoDB"}};
};

TEST_F(CategoryTableTest, LiesAtTheFrontOfTheBlock) {
    EXPECT_EQ(database.appInfo()->size(), 276U);
    EXPECT_EQ(byteAt(0), 0);
    EXPECT_EQ(byteAt(2), 'U');
    EXPECT_EQ(byteAt(18), 'H');
    EXPECT_EQ(byteAt(258 + 15), 15); // the last id
    EXPECT_EQ(byteAt(274), 15);
    const CategoryTable table(database);
    EXPECT_EQ(table.name(0), "Unfiled");
    EXPECT_EQ(table.name(1), "Home");
    EXPECT_EQ(table.name(15), "");
}

TEST_F(CategoryTableTest, NamesACategory) {
    CategoryTable table(database);
    table.rename(2, "Fifteen letters");
    EXPECT_EQ(table.name(2), "Fifteen letters");
    EXPECT_EQ(table.name(3), "");
    table.rename(2, "Shops");
    EXPECT_EQ(table.name(2), "Shops");
    EXPECT_EQ(byteAt(2 + 2 * 16 + 5), 0);
    EXPECT_EQ(byteAt(2 + 2 * 16 + 14), 0); // nothing of the longer name stays
    table.rename(2, "Shops");              // its own name again
    table.rename(9, "Garden");
    EXPECT_EQ(byteAt(0), 0x02); // category 9
    EXPECT_EQ(byteAt(1), 0x04); // category 2
}

TEST_F(CategoryTableTest, RefusesWhatIsNoName) {
    CategoryTable table(database);
    EXPECT_THROW(table.rename(2, ""), HandheldError);
    EXPECT_THROW(table.rename(2, "Sixteen letters!"), HandheldError);
    EXPECT_THROW(table.rename(2, "Home"), HandheldError);
    EXPECT_THROW(table.rename(0, "Mine"), HandheldError);
    EXPECT_THROW(table.remove(0), HandheldError);
    EXPECT_EQ(*database.appInfo(), CategoryTable::newBlock({"Unfiled", "Home"}));
}

TEST_F(CategoryTableTest, RecordsLeaveACategoryThatLosesItsName) {
    const std::uint32_t inside = database.addRecord({'a'}, 1);
    const std::uint32_t outside = database.addRecord({'b'}, 2);
    database.resetSyncFlags();
    CategoryTable(database).remove(1);
    EXPECT_EQ(CategoryTable(database).name(1), "");
    EXPECT_EQ(*database.records().find(inside), (HandheldRecord{inside, 0x40, 0, {'a'}}));
    EXPECT_EQ(*database.records().find(outside), (HandheldRecord{outside, 0, 2, {'b'}}));
}

TEST_F(CategoryTableTest, NeedsABlockThatHoldsTheNames) {
    std::vector<std::uint8_t> block(257);
    database.setAppInfo(block);
    EXPECT_THROW(CategoryTable{database}, HandheldError);
    block.resize(258);
    database.setAppInfo(block);
    EXPECT_EQ(CategoryTable(database).name(15), "");
    database.setAppInfo({});
    EXPECT_THROW(CategoryTable{database}, HandheldError);
}

} // namespace
} // namespace tsr
