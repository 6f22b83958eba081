#include "tessera/Meeting.h"

#include <algorithm>

#include "tessera/TesseraError.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

constexpr char subjectName[] = "0037001F";
constexpr char bodyName[] = "00170041";
constexpr char startName[] = "420D0040";
constexpr char minutesName[] = "42130003";
constexpr char allDayName[] = "42150003";
constexpr char alarmName[] = "45030002";
constexpr char privateName[] = "00040002"; // private unless it is there and "0"

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t minutesPerDay = 1440;

} // namespace

std::optional<Meeting> toMeeting(const Document& document) {
    const auto start = parseNumber(firstValue(document.properties, startName));
    const auto minutes = parseNumber(firstValue(document.properties, minutesName));
    if (!start || !minutes) return std::nullopt;
    return Meeting{firstValue(document.properties, subjectName), firstNotesSecond + *start, *minutes,
                   firstValue(document.properties, allDayName) == "1"};
}

Properties toProperties(const Meeting& meeting) {
    Properties properties{{bodyName, {""}}, {alarmName, {"0"}}, {privateName, {"0"}}};
    setMeeting(properties, meeting);
    return properties;
}

void setMeeting(Properties& properties, const Meeting& meeting) {
    if (meeting.start < firstNotesSecond || meeting.start > lastNotesSecond) {
        throw TesseraError("a meeting must start between 1993 and 2129");
    }
    properties[subjectName] = {meeting.subject};
    properties[startName] = {std::to_string(meeting.start - firstNotesSecond)};
    properties[minutesName] = {std::to_string(meeting.minutes)};
    properties[allDayName] = {meeting.allDay ? "1" : "0"};
}

Span busySpan(const Meeting& meeting, const ZoneRule& zone) {
    if (!meeting.allDay) return {meeting.start, meeting.start + std::int64_t{meeting.minutes} * 60};
    const std::int64_t local = zone.toLocal(meeting.start);
    const std::int64_t midnight = local - local % secondsPerDay;
    const std::int64_t days =
        std::max<std::int64_t>(1, (meeting.minutes + minutesPerDay - 1) / minutesPerDay);
    return {zone.toUtc(midnight), zone.toUtc(midnight + days * secondsPerDay)};
}

} // namespace tsr
