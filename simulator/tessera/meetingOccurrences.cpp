#include "tessera/meetingOccurrences.h"

#include <algorithm>

#include "interchange/calendarView.h"

namespace tsr {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr std::size_t maxInstances = 1000;
constexpr std::size_t allDays = SIZE_MAX;

std::int64_t daysTaken(const MeetingOccurrence& occurrence) {
    return daysTouched(occurrence.start, occurrence.minutes, occurrence.allDay);
}

bool touches(const MeetingOccurrence& occurrence, const DateWindow& window) {
    const sys_days first = dayOf(occurrence.start);
    return first <= window.last && first + days(daysTaken(occurrence) - 1) >= window.first;
}

MeetingOccurrence occurrenceAt(const Meeting& meeting, std::int64_t start) {
    return {dayOf(start), start, meeting.minutes, meeting.allDay, meeting.subject, meeting.note};
}

MeetingOccurrence changed(const Meeting& meeting, const EventException& exception) {
    return {exception.patternDate,
            exception.start,
            exception.minutes.value_or(meeting.minutes),
            exception.allDay.value_or(meeting.allDay),
            exception.subject.value_or(meeting.subject),
            exception.note.value_or(meeting.note)};
}

// The days of the pattern that are as it has them.
std::vector<sys_days> ordinaryDays(const MeetingPattern& pattern, const DateWindow& window,
                                   std::size_t most) {
    std::set<sys_days> others = pattern.deletions;
    for (const EventException& exception : pattern.exceptions) others.insert(exception.patternDate);
    const std::size_t asked = most < allDays - others.size() ? most + others.size() : allDays;
    std::vector<sys_days> found =
        occurrences(pattern.rule, dayOf(pattern.start), window.first, window.last, asked);
    std::erase_if(found, [&others](sys_days day) { return others.contains(day); });
    if (found.size() > most) found.resize(most);
    return found;
}

std::vector<MeetingOccurrence> occurrences(const Meeting& meeting, const ZoneRule& zone,
                                           const DateWindow& window, std::size_t most) {
    std::vector<MeetingOccurrence> found;
    if (!meeting.pattern) {
        found.push_back(occurrenceAt(meeting, zone.toLocal(meeting.start)));
    } else {
        const std::int64_t timeOfDay = meeting.pattern->start - secondsOf(dayOf(meeting.pattern->start));
        const days further(daysTaken(occurrenceAt(meeting, meeting.pattern->start)) - 1);
        for (const sys_days day : ordinaryDays(*meeting.pattern, {window.first - further, window.last}, most))
            found.push_back(occurrenceAt(meeting, secondsOf(day) + timeOfDay));
        for (const EventException& exception : meeting.pattern->exceptions)
            found.push_back(changed(meeting, exception));
    }
    std::erase_if(found,
                  [&window](const MeetingOccurrence& occurrence) { return !touches(occurrence, window); });
    return found;
}

} // namespace

std::vector<MeetingOccurrence> occurrences(const Meeting& meeting, const ZoneRule& zone,
                                           const DateWindow& days) {
    return occurrences(meeting, zone, days, allDays);
}

bool takesPlace(const Properties& properties, const DateWindow& days, const ZoneRule& zone) {
    auto meeting = toMeeting(properties);
    if (!meeting) return false;
    if (!occurrences(*meeting, zone, days, 1).empty()) return true;
    if (!meeting->pattern) return false;
    // A handheld that has the meeting must hear of it when its last day was deleted or moved away.
    meeting->pattern->deletions.clear();
    meeting->pattern->exceptions.clear();
    return !occurrences(*meeting, zone, days, 1).empty();
}

Properties withInstances(const Properties& properties, const DateWindow& window) {
    const auto pattern = toPattern(properties);
    if (!pattern) return properties;
    const sys_days start = dayOf(pattern->start);
    const DateWindow days = pattern->rule.until ? DateWindow{start, *pattern->rule.until} : window;
    Properties given = properties;
    std::size_t count = 0;
    for (const sys_days day : ordinaryDays(*pattern, days, maxInstances)) {
        given["Instance." + std::to_string(count++) + ".Date"] = {
            minutes1601Text(secondsOf(day) + pattern->start - secondsOf(start))};
    }
    given["InstanceCount"] = {std::to_string(count)};
    return given;
}

std::vector<Span> busySpans(const Meeting& meeting, const ZoneRule& zone, const DateWindow& days) {
    std::vector<Span> spans;
    for (const MeetingOccurrence& occurrence : occurrences(meeting, zone, days)) {
        Meeting once{occurrence.subject, zone.toUtc(occurrence.start), occurrence.minutes, occurrence.allDay};
        if (!meeting.pattern) once.start = meeting.start; // exact, also where the clock is put back
        spans.push_back(busySpan(once, zone));
    }
    return spans;
}

} // namespace tsr
