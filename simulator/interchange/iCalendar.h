#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "interchange/CalendarClock.h"
#include "interchange/Event.h"
#include "interchange/Task.h"

namespace tsr {

// The tasks (VTODO) of an iCalendar file (RFC 5545), in UTF-8. What a Task has no place for is passed over,
// and so are other components. Raises InterchangeError.
//
//   SUMMARY, DESCRIPTION, CATEGORIES, RRULE   of the same meaning; a comma divides categories, always
//   DUE        its day, as it stands in its own zone
//   PRIORITY   1 to 4 high, 5 medium, 6 to 9 low, 0 none
//   STATUS     COMPLETED, as well as a property COMPLETED, for one that is done
//   CLASS      PRIVATE or CONFIDENTIAL for a private one
std::vector<Task> readTasks(const std::string& text);

// `stamp` is the moment of the export, in seconds since 1970.
std::string taskCalendarText(const std::vector<Task>& tasks, std::int64_t stamp);

// What a file's events became, and why others can't be held: "'Team': its rule ...".
struct EventFile {
    std::vector<Event> events{};
    std::vector<std::string> refused{};
};

// The events (VEVENT) of an iCalendar file. Raises InterchangeError when it is none; an event that can't be
// held is refused alone.
//
//   SUMMARY, DESCRIPTION, CLASS         as of tasks
//   DTSTART, DTEND, DURATION            a date for whole days
//   VALARM                              the first that comes before the start
//   RRULE                               a rule that a RepeatRule says and that a handheld can hold, as its
//                                       first days show; COUNT becomes a last day
//   EXDATE, RECURRENCE-ID               the deletions and the exceptions of the event of that UID
EventFile readEvents(const std::string& text, const CalendarClock& clock);

std::string calendarText(const std::vector<Event>& events, const std::vector<Task>& tasks, std::int64_t stamp,
                         const CalendarClock& clock);

} // namespace tsr
