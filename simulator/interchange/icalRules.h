#pragma once

#include <cstdint>

#include "interchange/RepeatRule.h"
#include "interchange/icalComponents.h"

namespace tsr {

// The rule of an event whose first day is `start`; `until`, if there is one, is the moment of its UNTIL on
// the clock of the event. Raises InterchangeError, with the reason, for one that a handheld can't hold.
RepeatRule toRepeatRule(icalrecurrencetype rule, std::int64_t start, std::optional<std::int64_t> until);

icalproperty* newRule(const RepeatRule& rule, bool allDay);

} // namespace tsr
