#include "tessera/freeTime.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 24 * hour;
constexpr std::int64_t monday = 1012780800; // 2002-02-04 00:00 UTC

const ZoneRule utc;

User utcUser() {
    User user;
    user.name = "Ann";
    return user;
}

Span at(std::int64_t start, double fromHour, double toHour) {
    return {start + static_cast<std::int64_t>(fromHour * hour),
            start + static_cast<std::int64_t>(toHour * hour)};
}

TEST(FreeTime, IsTheWorkingHoursOfAnEmptyCalendar) {
    EXPECT_EQ(freeSpans(utcUser(), {}, utc, monday, 2),
              (std::vector{at(monday, 9, 17), at(monday + day, 9, 17)}));
}

TEST(FreeTime, StartsWithTheWholeDayOfNow) {
    EXPECT_EQ(freeSpans(utcUser(), {}, utc, monday + 23 * hour, 1), std::vector{at(monday, 9, 17)});
    EXPECT_TRUE(freeSpans(utcUser(), {}, utc, monday, 0).empty());
}

TEST(FreeTime, LeavesOutTheDaysOff) {
    EXPECT_TRUE(freeSpans(utcUser(), {}, utc, monday + 5 * day, 2).empty()); // Saturday and Sunday
    User user = utcUser();
    user.hours.days = {false, false, false, false, false, true, false};
    EXPECT_EQ(freeSpans(user, {}, utc, monday, 7), std::vector{at(monday + 5 * day, 9, 17)});
}

TEST(FreeTime, TakesMeetingsOut) {
    struct Row {
        const char* reason;
        std::vector<Span> busy;
        std::vector<Span> free;
    };
    const Row rows[] = {
        {"in the middle", {at(monday, 12, 13)}, {at(monday, 9, 12), at(monday, 13, 17)}},
        {"at the start", {at(monday, 9, 10)}, {at(monday, 10, 17)}},
        {"at the end", {at(monday, 16, 17)}, {at(monday, 9, 16)}},
        {"over the start", {at(monday, 8, 10)}, {at(monday, 10, 17)}},
        {"over the end", {at(monday, 16, 20)}, {at(monday, 9, 16)}},
        {"the whole day", {at(monday, 0, 24)}, {}},
        {"exactly the hours", {at(monday, 9, 17)}, {}},
        {"before and after", {at(monday, 7, 9), at(monday, 17, 18)}, {at(monday, 9, 17)}},
        {"out of order", {at(monday, 15, 16), at(monday, 9, 11)}, {at(monday, 11, 15), at(monday, 16, 17)}},
        {"one within another",
         {at(monday, 10, 15), at(monday, 11, 12)},
         {at(monday, 9, 10), at(monday, 15, 17)}},
        {"overlapping", {at(monday, 10, 12), at(monday, 11, 14)}, {at(monday, 9, 10), at(monday, 14, 17)}},
        {"of no length", {at(monday, 12, 12)}, {at(monday, 9, 17)}},
        {"of days", {at(monday - 3 * day, 0, 24 * 9)}, {}},
        {"of seconds",
         {{monday + 12 * hour - 10, monday + 13 * hour + 10}},
         {{monday + 9 * hour, monday + 12 * hour - 60}, {monday + 13 * hour + 60, monday + 17 * hour}}},
        {"but half a minute", {at(monday, 9, 12), {monday + 12 * hour + 30, monday + 17 * hour}}, {}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(freeSpans(utcUser(), row.busy, utc, monday, 1), row.free) << row.reason;
    }
}

TEST(FreeTime, FollowsTheClockOfTheUser) {
    User user = utcUser();
    user.zone = ZoneRule("CET-1CEST,M3.5.0,M10.5.0/3");
    user.hours.days.fill(true);
    const std::int64_t march30 = 1017446400; // 2002, the day before daylight saving starts
    EXPECT_EQ(freeSpans(user, {}, user.zone, march30, 2),
              (std::vector{at(march30, 8, 16), at(march30 + day, 7, 15)}));
    // In Berlin it is Tuesday already.
    EXPECT_EQ(freeSpans(user, {}, user.zone, monday + 23 * hour, 1), std::vector{at(monday + day, 8, 16)});
}

TEST(FreeTime, IsCutAtTheMidnightsOfTheAsker) {
    User user = utcUser();
    const ZoneRule sydney("AEST-11"); // its midnight is 13:00 UTC
    EXPECT_EQ(freeSpans(user, {}, sydney, monday, 1), (std::vector{at(monday, 9, 13), at(monday, 13, 17)}));
    const ZoneRule auckland("NZDT-13"); // 11:00 UTC, where the meeting ends
    EXPECT_EQ(freeSpans(user, {at(monday, 10, 11)}, auckland, monday, 1),
              (std::vector{at(monday, 9, 10), at(monday, 11, 17)}));
}

TEST(FreeTime, MayFillTheDay) {
    User user = utcUser();
    user.hours.startMinute = 0;
    user.hours.endMinute = 24 * 60;
    EXPECT_EQ(freeSpans(user, {}, utc, monday, 2), (std::vector{at(monday, 0, 24), at(monday + day, 0, 24)}));
}

} // namespace
} // namespace tsr
