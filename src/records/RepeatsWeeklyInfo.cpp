#include "records/RepeatsWeeklyInfo.h"

#include "foundation/numbers.h"
#include "records/meetingProperties.h"

namespace tsr {

namespace {

constexpr char daysOfWeekName[] = "DaysOfWeek";

} // namespace

RepeatsWeeklyInfo::RepeatsWeeklyInfo(const NotesItem& item)
    : BasicRepeatInfo(item), daysOfWeek_(static_cast<std::uint8_t>(requiredNumber(item, daysOfWeekName))) {}

CountedPtr<RepeatInfo> RepeatsWeeklyInfo::clone() const { return makeCounted<RepeatsWeeklyInfo>(*this); }

void RepeatsWeeklyInfo::addTo(NotesItem& item, const TimeZone&) const {
    addBasicTo(item, "Week");
    addValue(item, daysOfWeekName, toDecimal(daysOfWeek_));
}

} // namespace tsr
