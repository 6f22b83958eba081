#pragma once

#include <string>

#include "foundation/Date.h"
#include "foundation/TimeInterval.h"
#include "foundation/TimeOfDay.h"

namespace tsr {

// One instance of a repeating meeting that was changed on the device: where the pattern has it, and all that
// it is now. Ordered by the former.
struct DatebookExceptionDiff {
    Date patternDate;
    std::string subject;
    std::string body;
    bool allDay = false;
    Date date;
    TimeOfDay time;
    TimeInterval duration;

    friend bool operator<(const DatebookExceptionDiff& left, const DatebookExceptionDiff& right) {
        return left.patternDate < right.patternDate;
    }
};

} // namespace tsr
