#pragma once

#include <vector>

#include "records/BasicRepeatInfo.h"

namespace tsr {

// Every so many months, on the same days of the month. The device has room for one day.
//
//   property         value
//   "DayInMonth.%d"  decimal: 1 to 31; numbered from 1
class RepeatsMonthlyByDateInfo : public BasicRepeatInfo {
public:
    explicit RepeatsMonthlyByDateInfo(std::uint32_t dayNumber) : dayNumbers_{dayNumber} {}
    // Raises InvalidMonthDay for a day that doesn't exist or comes twice, NoMonthDay without any.
    explicit RepeatsMonthlyByDateInfo(const NotesItem& item);

    CountedPtr<RepeatInfo> clone() const override;
    std::uint32_t dayNumber(std::size_t index) const override { return dayNumbers_[index]; }
    bool fitsDevice() const override { return dayNumbers_.size() == 1; }
    std::uint8_t deviceType() const override { return 4; }
    void addTo(NotesItem& item, const TimeZone& timeZone) const override;

private:
    void addDayNumber(std::uint32_t dayNumber);

    std::vector<std::uint32_t> dayNumbers_; // never empty
};

} // namespace tsr
