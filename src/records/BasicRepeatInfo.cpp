#include "records/BasicRepeatInfo.h"

#include "foundation/GeneralError.h"
#include "foundation/numbers.h"
#include "records/meetingProperties.h"

namespace tsr {

namespace {

constexpr char recursName[] = "Recurs";
constexpr char intervalName[] = "Interval";
constexpr char patternEndName[] = "PatternEnd";
constexpr char forever[] = "Forever";

} // namespace

BasicRepeatInfo::BasicRepeatInfo(const NotesItem& item) : interval_(requiredNumber(item, intervalName)) {
    const std::string end = firstValue(item, patternEndName);
    if (end.empty()) throw GeneralError(Message::NoPatternEnd);
    forever_ = end == forever;
    if (!forever_) endDate_ = utcReading(parseUnsigned(end)).date();
}

void BasicRepeatInfo::addBasicTo(NotesItem& item, const char* word) const {
    addValue(item, recursName, word);
    addValue(item, intervalName, toDecimal(interval_));
    addValue(item, patternEndName,
             forever_ ? forever : minutesText(DateTime(endDate_, TimeOfDay()), TimeZone()));
}

} // namespace tsr
