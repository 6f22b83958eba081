#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "tessera/DateWindow.h"
#include "tessera/Meeting.h"

namespace tsr {

// A meeting as it takes place once.
struct MeetingOccurrence {
    std::chrono::sys_days patternDate{}; // which day of the pattern it is; its own without a pattern
    std::int64_t start = 0;              // seconds since 1970 as the owner's clock shows them
    std::uint32_t minutes = 0;
    bool allDay = false;
    std::string subject{};
    std::string note{};

    bool operator==(const MeetingOccurrence&) const = default;
};

// Those of a meeting that touch one of the days, in the order of their pattern dates, changed ones last.
std::vector<MeetingOccurrence> occurrences(const Meeting& meeting, const ZoneRule& zone,
                                           const DateWindow& days);

// Whether a meeting takes part in a replication of these days. A day of a pattern counts also when it was
// deleted or moved away.
bool takesPlace(const Properties& properties, const DateWindow& days, const ZoneRule& zone);

// The properties of a meeting with "InstanceCount" and "Instance.N.Date", from 0: the days on which its
// pattern has it, without those that are deleted or changed. The handheld lays the further days of a meeting
// of several whole days behind each. A rule with an end gives all of them, another those of the window, and
// there are at most 1,000.
Properties withInstances(const Properties& properties, const DateWindow& window);

// The time that a meeting takes on these days.
std::vector<Span> busySpans(const Meeting& meeting, const ZoneRule& zone, const DateWindow& days);

} // namespace tsr
