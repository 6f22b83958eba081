#include "hotsync/Traffic.h"

#include "support/bytes.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

const HotSyncApplication& memo() { return *findHotSyncApplication("memo"); }

// A handheld whose sync database knows the items 1, 2, ... at the sequence number 5, one record each: 0x11,
// 0x12, ...
class TrafficTest : public testing::Test {
protected:
    TrafficTest() {
        before.create("MemoDB", memo().type, memo().creator);
        before.create("MemoSync", memo().syncType, 0x54535241);
        setItems(before, {{1, 5, 0x11}, {2, 5, 0x12}});
        setMemo(before, 0x11, "41 00");
        setMemo(before, 0x12, "42 00");
        after = before;
    }

    struct Item {
        int number;
        int sequence;
        int uid;
    };

    static std::string pair(int value) {
        char text[4];
        std::snprintf(text, sizeof text, "%02X", value & 0xFF);
        return text;
    }

    static void setItems(Handheld& handheld, const std::vector<Item>& items) {
        std::string unids =
            "00 01 23 45 67 89 AB CD EF 00 " + pair(static_cast<int>(items.size())) + " 00 00";
        std::string numbers = "00 00 00 0A";
        for (std::size_t index = 0; index < items.size(); ++index) {
            unids += " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 " + pair(items[index].number);
            numbers += " 00 " + pair(static_cast<int>(index)) + " 00 00 " + pair(items[index].sequence)
                     + " 00 01 00 00 " + pair(items[index].uid) + " 00 00 AB CD";
        }
        HandheldDatabase& database = *handheld.find("MemoSync");
        database.writeRecord(0xA, 1, false, test::bytes(unids));
        database.writeRecord(0xB, 2, false, test::bytes(numbers));
    }

    static void setMemo(Handheld& handheld, std::uint32_t uid, const std::string& pairs) {
        handheld.find("MemoDB")->writeRecord(uid, 0, false, test::bytes(pairs));
    }

    Traffic traffic() const { return trafficOf(memo(), before, after); }

    Handheld before;
    Handheld after;
};

TEST_F(TrafficTest, IsNothingWhenNothingMoved) {
    EXPECT_EQ(traffic(), Traffic());
    EXPECT_EQ(traffic().text(),
              "to Notes 0 new, 0 changed, 0 deleted; to the handheld 0 new, 0 changed, 0 deleted");
}

TEST_F(TrafficTest, TellsNewItemsByWhoHadThemFirst) {
    setMemo(before, 0x13, "43 00"); // the user's own
    setMemo(after, 0x13, "43 00");
    setMemo(after, 0x14, "44 00"); // came with the session
    setItems(after, {{1, 5, 0x11}, {2, 5, 0x12}, {3, 1, 0x13}, {4, 1, 0x14}});
    EXPECT_EQ(traffic(), (Traffic{{1, 0, 0}, {1, 0, 0}}));
}

TEST_F(TrafficTest, TellsChangesByWhetherTheRecordMoved) {
    setMemo(after, 0x11, "61 00"); // Notes' change
    setItems(after, {{1, 6, 0x11}, {2, 6, 0x12}});
    EXPECT_EQ(traffic(), (Traffic{{0, 1, 0}, {0, 1, 0}}));
}

TEST_F(TrafficTest, TellsDeletionsByWhoDeletedFirst) {
    before.find("MemoDB")->deleteRecord(0x11); // by the user
    after.find("MemoDB")->eraseRecord(0x11);
    after.find("MemoDB")->eraseRecord(0x12); // by Notes
    setItems(after, {});
    EXPECT_EQ(traffic(), (Traffic{{0, 0, 1}, {0, 0, 1}}));
}

TEST_F(TrafficTest, CountsARecordUnderANewIdentityAsSent) {
    setMemo(after, 0x15, "45 00"); // Notes' own version comes as a new record
    setItems(after, {{9, 1, 0x11}, {2, 5, 0x12}, {1, 6, 0x15}});
    EXPECT_EQ(traffic(), (Traffic{{0, 1, 0}, {0, 1, 0}}));
}

TEST_F(TrafficTest, LeavesOutWhatDoesNotParse) {
    after.find("MemoSync")->writeRecord(0xB, 2, false, test::bytes("00 00 00 0A 00 00 00"));
    after.find("MemoSync")->writeRecord(0xA, 1, false, test::bytes("00 01"));
    EXPECT_EQ(traffic().toNotes.added, 0U);
}

TEST_F(TrafficTest, CountsWeeksOfTheFreeTimeSearch) {
    const HotSyncApplication& freeTime = *findHotSyncApplication("freetime");
    for (Handheld* handheld : {&before, &after}) {
        handheld->create("VellumFreetime", freeTime.type, freeTime.creator);
        handheld->find("VellumFreetime")->writeRecord(1, 4, false, {1});
    }
    before.find("VellumFreetime")->writeRecord(2, 4, false, {2});
    before.find("VellumFreetime")->writeRecord(3, 4, false, {3});
    after.find("VellumFreetime")->writeRecord(2, 4, false, {9});
    after.find("VellumFreetime")->writeRecord(4, 4, false, {4});
    after.find("VellumFreetime")->writeRecord(5, 2, false, {5}); // the CRC record is no week
    EXPECT_EQ(trafficOf(freeTime, before, after), (Traffic{{0, 0, 0}, {1, 1, 1}}));
}

} // namespace
} // namespace tsr
