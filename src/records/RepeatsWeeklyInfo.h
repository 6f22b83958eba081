#pragma once

#include "records/BasicRepeatInfo.h"

namespace tsr {

// Every so many weeks, on some of the seven days. The mask of days is the same on the device and in Notes.
//
//   property      value
//   "DaysOfWeek"  decimal: bit 0 Sunday to bit 6 Saturday
class RepeatsWeeklyInfo : public BasicRepeatInfo {
public:
    RepeatsWeeklyInfo() = default; // on no day
    // Raises NotUnsigned without days; bits above the low byte are dropped.
    explicit RepeatsWeeklyInfo(const NotesItem& item);

    CountedPtr<RepeatInfo> clone() const override;
    void setDaysOfWeek(std::uint8_t mask) override { daysOfWeek_ = mask; }
    std::uint8_t daysOfWeek() const override { return daysOfWeek_; }
    bool fitsDevice() const override { return true; }
    std::uint8_t deviceType() const override { return 2; }
    void addTo(NotesItem& item, const TimeZone& timeZone) const override;

private:
    std::uint8_t daysOfWeek_ = 0;
};

} // namespace tsr
