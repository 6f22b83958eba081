#include "handheld/commands/datebookEvents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "handheld/HandheldError.h"
#include "handheld/commands/CommandLine.h"
#include "interchange/calendarDays.h"

namespace tsr {
namespace {

using namespace std::chrono;
using ::testing::SizeIs;
using Unit = RepeatRule::Unit;

constexpr std::int64_t hour = 3600;
const sys_days monday = year(2026) / 11 / 23;
const std::int64_t ten = secondsOf(monday) + 10 * hour;

Event team() {
    Event event;
    event.subject = "Team";
    event.start = ten;
    event.minutes = 90;
    return event;
}

FieldValues onlyFields(const Event& event) {
    const auto records = toDatebook(event);
    EXPECT_THAT(records, SizeIs(1));
    return records.at(0).fields;
}

TEST(DatebookEvents, HaveTheFieldsOfARecord) {
    Event event = team();
    event.note = "room 5";
    event.alarm = 15;
    event.isPrivate = true;
    EXPECT_EQ(onlyFields(event), (FieldValues{{"alarm", "15m"},
                                              {"date", "2026-11-23"},
                                              {"description", "Team"},
                                              {"end", "11:30"},
                                              {"note", "room 5"},
                                              {"start", "10:00"}}));
    EXPECT_TRUE(toDatebook(event)[0].secret);
    EXPECT_EQ(toEvent(toDatebook(event)[0]), event);
}

TEST(DatebookEvents, RoundTheirAlarms) {
    const std::tuple<std::uint32_t, const char*, std::uint32_t> rows[] = {
        {0, "0m", 0},        {99, "99m", 99},    {100, "2h", 120},
        {5969, "99h", 5940}, {5970, "4d", 5760}, {1000000, "99d", 142560},
    };
    for (const auto& [minutes, text, back] : rows) {
        Event event = team();
        event.alarm = minutes;
        EXPECT_EQ(onlyFields(event).at("alarm"), text);
        EXPECT_EQ(toEvent(toDatebook(event)[0]).alarm, back);
    }
}

TEST(DatebookEvents, RepeatInBothForms) {
    const struct {
        RepeatRule rule;
        const char* repeat;
        const char* on;
    } rows[] = {
        {{.unit = Unit::Day, .interval = 3, .until = monday + days(30)}, "daily", ""},
        {{.unit = Unit::Week, .interval = 2, .daysOfWeek = 2 + 8}, "weekly", "10"},
        {{.unit = Unit::MonthByDate, .interval = 24, .dayNumbers = {23}}, "monthlyByDate", ""},
        {{.unit = Unit::MonthByDay, .daySpecs = {{4, 1}}}, "monthlyByDay", "22"}, // 3 x 7 + 1
        {{.unit = Unit::MonthByDay, .daySpecs = {{5, 0}}}, "monthlyByDay", "28"}, // 4 x 7
    };
    for (const auto& row : rows) {
        Event event = team();
        event.rule = row.rule;
        event.deletions = {monday + days(7)};
        const FieldValues fields = onlyFields(event);
        EXPECT_EQ(fields.at("repeat"), row.repeat);
        EXPECT_EQ(fields.at("every"), std::to_string(row.rule.interval));
        EXPECT_EQ(fields.contains("on") ? fields.at("on") : "", row.on);
        EXPECT_EQ(fields.at("except"), "2026-11-30");
        EXPECT_EQ(fields.contains("until"), row.rule.until.has_value());
        EXPECT_EQ(toEvent({fields, false}), event);
    }
}

TEST(DatebookEvents, TakeAYearForTwelveMonths) {
    const Event event = toEvent({{{"date", "2026-11-23"}, {"repeat", "yearly"}, {"every", "2"}}, false});
    EXPECT_EQ(event.rule, (RepeatRule{.unit = Unit::MonthByDate, .interval = 24, .dayNumbers = {23}}));
    EXPECT_TRUE(event.allDay);
    EXPECT_EQ(event.minutes, 1440u);
}

TEST(DatebookEvents, HaveTheirChangedDaysAsRecords) {
    Event event = team();
    event.rule.emplace();
    event.deletions = {monday + days(3)};
    event.isPrivate = true;
    EventException moved;
    moved.patternDate = monday + days(1);
    moved.start = ten + 2 * 24 * hour;
    moved.subject = "Other";
    moved.minutes = 30;
    event.exceptions = {moved};
    const auto records = toDatebook(event);
    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(records[0].fields.at("except"), "2026-11-24,2026-11-26");
    EXPECT_EQ(records[1].fields,
              (FieldValues{
                  {"date", "2026-11-25"}, {"description", "Other"}, {"end", "10:30"}, {"start", "10:00"}}));
    EXPECT_TRUE(records[1].secret);
}

TEST(DatebookEvents, OfSeveralDaysComeDaily) {
    Event event = team();
    event.start = secondsOf(monday);
    event.allDay = true;
    event.minutes = 3 * 1440;
    EXPECT_EQ(onlyFields(event), (FieldValues{{"date", "2026-11-23"},
                                              {"description", "Team"},
                                              {"every", "1"},
                                              {"repeat", "daily"},
                                              {"until", "2026-11-25"}}));
    event.rule.emplace().unit = Unit::Week;
    EXPECT_THROW(toDatebook(event), UsageError);
}

TEST(DatebookEvents, DoNotRunOverMidnight) {
    Event event = team();
    event.minutes = 14 * 60 - 1;
    EXPECT_EQ(onlyFields(event).at("end"), "23:59");
    event.minutes = 14 * 60;
    EXPECT_THROW(toDatebook(event), UsageError);
}

TEST(DatebookEvents, AreNoneOfFieldsThatMakeNone) {
    EXPECT_THROW(toEvent({{{"date", "2026-02-30"}}, false}), HandheldError);
    EXPECT_THROW(toEvent({{{"date", "2026-11-23"}, {"start", "25:00"}, {"end", "26:00"}}, false}),
                 FieldError);
    EXPECT_THROW(
        toEvent({{{"date", "2026-11-23"}, {"repeat", "monthlyByDay"}, {"every", "1"}, {"on", "35"}}, false}),
        HandheldError);
}

} // namespace
} // namespace tsr
