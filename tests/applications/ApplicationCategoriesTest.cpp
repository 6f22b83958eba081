#include "applications/ApplicationCategories.h"

#include <sstream>

#include "support/AttachedHandheldTest.h"
#include "support/errors.h"

namespace tsr {
namespace {

using test::textRaisedBy;
using EmptyNames = ApplicationCategories::EmptyNames;
using Strings = std::vector<std::string>;

constexpr std::uint32_t memoCreator = 0x6D656D6F;
constexpr std::uint32_t dataType = 0x44415441;

// An application info block with these names, then the byte 0xAA.
std::vector<std::uint8_t> blockOf(const Strings& names) {
    std::vector<std::uint8_t> block(2 + 16 * 16);
    for (std::size_t slot = 0; slot < names.size(); ++slot) {
        std::copy(names[slot].begin(), names[slot].end(),
                  block.begin() + static_cast<std::ptrdiff_t>(2 + 16 * slot));
    }
    block.push_back(0xAA);
    return block;
}

class ApplicationCategoriesTest : public test::AttachedHandheldTest {
protected:
    ApplicationCategoriesTest() {
        database.setAppInfo(blockOf({"Unfiled", "Home", "Work"}));
        palm->setApplication("Memo Pad", memoCreator, "MemoDB", dataType, 0x54535241, "MemoSync", 0x4D454D4F);
    }

    void fillTable() {
        Strings names = {"Unfiled", "Home", "Work"};
        for (char letter = 'a'; names.size() < 16; ++letter) names.emplace_back(1, letter);
        database.setAppInfo(blockOf(names));
    }

    std::uint64_t reads() const { return handheldFunctionCallCount("SyncReadDBAppInfoBlock"); }

    HandheldDatabase& database = handheld.create("MemoDB", dataType, memoCreator);
    CountedPtr<PalmProxy> palm = makeCounted<PalmProxy>(nullptr);
    std::ostringstream log;
    ApplicationCategories categories{palm, log};
};

TEST_F(ApplicationCategoriesTest, ARecordHasOneName) {
    EXPECT_EQ(categories.names(2), Strings{"Work"});
    EXPECT_EQ(categories.names(15), Strings{""}); // a slot without a name
    EXPECT_EQ(textRaisedBy([&] { categories.names(16); }),
              "The specified Palm category value (16) is not valid.");
}

TEST_F(ApplicationCategoriesTest, CategoryZeroIsNoneAndNeedsNoTable) {
    EXPECT_EQ(categories.names(0), Strings{""});
    EXPECT_EQ(categories.category({}, EmptyNames::Take), 0);
    EXPECT_EQ(categories.category({"", ""}, EmptyNames::Skip), 0);
    EXPECT_EQ(reads(), 0u);
    EXPECT_EQ(log.str(), "");
}

TEST_F(ApplicationCategoriesTest, ReadsTheTableOnce) {
    categories.names(1);
    categories.names(2);
    EXPECT_EQ(categories.category({"Home"}, EmptyNames::Take), 1);
    EXPECT_EQ(reads(), 1u);
    EXPECT_EQ(log.str(), "#t Getting application database info\n");
    EXPECT_FALSE(categories.appInfoToWrite()); // nothing was added
}

TEST_F(ApplicationCategoriesTest, TakesTheFirstNameThatFits) {
    const struct {
        Strings names;
        EmptyNames emptyNames;
        int category;
    } rows[] = {
        {{"Work", "Home"}, EmptyNames::Take, 2},
        {{"Sixteen letters!", "Home"}, EmptyNames::Take, 1}, // too long for the handheld
        {{"", "Home"}, EmptyNames::Skip, 1},
        {{"", "Home"}, EmptyNames::Take, 3}, // the first free slot
        {{"Sixteen letters!"}, EmptyNames::Take, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.names));
        EXPECT_EQ(ApplicationCategories(palm, log).category(row.names, row.emptyNames), row.category);
    }
}

TEST_F(ApplicationCategoriesTest, AddsANameToAFreeSlot) {
    EXPECT_EQ(categories.category({"Shops", "Home"}, EmptyNames::Take), 3);
    EXPECT_EQ(categories.names(3), Strings{"Shops"});
    const CountedPtr<PalmRecordBuffer> block = categories.appInfoToWrite();
    ASSERT_TRUE(block);
    EXPECT_EQ(std::vector<std::uint8_t>(block->data(), block->data() + block->size()),
              blockOf({"Unfiled", "Home", "Work", "Shops"}));
}

TEST_F(ApplicationCategoriesTest, TriesTheNextNameWhenTheTableIsFull) {
    fillTable();
    EXPECT_EQ(categories.category({"Shops", "Home"}, EmptyNames::Take), 1);
    EXPECT_EQ(categories.category({"Shops", "Garden"}, EmptyNames::Take), 0);
    EXPECT_EQ(categories.category({""}, EmptyNames::Take), 0);
    EXPECT_FALSE(categories.appInfoToWrite());
}

} // namespace
} // namespace tsr
