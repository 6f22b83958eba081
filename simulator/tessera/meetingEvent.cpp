#include "tessera/meetingEvent.h"

namespace tsr {

Event toEvent(const Meeting& meeting, const ZoneRule& zone) {
    Event event;
    event.subject = meeting.subject;
    event.note = meeting.note;
    event.start = meeting.pattern ? meeting.pattern->start : zone.toLocal(meeting.start);
    event.minutes = meeting.minutes;
    event.allDay = meeting.allDay;
    event.alarm = meeting.alarm;
    event.isPrivate = meeting.isPrivate;
    if (!meeting.pattern) return event;
    event.rule = meeting.pattern->rule;
    event.deletions = meeting.pattern->deletions;
    event.exceptions = meeting.pattern->exceptions;
    return event;
}

Meeting toMeeting(const Event& event, const ZoneRule& zone) {
    Meeting meeting;
    meeting.subject = event.subject;
    meeting.note = event.note;
    meeting.start = zone.toUtc(event.start);
    meeting.minutes = event.minutes;
    meeting.allDay = event.allDay;
    meeting.alarm = event.alarm;
    meeting.isPrivate = event.isPrivate;
    if (!event.rule) return meeting;
    MeetingPattern& pattern = meeting.pattern.emplace();
    pattern.rule = *event.rule;
    pattern.start = event.start;
    pattern.deletions = event.deletions;
    pattern.exceptions = event.exceptions;
    return meeting;
}

CalendarClock clockOf(const ZoneRule& zone) {
    return {[zone](std::int64_t utc) { return zone.toLocal(utc); },
            [zone](std::int64_t local) { return zone.toUtc(local); }};
}

} // namespace tsr
