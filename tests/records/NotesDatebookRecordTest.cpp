#include "records/NotesDatebookRecord.h"

#include "records/RepeatsDailyInfo.h"
#include "records/RepeatsMonthlyByDayInfo.h"
#include "records/RepeatsWeeklyInfo.h"
#include "support/errors.h"
#include "support/meetingZones.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::minutesSince1601;
using test::secondsSince1993;
using test::textRaisedBy;

using Dates = std::set<Date>;
using Strings = std::vector<std::string>;

// 3,415 days and 23 hours after 1993: 2002-05-09 23:00 UTC.
constexpr char lateNinth[] = "295138800";
// 11,817 days after 1970, 194,074,560 minutes after 1601: 2002-05-10 00:00, and an hour later.
constexpr char tenth[] = "211091040";
constexpr char oneOnTenth[] = "211091100";

// What no item can do without, for a meeting at 23:00 UTC on 2002-05-09 of an hour.
NotesItem meeting(NotesItem more = {}) {
    more.merge(NotesItem{{"420D0040", {lateNinth}}, {"42130003", {"60"}}});
    return more;
}

NotesItem daily(NotesItem more = {}) {
    more.merge(NotesItem{{"Recurs", {"Day"}},
                         {"Interval", {"1"}},
                         {"PatternEnd", {"Forever"}},
                         {"PatternStartDate", {tenth}}});
    return meeting(more);
}

NotesDatebookRecord received(const NotesItem& item, const TimeZone& zone = test::twoHoursEast()) {
    return NotesDatebookRecord(item, zone);
}

NotesItem sent(const NotesDatebookRecord& record, const TimeZone& zone = test::twoHoursEast()) {
    NotesItem item;
    record.addTo(item, zone);
    return item;
}

TEST(NotesDatebookRecord, ReadsAMeetingThatTakesPlaceOnce) {
    const NotesDatebookRecord record = received({
        {"0037001F", {"Lunch"}},
        {"00170041", {"410D0A420d430A"}}, // A, CR LF, B, CR, C, LF
        {"42150003", {"0"}},
        {"42130003", {"90"}},
        {"420D0040", {lateNinth}},
        {"45030002", {"1"}},
        {"45010003", {"15"}},
        {"4509001F", {"other.wav"}},
        {"00040002", {"0"}},
        {"Chair", {"Ann"}},
    });
    EXPECT_EQ(record.subject, "Lunch");
    EXPECT_EQ(record.description(), "Lunch");
    EXPECT_EQ(record.body, "A\nB\nC\n");
    EXPECT_FALSE(record.allDay);
    EXPECT_EQ(record.duration, TimeInterval::fromMinutes(90));
    EXPECT_EQ(record.date, Date(2002, 5, 10));
    EXPECT_EQ(record.time, TimeOfDay(1, 0, 0));
    EXPECT_TRUE(record.hasAlarm);
    EXPECT_EQ(record.alarmLead, TimeInterval::fromMinutes(15));
    EXPECT_FALSE(record.isPrivate);
    EXPECT_EQ(record.chair, "Ann");
    EXPECT_FALSE(record.repeat->repeats());
    EXPECT_TRUE(record.invitees.empty());
}

TEST(NotesDatebookRecord, NeedsItsStartAndItsDurationAlone) {
    const NotesDatebookRecord record = received(meeting());
    EXPECT_EQ(record.subject, "");
    EXPECT_EQ(record.body, "");
    EXPECT_FALSE(record.allDay);
    EXPECT_FALSE(record.hasAlarm);
    EXPECT_TRUE(record.isPrivate); // it doesn't say that it isn't
    EXPECT_EQ(record.chair, "");
}

TEST(NotesDatebookRecord, IsPrivateUnlessItSaysZero) {
    const std::pair<Strings, bool> rows[] = {
        {{"0"}, false}, {{"1"}, true}, {{"3"}, true}, {{""}, true}, {{}, true}, {{"00"}, true},
    };
    for (const auto& [values, isPrivate] : rows) {
        EXPECT_EQ(received(meeting({{"00040002", values}})).isPrivate, isPrivate);
    }
}

