#pragma once

#include <vector>

#include "handheld/forms/RecordForm.h"
#include "interchange/Event.h"

namespace tsr {

// A record of the Date Book by its fields, in UTF-8.
struct DatebookFields {
    FieldValues fields;
    bool secret = false;
};

// An event and its changed days, which are records of their own; the event itself comes first. One of several
// whole days comes daily, for a record of the handheld has one day. Raises UsageError for an event that runs
// over midnight, or repeats and takes several days.
std::vector<DatebookFields> toDatebook(const Event& event);

// Raises HandheldError for fields that make no event.
Event toEvent(const DatebookFields& record);

} // namespace tsr
