#include "records/RepeatInfo.h"

#include "foundation/internalError.h"
#include "records/RepeatsDailyInfo.h"
#include "records/RepeatsMonthlyByDateInfo.h"
#include "records/RepeatsMonthlyByDayInfo.h"
#include "records/RepeatsNeverInfo.h"
#include "records/RepeatsWeeklyInfo.h"

namespace tsr {

CountedPtr<RepeatInfo> RepeatInfo::fromItem(const NotesItem& item, const TimeZone&) {
    const std::string recurs = firstValue(item, "Recurs");
    if (recurs.empty()) return makeCounted<RepeatsNeverInfo>();
    if (recurs == "Day") return makeCounted<RepeatsDailyInfo>(item);
    if (recurs == "Week") return makeCounted<RepeatsWeeklyInfo>(item);
    if (recurs == "Month") return makeCounted<RepeatsMonthlyByDateInfo>(item);
    if (recurs == "MonthNth") return makeCounted<RepeatsMonthlyByDayInfo>(item);
    throw GeneralError(Message::UnknownRepeatName) << Tag('r') << recurs;
}

CountedPtr<RepeatInfo> RepeatInfo::forDeviceType(std::uint32_t type, const Date& startDate) {
    switch (type) {
    case 0: return makeCounted<RepeatsNeverInfo>();
    case 1: return makeCounted<RepeatsDailyInfo>();
    case 2: return makeCounted<RepeatsWeeklyInfo>();
    case 3: return makeCounted<RepeatsMonthlyByDayInfo>();
    case 4: return makeCounted<RepeatsMonthlyByDateInfo>(startDate.day());
    default: throw GeneralError(Message::UnknownRepeatNumber) << Tag('n') << type;
    }
}

DaySpec RepeatInfo::daySpec(std::size_t) const { throw internalError(source, __LINE__); }

void RepeatInfo::addDaySpec(std::uint32_t, std::uint32_t) { throw internalError(source, __LINE__); }

std::uint32_t RepeatInfo::dayNumber(std::size_t) const { throw internalError(source, __LINE__); }

void RepeatInfo::setDaysOfWeek(std::uint8_t) { throw internalError(source, __LINE__); }

std::uint8_t RepeatInfo::daysOfWeek() const { throw internalError(source, __LINE__); }

void RepeatInfo::setForever(bool) { throw internalError(source, __LINE__); }

} // namespace tsr
