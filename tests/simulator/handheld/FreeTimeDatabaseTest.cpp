#include "handheld/FreeTimeDatabase.h"

#include <gtest/gtest.h>
#include <sstream>

#include "handheld/HandheldError.h"
#include "handheld/freeTimeGrid.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;

// A week record of the colleague with id 2 for the week of Monday 2002-02-04: year 98, month 2, day 4, which
// packs to 98 * 512 + 2 * 32 + 4 = 0xC444.
std::vector<std::uint8_t> weekRecord(std::initializer_list<std::size_t> freeSlots) {
    std::vector<std::uint8_t> data = bytes("00 00 00 02 C4 44");
    data.resize(6 + 84);
    for (std::size_t slot : freeSlots) {
        data[6 + slot / 8] = static_cast<std::uint8_t>(data[6 + slot / 8] | 1 << (7 - slot % 8));
    }
    return data;
}

class FreeTimeTest : public testing::Test {
protected:
    FreeTimeTest() {
        FreeTimeDatabase::create(handheld_);
        FreeTimeDatabase(handheld_).add("Alice"); // record 2, behind the search configuration
    }
    HandheldDatabase& database() { return *handheld_.find("VellumFreetime"); }

    Handheld handheld_;
};

TEST_F(FreeTimeTest, WritesTheRecordsThatTheConduitReads) {
    EXPECT_EQ(database().header().type, 0x46524545U);
    EXPECT_EQ(database().header().creator, 0x54535241U);
    EXPECT_EQ(*database().records().find(1), (HandheldRecord{1, 0x40, 1, bytes("00 0E 00")}));
    EXPECT_EQ(*database().records().find(2), (HandheldRecord{2, 0x40, 3, bytes("00 41 6C 69 63 65 00")}));
    FreeTimeDatabase(handheld_).setSearchLength(258);
    EXPECT_EQ(database().records().find(1)->data, bytes("01 02 00"));
}

TEST_F(FreeTimeTest, KeepsAListOfColleagues) {
    FreeTimeDatabase freeTime(handheld_);
    EXPECT_THROW(freeTime.add("Alice"), HandheldError);
    EXPECT_THROW(freeTime.add(""), HandheldError);
    EXPECT_THROW(freeTime.remove("Bob"), HandheldError);
    freeTime.add("Bob");
    freeTime.remove("Alice");
    const std::vector<Colleague> left = freeTime.colleagues();
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].name, "Bob");
    EXPECT_EQ(left[0].id, 3U);
    EXPECT_FALSE(database().records().contains(2)); // without a trace
}

TEST_F(FreeTimeTest, ReadsWeeksByDate) {
    database().putRecord({8, 0, 4, weekRecord({})});
    std::vector<std::uint8_t> earlier = weekRecord({});
    earlier[5] = 0x3C; // 2002-01-28: 98 * 512 + 1 * 32 + 28 = 0xC43C
    database().putRecord({9, 0, 4, earlier});
    const std::vector<Colleague> colleagues = FreeTimeDatabase(handheld_).colleagues();
    ASSERT_EQ(colleagues.size(), 1U);
    ASSERT_EQ(colleagues[0].weeks.size(), 2U);
    EXPECT_EQ(dateText(colleagues[0].weeks[0].start), "2002-01-28");
    EXPECT_EQ(dateText(colleagues[0].weeks[1].start), "2002-02-04");
}

TEST_F(FreeTimeTest, ShowsWeeksThatOutliveTheirColleague) {
    database().putRecord({8, 0, 4, weekRecord({})});
    FreeTimeDatabase(handheld_).remove("Alice");
    const std::vector<Colleague> colleagues = FreeTimeDatabase(handheld_).colleagues();
    ASSERT_EQ(colleagues.size(), 1U);
    EXPECT_EQ(colleagues[0].name, "");
}

TEST_F(FreeTimeTest, RefusesDamagedRecords) {
    std::vector<std::uint8_t> noDay = weekRecord({});
    noDay[5] = 0x40; // day 0
    std::vector<std::uint8_t> cut = weekRecord({});
    cut.pop_back();
    for (const HandheldRecord& record : {HandheldRecord{8, 0, 4, noDay}, HandheldRecord{8, 0, 4, cut},
                                         HandheldRecord{8, 0, 3, bytes("00 41")}}) {
        Handheld handheld = handheld_;
        handheld.find("VellumFreetime")->putRecord(record);
        EXPECT_THROW(FreeTimeDatabase(handheld).colleagues(), HandheldError);
    }
}

TEST_F(FreeTimeTest, NeedsItsDatabase) {
    Handheld empty;
    EXPECT_THROW(FreeTimeDatabase{empty}, HandheldError);
}

TEST_F(FreeTimeTest, DrawsAnHalfHourForEachCharacter) {
    // Monday 00:00 and 00:15; Tuesday 09:00 (slot 96 + 36) and 09:45; Sunday 23:45, the last of all.
    database().putRecord({8, 0, 4, weekRecord({0, 1, 132, 135, 671})});
    const Colleague colleague = FreeTimeDatabase(handheld_).colleagues().front();
    const std::string none(48, '.');
    std::string monday = none;
    monday[0] = '#';
    std::string tuesday = none;
    tuesday[18] = '<';
    tuesday[19] = '>';
    std::string sunday = none;
    sunday[47] = '>';
    std::ostringstream out;
    drawFreeTime(out, colleague, true);
    EXPECT_EQ(out.str(), "Alice\n"
                         "  week of 2002-02-04\n"
                         "      00  02  04  06  08  10  12  14  16  18  20  22\n"
                         "  Mon "
                             + monday
                             + "\n"
                               "  Tue "
                             + tuesday
                             + "\n"
                               "  Wed "
                             + none
                             + "\n"
                               "  Thu "
                             + none
                             + "\n"
                               "  Fri "
                             + none
                             + "\n"
                               "  Sat "
                             + none
                             + "\n"
                               "  Sun "
                             + sunday + "\n");
    std::ostringstream blocks;
    drawFreeTime(blocks, colleague, false);
    EXPECT_NE(blocks.str().find("Mon █·"), std::string::npos);
    EXPECT_NE(blocks.str().find("·▌▐·"), std::string::npos);
}

TEST_F(FreeTimeTest, SpansRunOnOverMidnight) {
    // Monday 23:30 to Tuesday 00:30, and Sunday 23:45 to the end of the week.
    database().putRecord({8, 0, 4, weekRecord({94, 95, 96, 97, 671})});
    const FreeWeek week = FreeTimeDatabase(handheld_).colleagues().front().weeks.front();
    const std::vector<std::pair<std::size_t, std::size_t>> spans = {{94, 98}, {671, 672}};
    EXPECT_EQ(freeSpans(week), spans);
    EXPECT_EQ(slotText(week, 94), "2002-02-04T23:30");
    EXPECT_EQ(slotText(week, 98), "2002-02-05T00:30");
    EXPECT_EQ(slotText(week, 672), "2002-02-11T00:00");
}

} // namespace
} // namespace tsr
