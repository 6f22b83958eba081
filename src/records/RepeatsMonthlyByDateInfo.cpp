#include "records/RepeatsMonthlyByDateInfo.h"

#include <algorithm>

#include "foundation/GeneralError.h"
#include "foundation/numbers.h"
#include "records/meetingProperties.h"

namespace tsr {

namespace {

constexpr char dayInMonthName[] = "DayInMonth.";
constexpr std::uint32_t mostDays = 31;

} // namespace

RepeatsMonthlyByDateInfo::RepeatsMonthlyByDateInfo(const NotesItem& item) : BasicRepeatInfo(item) {
    for (std::uint32_t n = 1; n <= mostDays; ++n) {
        const std::string name = numberedName(dayInMonthName, n);
        if (!hasProperty(item, name)) break;
        addDayNumber(requiredNumber(item, name));
    }
    if (dayNumbers_.empty()) throw GeneralError(Message::NoMonthDay);
}

void RepeatsMonthlyByDateInfo::addDayNumber(std::uint32_t dayNumber) {
    const bool known = std::find(dayNumbers_.begin(), dayNumbers_.end(), dayNumber) != dayNumbers_.end();
    if (dayNumber < 1 || dayNumber > mostDays || known) {
        throw GeneralError(Message::InvalidMonthDay) << Tag('d') << dayNumber;
    }
    dayNumbers_.push_back(dayNumber);
}

CountedPtr<RepeatInfo> RepeatsMonthlyByDateInfo::clone() const {
    return makeCounted<RepeatsMonthlyByDateInfo>(*this);
}

void RepeatsMonthlyByDateInfo::addTo(NotesItem& item, const TimeZone&) const {
    addBasicTo(item, "Month");
    std::uint32_t n = 0;
    for (const std::uint32_t day : dayNumbers_) {
        addValue(item, numberedName(dayInMonthName, ++n), toDecimal(day));
    }
}

} // namespace tsr
