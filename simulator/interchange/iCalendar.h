#pragma once

#include <cstdint>
#include <string>
#include <vector>

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

} // namespace tsr
