#pragma once

#include <ostream>

#include "handheld/FreeTimeDatabase.h"

namespace tsr {

// The weeks of a colleague as grids: a line for each day, a character for each half hour, filled for free
// time. A half hour of which only one quarter is free shows which: with `ascii`, "<" for the first and ">"
// for the second.
void drawFreeTime(std::ostream& out, const Colleague& colleague, bool ascii);

// Runs of free quarters, from the first slot to the one behind the last.
std::vector<std::pair<std::size_t, std::size_t>> freeSpans(const FreeWeek& week);

std::string dateText(std::chrono::sys_days date);             // "2002-02-04"
std::string slotText(const FreeWeek& week, std::size_t slot); // "2002-02-04T09:15"

} // namespace tsr
