#include "interchange/iCalendar.h"

#include <libical/ical.h>
#include <memory>

#include "interchange/InterchangeError.h"

namespace tsr {

namespace {

struct ComponentDeleter {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, ComponentDeleter>;

struct TextDeleter {
    void operator()(char* text) const { icalmemory_free_buffer(text); }
};
using Text = std::unique_ptr<char, TextDeleter>;

std::string textOf(const char* text) { return text == nullptr ? std::string() : text; }

icalproperty* property(icalcomponent* component, icalproperty_kind kind) {
    return icalcomponent_get_first_property(component, kind);
}

// Bad values stand in a component as properties of their own.
void raiseForErrors(icalcomponent* component) {
    const auto* const error = property(component, ICAL_XLICERROR_PROPERTY);
    if (error != nullptr)
        throw InterchangeError("not iCalendar: " + textOf(icalproperty_get_xlicerror(error)));
}

std::vector<std::string> categories(icalcomponent* todo) {
    std::vector<std::string> categories;
    for (icalproperty* each = property(todo, ICAL_CATEGORIES_PROPERTY); each != nullptr;
         each = icalcomponent_get_next_property(todo, ICAL_CATEGORIES_PROPERTY)) {
        const std::string category = textOf(icalproperty_get_categories(each));
        if (!category.empty()) categories.push_back(category);
    }
    return categories;
}

int taskPriority(icalcomponent* todo) {
    constexpr int none = 99;
    const icalproperty* const found = property(todo, ICAL_PRIORITY_PROPERTY);
    const int priority = found == nullptr ? 0 : icalproperty_get_priority(found);
    if (priority < 1 || priority > 9) return none;
    return priority < 5 ? 1 : priority == 5 ? 2 : 3;
}

bool isPrivate(icalcomponent* todo) {
    const icalproperty* const found = property(todo, ICAL_CLASS_PROPERTY);
    if (found == nullptr) return false;
    const icalproperty_class value = icalproperty_get_class(found);
    return value == ICAL_CLASS_PRIVATE || value == ICAL_CLASS_CONFIDENTIAL;
}

Task readTask(icalcomponent* todo) {
    raiseForErrors(todo);
    Task task;
    task.subject = textOf(icalcomponent_get_summary(todo));
    task.note = textOf(icalcomponent_get_description(todo));
    if (icalproperty* const due = property(todo, ICAL_DUE_PROPERTY)) {
        const icaltimetype time = icalproperty_get_due(due);
        task.due = std::chrono::year_month_day(std::chrono::year(time.year),
                                               std::chrono::month(static_cast<unsigned>(time.month)),
                                               std::chrono::day(static_cast<unsigned>(time.day)));
        if (!task.due->ok()) throw InterchangeError("the task '" + task.subject + "' is due on no real day");
    }
    task.priority = taskPriority(todo);
    task.completed = icalcomponent_get_status(todo) == ICAL_STATUS_COMPLETED
                  || property(todo, ICAL_COMPLETED_PROPERTY) != nullptr;
    task.isPrivate = isPrivate(todo);
    if (icalproperty* const rule = property(todo, ICAL_RRULE_PROPERTY))
        task.repeats = textOf(Text(icalproperty_get_value_as_string_r(rule)).get());
    task.categories = categories(todo);
    return task;
}

void add(const Component& component, icalproperty* property) {
    icalcomponent_add_property(component.get(), property);
}

int calendarPriority(int priority) { return priority == 1 ? 1 : priority == 2 ? 5 : priority == 3 ? 9 : 0; }

icaltimetype dateOf(std::chrono::year_month_day date) {
    icaltimetype time = icaltime_null_date();
    time.year = static_cast<int>(date.year());
    time.month = static_cast<int>(static_cast<unsigned>(date.month()));
    time.day = static_cast<int>(static_cast<unsigned>(date.day()));
    return time;
}

// Rules that this format doesn't know are left out.
void addRule(const Component& todo, const std::string& rule) {
    if (rule.empty()) return;
    const icalrecurrencetype parsed = icalrecurrencetype_from_string(rule.c_str());
    if (parsed.freq != ICAL_NO_RECURRENCE) add(todo, icalproperty_new_rrule(parsed));
}

Component toComponent(const Task& task, std::size_t number, std::int64_t stamp) {
    Component todo(icalcomponent_new(ICAL_VTODO_COMPONENT));
    const std::string uid = task.uid.empty() ? "task-" + std::to_string(number) : task.uid;
    add(todo, icalproperty_new_uid(uid.c_str()));
    add(todo, icalproperty_new_dtstamp(icaltime_from_timet_with_zone(static_cast<time_t>(stamp), 0,
                                                                     icaltimezone_get_utc_timezone())));
    if (!task.subject.empty()) add(todo, icalproperty_new_summary(task.subject.c_str()));
    if (!task.note.empty()) add(todo, icalproperty_new_description(task.note.c_str()));
    if (task.due) add(todo, icalproperty_new_due(dateOf(*task.due)));
    if (calendarPriority(task.priority) != 0)
        add(todo, icalproperty_new_priority(calendarPriority(task.priority)));
    add(todo, icalproperty_new_status(task.completed ? ICAL_STATUS_COMPLETED : ICAL_STATUS_NEEDSACTION));
    add(todo, icalproperty_new_class(task.isPrivate ? ICAL_CLASS_PRIVATE : ICAL_CLASS_PUBLIC));
    addRule(todo, task.repeats);
    for (const std::string& category : task.categories)
        add(todo, icalproperty_new_categories(category.c_str()));
    return todo;
}

} // namespace

std::vector<Task> readTasks(const std::string& text) {
    const Component calendar(icalparser_parse_string(text.c_str()));
    if (!calendar || icalcomponent_isa(calendar.get()) != ICAL_VCALENDAR_COMPONENT)
        throw InterchangeError("not iCalendar: it has no VCALENDAR");
    std::vector<Task> tasks;
    for (icalcomponent* todo = icalcomponent_get_first_component(calendar.get(), ICAL_VTODO_COMPONENT);
         todo != nullptr; todo = icalcomponent_get_next_component(calendar.get(), ICAL_VTODO_COMPONENT)) {
        tasks.push_back(readTask(todo));
    }
    return tasks;
}

std::string taskCalendarText(const std::vector<Task>& tasks, std::int64_t stamp) {
    const Component calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT));
    add(calendar, icalproperty_new_version("2.0"));
    add(calendar, icalproperty_new_prodid("-//Tessera//EN"));
    std::size_t number = 0;
    for (const Task& task : tasks)
        icalcomponent_add_component(calendar.get(), toComponent(task, ++number, stamp).release());
    return textOf(Text(icalcomponent_as_ical_string_r(calendar.get())).get());
}

} // namespace tsr
