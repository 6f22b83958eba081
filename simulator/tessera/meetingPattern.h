#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "interchange/EventException.h"
#include "interchange/RepeatRule.h"
#include "interchange/calendarDays.h"
#include "tessera/Document.h"

namespace tsr {

// How a meeting repeats. Its days are those of its owner's calendar, and every number of minutes counts from
// 1601 as his clock shows them:
//
//   Recurs                    "Day", "Week", "Month" by dates or "MonthNth" by days of the week
//   Interval                  days, weeks or months
//   PatternEnd                minutes of the last day, or "Forever"
//   DaysOfWeek                sum of 1 Sunday to 64 Saturday
//   DayInMonth.N              from 1: a date
//   Nth.N                     from 1: "2.4" for the second Thursday, "5.4" for the last
//   RepeatStartTime           minutes of the day
//   PatternStartDate          minutes of the first day
//   DeletionCount, Deletion.N.OriginalDate    from 0: days on which it doesn't take place
//   ExceptionCount, Exception.N.PatternDate, .Date, .Subject, .Body, .AllDay, .Duration    from 1: days on
//                             which it is another, where they were and where they are; the body is plain
struct MeetingPattern {
    RepeatRule rule;
    std::int64_t start = 0; // seconds since 1970 as the owner's clock shows them
    std::set<std::chrono::sys_days> deletions{};
    std::vector<EventException> exceptions{}; // by their pattern dates

    bool operator==(const MeetingPattern&) const = default;
};

// Empty for a meeting that doesn't repeat, or whose rule makes no sense.
std::optional<MeetingPattern> toPattern(const Properties& properties);

// Replaces whatever the properties say of a pattern. An empty one removes it.
void setPattern(Properties& properties, const std::optional<MeetingPattern>& pattern);

// The days "Deletion.N.OriginalDate"; empty when one that is counted is not there.
std::optional<std::set<std::chrono::sys_days>> deletionsOf(const Properties& properties);

// Day and time of a number of minutes since 1601, in seconds since 1970.
std::int64_t fromMinutes1601(std::uint32_t minutes);
std::string minutes1601Text(std::int64_t seconds);

} // namespace tsr
