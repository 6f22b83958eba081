#include "handheld/RecordList.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

HandheldRecord record(std::uint32_t id) { return {id, 0, 0, {static_cast<std::uint8_t>(id)}}; }

RecordList listOf(std::uint32_t count) {
    RecordList list;
    for (std::uint32_t id = 1; id <= count; ++id) list.append(record(id));
    return list;
}

TEST(RecordList, FindsByIdAndByIndex) {
    const RecordList list = listOf(20);
    for (std::uint32_t id = 1; id <= 20; ++id) {
        SCOPED_TRACE(id);
        EXPECT_EQ(list.find(id)->id, id);
        EXPECT_EQ(list.at(id - 1).id, id);
        EXPECT_EQ(list.indexOf(id), id - 1);
    }
    EXPECT_EQ(list.find(21), nullptr);
}

TEST(RecordList, ErasingClosesTheGapInTheIndexes) {
    RecordList list = listOf(5);
    EXPECT_TRUE(list.erase(2));
    EXPECT_FALSE(list.erase(2));
    EXPECT_EQ(list.size(), 4U);
    EXPECT_EQ(list.at(0).id, 1U);
    EXPECT_EQ(list.at(1).id, 3U);
    EXPECT_EQ(list.at(3).id, 5U);
    EXPECT_EQ(list.indexOf(5), 3U);
    list.append(record(9));
    EXPECT_EQ(list.at(4).id, 9U);
}

// Enough of them to pass several levels of the tree and to drop empty slots on the way.
TEST(RecordList, KeepsOrderWhileMostOfItIsErased) {
    RecordList list = listOf(1000);
    for (std::uint32_t id = 1; id <= 1000; ++id) {
        if (id % 10 != 0) list.erase(id);
    }
    ASSERT_EQ(list.size(), 100U);
    for (std::uint32_t index = 0; index < 100; ++index) {
        SCOPED_TRACE(index);
        EXPECT_EQ(list.at(index).id, 10 * (index + 1));
        EXPECT_EQ(list.indexOf(10 * (index + 1)), index);
    }
}

TEST(RecordList, FindsTheNextWantedFromAnIndex) {
    RecordList list = listOf(6);
    list.erase(1);
    const auto even = [](const HandheldRecord& candidate) { return candidate.id % 2 == 0; };
    std::size_t index = 1; // record 3
    EXPECT_EQ(list.findFrom(index, even)->id, 4U);
    EXPECT_EQ(index, 2U);
    index = 4; // record 6
    EXPECT_EQ(list.findFrom(index, even)->id, 6U);
    index = 5;
    EXPECT_EQ(list.findFrom(index, even), nullptr);
}

TEST(RecordList, IsEqualByContent) {
    RecordList longer = listOf(3);
    longer.erase(3);
    EXPECT_EQ(longer, listOf(2));
    EXPECT_FALSE(longer == listOf(3));
}

} // namespace
} // namespace tsr
