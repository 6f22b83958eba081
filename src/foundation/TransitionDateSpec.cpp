#include "foundation/TransitionDateSpec.h"

#include "foundation/GeneralError.h"

namespace tsr {

TransitionDateSpec::TransitionDateSpec(std::uint32_t month, std::uint32_t dayOfWeek, std::int32_t instance,
                                       std::uint32_t hour, std::uint32_t minute, std::uint32_t second)
    : month_(month), dayOfWeek_(dayOfWeek), instance_(instance), timeOfDay_(hour, minute, second) {
    const bool instanceFits = instance >= -5 && instance <= 5 && instance != 0;
    if (month < 1 || month > 12 || dayOfWeek > 7 || !instanceFits) {
        throw GeneralError(Message::InvalidTransition)
            << Tag("m") << month << Tag("d") << dayOfWeek << Tag("n") << instance;
    }
}

std::unique_ptr<TransitionDateSpecBase> TransitionDateSpec::clone() const {
    return std::make_unique<TransitionDateSpec>(*this);
}

DateTime TransitionDateSpec::moment(std::uint32_t year) const {
    return DateTime(Date::nthDayOfWeek(year, month_, dayOfWeek_, instance_), timeOfDay_);
}

} // namespace tsr
