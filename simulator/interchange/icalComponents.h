#pragma once

#include <chrono>
#include <cstdint>
#include <libical/ical.h>
#include <memory>
#include <string>

namespace tsr {

// The library's objects, held by their scope, for the files that read and write iCalendar.
struct ComponentDeleter {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, ComponentDeleter>;

struct IcalTextDeleter {
    void operator()(char* text) const { icalmemory_free_buffer(text); }
};
using IcalText = std::unique_ptr<char, IcalTextDeleter>;

std::string textOf(const char* text); // empty for null
icalproperty* firstProperty(icalcomponent* component, icalproperty_kind kind);
void addProperty(const Component& component, icalproperty* property);

Component parseCalendar(const std::string& text); // raises InterchangeError
void raiseForErrors(icalcomponent* component);    // for values that the library couldn't read
bool isPrivateComponent(icalcomponent* component);

icaltimetype icalDate(std::chrono::year_month_day date);
icaltimetype icalMoment(std::int64_t utcSeconds);

Component newCalendar();
std::string calendarText(const Component& calendar);

} // namespace tsr
