#pragma once

#include "interchange/CalendarClock.h"
#include "interchange/Event.h"
#include "tessera/Meeting.h"

namespace tsr {

// Between a meeting and the event that others know.
Event toEvent(const Meeting& meeting, const ZoneRule& zone);
Meeting toMeeting(const Event& event, const ZoneRule& zone);

CalendarClock clockOf(const ZoneRule& zone);

} // namespace tsr
