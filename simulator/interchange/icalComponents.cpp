#include "interchange/icalComponents.h"

#include "interchange/InterchangeError.h"

namespace tsr {

std::string textOf(const char* text) { return text == nullptr ? std::string() : text; }

icalproperty* firstProperty(icalcomponent* component, icalproperty_kind kind) {
    return icalcomponent_get_first_property(component, kind);
}

void addProperty(const Component& component, icalproperty* property) {
    icalcomponent_add_property(component.get(), property);
}

Component parseCalendar(const std::string& text) {
    Component calendar(icalparser_parse_string(text.c_str()));
    if (!calendar || icalcomponent_isa(calendar.get()) != ICAL_VCALENDAR_COMPONENT)
        throw InterchangeError("not iCalendar: it has no VCALENDAR");
    return calendar;
}

// Bad values stand in a component as properties of their own.
void raiseForErrors(icalcomponent* component) {
    const auto* const error = firstProperty(component, ICAL_XLICERROR_PROPERTY);
    if (error != nullptr)
        throw InterchangeError("not iCalendar: " + textOf(icalproperty_get_xlicerror(error)));
}

bool isPrivateComponent(icalcomponent* component) {
    const icalproperty* const found = firstProperty(component, ICAL_CLASS_PROPERTY);
    if (found == nullptr) return false;
    const icalproperty_class value = icalproperty_get_class(found);
    return value == ICAL_CLASS_PRIVATE || value == ICAL_CLASS_CONFIDENTIAL;
}

icaltimetype icalDate(std::chrono::year_month_day date) {
    icaltimetype time = icaltime_null_date();
    time.year = static_cast<int>(date.year());
    time.month = static_cast<int>(static_cast<unsigned>(date.month()));
    time.day = static_cast<int>(static_cast<unsigned>(date.day()));
    return time;
}

icaltimetype icalMoment(std::int64_t utcSeconds) {
    return icaltime_from_timet_with_zone(static_cast<time_t>(utcSeconds), 0, icaltimezone_get_utc_timezone());
}

Component newCalendar() {
    Component calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT));
    addProperty(calendar, icalproperty_new_version("2.0"));
    addProperty(calendar, icalproperty_new_prodid("-//Tessera//EN"));
    return calendar;
}

std::string calendarText(const Component& calendar) {
    return textOf(IcalText(icalcomponent_as_ical_string_r(calendar.get())).get());
}

} // namespace tsr
