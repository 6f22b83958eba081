#pragma once

#include <cstdint>
#include <memory>

#include "foundation/DateTime.h"
#include "foundation/TimeStamp.h"
#include "foundation/TransitionDateSpecBase.h"

namespace tsr {

// Turns moments into what the clocks on the walls of a zone show, and back.
class TimeZone {
public:
    TimeZone() = default; // UTC

    // `offset`: seconds to add to UTC for standard time, positive east of Greenwich.
    explicit TimeZone(std::int32_t offset) : offset_(offset) {}

    // `daylightDelta`: seconds to add on top while daylight saving lasts. The moment of `daylightStart` is
    // told in standard time, that of `daylightEnd` in daylight time.
    TimeZone(std::int32_t offset, std::int32_t daylightDelta, const TransitionDateSpecBase& daylightStart,
             const TransitionDateSpecBase& daylightEnd);

    TimeZone(const TimeZone& other);
    TimeZone(TimeZone&& other) noexcept = default;
    TimeZone& operator=(TimeZone other) noexcept;
    ~TimeZone() = default;

    std::int32_t offset() const { return offset_; }
    std::int32_t daylightDelta() const { return daylightDelta_; }

    // Raises IntegerSignLost for a reading before 1800.
    DateTime toLocal(const TimeStamp& timeStamp) const;

    // A reading that doesn't exist, and one that occurs twice, count as daylight time.
    TimeStamp toUtc(const DateTime& dateTime) const;

private:
    std::int32_t offset_ = 0;
    std::int32_t daylightDelta_ = 0; // 0: no daylight saving
    std::unique_ptr<TransitionDateSpecBase> daylightStart_;
    std::unique_ptr<TransitionDateSpecBase> daylightEnd_;
};

} // namespace tsr
