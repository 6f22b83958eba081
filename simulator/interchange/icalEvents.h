#pragma once

#include "interchange/CalendarClock.h"
#include "interchange/Event.h"
#include "interchange/icalComponents.h"

namespace tsr {

void addEvents(const Component& calendar, const std::vector<Event>& events, std::int64_t stamp,
               const CalendarClock& clock);

} // namespace tsr
