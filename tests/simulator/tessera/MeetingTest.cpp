#include "tessera/Meeting.h"

#include <gtest/gtest.h>

#include "tessera/RequestRefused.h"
#include "tessera/TesseraError.h"
#include "tessera/numbers.h"

namespace tsr {
namespace {

constexpr std::int64_t february6 =
    1012953600; // 2002-02-06 00:00 UTC, 287107200 seconds after the start of 1993
constexpr std::int64_t hour = 3600;

TEST(Meeting, IsADocument) {
    const Meeting meeting{"Lunch", february6 + 12 * hour, 45, false};
    const Properties expected{
        {"0037001F", {"Lunch"}}, {"00170041", {""}},  {"420D0040", {"287150400"}}, {"42130003", {"45"}},
        {"42150003", {"0"}},     {"45030002", {"0"}}, {"00040002", {"0"}},
    };
    EXPECT_EQ(toProperties(meeting), expected);

    const auto read = toMeeting({"", 1, meetingKind, expected});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->subject, "Lunch");
    EXPECT_EQ(read->start, february6 + 12 * hour);
    EXPECT_EQ(read->minutes, 45u);
    EXPECT_FALSE(read->allDay);
}

TEST(Meeting, ReadsWholeDays) {
    const auto read =
        toMeeting({"", 1, meetingKind, {{"420D0040", {"0"}}, {"42130003", {"1"}}, {"42150003", {"1"}}}});
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->allDay);
    EXPECT_EQ(read->start, firstNotesSecond);
}

TEST(Meeting, IsNoneWithoutAStartAndALength) {
    EXPECT_FALSE(toMeeting({"", 1, meetingKind, {}}));
    EXPECT_FALSE(toMeeting({"", 1, meetingKind, {{"420D0040", {"0"}}}}));
    EXPECT_FALSE(toMeeting({"", 1, meetingKind, {{"420D0040", {"x"}}, {"42130003", {"1"}}}}));
    EXPECT_FALSE(toMeeting({"", 1, meetingKind, {{"420D0040", {"0"}}, {"42130003", {"4294967296"}}}}));
    EXPECT_FALSE(toMeeting({"", 1, meetingKind, {{"420D0040", {}}, {"42130003", {"1"}}}}));
}

TEST(Meeting, LeavesPropertiesThatItDoesNotKnow) {
    Properties properties{{"Chair", {"Ann"}}, {"0037001F", {"Old"}}};
    setMeeting(properties, {"New", february6, 30, true});
    EXPECT_EQ(properties["Chair"], std::vector<std::string>{"Ann"});
    EXPECT_EQ(properties["0037001F"], std::vector<std::string>{"New"});
    EXPECT_EQ(properties["42150003"], std::vector<std::string>{"1"});
}

TEST(Meeting, MustStartWithinTheSecondsThatTheProtocolCounts) {
    EXPECT_NO_THROW(toProperties({"", firstNotesSecond, 1, false}));
    EXPECT_NO_THROW(toProperties({"", firstNotesSecond + 0xFFFFFFFF, 1, false}));
    EXPECT_THROW(toProperties({"", firstNotesSecond - 1, 1, false}), TesseraError);
    EXPECT_THROW(toProperties({"", firstNotesSecond + 0x100000000, 1, false}), TesseraError);
}

TEST(Meeting, HasANoteAnAlarmAndAnEye) {
    Meeting meeting{"Lunch", february6, 30, false};
    meeting.note = "\xC3\xBC";
    meeting.alarm = 15;
    meeting.isPrivate = true;
    Properties properties = toProperties(meeting);
    EXPECT_EQ(firstValue(properties, "00170041"), "fc");
    EXPECT_EQ(firstValue(properties, "45030002"), "1");
    EXPECT_EQ(firstValue(properties, "45010003"), "15");
    EXPECT_EQ(firstValue(properties, "00040002"), "1");
    const auto read = toMeeting(properties);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->note, meeting.note);
    EXPECT_EQ(read->alarm, 15u);
    EXPECT_TRUE(read->isPrivate);
    meeting.alarm.reset();
    setMeeting(properties, meeting);
    EXPECT_FALSE(properties.contains("45010003"));
    meeting.note = "\xE2\x82\xAC"; // a euro sign, which handhelds don't have
    EXPECT_THROW(setMeeting(properties, meeting), TesseraError);
}

TEST(Meeting, MovesWithItsPattern) {
    Meeting meeting{"Lunch", february6, 30, false};
    setLocalStart(meeting, february6 + hour, ZoneRule("CET-1"));
    EXPECT_EQ(meeting.start, february6);
    EXPECT_FALSE(meeting.pattern);
    meeting.pattern.emplace();
    setLocalStart(meeting, february6 + 2 * hour, ZoneRule("CET-1"));
    EXPECT_EQ(meeting.start, february6 + hour);
    EXPECT_EQ(meeting.pattern->start, february6 + 2 * hour);
}

