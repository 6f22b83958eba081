#include "state/SyncEntry.h"

#include "support/bytes.h"
#include "support/errors.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::textRaisedBy;
using testing::ElementsAre;

SyncEntry entryOf(std::vector<SyncRecord> records) { return SyncEntry(7, 3, 5, std::move(records), 100, 2); }

TEST(SyncEntry, KeepsWhatItIsBuiltFrom) {
    const SyncEntry entry = entryOf({{0x10, 0xABCD, 0, false}});
    EXPECT_EQ(entry.sequenceNumber(), 7U);
    EXPECT_EQ(entry.category(), 3);
    EXPECT_EQ(entry.userData(), 5);
    EXPECT_FALSE(entry.sendWhole());
    EXPECT_FALSE(entry.isModified());
    EXPECT_FALSE(entry.isMarkedWhole());
    EXPECT_FALSE(entry.hasAttributesChanged());
    EXPECT_EQ(entry.seqNumBlockSuid(), 100);
    EXPECT_EQ(entry.unidIndex(), 2U);
}

TEST(SyncEntry, RefusesAnImpossibleCategoryOrUserData) {
    EXPECT_EQ(textRaisedBy([] { SyncEntry(1, 16, 0, {}, 0, 0); }),
              "The specified Palm category value (16) is not valid.");
    EXPECT_EQ(textRaisedBy([] { SyncEntry(1, 0, 8, {}, 0, 0); }), "Invalid user data for sync entry (8).");
    SyncEntry entry = entryOf({});
    EXPECT_EQ(textRaisedBy([&] { entry.setCategory(255); }),
              "The specified Palm category value (255) is not valid.");
    EXPECT_EQ(textRaisedBy([&] { entry.setUserData(9); }), "Invalid user data for sync entry (9).");
}

TEST(SyncEntry, ChangesEachFlagAlone) {
    SyncEntry entry = entryOf({});
    entry.setSendWhole(true);
    entry.setCategory(15);
    entry.setUserData(7);
    EXPECT_EQ(entry.category(), 15);
    EXPECT_EQ(entry.userData(), 7);
    EXPECT_TRUE(entry.sendWhole());
    entry.setSendWhole(false);
    EXPECT_EQ(entry.category(), 15);
    EXPECT_EQ(entry.userData(), 7);
    entry.setModified();
    EXPECT_FALSE(entry.isMarkedWhole());
    entry.setMarkedWhole();
    EXPECT_FALSE(entry.hasAttributesChanged());
    entry.setAttributesChanged();
    EXPECT_TRUE(entry.isModified());
}

TEST(SyncEntry, SetsARecordByItsTagOrAppendsIt) {
    SyncEntry entry = entryOf({{0x10, 1, 0, true}});
    entry.setRecord(0, 0x11, 2);
    entry.setRecord(5, 0x12, 3);
    EXPECT_THAT(entry.records(), ElementsAre(SyncRecord{0x11, 2, 0, true}, SyncRecord{0x12, 3, 5, false}));
}

TEST(SyncEntry, FindsTheFirstMatchByUidOrTag) {
    SyncEntry entry = entryOf({{0x10, 1, 0, false}, {0x11, 2, 5, false}, {0x11, 3, 5, false}});
    EXPECT_EQ(entry.crcOfUid(0x11), 2U);
    EXPECT_EQ(entry.tagOfUid(0x11), 5U);
    EXPECT_EQ(entry.crcOfTag(5), 2U);
    EXPECT_EQ(entry.uidOfTag(5), 0x11);
    entry.setRecordByUid(0x11, 6, 9);
    EXPECT_EQ(entry.crcOfTag(5), 3U);
    entry.removeRecordByUid(0x11);
    entry.removeRecordByTag(5);
    EXPECT_THAT(entry.records(), ElementsAre(SyncRecord{0x10, 1, 0, false}));
}

TEST(SyncEntry, RaisesForARecordThatItHasNot) {
    SyncEntry entry = entryOf({{0x10, 1, 0, false}});
    const std::function<void()> byUid[] = {
        [&] { entry.setRecordByUid(-17, 0, 0); },
        [&] { entry.removeRecordByUid(-17); },
        [&] { entry.crcOfUid(-17); },
        [&] { entry.tagOfUid(-17); },
    };
    for (const auto& action : byUid) EXPECT_EQ(textRaisedBy(action), "No entry could be found for UID=-17.");
    const std::function<void()> byTag[] = {
        [&] { entry.removeRecordByTag(4); },
        [&] { entry.crcOfTag(4); },
        [&] { entry.uidOfTag(4); },
    };
    for (const auto& action : byTag) EXPECT_EQ(textRaisedBy(action), "No entry could be found for tag=4.");
}

TEST(SyncEntry, ListsItsTagsInOrder) {
    std::vector<std::uint32_t> tags = {99};
    entryOf({{1, 0, 7, false}, {2, 0, 0, false}, {3, 0, 7, false}}).tags(tags);
    EXPECT_THAT(tags, ElementsAre(0, 7, 7));
}

TEST(SyncEntry, DropsRecordsWithoutAUid) {
    SyncEntry entry = entryOf({{0, 0, 0, false}, {2, 0, 1, false}, {0, 0, 2, false}});
    entry.removeZeroUids();
    EXPECT_THAT(entry.records(), ElementsAre(SyncRecord{2, 0, 1, false}));
}

TEST(SyncEntry, TellsWhenItsLastRecordIsDeleted) {
    SyncEntry entry = entryOf({{1, 0, 0, false}, {2, 0, 1, false}});
    EXPECT_FALSE(entry.markRecordDeleted(1));
    EXPECT_FALSE(entry.markRecordDeleted(9));
    EXPECT_TRUE(entry.markRecordDeleted(2));
}

TEST(SyncEntry, MatchesItsCategoryOrNone) {
    const SyncEntry entry = entryOf({});
    EXPECT_TRUE(entry.matches({}));
    EXPECT_TRUE(entry.matches(std::uint8_t{3}));
    EXPECT_FALSE(entry.matches(std::uint8_t{4}));
}

TEST(SyncEntry, WritesItselfAndLeavesHolesForPendingRecords) {
    SyncEntry entry = entryOf({{0x123456, 0xABCD, 0, false}, {-0x777, 0x1234, 0x0102, false}});
    entry.setSendWhole(true);
    entry.setSequenceNumber(0x10007); // 16 bits survive
    PalmRecordBuffer buffer;
    buffer.appendDword(0); // the start of the block
    std::vector<FixupEntry> fixups;
    entry.write(buffer, fixups);
    EXPECT_EQ(
        std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.size()),
        bytes("00 00 00 00 D3 00 07 00 02 12 34 56 00 00 AB CD 00 00 00 01 02 12 34")); // flags: whole, 5, 3
    ASSERT_EQ(fixups.size(), 1U);
    EXPECT_EQ(fixups[0].pendingUid, 0x777U);
    EXPECT_EQ(fixups[0].blockSuid, 0U);
    EXPECT_EQ(fixups[0].offset, 16U);
}

} // namespace
} // namespace tsr
