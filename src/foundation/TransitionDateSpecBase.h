#pragma once

#include <cstdint>
#include <memory>

#include "foundation/DateTime.h"

namespace tsr {

// A rule for the moment, by the clock on the wall, at which daylight saving starts or ends in a year.
class TransitionDateSpecBase {
public:
    virtual ~TransitionDateSpecBase() = default;
    virtual std::unique_ptr<TransitionDateSpecBase> clone() const = 0;
    virtual DateTime moment(std::uint32_t year) const = 0;
};

} // namespace tsr
