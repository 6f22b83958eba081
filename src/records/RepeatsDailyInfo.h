#pragma once

#include "records/BasicRepeatInfo.h"

namespace tsr {

// Every so many days.
class RepeatsDailyInfo : public BasicRepeatInfo {
public:
    RepeatsDailyInfo() = default;
    explicit RepeatsDailyInfo(const NotesItem& item) : BasicRepeatInfo(item) {}

    CountedPtr<RepeatInfo> clone() const override;
    bool fitsDevice() const override { return true; }
    std::uint8_t deviceType() const override { return 1; }
    void addTo(NotesItem& item, const TimeZone& timeZone) const override;
};

} // namespace tsr
