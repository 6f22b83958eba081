#pragma once

#include "records/RepeatInfo.h"

namespace tsr {

// The rule of an event that takes place once. It has neither interval nor end.
class RepeatsNeverInfo : public RepeatInfo {
public:
    CountedPtr<RepeatInfo> clone() const override;
    void setEndDate(const Date& date) override;
    Date endDate() const override;
    bool isForever() const override;
    void setInterval(std::uint32_t interval) override;
    std::uint32_t interval() const override;
    bool fitsDevice() const override { return true; }
    bool repeats() const override { return false; }
    std::uint8_t deviceType() const override { return 0; }
    void addTo(NotesItem&, const TimeZone&) const override {} // an item without "Recurs" does not repeat
};

} // namespace tsr
