#include "tessera/Meeting.h"

#include <gtest/gtest.h>

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