TEST(NotesDatebookRecord, TakesOneAloneForYes) {
    for (const char* value : {"0", "", "2", "01", "true"}) {
        const NotesDatebookRecord record =
            received(meeting({{"42150003", {value}}, {"45030002", {value}}, {"45010003", {"x"}}}));
        EXPECT_FALSE(record.allDay);
        EXPECT_FALSE(record.hasAlarm); // and then its lead is not looked at
    }
    EXPECT_TRUE(received(meeting({{"42150003", {"1"}}})).allDay);
}

TEST(NotesDatebookRecord, LooksAtNoPatternWithoutARule) {
    const NotesDatebookRecord record = received(meeting({{"PatternStartDate", {"x"}},
                                                         {"InstanceCount", {"x"}},
                                                         {"DeletionCount", {"1"}},
                                                         {"Deletion.0.OriginalDate", {tenth}},
                                                         {"ExceptionCount", {"x"}}}));
    EXPECT_EQ(record.date, Date(2002, 5, 10));
    EXPECT_TRUE(record.deletions.empty());
}

TEST(NotesDatebookRecord, ReadsThePatternInUtc) {
    // In a zone far to the west the meeting is on the day before; the day of the pattern stays.
    for (const auto& [offset, time] :
         {std::pair(-39600, TimeOfDay(12, 0, 0)), std::pair(0, TimeOfDay(23, 0, 0)),
          std::pair(43200, TimeOfDay(11, 0, 0))}) {
        const NotesDatebookRecord record = received(daily({{"InstanceCount", {"2"}},
                                                           {"Instance.0.Date", {oneOnTenth}},
                                                           {"Instance.1.Date", {"211092479"}}, // 23:59
                                                           {"DeletionCount", {"1"}},
                                                           {"Deletion.0.OriginalDate", {"211092480"}}}),
                                                    TimeZone(offset));
        EXPECT_EQ(record.date, Date(2002, 5, 10));
        EXPECT_EQ(record.time, time);
        EXPECT_EQ(record.instances, (Dates{Date(2002, 5, 10)}));
        EXPECT_EQ(record.deletions, (Dates{Date(2002, 5, 11)}));
    }
}

TEST(NotesDatebookRecord, CountsInstancesAndDeletionsFromZero) {
    const NotesDatebookRecord record = received(daily({{"InstanceCount", {"1"}},
                                                       {"Instance.0.Date", {tenth}},
                                                       {"Instance.1.Date", {"211092480"}},
                                                       {"DeletionCount", {"0"}},
                                                       {"Deletion.0.OriginalDate", {tenth}}}));
    EXPECT_EQ(record.instances, (Dates{Date(2002, 5, 10)}));
    EXPECT_TRUE(record.deletions.empty());
}

TEST(NotesDatebookRecord, ReadsAnExceptionWithEverything) {
    const NotesDatebookRecord record = received(
        daily({{"ExceptionCount", {"1"}},
               {"Exception.0.PatternDate", {"x"}}, // not one of them
               {"Exception.1.PatternDate", {"211092480"}},
               {"Exception.1.Date", {minutesSince1601(2002, 5, 12, 23, 30)}}, // in UTC, whatever the zone
               {"Exception.1.Subject", {"Late"}},
               {"Exception.1.Body", {"a\r\nb"}},
               {"Exception.1.AllDay", {"1"}},
               {"Exception.1.Duration", {"2880"}}}));
    ASSERT_EQ(record.exceptions.size(), 1u);
    const DatebookException& exception = *record.exceptions.begin();
    EXPECT_EQ(exception.patternDate, Date(2002, 5, 11));
    EXPECT_EQ(exception.date, Date(2002, 5, 12));
    EXPECT_EQ(exception.time, TimeOfDay(23, 30, 0));
    EXPECT_TRUE(exception.hasSubject() && exception.hasBody() && exception.hasAllDay()
                && exception.hasDuration());
    EXPECT_EQ(exception.subject(), "Late");
    EXPECT_EQ(exception.body(), "a\r\nb"); // plain, and as it stands
    EXPECT_TRUE(exception.allDay());
    EXPECT_EQ(exception.duration(), TimeInterval::fromDays(2));
}

