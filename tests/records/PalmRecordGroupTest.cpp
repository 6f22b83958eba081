#include "records/PalmRecordGroup.h"

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;

class TestRecord : public PalmApplicationRecord {
public:
    TestRecord(std::uint8_t category, std::uint8_t userData)
        : PalmApplicationRecord(false), category_(category), userData_(userData) {}

    std::uint8_t category() const override { return category_; }
    std::string description() const override { return {}; }
    std::uint16_t write(PalmRecordBuffer&) const override { return 0; }
    std::uint8_t syncEntryUserData() const override { return userData_; }

private:
    std::uint8_t category_;
    std::uint8_t userData_;
};

PalmRecordGroup::Member record(std::uint8_t category, std::uint8_t userData = 0) {
    return makeCounted<TestRecord>(category, userData);
}

TEST(PalmRecordGroup, FindsMembersByTag) {
    PalmRecordGroup group;
    const PalmRecordGroup::Member primary = record(3);
    group.set(0, primary);
    EXPECT_TRUE(group.contains(0));
    EXPECT_FALSE(group.contains(5));
    EXPECT_EQ(group.get(0), primary);
    EXPECT_EQ(textRaisedBy([&] { group.get(5); }),
              "The specified tag value (5) was not found in the Palm record group.");
    const PalmRecordGroup::Member other = record(4);
    group.set(0, other);
    EXPECT_EQ(group.get(0), other);
    EXPECT_EQ(group.size(), 1u);
}

TEST(PalmRecordGroup, CountsAndListsNullMembersToo) {
    PalmRecordGroup group;
    group.set(7, record(1));
    group.set(0, nullptr);
    std::vector<std::uint32_t> tags = {99};
    group.tags(tags);
    EXPECT_EQ(tags, (std::vector<std::uint32_t>{0, 7}));
    EXPECT_EQ(group.size(), 2u);
    EXPECT_TRUE(group.contains(0));
    EXPECT_FALSE(group.get(0));
}

TEST(PalmRecordGroup, TakesItsCategoryFromTheFirstRecordThatIsThere) {
    PalmRecordGroup group;
    EXPECT_EQ(group.category(), 0); // empty
    EXPECT_EQ(group.syncEntryUserData(), 0);
    group.set(0, nullptr);
    EXPECT_EQ(group.category(), 0); // all null
    EXPECT_EQ(group.syncEntryUserData(), 0);
    group.set(9, record(2, 1));
    group.set(7, record(5, 6));
    EXPECT_EQ(group.category(), 5);
    EXPECT_EQ(group.syncEntryUserData(), 6);
}

} // namespace
} // namespace tsr
