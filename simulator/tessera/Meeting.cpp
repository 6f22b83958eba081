#include "tessera/Meeting.h"

#include <algorithm>

#include "tessera/RequestRefused.h"
#include "tessera/TesseraError.h"
#include "tessera/hexadecimalText.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

constexpr char subjectName[] = "0037001F";
constexpr char noteName[] = "00170041";
constexpr char startName[] = "420D0040";
constexpr char minutesName[] = "42130003";
constexpr char allDayName[] = "42150003";
constexpr char alarmName[] = "45030002";
constexpr char alarmMinutesName[] = "45010003";
constexpr char alarmSoundName[] = "4509001F";
constexpr char privateName[] = "00040002"; // private unless it is there and "0"
constexpr char recursName[] = "Recurs";

constexpr std::int64_t secondsPerDay = 86400;

void takeOver(Properties& properties, const Properties& sent, const std::string& name) {
    const auto found = sent.find(name);
    if (found == sent.end()) {
        properties.erase(name);
    } else {
        properties[name] = found->second;
    }
}

} // namespace

std::optional<Meeting> toMeeting(const Document& document) { return toMeeting(document.properties); }

std::optional<Meeting> toMeeting(const Properties& properties) {
    const auto start = parseNumber(firstValue(properties, startName));
    const auto minutes = parseNumber(firstValue(properties, minutesName));
    if (!start || !minutes) return std::nullopt;
    Meeting meeting{firstValue(properties, subjectName), firstNotesSecond + *start, *minutes,
                    firstValue(properties, allDayName) == "1"};
    meeting.note = fromHexadecimalText(firstValue(properties, noteName));
    if (firstValue(properties, alarmName) == "1")
        meeting.alarm = parseNumber(firstValue(properties, alarmMinutesName));
    meeting.isPrivate = firstValue(properties, privateName) != "0";
    meeting.pattern = toPattern(properties);
    return meeting;
}

Properties toProperties(const Meeting& meeting) {
    Properties properties;
    setMeeting(properties, meeting);
    return properties;
}

void setMeeting(Properties& properties, const Meeting& meeting) {
    if (meeting.start < firstNotesSecond || meeting.start > lastNotesSecond) {
        throw TesseraError("a meeting must start between 1993 and 2129");
    }
    properties[subjectName] = {meeting.subject};
    properties[noteName] = {toHexadecimalText(meeting.note)};
    properties[startName] = {std::to_string(meeting.start - firstNotesSecond)};
    properties[minutesName] = {std::to_string(meeting.minutes)};
    properties[allDayName] = {meeting.allDay ? "1" : "0"};
    properties[alarmName] = {meeting.alarm ? "1" : "0"};
    properties.erase(alarmMinutesName);
    if (meeting.alarm) properties[alarmMinutesName] = {std::to_string(*meeting.alarm)};
    properties[privateName] = {meeting.isPrivate ? "1" : "0"};
    setPattern(properties, meeting.pattern);
}

void setLocalStart(Meeting& meeting, std::int64_t localStart, const ZoneRule& zone) {
    meeting.start = zone.toUtc(localStart);
    if (meeting.pattern) meeting.pattern->start = localStart;
}

Properties adoptMeeting(const Properties& kept, const Properties& sent) {
    const auto meeting = toMeeting(sent);
    if (!meeting) throw RequestRefused(ResultCode::ItemRefused, "The meeting has no start or no length.");
    if (!meeting->pattern && !firstValue(sent, recursName).empty())
        throw RequestRefused(ResultCode::ItemRefused, "The meeting repeats by no rule.");
    Properties properties = kept;
    for (const char* const name : {subjectName, noteName, startName, minutesName, allDayName, alarmName,
                                   alarmMinutesName, alarmSoundName})
        takeOver(properties, sent, name);
    if (meeting->allDay) properties[minutesName] = {std::to_string(minutesPerDay)};
    properties[privateName] = {sent.contains(privateName) ? firstValue(sent, privateName) : "0"};
    setPattern(properties, meeting->pattern);
    return properties;
}

Span busySpan(const Meeting& meeting, const ZoneRule& zone) {
    if (!meeting.allDay) return {meeting.start, meeting.start + std::int64_t{meeting.minutes} * 60};
    const std::int64_t local = zone.toLocal(meeting.start);
    const std::int64_t midnight = local - local % secondsPerDay;
    const std::int64_t days =
        std::max<std::int64_t>(1, (std::int64_t{meeting.minutes} + minutesPerDay - 1) / minutesPerDay);
    return {zone.toUtc(midnight), zone.toUtc(midnight + days * secondsPerDay)};
}

} // namespace tsr
