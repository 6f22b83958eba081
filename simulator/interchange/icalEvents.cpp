#include "interchange/icalEvents.h"

#include <algorithm>

#include "interchange/InterchangeError.h"
#include "interchange/calendarDays.h"
#include "interchange/iCalendar.h"
#include "interchange/icalRules.h"

namespace tsr {

namespace {

using std::chrono::sys_days;

constexpr std::uint32_t minutesPerDay = 1440;
constexpr std::int64_t secondsPerDay = 86400;
constexpr int daysPerCentury = 36525;
constexpr std::int64_t maxMinutes = 366 * std::int64_t{minutesPerDay};

// A time of a file.
struct FileTime {
    std::int64_t moment = 0;   // UTC where its zone is known
    std::int64_t local = 0;    // on the clock of the calendar
    std::int64_t standing = 0; // as it stands
    bool isDate = false;
    icaltimezone* zone = nullptr;
};

struct FileEvent {
    std::string uid; // which others may have too
    Event event;
    FileTime start;
};

class EventReader {
public:
    explicit EventReader(const CalendarClock& clock) : clock_(clock) {}

    EventFile read(icalcomponent* calendar) {
        forEach(calendar, &EventReader::readEvent);
        forEach(calendar, &EventReader::readException);
        for (const FileEvent& entry : events_) {
            if (!refusedUids_.contains(entry.uid)) file_.events.push_back(entry.event);
        }
        return file_;
    }

private:
    using Step = void (EventReader::*)(icalcomponent*);

    void forEach(icalcomponent* calendar, Step step) {
        for (icalcomponent* event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT);
             event != nullptr; event = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
            try {
                (this->*step)(event);
            } catch (const InterchangeError& error) {
                refusedUids_.insert(uidOf(event));
                file_.refused.push_back("'" + textOf(icalcomponent_get_summary(event))
                                        + "': " + error.what());
            }
        }
    }

    static bool isException(icalcomponent* event) {
        return firstProperty(event, ICAL_RECURRENCEID_PROPERTY) != nullptr;
    }
    static std::string uidOf(icalcomponent* event) { return textOf(icalcomponent_get_uid(event)); }

    void readEvent(icalcomponent* component) {
        if (isException(component)) return;
        raiseForErrors(component);
        for (const auto kind : {ICAL_RDATE_PROPERTY, ICAL_EXRULE_PROPERTY}) {
            if (firstProperty(component, kind) != nullptr)
                throw InterchangeError("it has days besides those of a rule");
        }
        Event event;
        const FileTime start = readTimes(component, event);
        readTexts(component, event);
        event.alarm = alarmOf(component);
        event.isPrivate = isPrivateComponent(component);
        if (icalproperty* const rule = firstProperty(component, ICAL_RRULE_PROPERTY)) {
            readRule(component, rule, start, event);
        }
        events_.push_back({uidOf(component), event, start});
    }

    void readRule(icalcomponent* component, icalproperty* property, const FileTime& start, Event& event) {
        if (icalcomponent_get_next_property(component, ICAL_RRULE_PROPERTY) != nullptr)
            throw InterchangeError("it has several rules");
        if (dayOf(start.local) != dayOf(start.standing))
            throw InterchangeError("it repeats on the days of another time zone");
        const icalrecurrencetype rule = icalproperty_get_rrule(property);
        std::optional<std::int64_t> until;
        if (!icaltime_is_null_time(rule.until)) {
            until = localOf(rule.until, start);
            if (rule.until.is_date != 0) *until += secondsPerDay - 1;
        }
        event.rule = toRepeatRule(rule, event.start, until);
        for (icalproperty* each = firstProperty(component, ICAL_EXDATE_PROPERTY); each != nullptr;
             each = icalcomponent_get_next_property(component, ICAL_EXDATE_PROPERTY)) {
            event.deletions.insert(dayOf(localOf(timeIn(each, component), start)));
        }
    }

    void readException(icalcomponent* component) {
        if (!isException(component) || refusedUids_.contains(uidOf(component))) return;
        raiseForErrors(component);
        icalproperty* const property = firstProperty(component, ICAL_RECURRENCEID_PROPERTY);
        if (icalproperty_get_first_parameter(property, ICAL_RANGE_PARAMETER) != nullptr)
            throw InterchangeError("it changes all the days behind one");
        const auto found = std::find_if(events_.begin(), events_.end(), [&](const FileEvent& entry) {
            return entry.uid == uidOf(component) && entry.event.rule;
        });
        if (found == events_.end()) throw InterchangeError("it changes a day of nothing that repeats");
        Event& master = found->event;
        const sys_days day = dayOf(localOf(timeIn(property, component), found->start));
        if (icalcomponent_get_status(component) == ICAL_STATUS_CANCELLED) {
            master.deletions.insert(day);
            return;
        }
        Event changed;
        readTimes(component, changed);
        readTexts(component, changed);
        EventException exception;
        exception.patternDate = day;
        exception.start = changed.start;
        exception.subject = changed.subject;
        exception.note = changed.note;
        exception.allDay = changed.allDay;
        exception.minutes = changed.minutes;
        master.deletions.erase(day);
        addException(master, exception);
    }

