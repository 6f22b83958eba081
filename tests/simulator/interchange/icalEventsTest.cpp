#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interchange/InterchangeError.h"
#include "interchange/calendarDays.h"
#include "interchange/iCalendar.h"

namespace tsr {
namespace {

using namespace std::chrono;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Unit = RepeatRule::Unit;

constexpr std::int64_t stamp = 1763712000; // 2025-11-21 08:00 UTC
constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 24 * hour;

sys_days on(int y, unsigned m, unsigned d) { return year(y) / m / d; }

const sys_days monday = on(2026, 11, 23);
const std::int64_t ten = secondsOf(monday) + 10 * hour;

// One hour east of Greenwich.
const CalendarClock east{[](std::int64_t utc) { return utc + hour; },
                         [](std::int64_t local) { return local - hour; }};
const CalendarClock noClock;

std::string calendarOf(const std::string& components) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + components + "END:VCALENDAR\r\n";
}
std::string eventOf(const std::string& lines) {
    return "BEGIN:VEVENT\r\nUID:u\r\nSUMMARY:Team\r\n" + lines + "END:VEVENT\r\n";
}

EventFile readLines(const std::string& lines, const CalendarClock& clock = noClock) {
    return readEvents(calendarOf(eventOf(lines)), clock);
}

Event readOne(const std::string& lines, const CalendarClock& clock = noClock) {
    const EventFile file = readLines(lines, clock);
    EXPECT_THAT(file.refused, IsEmpty()) << lines;
    EXPECT_THAT(file.events, SizeIs(1)) << lines;
    return file.events.empty() ? Event() : file.events[0];
}

TEST(ICalEvents, HaveTextsAndTimes) {
    const Event event = readOne("DESCRIPTION:one\\ntwo\r\nCLASS:CONFIDENTIAL\r\nDTSTART:20261123T100000\r\n"
                                "DTEND:20261123T113000\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\n"
                                "TRIGGER:-PT15M\r\nEND:VALARM\r\n");
    EXPECT_EQ(event.subject, "Team");
    EXPECT_EQ(event.note, "one\ntwo");
    EXPECT_EQ(event.start, ten);
    EXPECT_EQ(event.minutes, 90u);
    EXPECT_FALSE(event.allDay);
    EXPECT_EQ(event.alarm, 15u);
    EXPECT_TRUE(event.isPrivate);
    EXPECT_FALSE(event.rule);
}

TEST(ICalEvents, HaveALength) {
    const struct {
        const char* lines;
        std::uint32_t minutes;
        bool allDay;
    } rows[] = {
        {"DTSTART:20261123T100000\r\n", 0, false},
        {"DTSTART:20261123T100000\r\nDURATION:PT2H\r\n", 120, false},
        {"DTSTART;VALUE=DATE:20261123\r\n", 1440, true},
        {"DTSTART;VALUE=DATE:20261123\r\nDTEND;VALUE=DATE:20261126\r\n", 3 * 1440, true},
        {"DTSTART;VALUE=DATE:20261123\r\nDURATION:P2D\r\n", 2 * 1440, true},
        // 09:00 and 10:00 UTC
        {"DTSTART;TZID=Europe/Berlin:20261123T100000\r\nDTEND:20261123T100000Z\r\n", 60, false},
    };
    for (const auto& row : rows) {
        const Event event = readOne(row.lines);
        EXPECT_EQ(event.minutes, row.minutes) << row.lines;
        EXPECT_EQ(event.allDay, row.allDay) << row.lines;
    }
}

TEST(ICalEvents, ComeOnTheClockOfTheCalendar) {
    EXPECT_EQ(readOne("DTSTART:20261123T090000Z\r\n", east).start, ten);
    EXPECT_EQ(readOne("DTSTART;TZID=America/New_York:20261123T040000\r\n", east).start, ten);
    EXPECT_EQ(readOne("DTSTART:20261123T100000\r\n", east).start, ten);
    // As they stand without one.
    EXPECT_EQ(readOne("DTSTART:20261123T100000Z\r\n").start, ten);
    EXPECT_EQ(readOne("DTSTART;TZID=America/New_York:20261123T100000\r\n").start, ten);
}

TEST(ICalEvents, HaveTheAlarmThatComesBefore) {
    const std::string start = "DTSTART:20261123T100000\r\n";
    const auto alarmOf = [&start](const std::string& trigger) {
        return readOne(start + "BEGIN:VALARM\r\n" + trigger + "END:VALARM\r\n").alarm;
    };
    EXPECT_EQ(alarmOf("TRIGGER:-P1D\r\n"), 1440u);
    EXPECT_EQ(alarmOf("TRIGGER:PT0S\r\n"), 0u);
    EXPECT_EQ(alarmOf("TRIGGER:PT5M\r\n"), std::nullopt);
    EXPECT_EQ(alarmOf("TRIGGER;RELATED=END:-PT5M\r\n"), std::nullopt);
    EXPECT_EQ(alarmOf("TRIGGER;VALUE=DATE-TIME:20261123T080000Z\r\n"), std::nullopt);
    EXPECT_EQ(alarmOf(""), std::nullopt);
}

TEST(ICalEvents, RepeatByTheRulesOfAHandheld) {
    const std::uint8_t mondays = 2;
    const std::uint8_t workingDays = 2 + 4 + 8 + 16 + 32;
    const std::pair<const char*, RepeatRule> rows[] = {
        {"FREQ=DAILY", {.unit = Unit::Day}},
        {"FREQ=DAILY;INTERVAL=3;COUNT=4", {.unit = Unit::Day, .interval = 3, .until = on(2026, 12, 2)}},
        {"FREQ=DAILY;BYDAY=MO,TU,WE,TH,FR", {.unit = Unit::Week, .daysOfWeek = workingDays}},
        {"FREQ=WEEKLY", {.unit = Unit::Week, .daysOfWeek = mondays}},
        {"FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,FR", {.unit = Unit::Week, .interval = 2, .daysOfWeek = 2 + 32}},
        {"FREQ=WEEKLY;BYDAY=SU,MO;UNTIL=20261213", // its end counts
         {.unit = Unit::Week, .until = on(2026, 12, 13), .daysOfWeek = 1 + 2}},
        {"FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=SU,MO",
         {.unit = Unit::Week, .interval = 2, .daysOfWeek = 1 + 2}},
        {"FREQ=MONTHLY", {.unit = Unit::MonthByDate, .dayNumbers = {23}}},
        {"FREQ=MONTHLY;BYMONTHDAY=23", {.unit = Unit::MonthByDate, .dayNumbers = {23}}},
        {"FREQ=MONTHLY;BYDAY=4MO", {.unit = Unit::MonthByDay, .daySpecs = {{4, 1}}}},
        {"FREQ=MONTHLY;BYDAY=MO;BYSETPOS=4", {.unit = Unit::MonthByDay, .daySpecs = {{4, 1}}}},
        {"FREQ=YEARLY", {.unit = Unit::MonthByDate, .interval = 12, .dayNumbers = {23}}},
        {"FREQ=YEARLY;INTERVAL=2;BYMONTH=11;BYMONTHDAY=23",
         {.unit = Unit::MonthByDate, .interval = 24, .dayNumbers = {23}}},
        {"FREQ=YEARLY;BYMONTH=11;BYDAY=4MO",
         {.unit = Unit::MonthByDay, .interval = 12, .daySpecs = {{4, 1}}}},
    };
    for (const auto& [rule, expected] : rows) {
        const Event event = readOne("DTSTART:20261123T100000\r\nRRULE:" + std::string(rule) + "\r\n");
        EXPECT_EQ(event.rule, expected) << rule;
    }
}

TEST(ICalEvents, RepeatOnTheLastDayOfMonths) {
    EXPECT_EQ(readOne("DTSTART;VALUE=DATE:20261130\r\nRRULE:FREQ=MONTHLY;BYDAY=-1MO\r\n").rule,
              (RepeatRule{.unit = Unit::MonthByDay, .daySpecs = {{5, 1}}}));
    // Only in months that have it.
    EXPECT_EQ(readOne("DTSTART;VALUE=DATE:20261031\r\nRRULE:FREQ=MONTHLY\r\n").rule,
              (RepeatRule{.unit = Unit::MonthByDate, .dayNumbers = {31}}));
}

TEST(ICalEvents, EndBeforeADayThatTheirTimeIsBehind) {
    const std::string start = "DTSTART;TZID=Europe/Berlin:20261123T100000\r\nRRULE:FREQ=DAILY;UNTIL=";
    const std::pair<const char*, sys_days> rows[] = {
        {"20261125T090000Z", on(2026, 11, 25)}, // exactly then
        {"20261125T085959Z", on(2026, 11, 24)},
        {"20261125T225959Z", on(2026, 11, 25)},
    };
    for (const auto& [until, last] : rows) {
        EXPECT_EQ(readOne(start + until + "\r\n").rule->until, last) << until;
        EXPECT_EQ(readOne(start + until + "\r\n", east).rule->until, last) << until;
    }
    // Summer time at the end: 10:00 is 08:00 UTC.
    EXPECT_EQ(readOne(start + "20270601T080000Z\r\n").rule->until, on(2027, 6, 1));
}

TEST(ICalEvents, AreRefusedWhenAHandheldCannotHoldTheirRule) {
    const char* const rules[] = {
        "FREQ=HOURLY",
        "FREQ=DAILY;INTERVAL=256",
        "FREQ=DAILY;BYMONTH=1",
        "FREQ=DAILY;BYMONTHDAY=23",
        "FREQ=DAILY;INTERVAL=2;BYDAY=MO,TU,WE,TH,FR",
        "FREQ=DAILY;BYHOUR=10,12",
        "FREQ=WEEKLY;INTERVAL=2;BYDAY=SU,MO", // its weeks begin on Monday
        "FREQ=MONTHLY;BYMONTHDAY=10,23",
        "FREQ=MONTHLY;BYMONTHDAY=-8",
        "FREQ=MONTHLY;BYDAY=MO",
        "FREQ=MONTHLY;BYDAY=1MO,4MO",
        "FREQ=MONTHLY;BYDAY=-2MO",
        "FREQ=YEARLY;INTERVAL=22", // 264 months
        "FREQ=YEARLY;BYMONTH=1,11",
        "FREQ=YEARLY;BYDAY=47MO",
        "FREQ=YEARLY;BYYEARDAY=327",
        "FREQ=YEARLY;BYWEEKNO=48",
        "FREQ=DAILY;COUNT=20000",
    };
    for (const char* rule : rules) {
        const EventFile file = readLines("DTSTART:20261123T100000\r\nRRULE:" + std::string(rule) + "\r\n");
        EXPECT_THAT(file.events, IsEmpty()) << rule;
        EXPECT_THAT(file.refused, ElementsAre("'Team': it repeats by a rule that a handheld can't hold"))
            << rule;
    }
}

TEST(ICalEvents, AreRefusedAlone) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "it has no start"},
        {"DTSTART:20261123T100000\r\nDTEND:20261123T090000\r\n", "it ends before its start"},
        {"DTSTART:20261123T100000\r\nDURATION:P1000D\r\n", "more than a year behind it"},
        {"DTSTART:soon\r\n", "not iCalendar"},
        {"DTSTART:20261123T100000\r\nRRULE:FREQ=NEVER\r\n", "not iCalendar"},
        {"DTSTART:20261123T100000\r\nRRULE:FREQ=WEEKLY;BYDAY=TU\r\n", "not a day of its rule"},
        {"DTSTART:20261123T100000\r\nRDATE:20261130T100000\r\n", "days besides"},
        {"DTSTART:20261123T100000\r\nRRULE:FREQ=DAILY\r\nRRULE:FREQ=WEEKLY\r\n", "several rules"},
        {"DTSTART:20261123T100000\r\nRECURRENCE-ID:20261123T100000\r\n", "nothing that repeats"},
    };
    for (const auto& [lines, reason] : rows) {
        const EventFile file =
            readEvents(calendarOf(eventOf(lines)
                                  + "BEGIN:VEVENT\r\nUID:v\r\nDTSTART;VALUE=DATE:20261123\r\nEND:VEVENT\r\n"),
                       noClock);
        EXPECT_THAT(file.events, SizeIs(1)) << lines;
        ASSERT_THAT(file.refused, SizeIs(1)) << lines;
        EXPECT_THAT(file.refused[0], HasSubstr(reason)) << lines;
    }
    // 23:30 in New York is the next day of the calendar.
    EXPECT_THAT(
        readLines("DTSTART;TZID=America/New_York:20261122T233000\r\nRRULE:FREQ=DAILY\r\n", east).refused,
        ElementsAre("'Team': it repeats on the days of another time zone"));
}