TEST(NotesDatebookRecord, AnExceptionTellsOnlyWhatDiffers) {
    const NotesDatebookRecord record =
        received(daily({{"ExceptionCount", {"1"}}, {"Exception.1.PatternDate", {oneOnTenth}}}));
    ASSERT_EQ(record.exceptions.size(), 1u);
    const DatebookException& exception = *record.exceptions.begin();
    EXPECT_EQ(exception.patternDate, Date(2002, 5, 10));
    EXPECT_EQ(exception.date, Date(2002, 5, 10));
    EXPECT_EQ(exception.time, TimeOfDay()); // not that of the meeting, nor of the pattern date
    EXPECT_FALSE(exception.hasSubject() || exception.hasBody() || exception.hasAllDay()
                 || exception.hasDuration());
}

TEST(NotesDatebookRecord, AnEmptyPropertyOfAnExceptionDiffersToo) {
    const NotesDatebookRecord record = received(daily({{"ExceptionCount", {"1"}},
                                                       {"Exception.1.PatternDate", {tenth}},
                                                       {"Exception.1.Subject", {""}},
                                                       {"Exception.1.Body", {}},
                                                       {"Exception.1.AllDay", {"0"}}}));
    const DatebookException& exception = *record.exceptions.begin();
    EXPECT_TRUE(exception.hasSubject() && exception.hasBody() && exception.hasAllDay());
    EXPECT_FALSE(exception.allDay());
}

TEST(NotesDatebookRecord, DropsTheSecondOfTwoExceptionsOnADay) {
    const NotesDatebookRecord record =
        received(daily({{"ExceptionCount", {"3"}},
                        {"Exception.1.PatternDate", {minutesSince1601(2002, 5, 14)}},
                        {"Exception.1.Date", {minutesSince1601(2002, 5, 20, 9)}},
                        {"Exception.2.PatternDate", {minutesSince1601(2002, 5, 13)}},
                        {"Exception.2.Date", {minutesSince1601(2002, 5, 20, 8)}},
                        {"Exception.3.PatternDate", {minutesSince1601(2002, 5, 12)}}}));
    ASSERT_EQ(record.exceptions.size(), 2u);
    EXPECT_EQ(record.exceptions.begin()->date, Date(2002, 5, 12)); // ordered by the day that it is on now
    EXPECT_EQ(record.exceptions.rbegin()->patternDate, Date(2002, 5, 14));
}

TEST(NotesDatebookRecord, RefusesPropertiesThatMakeNoMeeting) {
    const char* noNumber = "Cannot convert string '' to unsigned.";
    const char* badNumber = "Cannot convert string '-5' to unsigned.";
    const std::pair<NotesItem, const char*> rows[] = {
        {{{"42130003", {"60"}}}, noNumber},
        {{{"420D0040", {lateNinth}}}, noNumber},
        {{{"420D0040", {"-5"}}, {"42130003", {"60"}}}, badNumber},
        {{{"420D0040", {lateNinth}}, {"42130003", {"-5"}}}, badNumber},
        {meeting({{"45030002", {"1"}}}), noNumber},
        {meeting({{"45030002", {"1"}}, {"45010003", {"-5"}}}), badNumber},
        {meeting({{"00170041", {"4"}}}),
         "Cannot convert hexadecimal string to binary; the length (1) must be even."},
        {meeting({{"00170041", {"4G"}}}), "The character 'G' is not valid in a hexadecimal string."},
        {meeting({{"Recurs", {"Year"}}}), "Unknown repeat type 'Year'."},
        {meeting({{"Recurs", {"Day"}}, {"Interval", {"1"}}}), "No pattern end date was found."},
        {meeting({{"Recurs", {"Day"}}, {"Interval", {"1"}}, {"PatternEnd", {"Forever"}}}), noNumber},
        {daily({{"PatternStartDate", {"-5"}}}), badNumber},
        {daily({{"InstanceCount", {"-5"}}}), badNumber},
        {daily({{"InstanceCount", {"1"}}}), noNumber},
        {daily({{"InstanceCount", {"4294967295"}}, {"Instance.0.Date", {tenth}}}), noNumber},
        {daily({{"DeletionCount", {"-5"}}}), badNumber},
        {daily({{"DeletionCount", {"4294967295"}}, {"Deletion.0.OriginalDate", {tenth}}}), noNumber},
        {daily({{"ExceptionCount", {"-5"}}}), badNumber},
        {daily({{"ExceptionCount", {"1"}}, {"Exception.0.PatternDate", {tenth}}}), noNumber},
        {daily({{"ExceptionCount", {"4294967295"}}, {"Exception.1.PatternDate", {tenth}}}), noNumber},
        {daily({{"ExceptionCount", {"1"}}, {"Exception.1.PatternDate", {tenth}}, {"Exception.1.Date", {}}}),
         noNumber},
        {daily({{"ExceptionCount", {"1"}},
                {"Exception.1.PatternDate", {tenth}},
                {"Exception.1.Duration", {""}}}),
         noNumber},
        // 1799-12-31 23:59
        {daily({{"PatternStartDate", {"104663519"}}}),
         "Cannot perform conversion; integer value would have lost it's sign."},
    };
    for (const auto& [item, text] : rows) {
        SCOPED_TRACE(testing::PrintToString(item));
        EXPECT_EQ(textRaisedBy([&item = item] { received(item); }), text);
    }
}

