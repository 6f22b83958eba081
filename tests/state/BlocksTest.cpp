#include "foundation/GeneralError.h"
#include "state/SeqNumBlock.h"
#include "state/UnidBlock.h"
#include "state/UnidBlockLocator.h"
#include "support/errors.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;

const Unid unid("00112233445566778899aabbccddeeff");

std::uint32_t indexAddedTo(const std::vector<std::uint32_t>& indexes) {
    UnidBlock block{Dbid()};
    for (const std::uint32_t index : indexes) block.addUnidAt(index, unid);
    return block.addUnid(unid);
}

TEST(UnidBlock, ChoosesAnIndexThatKeepsRunsFew) {
    const std::pair<std::vector<std::uint32_t>, std::uint32_t> rows[] = {
        {{}, 0},
        {{0, 1}, 2},        // no gap, and nothing below 0
        {{3, 4}, 2},        // no gap: before the lowest
        {{0, 1, 5, 7}, 6},  // the gap of 2 beats the gap of 4
        {{0, 2, 4}, 1},     // of equal gaps the first
        {{0, 255}, 1},      // a gap, however wide
        {{10, 20, 25}, 21}, // the narrower one, though it isn't the first
    };
    for (const auto& [indexes, expected] : rows) EXPECT_EQ(indexAddedTo(indexes), expected);
}

TEST(UnidBlock, IsDirtyAndFullInItsTime) {
    UnidBlock block{Dbid()};
    EXPECT_FALSE(block.dirty);
    for (int count = 0; count < 255; ++count) block.addUnid(unid);
    EXPECT_TRUE(block.dirty);
    EXPECT_FALSE(block.isFull());
    EXPECT_EQ(block.addUnid(unid), 255U);
    EXPECT_TRUE(block.isFull());
}

TEST(UnidBlock, RefusesAnIndexTwice) {
    UnidBlock block{Dbid()};
    block.addUnidAt(3, unid);
    EXPECT_EQ(
        textRaisedBy([&] { block.addUnidAt(3, unid); }),
        "The specified index 3 for UNID=00112233445566778899aabbccddeeff already exists in the UNID block.");
}

TEST(UnidBlock, RaisesForAnIndexThatItHasNot) {
    EXPECT_EQ(textRaisedBy([] { UnidBlock{Dbid()}.unidAt(9); }), "UNID block index 9 is invalid.");
}

TEST(SeqNumBlock, KeepsIndexesInTheOrderOfAdding) {
    SeqNumBlock block(5);
    block.addIndex(7);
    block.addIndex(2);
    block.addIndex(7);
    block.removeIndex(7);
    EXPECT_THAT(block.indexes(), testing::ElementsAre(2, 7));
    EXPECT_TRUE(block.dirty);
    block.dirty = false;
    EXPECT_EQ(textRaisedBy([&] { block.removeIndex(9); }),
              "Cannot find UNID block index 9 in sequence number block with UNID block SUID=5.");
    EXPECT_FALSE(block.dirty);
}

TEST(SeqNumBlock, IsFullAtFifteen) {
    SeqNumBlock block(5);
    for (std::uint32_t index = 0; index < 14; ++index) block.addIndex(index);
    EXPECT_FALSE(block.isFull());
    block.addIndex(14);
    EXPECT_TRUE(block.isFull());
}

TEST(UnidBlockLocator, OrdersNewBlocksBehindThoseOnTheDevice) {
    const UnidBlockLocator onDevice{0x123, 5};
    const UnidBlockLocator fresh{static_cast<std::uint32_t>(-1), 0};
    EXPECT_LT(onDevice, fresh);
    EXPECT_LT((UnidBlockLocator{0x123, 4}), onDevice);
}

} // namespace
} // namespace tsr
