#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/TimeZone.h"
#include "platform/timeZone.h"

namespace tsr {

// A time zone written as a rule such as "CET-1CEST,M3.5.0,M10.5.0/3": the names of standard and daylight time
// with their distances west of Greenwich, and the days on which daylight saving starts and ends, in the
// wall-clock time that ends there.
//
// Only rules that the protocol can say are taken: days as month.week.weekday, and times within that day.
// Everything else raises TesseraError.
class ZoneRule {
public:
    ZoneRule() : ZoneRule("UTC0") {}
    explicit ZoneRule(const std::string& text);

    const std::string& text() const { return text_; }

    // The 44 bytes that the time-zone request answers, integers little-endian:
    //
    //   offset  bytes  field
    //   0       4      minutes to add to standard time to get UTC
    //   4       4      0
    //   8       4      minutes to add to that in daylight time
    //   12      16     end of daylight saving: year 0, month, day of week, instance (5 is the last), hour,
    //   minute,
    //                  second, milliseconds, 2 bytes each
    //   28      16     start of daylight saving
    std::vector<std::uint8_t> block() const;

    // Both sides are seconds since 1970, the local side as if its clock showed UTC. A local reading that
    // occurs twice is the earlier moment, and one that is skipped counts as daylight time.
    std::int64_t toLocal(std::int64_t utc) const;
    std::int64_t toUtc(std::int64_t local) const;

private:
    std::string text_;
    platform::ZoneInformation information_;
    TimeZone zone_;
};

} // namespace tsr