TEST(NotesDatebookRecord, AStartBefore1993Wraps) {
    // 2^32 - 725,846,400 seconds after 1993 are 2^32 after 1970: the count starts over.
    const NotesDatebookRecord record =
        received({{"420D0040", {"3569120896"}}, {"42130003", {"60"}}}, TimeZone());
    EXPECT_EQ(record.date, Date(1970, 1, 1));
    EXPECT_EQ(sent(record, TimeZone())["420D0040"], Strings{"3569120896"});
    const NotesDatebookRecord west =
        received({{"420D0040", {"3569120896"}}, {"42130003", {"60"}}}, TimeZone(-3600));
    EXPECT_EQ(west.date, Date(1969, 12, 31));
}

TEST(NotesDatebookRecord, SendsAMeetingThatTakesPlaceOnce) {
    NotesDatebookRecord record;
    record.subject = "Lunch";
    record.body = "4142"; // as a record of the device has it: nothing encodes it here
    record.date = Date(2002, 5, 10);
    record.time = TimeOfDay(1, 0, 0);
    record.duration = TimeInterval::fromMinutes(90);
    record.chair = "Ann";
    record.invitees = {"Bob"};
    record.instances = {Date(2002, 5, 10)};
    const NotesItem plain{{"#Differences", {"0"}}, {"0037001F", {"Lunch"}},
                          {"00170041", {"4142"}},  {"42130003", {"90"}},
                          {"42150003", {"0"}},     {"420D0040", {lateNinth}},
                          {"45030002", {"0"}},     {"PatternStartDate", {oneOnTenth}},
                          {"DeletionCount", {"0"}}};
    EXPECT_EQ(sent(record), plain);

    record.isPrivate = true;
    record.hasAlarm = true;
    record.alarmLead = TimeInterval::fromMinutes(15);
    NotesItem more = plain;
    more["00040002"] = {"1"};
    more["45030002"] = {"1"};
    more["45010003"] = {"15"};
    more["4509001F"] = {"alarm1.wav"};
    EXPECT_EQ(sent(record), more);
}

TEST(NotesDatebookRecord, SendsAMeetingThatRepeats) {
    NotesDatebookRecord record;
    record.date = Date(2002, 5, 10);
    record.time = TimeOfDay(1, 0, 0);
    record.duration = TimeInterval::fromMinutes(90);
    RepeatsWeeklyInfo rule;
    rule.setDaysOfWeek(32);
    record.repeat = rule.clone();
    record.deletions = {Date(2002, 5, 17), Date(2002, 5, 11)};
    EXPECT_EQ(sent(record), (NotesItem{{"#Differences", {"0"}},
                                       {"0037001F", {""}},
                                       {"00170041", {""}},
                                       {"42130003", {"90"}},
                                       {"42150003", {"0"}},
                                       {"420D0040", {lateNinth}},
                                       {"45030002", {"0"}},
                                       {"Recurs", {"Week"}},
                                       {"Interval", {"1"}},
                                       {"PatternEnd", {"Forever"}},
                                       {"DaysOfWeek", {"32"}},
                                       {"RepeatStartTime", {"60"}},
                                       {"PatternStartDate", {oneOnTenth}},
                                       {"DeletionCount", {"2"}},
                                       {"Deletion.0.OriginalDate", {"211092540"}},    // a day later, 01:00
                                       {"Deletion.1.OriginalDate", {"211101180"}}})); // a week later
}