TEST(ICalEvents, HaveDeletionsAndExceptions) {
    const std::string master = eventOf("DTSTART;TZID=Europe/Berlin:20261123T100000\r\nRRULE:FREQ=DAILY\r\n"
                                       "EXDATE;TZID=Europe/Berlin:20261124T100000,20261125T100000\r\n");
    const std::string moved = eventOf("RECURRENCE-ID;TZID=Europe/Berlin:20261127T100000\r\n"
                                      "DTSTART:20261128T110000Z\r\nDURATION:PT30M\r\nDESCRIPTION:late\r\n");
    const std::string cancelled = eventOf("RECURRENCE-ID:20261130T090000Z\r\nSTATUS:CANCELLED\r\n");
    const EventFile file = readEvents(calendarOf(moved + master + cancelled), east); // in any order
    EXPECT_THAT(file.refused, IsEmpty());
    ASSERT_THAT(file.events, SizeIs(1));
    const Event& event = file.events[0];
    EXPECT_THAT(event.deletions, ElementsAre(on(2026, 11, 24), on(2026, 11, 25), on(2026, 11, 30)));
    ASSERT_THAT(event.exceptions, SizeIs(1));
    EXPECT_EQ(event.exceptions[0].patternDate, on(2026, 11, 27));
    EXPECT_EQ(event.exceptions[0].start, ten + 5 * day + 2 * hour); // Saturday 12:00
    EXPECT_EQ(event.exceptions[0].note, "late");
    EXPECT_EQ(event.exceptions[0].minutes, 30u);
}