    static void addException(Event& event, const EventException& exception) {
        const auto place = std::lower_bound(
            event.exceptions.begin(), event.exceptions.end(), exception,
            [](const EventException& a, const EventException& b) { return a.patternDate < b.patternDate; });
        if (place != event.exceptions.end() && place->patternDate == exception.patternDate)
            throw InterchangeError("it changes one day twice");
        event.exceptions.insert(place, exception);
    }

    static void readTexts(icalcomponent* component, Event& event) {
        event.subject = textOf(icalcomponent_get_summary(component));
        event.note = textOf(icalcomponent_get_description(component));
    }

    FileTime readTimes(icalcomponent* component, Event& event) {
        icalproperty* const property = firstProperty(component, ICAL_DTSTART_PROPERTY);
        if (property == nullptr) throw InterchangeError("it has no start");
        const FileTime start = timeOf(property, component);
        event.start = start.local;
        event.allDay = start.isDate;
        std::int64_t minutes = start.isDate ? minutesPerDay : 0;
        if (icalproperty* const end = firstProperty(component, ICAL_DTEND_PROPERTY)) {
            minutes = (timeOf(end, component).moment - start.moment) / 60;
        } else if (icalproperty* const length = firstProperty(component, ICAL_DURATION_PROPERTY)) {
            minutes = icaldurationtype_as_int(icalproperty_get_duration(length)) / 60;
        }
        if (minutes < 0 || minutes > maxMinutes)
            throw InterchangeError("it ends before its start or more than a year behind it");
        event.minutes = static_cast<std::uint32_t>(minutes);
        return start;
    }

    static std::optional<std::uint32_t> alarmOf(icalcomponent* event) {
        for (icalcomponent* alarm = icalcomponent_get_first_component(event, ICAL_VALARM_COMPONENT);
             alarm != nullptr; alarm = icalcomponent_get_next_component(event, ICAL_VALARM_COMPONENT)) {
            icalproperty* const trigger = firstProperty(alarm, ICAL_TRIGGER_PROPERTY);
            if (trigger == nullptr) continue;
            const icaltriggertype value = icalproperty_get_trigger(trigger);
            const int seconds = icaldurationtype_as_int(value.duration);
            const bool isRelative =
                icaltime_is_null_time(value.time) != 0
                && icalproperty_get_first_parameter(trigger, ICAL_RELATED_PARAMETER) == nullptr;
            if (isRelative && seconds <= 0) return static_cast<std::uint32_t>(-std::int64_t{seconds} / 60);
        }
        return std::nullopt;
    }

    static icaltimetype timeIn(icalproperty* property, icalcomponent* component) {
        return icalproperty_get_datetime_with_component(property, component);
    }

    // A time on the clock of the event that starts at `start`.
    std::int64_t localOf(const icaltimetype& time, const FileTime& start) const {
        const bool isElsewhere = time.zone != nullptr && start.zone != nullptr && !clock_.toLocal;
        return timeOf(isElsewhere ? icaltime_convert_to_zone(time, start.zone) : time).local;
    }

    FileTime timeOf(icalproperty* property, icalcomponent* component) const {
        return timeOf(timeIn(property, component));
    }

    FileTime timeOf(const icaltimetype& time) const {
        const std::chrono::year_month_day date(std::chrono::year(time.year),
                                               std::chrono::month(static_cast<unsigned>(time.month)),
                                               std::chrono::day(static_cast<unsigned>(time.day)));
        if (!date.ok()) throw InterchangeError("it is on no real day");
        FileTime result;
        result.isDate = time.is_date != 0;
        result.standing = secondsOf(date);
        if (!result.isDate) result.standing += (time.hour * 60 + time.minute) * 60 + time.second;
        result.local = result.moment = result.standing;
        if (result.isDate || time.zone == nullptr) return result;
        result.zone = const_cast<icaltimezone*>(time.zone); // the library wants it so, but leaves it as it is
        result.moment = icaltime_as_timet_with_zone(time, result.zone);
        if (clock_.toLocal) result.local = clock_.toLocal(result.moment);
        return result;
    }

    const CalendarClock& clock_;
    EventFile file_;
    std::vector<FileEvent> events_;
    std::set<std::string> refusedUids_;
};

// Events that repeat keep the clock of the calendar when its zone puts it forward or back, and so their times
// stand without a zone.
class EventWriter {
public:
    EventWriter(const Component& calendar, std::int64_t stamp, const CalendarClock& clock)
        : calendar_(calendar), stamp_(stamp), clock_(clock) {}