TEST(NotesDatebookRecord, TellsItsStartOfTheDayInMinutes) {
    NotesDatebookRecord record;
    record.repeat = RepeatsDailyInfo().clone();
    record.time = TimeOfDay(23, 59, 0);
    EXPECT_EQ(sent(record, TimeZone())["RepeatStartTime"], Strings{"1439"});
}

TEST(NotesDatebookRecord, AnAllDayMeetingSendsAMinute) {
    NotesDatebookRecord record;
    record.date = Date(2002, 5, 10);
    record.allDay = true;
    for (const std::int64_t minutes : {std::int64_t{0}, std::int64_t{1440}, std::int64_t{1} << 40}) {
        record.duration = TimeInterval::fromMinutes(minutes);
        const NotesItem item = sent(record);
        EXPECT_EQ(item.at("42130003"), Strings{"1"});
        EXPECT_EQ(item.at("42150003"), Strings{"1"});
    }
}

TEST(NotesDatebookRecord, RefusesToSendWhatPropertiesCannotTell) {
    NotesDatebookRecord record;
    record.date = Date(1969, 12, 31);
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "The time stamp value represents a time before the start of UTC.");
    record.date = Date(1970, 1, 1); // in UTC two hours earlier
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "The time stamp value represents a time before the start of UTC.");
    record.date = Date(2106, 2, 8);
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "Cannot perform conversion; integer value would have been truncated.");
    record.date = Date(2002, 5, 10);
    record.time = TimeOfDay(0, 0, 30); // 11,817 days and half a minute
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "Cannot convert to minutes; 1020988830 seconds is not an exact number of minutes.");
    record.time = TimeOfDay();
    record.duration = TimeInterval::fromMinutes(2147483648);
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "Cannot perform conversion; integer value would have been truncated.");
    record.duration = TimeInterval::fromMinutes(-30); // has its sign
    EXPECT_EQ(sent(record)["42130003"], Strings{"-30"});
    record.hasAlarm = true;
    record.alarmLead = TimeInterval::fromMinutes(-1);
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "Cannot perform conversion; integer value would have lost it's sign.");
    record.alarmLead = TimeInterval::fromMinutes(2147483648);
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "Cannot perform conversion; integer value would have been truncated.");
    record.hasAlarm = false;
    record.deletions = {Date(1969, 12, 31)};
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "The time stamp value represents a time before the start of UTC.");
}