TEST(ICalEvents, AreRefusedWithTheirExceptions) {
    const std::string master = eventOf("DTSTART:20261123T100000\r\nRRULE:FREQ=HOURLY\r\n");
    const std::string moved = eventOf("RECURRENCE-ID:20261124T100000\r\nDTSTART:20261124T110000\r\n");
    const EventFile file = readEvents(calendarOf(master + moved), noClock);
    EXPECT_THAT(file.events, IsEmpty());
    EXPECT_THAT(file.refused, SizeIs(1));
    const std::string daily = eventOf("DTSTART:20261123T100000\r\nRRULE:FREQ=DAILY\r\n");
    EXPECT_THAT(readEvents(calendarOf(daily + moved + moved), noClock).refused,
                ElementsAre("'Team': it changes one day twice"));
    const std::string rest = eventOf("RECURRENCE-ID;RANGE=THISANDFUTURE:20261124T100000\r\n"
                                     "DTSTART:20261124T110000\r\n");
    EXPECT_THAT(readEvents(calendarOf(daily + rest), noClock).refused,
                ElementsAre("'Team': it changes all the days behind one"));
}

TEST(ICalEvents, AreRefusedWithAFileThatIsNone) {
    EXPECT_THROW(readEvents("nonsense", noClock), InterchangeError);
}

