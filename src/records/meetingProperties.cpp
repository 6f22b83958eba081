#include "records/meetingProperties.h"

#include "foundation/TimeStamp.h"
#include "foundation/epochs.h"
#include "foundation/narrowing.h"
#include "foundation/numbers.h"

namespace tsr {

std::string numberedName(const char* before, std::uint32_t number, const char* after) {
    return before + toDecimal(number) + after;
}

std::uint32_t requiredNumber(const NotesItem& item, const std::string& name) {
    return parseUnsigned(firstValue(item, name));
}

DateTime utcReading(std::uint32_t minutes) {
    return DateTime(TimeStamp::fromMinutesSince1601(minutes), TimeZone());
}

std::string minutesText(const DateTime& reading, const TimeZone& timeZone) {
    const std::int64_t minutes = minutesSince1601(TimeStamp(reading, timeZone));
    return toDecimal(narrowToUnsigned(static_cast<std::uint64_t>(minutes)));
}

} // namespace tsr
