#include "tessera/meetingDifferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/Meeting.h"
#include "tessera/RequestRefused.h"

namespace tsr {
namespace {

using namespace std::chrono;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 24 * hour;
constexpr std::int64_t midnight = 20780 * day; // 2026-11-23, a Monday; minute 223997760 from 1601
constexpr sys_days monday{days(20780)};

const ZoneRule berlin("CET-1CEST,M3.5.0,M10.5.0/3");

// Daily at 10:00 from Monday on. Tuesday is deleted, that of Wednesday is on Saturday at noon.
Meeting daily() {
    Meeting meeting{"Team", midnight + 9 * hour, 60, false};
    meeting.note = "room 5";
    meeting.isPrivate = true;
    meeting.alarm = 15;
    MeetingPattern& pattern = meeting.pattern.emplace();
    pattern.start = midnight + 10 * hour;
    pattern.deletions = {monday + days(1)};
    EventException moved;
    moved.patternDate = monday + days(2);
    moved.start = midnight + 5 * day + 12 * hour;
    moved.minutes = 90;
    pattern.exceptions = {moved};
    return meeting;
}

Properties kept() {
    Properties properties = toProperties(daily());
    properties["Chair"] = {"Ann"};
    return properties;
}

Properties deletion(const std::string& minutes) {
    return {{"DeletionCount", {"1"}}, {"Deletion.0.OriginalDate", {minutes}}, {"ExceptionCount", {"0"}}};
}

// As the handheld sends it: 14:00 in Berlin is 13:00 UTC, and "AB" its note.
Properties change(const std::string& patternMinutes, const std::string& minutes) {
    return {{"DeletionCount", {"0"}},
            {"ExceptionCount", {"1", "1"}},
            {"Exception.0.PatternDate", {patternMinutes}},
            {"Exception.0.Subject", {"Changed"}},
            {"Exception.0.Body", {"4142"}},
            {"Exception.0.AllDay", {"0"}},
            {"Exception.0.Date", {minutes}},
            {"Exception.0.Duration", {"45"}}};
}

EventException changedOn(int patternDay, std::int64_t start) {
    return {.patternDate = monday + days(patternDay),
            .start = start,
            .subject = "Changed",
            .note = "AB",
            .allDay = false,
            .minutes = 45};
}

MeetingPattern patternOf(const Properties& properties) { return toPattern(properties).value(); }

MeetingPattern changed(const Properties& sent) {
    const Differences differences = meetingDifferences(kept(), sent, berlin, false);
    EXPECT_FALSE(differences.killed);
    EXPECT_THAT(differences.besides, IsEmpty());
    EXPECT_EQ(firstValue(differences.changed, "Chair"), "Ann");
    return patternOf(differences.changed);
}

TEST(MeetingDifferences, KillTheMeeting) {
    EXPECT_TRUE(meetingDifferences(kept(), {{"Exception.0.Kill", {"Yes"}}}, berlin, true).killed);
    EXPECT_FALSE(meetingDifferences(kept(), {{"Exception.0.Kill", {"No"}}}, berlin, false).killed);
}

TEST(MeetingDifferences, DeleteADayOfThePattern) {
    const MeetingPattern pattern = changed(deletion("224003520")); // Friday, 4 days of 1,440 minutes on
    EXPECT_THAT(pattern.deletions, ElementsAre(monday + days(1), monday + days(4)));
    EXPECT_THAT(pattern.exceptions, SizeIs(1));
}

TEST(MeetingDifferences, DeleteAChangedDayWhereItIs) {
    const MeetingPattern pattern = changed(deletion("224004960")); // Saturday, which was Wednesday
    EXPECT_THAT(pattern.deletions, ElementsAre(monday + days(1), monday + days(2)));
    EXPECT_THAT(pattern.exceptions, IsEmpty());
}

TEST(MeetingDifferences, DeleteAChangedDayWhereThePatternHasIt) {
    const MeetingPattern pattern = changed(deletion("224000640")); // Wednesday
    EXPECT_THAT(pattern.deletions, ElementsAre(monday + days(1), monday + days(2)));
    EXPECT_THAT(pattern.exceptions, IsEmpty());
}

TEST(MeetingDifferences, ChangeAChangedDayWhereItIs) {
    // Saturday's is now on Sunday at 14:00; 6 days and 13 hours UTC on.
    const MeetingPattern pattern = changed(change("224004960", "224007180"));
    EXPECT_THAT(pattern.exceptions, ElementsAre(changedOn(2, midnight + 6 * day + 14 * hour)));
    EXPECT_THAT(pattern.deletions, ElementsAre(monday + days(1)));
}

TEST(MeetingDifferences, ChangeADayOfThePattern) {
    const MeetingPattern pattern = changed(change("224003520", "224004300")); // Friday at 14:00
    ASSERT_THAT(pattern.exceptions, SizeIs(2));
    EXPECT_EQ(pattern.exceptions[1], changedOn(4, midnight + 4 * day + 14 * hour));
}

TEST(MeetingDifferences, BringADeletedDayBack) {
    const MeetingPattern pattern = changed(change("223999200", "223999980")); // Tuesday
    EXPECT_THAT(pattern.deletions, IsEmpty());
    ASSERT_THAT(pattern.exceptions, SizeIs(2));
    EXPECT_EQ(pattern.exceptions[0], changedOn(1, midnight + day + 14 * hour)); // before that of Wednesday
}

TEST(MeetingDifferences, ReadMomentsOnTheClockOfTheUser) {
    // 2027-07-01, day 21000, at 22:30 UTC is half past midnight of the next day in summer.
    const MeetingPattern pattern = changed(change("224314560", "224315910"));
    EXPECT_EQ(pattern.exceptions.back().patternDate, sys_days(days(21000)));
    EXPECT_EQ(pattern.exceptions.back().start, 21001 * day + 1800);
}

TEST(MeetingDifferences, HaveWholeDaysOfOneMinute) {
    Properties sent = change("224003520", "224003460"); // Friday's midnight in Berlin
    sent["Exception.0.AllDay"] = {"1"};
    sent["Exception.0.Duration"] = {"1"};
    const EventException exception = changed(sent).exceptions.at(1);
    EXPECT_EQ(exception.allDay, true);
    EXPECT_EQ(exception.minutes, 1440u);
    EXPECT_EQ(exception.start, midnight + 4 * day);
}

TEST(MeetingDifferences, MakeAMeetingOfWhatNotesPrevailsOver) {
    const Differences differences =
        meetingDifferences(kept(), change("224004960", "224007180"), berlin, true);
    EXPECT_EQ(differences.changed, kept());
    ASSERT_THAT(differences.besides, SizeIs(1));
    const auto meeting = toMeeting(differences.besides[0]);
    ASSERT_TRUE(meeting);
    EXPECT_EQ(meeting->subject, "Changed");
    EXPECT_EQ(meeting->note, "AB");
    EXPECT_EQ(meeting->start, midnight + 6 * day + 13 * hour);
    EXPECT_EQ(meeting->minutes, 45u);
    EXPECT_EQ(meeting->alarm, 15u);
    EXPECT_TRUE(meeting->isPrivate);
    EXPECT_FALSE(meeting->pattern);
}

TEST(MeetingDifferences, MakeNoMeetingOfWhatNotesHasToo) {
    Meeting meeting = daily();
    meeting.pattern->exceptions[0] = changedOn(2, midnight + 6 * day + 14 * hour);
    const Properties properties = toProperties(meeting);
    const Properties sent = change("224006400", "224007180"); // Sunday
    const Differences differences = meetingDifferences(properties, sent, berlin, true);
    EXPECT_EQ(differences.changed, properties);
    EXPECT_THAT(differences.besides, IsEmpty());
}

TEST(MeetingDifferences, CompareWithWhatAnExceptionLeavesToTheMeeting) {
    // Wednesday's as Notes has it: of the same subject, note and kind as the others, on Saturday at noon.
    Properties sent = change("224004960", "224005620");
    sent["Exception.0.Subject"] = {"Team"};
    sent["Exception.0.Body"] = {"726f6f6d2035"}; // "room 5"
    sent["Exception.0.Duration"] = {"90"};
    EXPECT_THAT(meetingDifferences(kept(), sent, berlin, true).besides, IsEmpty());
}

TEST(MeetingDifferences, DeleteAlsoWhenNotesPrevails) {
    const Differences differences = meetingDifferences(kept(), deletion("224004960"), berlin, true);
    EXPECT_THAT(patternOf(differences.changed).exceptions, IsEmpty());
}

TEST(MeetingDifferences, OfAMeetingThatRepeatsNoMoreAreMeetings) {
    Meeting once = daily();
    once.pattern.reset();
    Properties sent = change("224004960", "224007180");
    sent.merge(deletion("224003520"));
    sent["DeletionCount"] = {"1"};
    const Differences differences = meetingDifferences(toProperties(once), sent, berlin, false);
    EXPECT_EQ(differences.changed, toProperties(once));
    EXPECT_THAT(differences.besides, SizeIs(1));
}

TEST(MeetingDifferences, AreRefusedWithoutWhatTheyCount) {
    const Properties rows[] = {
        {{"DeletionCount", {"1"}}},
        {{"DeletionCount", {"4294967295"}}, {"Deletion.0.OriginalDate", {"224003520"}}},
        {{"ExceptionCount", {"1"}}},
        {{"ExceptionCount", {"1"}}, {"Exception.0.PatternDate", {"224003520"}}},
        {{"ExceptionCount", {"1"}}, {"Exception.1.PatternDate", {"1"}}, {"Exception.1.Date", {"1"}}},
        {{"ExceptionCount", {"1"}}, {"Exception.0.PatternDate", {"x"}}, {"Exception.0.Date", {"1"}}},
    };
    for (const Properties& sent : rows)
        EXPECT_THROW(meetingDifferences(kept(), sent, berlin, false), RequestRefused);
}

} // namespace
} // namespace tsr
