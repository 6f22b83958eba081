#include "tessera/meetingDifferences.h"

#include <algorithm>

#include "tessera/Meeting.h"
#include "tessera/RequestRefused.h"
#include "tessera/hexadecimalText.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

using std::chrono::sys_days;

std::int64_t requiredMoment(const Properties& sent, const std::string& name) {
    const auto minutes = parseNumber(firstValue(sent, name));
    if (!minutes) throw RequestRefused(ResultCode::ItemRefused, "The differences have no " + name + ".");
    return fromMinutes1601(*minutes);
}

// All that the handheld has of the day, which it holds as a record of its own.
EventException sentException(const Properties& sent, const std::string& prefix, const ZoneRule& zone) {
    EventException exception;
    exception.patternDate = dayOf(requiredMoment(sent, prefix + "PatternDate"));
    exception.start = zone.toLocal(requiredMoment(sent, prefix + "Date"));
    exception.subject = firstValue(sent, prefix + "Subject");
    exception.note = fromHexadecimalText(firstValue(sent, prefix + "Body"));
    exception.allDay = firstValue(sent, prefix + "AllDay") == "1";
    exception.minutes =
        *exception.allDay ? minutesPerDay : parseNumber(firstValue(sent, prefix + "Duration")).value_or(0);
    return exception;
}

std::vector<EventException> sentExceptions(const Properties& sent, const ZoneRule& zone) {
    std::vector<EventException> exceptions;
    const std::uint32_t count = parseNumber(firstValue(sent, "ExceptionCount")).value_or(0);
    for (std::uint32_t n = 0; n < count; ++n)
        exceptions.push_back(sentException(sent, "Exception." + std::to_string(n) + ".", zone));
    return exceptions;
}

using Exceptions = std::vector<EventException>;

Exceptions::iterator exceptionOn(Exceptions& exceptions, sys_days day) {
    const auto moved = std::find_if(exceptions.begin(), exceptions.end(),
                                    [day](const EventException& each) { return dayOf(each.start) == day; });
    if (moved != exceptions.end()) return moved;
    return std::find_if(exceptions.begin(), exceptions.end(),
                        [day](const EventException& each) { return each.patternDate == day; });
}

void deleteDay(MeetingPattern& pattern, sys_days day) {
    const auto found = exceptionOn(pattern.exceptions, day);
    if (found == pattern.exceptions.end()) {
        pattern.deletions.insert(day);
        return;
    }
    pattern.deletions.insert(found->patternDate);
    pattern.exceptions.erase(found);
}

// As the handheld would send it.
EventException completed(EventException exception, const Meeting& meeting) {
    exception.subject = exception.subject.value_or(meeting.subject);
    exception.note = exception.note.value_or(meeting.note);
    exception.allDay = exception.allDay.value_or(meeting.allDay);
    exception.minutes = exception.minutes.value_or(meeting.minutes);
    return exception;
}

void changeDay(MeetingPattern& pattern, EventException exception) {
    const sys_days day = exception.patternDate;
    const auto found = exceptionOn(pattern.exceptions, day);
    if (found != pattern.exceptions.end()) {
        exception.patternDate = found->patternDate;
        *found = exception;
        return;
    }
    pattern.deletions.erase(day);
    const auto place = std::upper_bound(
        pattern.exceptions.begin(), pattern.exceptions.end(), exception,
        [](const EventException& a, const EventException& b) { return a.patternDate < b.patternDate; });
    pattern.exceptions.insert(place, exception);
}

bool isInNotes(const Meeting& meeting, MeetingPattern& pattern, EventException exception) {
    const auto found = exceptionOn(pattern.exceptions, exception.patternDate);
    if (found == pattern.exceptions.end()) return false;
    exception.patternDate = found->patternDate;
    return completed(*found, meeting) == exception;
}

Properties meetingOfItsOwn(const Properties& kept, Meeting meeting, const EventException& exception,
                           const ZoneRule& zone) {
    meeting.pattern.reset();
    meeting.start = zone.toUtc(exception.start);
    meeting.subject = exception.subject.value_or("");
    meeting.note = exception.note.value_or("");
    meeting.allDay = exception.allDay.value_or(false);
    meeting.minutes = exception.minutes.value_or(0);
    Properties properties = kept;
    setMeeting(properties, meeting);
    return properties;
}

} // namespace

Differences meetingDifferences(const Properties& kept, const Properties& sent, const ZoneRule& zone,
                               bool notesPrevails) {
    Differences differences{.changed = kept};
    differences.killed = firstValue(sent, "Exception.0.Kill") == "Yes";
    const auto deletions = deletionsOf(sent);
    if (!deletions)
        throw RequestRefused(ResultCode::ItemRefused, "The differences have fewer deletions than they say.");
    const std::vector<EventException> exceptions = sentExceptions(sent, zone);
    auto meeting = toMeeting(kept);
    if (differences.killed || !meeting) return differences;

    if (meeting->pattern) {
        for (const sys_days day : *deletions) deleteDay(*meeting->pattern, day);
    }
    // A meeting that Notes has stopped repeating has no days to change.
    const bool apart = notesPrevails || !meeting->pattern;
    for (const EventException& exception : exceptions) {
        if (!apart) {
            changeDay(*meeting->pattern, exception);
        } else if (!meeting->pattern || !isInNotes(*meeting, *meeting->pattern, exception)) {
            differences.besides.push_back(meetingOfItsOwn(kept, *meeting, exception, zone));
        }
    }
    setPattern(differences.changed, meeting->pattern);
    return differences;
}

} // namespace tsr