    void write(const Event& event, const std::string& uid) {
        Component component = newEvent(uid, event, firstDay(event), event.rule.has_value());
        if (event.rule) addRule(component, event);
        if (event.alarm) addAlarm(component, event);
        add(std::move(component));
        for (const EventException& exception : event.exceptions) writeException(event, exception, uid);
    }

private:
    Component newEvent(const std::string& uid, const Event& event, std::int64_t start, bool keepsClock) {
        Component component(icalcomponent_new(ICAL_VEVENT_COMPONENT));
        addProperty(component, icalproperty_new_uid(uid.c_str()));
        addProperty(component, icalproperty_new_dtstamp(icalMoment(stamp_)));
        if (!event.subject.empty()) addProperty(component, icalproperty_new_summary(event.subject.c_str()));
        if (!event.note.empty()) addProperty(component, icalproperty_new_description(event.note.c_str()));
        addTimes(component, event, start, keepsClock);
        addProperty(component,
                    icalproperty_new_class(event.isPrivate ? ICAL_CLASS_PRIVATE : ICAL_CLASS_PUBLIC));
        return component;
    }

    void addTimes(const Component& component, const Event& event, std::int64_t start, bool keepsClock) {
        if (event.allDay) {
            const std::uint32_t days = std::max(1u, (event.minutes + minutesPerDay - 1) / minutesPerDay);
            addProperty(component, icalproperty_new_dtstart(icalDate(dayOf(start))));
            addProperty(component, icalproperty_new_dtend(icalDate(dayOf(start) + std::chrono::days(days))));
            return;
        }
        const std::int64_t end = start + std::int64_t{event.minutes} * 60;
        addProperty(component, icalproperty_new_dtstart(timeOf(start, keepsClock)));
        addProperty(component, icalproperty_new_dtend(timeOf(end, keepsClock)));
    }

    // The first day of a rule need not be one of its days here, but in a file it always is.
    static std::int64_t firstDay(const Event& event) {
        if (!event.rule) return event.start;
        const sys_days start = dayOf(event.start);
        const auto days =
            occurrences(*event.rule, start, start, start + std::chrono::days(daysPerCentury), 1);
        return days.empty() ? event.start : event.start + secondsOf(days.front()) - secondsOf(start);
    }

    icaltimetype timeOf(std::int64_t local, bool keepsClock) const {
        if (!keepsClock && clock_.toUtc) return icalMoment(clock_.toUtc(local));
        icaltimetype time = icalMoment(local);
        time.zone = nullptr;
        return time;
    }

    icaltimetype dayTimeOf(const Event& event, sys_days day) const {
        if (event.allDay) return icalDate(day);
        return timeOf(secondsOf(day) + event.start - secondsOf(dayOf(event.start)), true);
    }

    void addRule(const Component& component, const Event& event) {
        addProperty(component, newRule(*event.rule, event.allDay));
        for (const sys_days day : event.deletions)
            addProperty(component, icalproperty_new_exdate(dayTimeOf(event, day)));
    }

    static void addAlarm(const Component& component, const Event& event) {
        Component alarm(icalcomponent_new(ICAL_VALARM_COMPONENT));
        icaltriggertype trigger{};
        trigger.time = icaltime_null_time();
        trigger.duration = icaldurationtype_from_int(-static_cast<int>(*event.alarm) * 60);
        addProperty(alarm, icalproperty_new_action(ICAL_ACTION_DISPLAY));
        addProperty(alarm, icalproperty_new_description(event.subject.c_str()));
        addProperty(alarm, icalproperty_new_trigger(trigger));
        icalcomponent_add_component(component.get(), alarm.release());
    }

    void writeException(const Event& event, const EventException& exception, const std::string& uid) {
        Event changed = event;
        changed.subject = exception.subject.value_or(event.subject);
        changed.note = exception.note.value_or(event.note);
        changed.allDay = exception.allDay.value_or(event.allDay);
        changed.minutes = exception.minutes.value_or(event.minutes);
        Component component = newEvent(uid, changed, exception.start, true);
        addProperty(component, icalproperty_new_recurrenceid(dayTimeOf(event, exception.patternDate)));
        add(std::move(component));
    }

    void add(Component component) { icalcomponent_add_component(calendar_.get(), component.release()); }

    const Component& calendar_;
    std::int64_t stamp_;
    const CalendarClock& clock_;
};

} // namespace

EventFile readEvents(const std::string& text, const CalendarClock& clock) {
    const Component calendar = parseCalendar(text);
    return EventReader(clock).read(calendar.get());
}

void addEvents(const Component& calendar, const std::vector<Event>& events, std::int64_t stamp,
               const CalendarClock& clock) {
    EventWriter writer(calendar, stamp, clock);
    std::size_t number = 0;
    for (const Event& event : events) {
        ++number;
        writer.write(event, event.uid.empty() ? "event-" + std::to_string(number) : event.uid);
    }
}

} // namespace tsr
