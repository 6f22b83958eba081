#pragma once

#include <vector>

#include "records/BasicRepeatInfo.h"

namespace tsr {

// Every so many months, on days that are told by their week: the second Tuesday. The device has room for one.
//
//   property  value
//   "Nth.%d"  instance, ".", weekday, in decimal; numbered from 1
class RepeatsMonthlyByDayInfo : public BasicRepeatInfo {
public:
    RepeatsMonthlyByDayInfo() = default; // on no day
    // Raises InvalidDaySpec for one that cannot be read or is out of range, NoDaySpecs without any.
    explicit RepeatsMonthlyByDayInfo(const NotesItem& item);

    CountedPtr<RepeatInfo> clone() const override;
    DaySpec daySpec(std::size_t index) const override;
    void addDaySpec(std::uint32_t instance, std::uint32_t weekday) override;
    bool fitsDevice() const override { return daySpecs_.size() == 1; }
    std::uint8_t deviceType() const override { return 3; }
    void addTo(NotesItem& item, const TimeZone& timeZone) const override;

private:
    void removeFourthsBesideLasts();

    std::vector<DaySpec> daySpecs_;
};

} // namespace tsr
