#include "tessera/meetingOccurrences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tsr {
namespace {

using namespace std::chrono;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Unit = RepeatRule::Unit;

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 24 * hour;
constexpr std::int64_t midnight = 20780 * day; // 2026-11-23, a Monday
constexpr sys_days monday{days(20780)};

const ZoneRule berlin("CET-1CEST,M3.5.0,M10.5.0/3");

// Mondays at 10:00, without the 30th, and two days later in the week of 7 December.
Meeting weekly() {
    Meeting meeting{"Team", midnight + 9 * hour, 60, false};
    MeetingPattern& pattern = meeting.pattern.emplace();
    pattern.rule.unit = Unit::Week;
    pattern.rule.daysOfWeek = 2;
    pattern.start = midnight + 10 * hour;
    pattern.deletions = {monday + days(7)};
    EventException moved;
    moved.patternDate = monday + days(14);
    moved.start = midnight + 16 * day + 11 * hour;
    moved.subject = "Moved";
    moved.minutes = 30;
    pattern.exceptions = {moved};
    return meeting;
}

std::vector<std::int64_t> starts(const Meeting& meeting, const DateWindow& window) {
    std::vector<std::int64_t> starts;
    for (const auto& each : occurrences(meeting, berlin, window)) starts.push_back(each.start - midnight);
    return starts;
}

TEST(MeetingOccurrences, AreTheMeetingWhenItDoesNotRepeat) {
    const Meeting late{"Late", midnight + 22 * hour, 120, false}; // 23:00 to 01:00 in Berlin
    EXPECT_THAT(starts(late, {monday, monday}), ElementsAre(23 * hour));
    EXPECT_THAT(starts(late, {monday + days(1), monday + days(1)}), ElementsAre(23 * hour));
    EXPECT_THAT(starts(late, {monday + days(2), monday + days(9)}), IsEmpty());
    const Meeting untilMidnight{"", midnight + 22 * hour, 60, false};
    EXPECT_THAT(starts(untilMidnight, {monday + days(1), monday + days(1)}), IsEmpty());
    const Meeting momentary{"", midnight - hour, 0, false}; // of no length, at midnight
    EXPECT_THAT(starts(momentary, {monday, monday}), ElementsAre(0));
    EXPECT_THAT(starts(momentary, {monday - days(1), monday - days(1)}), IsEmpty());
}

TEST(MeetingOccurrences, AreThoseOfTheRuleWithoutDeletionsAndWithExceptions) {
    const auto found = occurrences(weekly(), berlin, {monday, monday + days(21)});
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found[0], (MeetingOccurrence{monday, midnight + 10 * hour, 60, false, "Team", ""}));
    EXPECT_EQ(found[1].start, midnight + 21 * day + 10 * hour);
    EXPECT_EQ(found[2], (MeetingOccurrence{monday + days(14), midnight + 16 * day + 11 * hour, 30, false,
                                           "Moved", ""}));
}

TEST(MeetingOccurrences, OfSeveralDaysBeginBeforeTheWindow) {
    Meeting trip{"Trip", midnight - hour, 3 * 1440, true};
    trip.pattern.emplace().start = midnight;
    trip.pattern->rule.unit = Unit::Week;
    trip.pattern->rule.daysOfWeek = 2;
    EXPECT_THAT(starts(trip, {monday + days(9), monday + days(9)}), ElementsAre(7 * day)); // a Wednesday
    EXPECT_THAT(starts(trip, {monday + days(10), monday + days(10)}), IsEmpty());
}

TEST(TakesPlace, OnTheDaysOfTheWindow) {
    const Properties properties = toProperties(weekly());
    EXPECT_TRUE(takesPlace(properties, {monday, monday}, berlin));
    EXPECT_FALSE(takesPlace(properties, {monday + days(1), monday + days(6)}, berlin));
    EXPECT_TRUE(takesPlace(properties, {monday + days(7), monday + days(7)}, berlin));   // deleted
    EXPECT_TRUE(takesPlace(properties, {monday + days(14), monday + days(15)}, berlin)); // moved away
    EXPECT_TRUE(takesPlace(properties, {monday + days(16), monday + days(16)}, berlin));
    EXPECT_TRUE(takesPlace(properties, {monday + days(1), monday + days(5000)}, berlin));
    EXPECT_FALSE(takesPlace(properties, {monday + days(7), monday}, berlin)); // no day at all
    EXPECT_FALSE(takesPlace({}, {monday, monday}, berlin));
}

TEST(WithInstances, NumbersTheOrdinaryDaysFromZero) {
    Properties properties = withInstances(toProperties(weekly()), {monday + days(1), monday + days(28)});
    EXPECT_EQ(properties["InstanceCount"], std::vector<std::string>{"2"});
    // 21 and 28 days of 1,440 minutes behind the first, 223998360.
    EXPECT_EQ(properties["Instance.0.Date"], std::vector<std::string>{"224028600"});
    EXPECT_EQ(properties["Instance.1.Date"], std::vector<std::string>{"224038680"});
    EXPECT_FALSE(properties.contains("Instance.2.Date"));
}

TEST(WithInstances, GivesAllDaysOfARuleThatEnds) {
    Meeting meeting = weekly();
    meeting.pattern->rule.until = monday + days(20);
    const Properties properties =
        withInstances(toProperties(meeting), {monday + days(900), monday + days(901)});
    EXPECT_EQ(firstValue(properties, "InstanceCount"), "1");
    EXPECT_EQ(firstValue(properties, "Instance.0.Date"), "223998360");
}

TEST(WithInstances, GivesOneThousandAtMost) {
    Meeting meeting{"Daily", midnight, 60, false};
    meeting.pattern.emplace().start = midnight;
    const DateWindow window{monday, monday + days(2000)};
    EXPECT_EQ(firstValue(withInstances(toProperties(meeting), window), "InstanceCount"), "1000");
    meeting.pattern->deletions.insert(monday);
    EXPECT_EQ(firstValue(withInstances(toProperties(meeting), window), "InstanceCount"), "1000");
}

TEST(WithInstances, LeavesAMeetingThatDoesNotRepeat) {
    const Properties properties = toProperties({"Once", midnight, 60, false});
    EXPECT_EQ(withInstances(properties, {monday, monday}), properties);
}

TEST(BusySpans, FollowTheClockOfTheOwner) {
    Meeting meeting = weekly();
    meeting.pattern->deletions.clear();
    meeting.pattern->exceptions.clear();
    // 2026-03-23 and 30: daylight saving starts on the 29th.
    meeting.pattern->start = midnight - 245 * day + 10 * hour;
    meeting.start = meeting.pattern->start - hour;
    const DateWindow window{monday - days(245), monday - days(238)};
    EXPECT_EQ(busySpans(meeting, berlin, window),
              (std::vector<Span>{{midnight - 245 * day + 9 * hour, midnight - 245 * day + 10 * hour},
                                 {midnight - 238 * day + 8 * hour, midnight - 238 * day + 9 * hour}}));
}

TEST(BusySpans, HaveWholeDaysFromMidnightToMidnight) {
    Meeting meeting{"Closed", midnight - hour, 1440, true};
    meeting.pattern.emplace().start = midnight;
    EXPECT_EQ(busySpans(meeting, berlin, {monday + days(1), monday + days(1)}),
              (std::vector<Span>{{midnight + 23 * hour, midnight + 47 * hour}}));
}

} // namespace
} // namespace tsr
