#include "applications/FreeTimeUser.h"

#include <stdexcept>
#include <vector>

#include "gtest/gtest.h"

namespace tsr {
namespace {

const Date monday(2002, 2, 4);

// The slots of the one week that a span of `minutes` from `start` has touched.
std::vector<std::size_t> slotsOf(const FreeTimeUser& user) {
    std::vector<std::size_t> slots;
    EXPECT_EQ(user.weeks.size(), 1U);
    const FreeTimeWeek& week = user.weeks.begin()->second;
    EXPECT_EQ(week.start, user.weeks.begin()->first);
    for (std::size_t slot = 0; slot < FreeTimeWeek::slotCount; ++slot) {
        if (week.slots[slot]) slots.push_back(slot);
    }
    return slots;
}

TEST(FreeTimeUser, FillsWholeQuartersOfAnHour) {
    const std::tuple<DateTime, std::uint32_t, std::vector<std::size_t>> rows[] = {
        {DateTime(2002, 2, 4, 0, 0, 0), 15, {0}},
        {DateTime(2002, 2, 4, 9, 0, 0), 30, {36, 37}},
        {DateTime(2002, 2, 4, 9, 7, 0), 60, {37, 38, 39}},  // 09:15, 52 minutes left, 45 of them whole
        {DateTime(2002, 2, 4, 9, 7, 59), 60, {37, 38, 39}}, // seconds don't count
        {DateTime(2002, 2, 4, 9, 0, 59), 15, {36}},         // nor do they round up
        {DateTime(2002, 2, 4, 9, 7, 0), 10, {}},            // 2 minutes are left, no quarter
        {DateTime(2002, 2, 4, 9, 7, 0), 22, {}},            // 14 are
        {DateTime(2002, 2, 4, 9, 7, 0), 23, {37}},          // 15 are
        {DateTime(2002, 2, 4, 9, 0, 0), 0, {}},
        {DateTime(2002, 2, 4, 9, 7, 0),
         5,
         {}}, // less than the rounding takes: wraps to an end before the start
        {DateTime(2002, 2, 4, 0, 1, 0), 3, {}},          // likewise, with the end at 0
        {DateTime(2002, 2, 4, 23, 45, 0), 30, {95, 96}}, // runs on into Tuesday
        {DateTime(2002, 2, 4, 23, 50, 0), 25, {96}},     // is rounded into Tuesday
        {DateTime(2002, 2, 6, 12, 0, 0), 15, {2 * 96 + 48}},
        {DateTime(2002, 2, 10, 23, 45, 0), 15, {671}}, // the last one of the week, a Sunday
    };
    for (const auto& [start, minutes, slots] : rows) {
        SCOPED_TRACE(testing::Message() << start << " for " << minutes);
        FreeTimeUser user;
        user.addFreeTime(start, minutes);
        EXPECT_EQ(user.weeks.begin()->first, monday);
        EXPECT_EQ(slotsOf(user), slots);
    }
}

TEST(FreeTimeUser, HasAWeekForEachMonday) {
    FreeTimeUser user;
    user.addFreeTime(DateTime(2002, 2, 11, 8, 0, 0), 15);
    user.addFreeTime(DateTime(2002, 2, 10, 8, 0, 0), 15);
    user.addFreeTime(DateTime(2002, 2, 17, 8, 0, 0), 15);
    ASSERT_EQ(user.weeks.size(), 2U);
    EXPECT_EQ(user.weeks.begin()->first, monday);
    EXPECT_EQ(user.weeks.rbegin()->first, Date(2002, 2, 11));
}

TEST(FreeTimeUser, KeepsTheRecordOfAWeekThatItKnows) {
    FreeTimeUser user;
    user.weeks[monday] = {monday, {}, 0x1234, 9};
    user.addFreeTime(DateTime(2002, 2, 4, 0, 0, 0), 15);
    EXPECT_EQ(user.weeks[monday].recordId, 9U);
    EXPECT_EQ(user.weeks[monday].crc, 0x1234U);
    EXPECT_TRUE(user.weeks[monday].slots[0]);
}

TEST(FreeTimeUser, NotesTheEarliestWeekThatWasTouched) {
    FreeTimeUser user;
    EXPECT_EQ(user.earliest, Date(2999, 12, 31));
    user.addFreeTime(DateTime(2002, 2, 13, 8, 0, 0), 1); // no slot, and yet a touch
    EXPECT_EQ(user.earliest, Date(2002, 2, 11));
    user.addFreeTime(DateTime(2002, 2, 10, 8, 0, 0), 15);
    EXPECT_EQ(user.earliest, monday);
    user.addFreeTime(DateTime(2002, 2, 20, 8, 0, 0), 15);
    EXPECT_EQ(user.earliest, monday);
}

TEST(FreeTimeUser, RaisesForASpanPastItsWeekWhenItHasEnteredTheRest) {
    const std::pair<DateTime, std::uint32_t> rows[] = {
        {DateTime(2002, 2, 10, 23, 30, 0), 45},         // a quarter too long
        {DateTime(2002, 2, 10, 23, 30, 0), 4294960000}, // and more than a lifetime
    };
    for (const auto& [start, minutes] : rows) {
        SCOPED_TRACE(minutes);
        FreeTimeUser user;
        EXPECT_THROW(user.addFreeTime(start, minutes), std::out_of_range);
        EXPECT_EQ(user.earliest, monday);
        EXPECT_EQ(slotsOf(user), (std::vector<std::size_t>{670, 671}));
    }
}

TEST(FreeTimeUser, RaisesForAStartThatIsRoundedOutOfItsWeek) {
    FreeTimeUser user;
    EXPECT_THROW(user.addFreeTime(DateTime(2002, 2, 10, 23, 50, 0), 25), std::out_of_range);
    EXPECT_EQ(slotsOf(user), std::vector<std::size_t>());
}

} // namespace
} // namespace tsr