// Moments as they arrive, what the clock then shows, and the moment that is sent for that reading: the same,
// but for the later half of a doubled hour.
TEST(NotesDatebookRecord, ReadsItsStartOnTheClockOfItsZone) {
    struct Row {
        std::string moment;
        DateTime reading;
        std::string back = moment;
    };
    const auto at = [](unsigned month, unsigned day, unsigned hour, unsigned minute) {
        return secondsSince1993(2002, month, day, hour, minute);
    };
    const auto on = [](std::uint32_t month, std::uint32_t day, std::uint32_t hour, std::uint32_t minute) {
        return DateTime(2002, month, day, hour, minute, 0);
    };
    const std::pair<TimeZone, std::vector<Row>> zones[] = {
        {TimeZone(), {{lateNinth, on(5, 9, 23, 0)}}},
        {test::twoHoursEast(), {{lateNinth, on(5, 10, 1, 0)}}},
        {test::halfPastFiveEast(),
         {{at(5, 9, 18, 29), on(5, 9, 23, 59)}, {at(5, 9, 18, 30), on(5, 10, 0, 0)}}},
        {test::halfPastThreeWest(),
         {{at(5, 10, 3, 29), on(5, 9, 23, 59)}, {at(5, 10, 3, 30), on(5, 10, 0, 0)}}},
        {test::northEast(),
         {{at(1, 15, 12, 0), on(1, 15, 13, 0)},
          {at(7, 15, 12, 0), on(7, 15, 14, 0)},
          {at(3, 31, 0, 59), on(3, 31, 1, 59)},
          {at(3, 31, 1, 0), on(3, 31, 3, 0)},
          {at(10, 27, 0, 59), on(10, 27, 2, 59)},
          {at(10, 27, 1, 30), on(10, 27, 2, 30), at(10, 27, 0, 30)},
          {at(10, 27, 2, 0), on(10, 27, 3, 0)}}},
        {test::northWest(),
         {{at(1, 15, 4, 0), on(1, 14, 23, 0)},
          {at(7, 15, 4, 0), on(7, 15, 0, 0)},
          {at(4, 7, 6, 59), on(4, 7, 1, 59)},
          {at(4, 7, 7, 0), on(4, 7, 3, 0)},
          {at(10, 27, 5, 59), on(10, 27, 1, 59)},
          {at(10, 27, 6, 30), on(10, 27, 1, 30), at(10, 27, 5, 30)},
          {at(10, 27, 7, 0), on(10, 27, 2, 0)}}},
        {test::southEast(),
         {{at(1, 15, 0, 0), on(1, 15, 11, 0)},
          {at(7, 15, 0, 0), on(7, 15, 10, 0)},
          {at(10, 26, 15, 59), on(10, 27, 1, 59)},
          {at(10, 26, 16, 0), on(10, 27, 3, 0)},
          {at(3, 30, 15, 59), on(3, 31, 2, 59)},
          {at(3, 30, 16, 30), on(3, 31, 2, 30), at(3, 30, 15, 30)},
          {at(3, 30, 17, 0), on(3, 31, 3, 0)}}},
        {test::southWest(),
         {{at(1, 15, 1, 59), on(1, 14, 23, 59)},
          {at(7, 15, 3, 0), on(7, 15, 0, 0)},
          {at(10, 20, 2, 59), on(10, 19, 23, 59)},
          {at(10, 20, 3, 0), on(10, 20, 1, 0)},
          {at(2, 17, 1, 59), on(2, 16, 23, 59)},
          {at(2, 17, 2, 30), on(2, 16, 23, 30), at(2, 17, 1, 30)}, // the doubled hour ends the day
          {at(2, 17, 3, 0), on(2, 17, 0, 0)}}},
        {test::halfHourSouth(),
         {{at(10, 26, 15, 29), on(10, 27, 1, 59)},
          {at(10, 26, 15, 30), on(10, 27, 2, 30)},
          {at(3, 30, 14, 59), on(3, 31, 1, 59)},
          {at(3, 30, 15, 15), on(3, 31, 1, 45), at(3, 30, 14, 45)},
          {at(3, 30, 15, 30), on(3, 31, 2, 0)}}},
    };
    for (const auto& [zone, rows] : zones) {
        for (const Row& row : rows) {
            SCOPED_TRACE(std::to_string(zone.offset()) + ": " + row.moment);
            const NotesDatebookRecord record =
                received({{"420D0040", {row.moment}}, {"42130003", {"60"}}}, zone);
            EXPECT_EQ(DateTime(record.date, record.time), row.reading);
            EXPECT_EQ(sent(record, zone)["420D0040"], Strings{row.back});
        }
    }
}

// Readings that a clock never shows count as daylight time.
TEST(NotesDatebookRecord, SendsAStartInTheMissingHour) {
    const struct {
        TimeZone zone;
        DateTime reading;
        std::string moment;
    } rows[] = {
        {test::northEast(), DateTime(2002, 3, 31, 2, 30, 0), secondsSince1993(2002, 3, 31, 0, 30)},
        {test::northWest(), DateTime(2002, 4, 7, 2, 30, 0), secondsSince1993(2002, 4, 7, 6, 30)},
        {test::southEast(), DateTime(2002, 10, 27, 2, 30, 0), secondsSince1993(2002, 10, 26, 15, 30)},
        {test::southWest(), DateTime(2002, 10, 20, 0, 30, 0), secondsSince1993(2002, 10, 20, 2, 30)},
        {test::halfHourSouth(), DateTime(2002, 10, 27, 2, 15, 0), secondsSince1993(2002, 10, 26, 15, 15)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.zone.offset());
        NotesDatebookRecord record;
        record.date = row.reading.date();
        record.time = row.reading.timeOfDay();
        const NotesItem item = sent(record, row.zone);
        EXPECT_EQ(item.at("420D0040"), Strings{row.moment});
        // The pattern keeps the reading itself.
        const auto& date = row.reading.date();
        EXPECT_EQ(item.at("PatternStartDate"),
                  Strings{minutesSince1601(2002, date.month(), date.day(), record.time.hour(),
                                           record.time.minute())});
    }
}

} // namespace
} // namespace tsr