Event weekly() {
    Event event;
    event.subject = "Team";
    event.note = "room 5";
    event.start = ten;
    event.minutes = 60;
    event.alarm = 15;
    event.isPrivate = true;
    event.rule.emplace().unit = Unit::Week;
    event.rule->interval = 2;
    event.rule->daysOfWeek = 2;
    event.rule->until = on(2026, 12, 31);
    event.deletions = {on(2026, 12, 7)};
    EventException moved;
    moved.patternDate = on(2026, 12, 21);
    moved.start = ten + 29 * day;
    event.exceptions = {moved};
    return event;
}

TEST(ICalEvents, AreWritten) {
    Event event = weekly();
    event.uid = "0123";
    EXPECT_EQ(calendarText({event}, {}, stamp, east),
              "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Tessera//EN\r\n"
              "BEGIN:VEVENT\r\nUID:0123\r\nDTSTAMP:20251121T080000Z\r\nSUMMARY:Team\r\n"
              "DESCRIPTION:room 5\r\nDTSTART:20261123T100000\r\nDTEND:20261123T110000\r\nCLASS:PRIVATE\r\n"
              "RRULE:FREQ=WEEKLY;UNTIL=20261231T235959;INTERVAL=2;BYDAY=MO;WKST=SU\r\n"
              "EXDATE:20261207T100000\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Team\r\n"
              "TRIGGER:-PT15M\r\nEND:VALARM\r\nEND:VEVENT\r\n"
              "BEGIN:VEVENT\r\nUID:0123\r\nDTSTAMP:20251121T080000Z\r\nSUMMARY:Team\r\n"
              "DESCRIPTION:room 5\r\nDTSTART:20261222T100000\r\nDTEND:20261222T110000\r\nCLASS:PRIVATE\r\n"
              "RECURRENCE-ID:20261221T100000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
}

TEST(ICalEvents, AreWrittenInUtcWhenTheyDoNotRepeat) {
    Event event;
    event.start = ten;
    event.minutes = 30;
    EXPECT_THAT(calendarText({event}, {}, stamp, east),
                HasSubstr("UID:event-1\r\nDTSTAMP:20251121T080000Z\r\nDTSTART:20261123T090000Z\r\n"
                          "DTEND:20261123T093000Z\r\n"));
    EXPECT_THAT(calendarText({event}, {}, stamp, noClock), HasSubstr("DTSTART:20261123T100000\r\n"));
}

TEST(ICalEvents, BeginWithADayOfTheirRuleWhenTheyAreWritten) {
    Event event = weekly();
    event.rule->daysOfWeek = 8; // Wednesday
    EXPECT_THAT(calendarText({event}, {}, stamp, noClock), HasSubstr("DTSTART:20261125T100000\r\n"));
}

TEST(ICalEvents, GoBothWays) {
    Event whole = weekly();
    whole.exceptions[0].subject = "Other";
    whole.exceptions[0].note = "n";
    whole.exceptions[0].allDay = false;
    whole.exceptions[0].minutes = 90;
    Event days;
    days.subject = "Trip; a,b";
    days.start = secondsOf(monday);
    days.minutes = 3 * 1440;
    days.allDay = true;
    days.rule.emplace().unit = Unit::MonthByDay;
    days.rule->daySpecs = {{4, 1}};
    days.rule->until = on(2027, 6, 30);
    days.deletions = {on(2027, 1, 25)};
    Event last = days;
    last.start = secondsOf(on(2026, 11, 30));
    last.rule->daySpecs = {{5, 1}};
    last.rule->until.reset();
    Event once;
    once.start = ten;
    Event dated = days;
    dated.rule.emplace().unit = Unit::MonthByDate;
    dated.rule->dayNumbers = {23};
    const std::vector<Event> events{whole, days, last, once, dated};
    for (const CalendarClock& clock : {noClock, east}) {
        const EventFile file = readEvents(calendarText(events, {}, stamp, clock), clock);
        EXPECT_THAT(file.refused, IsEmpty());
        EXPECT_EQ(file.events, events);
    }
}

TEST(ICalEvents, StandBesideTasks) {
    Event event;
    event.subject = "Team";
    Task task;
    task.subject = "Call";
    const std::string text = calendarText({event}, {task}, stamp, noClock);
    EXPECT_EQ(readEvents(text, noClock).events, std::vector{event});
    EXPECT_EQ(readTasks(text), std::vector{task});
}

} // namespace
} // namespace tsr