// As the handheld sends a whole meeting.
const Properties sentMeeting{{"0037001F", {"Lunch"}},     {"00170041", {"4142"}},
                             {"420D0040", {"287150400"}}, {"42130003", {"45"}},
                             {"42150003", {"0"}},         {"45030002", {"1"}},
                             {"45010003", {"10"}},        {"4509001F", {"alarm1.wav"}},
                             {"DeletionCount", {"0"}},    {"PatternStartDate", {"210957840"}}};

TEST(AdoptMeeting, KeepsWhatTheHandheldDoesNotKnow) {
    Properties expected = sentMeeting;
    expected.erase("DeletionCount");
    expected.erase("PatternStartDate");
    expected["00040002"] = {"0"}; // it isn't sent for a public one, and its absence would hide it
    EXPECT_EQ(adoptMeeting({}, sentMeeting), expected);

    expected["Chair"] = {"Ann"};
    const Properties kept{
        {"Chair", {"Ann"}}, {"0037001F", {"Old"}}, {"00040002", {"1"}}, {"Recurs", {"Day"}}};
    EXPECT_EQ(adoptMeeting(kept, sentMeeting), expected);
}

TEST(AdoptMeeting, ForgetsAnAlarm) {
    Properties sent = sentMeeting;
    sent.erase("45010003");
    sent.erase("4509001F");
    sent["45030002"] = {"0"};
    const Properties adopted = adoptMeeting(sentMeeting, sent);
    EXPECT_EQ(firstValue(adopted, "45030002"), "0");
    EXPECT_FALSE(adopted.contains("45010003"));
    EXPECT_FALSE(adopted.contains("4509001F"));
}

TEST(AdoptMeeting, MakesADayOfAMinute) {
    Properties sent = sentMeeting;
    sent["42150003"] = {"1"};
    sent["42130003"] = {"1"};
    sent["00040002"] = {"1"};
    const Properties adopted = adoptMeeting({}, sent);
    EXPECT_EQ(firstValue(adopted, "42130003"), "1440");
    EXPECT_EQ(firstValue(adopted, "00040002"), "1");
}

TEST(AdoptMeeting, TakesThePatternInTheFormInWhichItIsGiven) {
    Properties sent = sentMeeting; // 2002-02-06 12:00
    sent.insert({{"Recurs", {"Day"}},
                 {"Interval", {"1"}},
                 {"PatternEnd", {"Forever"}},
                 {"RepeatStartTime", {"720"}}});
    sent["DeletionCount"] = {"1"};
    sent["Deletion.0.OriginalDate"] = {"210960720"}; // two days later
    sent["InstanceCount"] = {"1"};
    const Properties adopted = adoptMeeting({}, sent);
    EXPECT_EQ(firstValue(adopted, "PatternStartDate"), "210957840");
    EXPECT_EQ(firstValue(adopted, "Deletion.0.OriginalDate"), "210960720");
    EXPECT_EQ(firstValue(adopted, "ExceptionCount"), "0");
    EXPECT_FALSE(adopted.contains("InstanceCount"));
    EXPECT_EQ(adoptMeeting(adopted, sent), adopted);
    EXPECT_EQ(adoptMeeting(adopted, sentMeeting), adoptMeeting({}, sentMeeting)); // it repeats no more
}

TEST(AdoptMeeting, RefusesWhatIsNoMeeting) {
    EXPECT_THROW(adoptMeeting({}, {}), RequestRefused);
    Properties sent = sentMeeting;
    sent["Recurs"] = {"Year"};
    EXPECT_THROW(adoptMeeting({}, sent), RequestRefused);
}

TEST(BusySpan, IsTheMeetingItself) {
    EXPECT_EQ(busySpan({"", february6 + hour, 90, false}, ZoneRule("CET-1")),
              (Span{february6 + hour, february6 + hour + 90 * 60}));
}

TEST(BusySpan, OfWholeDaysRunsFromMidnightToMidnight) {
    const ZoneRule zone("CET-1"); // its day of 6 February starts at 23:00 UTC of the day before
    const Span oneDay{february6 - hour, february6 + 23 * hour};
    EXPECT_EQ(busySpan({"", february6 + 9 * hour, 60, true}, zone), oneDay);
    EXPECT_EQ(busySpan({"", february6 - hour, 0, true}, zone), oneDay);
    EXPECT_EQ(busySpan({"", february6 - hour, 1440, true}, zone), oneDay);
    EXPECT_EQ(busySpan({"", february6 - hour, 1441, true}, zone),
              (Span{february6 - hour, february6 + 47 * hour}));
}

} // namespace
} // namespace tsr
