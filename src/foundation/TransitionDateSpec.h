#pragma once

#include <cstdint>
#include <memory>

#include "foundation/TimeOfDay.h"
#include "foundation/TransitionDateSpecBase.h"

namespace tsr {

// "The last Sunday of March, 02:00."
class TransitionDateSpec : public TransitionDateSpecBase {
public:
    // `dayOfWeek` is 0 for Sunday; `instance` counts from the first such day of the month, or back from the
    // last as -1. Raises InvalidTime, InvalidTransition. A day of week of 7 passes, and means nothing good.
    TransitionDateSpec(std::uint32_t month, std::uint32_t dayOfWeek, std::int32_t instance,
                       std::uint32_t hour, std::uint32_t minute, std::uint32_t second);

    std::unique_ptr<TransitionDateSpecBase> clone() const override;
    DateTime moment(std::uint32_t year) const override; // raises InvalidDayOfWeekInstance, InvalidDate

private:
    std::uint32_t month_;
    std::uint32_t dayOfWeek_;
    std::int32_t instance_;
    TimeOfDay timeOfDay_;
};

} // namespace tsr
