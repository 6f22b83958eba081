#include "device/PalmCategories.h"

#include "support/ScriptedSyncManager.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSyncManager;
using test::textRaisedBy;

// An application info block with these names, then the byte 0xAA.
std::vector<std::uint8_t> blockOf(const std::vector<std::string>& names) {
    std::vector<std::uint8_t> block(2 + 16 * 16);
    block[0] = 0x12;
    block[1] = 0x34;
    for (std::size_t slot = 0; slot < names.size(); ++slot) {
        std::copy(names[slot].begin(), names[slot].end(),
                  block.begin() + static_cast<std::ptrdiff_t>(2 + 16 * slot));
    }
    block.push_back(0xAA);
    return block;
}

class PalmCategoriesTest : public testing::Test {
protected:
    PalmCategoriesTest() {
        sync.reset();
        palm.setApplication("Memo Pad", 1, "MemoDB", 2, 3, "MemoSync", 4);
    }

    void haveBlock(const std::vector<std::uint8_t>& bytes) {
        sync.answerAppInfo("SyncReadDBAppInfoBlock", 0, [=](AppInfoBlockInfo& block) {
            block.bytesRead = static_cast<std::uint16_t>(bytes.size());
            std::copy(bytes.begin(), bytes.end(), block.buffer);
        });
    }

    PalmCategories categoriesOf(const std::vector<std::string>& names) {
        haveBlock(blockOf(names));
        return PalmCategories(palm);
    }

    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
    PalmProxy palm{nullptr};
};

TEST_F(PalmCategoriesTest, GivesTheNameOfAnIndex) {
    const PalmCategories categories = categoriesOf({"Unfiled", "Business"});
    EXPECT_EQ(categories.categoryName(1), "Business");
    EXPECT_EQ(categories.categoryName(15), "");
    EXPECT_EQ(textRaisedBy([&] { categories.categoryName(16); }),
              "The specified Palm category value (16) is not valid.");
}

TEST_F(PalmCategoriesTest, FindsANameExactly) {
    PalmCategories categories = categoriesOf({"Unfiled", "Business", "Business"});
    EXPECT_EQ(categories.categoryIndex("Business", false), 1);
    EXPECT_EQ(categories.categoryIndex("business", false), -1);
    EXPECT_EQ(categories.categoryIndex("", false), 3); // the first free slot
    EXPECT_FALSE(categories.dirty());
}

TEST_F(PalmCategoriesTest, GivesANewNameTheFirstFreeSlot) {
    PalmCategories categories = categoriesOf({"Unfiled", "", "Business"});
    EXPECT_EQ(categories.categoryIndex("Personal", true), 1);
    EXPECT_TRUE(categories.dirty());
    EXPECT_EQ(categories.categoryName(1), "Personal");
    const std::vector<std::uint8_t> expected = blockOf({"Unfiled", "Personal", "Business"});
    const PalmRecordBuffer& block = categories.block();
    EXPECT_EQ(std::vector<std::uint8_t>(block.data(), block.data() + block.size()), expected);
}

TEST_F(PalmCategoriesTest, TakesFifteenCharactersAndNotSixteen) {
    PalmCategories categories = categoriesOf({"Unfiled"});
    EXPECT_EQ(categories.categoryIndex("1234567890123456", true), -1);
    EXPECT_FALSE(categories.dirty());
    EXPECT_EQ(categories.categoryIndex("123456789012345", true), 1);
    EXPECT_EQ(categories.block().data()[2 + 16 + 15], 0); // its NUL
}

TEST_F(PalmCategoriesTest, HasNoRoomWhenAllSixteenAreNamed) {
    PalmCategories categories = categoriesOf(std::vector<std::string>(16, "Named"));
    EXPECT_EQ(categories.categoryIndex("Another", true), -1);
    EXPECT_FALSE(categories.dirty());
}

TEST_F(PalmCategoriesTest, RefusesANameWithoutItsEnd) {
    haveBlock(blockOf({"Unfiled", "1234567890123456"})); // no room for a NUL
    EXPECT_EQ(textRaisedBy([&] { PalmCategories categories(palm); }), "Null terminator not found in string.");
}

TEST_F(PalmCategoriesTest, RefusesABlockThatIsTooShort) {
    haveBlock(std::vector<std::uint8_t>(100));
    EXPECT_EQ(textRaisedBy([&] { PalmCategories categories(palm); }), "Buffer underun.");
    haveBlock({});
    EXPECT_EQ(textRaisedBy([&] { PalmCategories categories(palm); }), "Buffer underun.");
}

} // namespace
} // namespace tsr
