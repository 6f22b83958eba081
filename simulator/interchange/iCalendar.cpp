#include "interchange/iCalendar.h"

#include "interchange/InterchangeError.h"
#include "interchange/icalComponents.h"
#include "interchange/icalEvents.h"

namespace tsr {

namespace {

std::vector<std::string> categories(icalcomponent* todo) {
    std::vector<std::string> categories;
    for (icalproperty* each = firstProperty(todo, ICAL_CATEGORIES_PROPERTY); each != nullptr;
         each = icalcomponent_get_next_property(todo, ICAL_CATEGORIES_PROPERTY)) {
        const std::string category = textOf(icalproperty_get_categories(each));
        if (!category.empty()) categories.push_back(category);
    }
    return categories;
}

int taskPriority(icalcomponent* todo) {
    constexpr int none = 99;
    const icalproperty* const found = firstProperty(todo, ICAL_PRIORITY_PROPERTY);
    const int priority = found == nullptr ? 0 : icalproperty_get_priority(found);
    if (priority < 1 || priority > 9) return none;
    return priority < 5 ? 1 : priority == 5 ? 2 : 3;
}

Task readTask(icalcomponent* todo) {
    raiseForErrors(todo);
    Task task;
    task.subject = textOf(icalcomponent_get_summary(todo));
    task.note = textOf(icalcomponent_get_description(todo));
    if (icalproperty* const due = firstProperty(todo, ICAL_DUE_PROPERTY)) {
        const icaltimetype time = icalproperty_get_due(due);
        task.due = std::chrono::year_month_day(std::chrono::year(time.year),
                                               std::chrono::month(static_cast<unsigned>(time.month)),
                                               std::chrono::day(static_cast<unsigned>(time.day)));
        if (!task.due->ok()) throw InterchangeError("the task '" + task.subject + "' is due on no real day");
    }
    task.priority = taskPriority(todo);
    task.completed = icalcomponent_get_status(todo) == ICAL_STATUS_COMPLETED
                  || firstProperty(todo, ICAL_COMPLETED_PROPERTY) != nullptr;
    task.isPrivate = isPrivateComponent(todo);
    if (icalproperty* const rule = firstProperty(todo, ICAL_RRULE_PROPERTY))
        task.repeats = textOf(IcalText(icalproperty_get_value_as_string_r(rule)).get());
    task.categories = categories(todo);
    return task;
}

int calendarPriority(int priority) { return priority == 1 ? 1 : priority == 2 ? 5 : priority == 3 ? 9 : 0; }

// Rules that this format doesn't know are left out.
void addRule(const Component& todo, const std::string& rule) {
    if (rule.empty()) return;
    const icalrecurrencetype parsed = icalrecurrencetype_from_string(rule.c_str());
    if (parsed.freq != ICAL_NO_RECURRENCE) addProperty(todo, icalproperty_new_rrule(parsed));
}

Component toComponent(const Task& task, std::size_t number, std::int64_t stamp) {
    Component todo(icalcomponent_new(ICAL_VTODO_COMPONENT));
    const std::string uid = task.uid.empty() ? "task-" + std::to_string(number) : task.uid;
    addProperty(todo, icalproperty_new_uid(uid.c_str()));
    addProperty(todo, icalproperty_new_dtstamp(icalMoment(stamp)));
    if (!task.subject.empty()) addProperty(todo, icalproperty_new_summary(task.subject.c_str()));
    if (!task.note.empty()) addProperty(todo, icalproperty_new_description(task.note.c_str()));
    if (task.due) addProperty(todo, icalproperty_new_due(icalDate(*task.due)));
    if (calendarPriority(task.priority) != 0)
        addProperty(todo, icalproperty_new_priority(calendarPriority(task.priority)));
    addProperty(todo,
                icalproperty_new_status(task.completed ? ICAL_STATUS_COMPLETED : ICAL_STATUS_NEEDSACTION));
    addProperty(todo, icalproperty_new_class(task.isPrivate ? ICAL_CLASS_PRIVATE : ICAL_CLASS_PUBLIC));
    addRule(todo, task.repeats);
    for (const std::string& category : task.categories)
        addProperty(todo, icalproperty_new_categories(category.c_str()));
    return todo;
}

void addTasks(const Component& calendar, const std::vector<Task>& tasks, std::int64_t stamp) {
    std::size_t number = 0;
    for (const Task& task : tasks)
        icalcomponent_add_component(calendar.get(), toComponent(task, ++number, stamp).release());
}

} // namespace

std::vector<Task> readTasks(const std::string& text) {
    const Component calendar = parseCalendar(text);
    std::vector<Task> tasks;
    for (icalcomponent* todo = icalcomponent_get_first_component(calendar.get(), ICAL_VTODO_COMPONENT);
         todo != nullptr; todo = icalcomponent_get_next_component(calendar.get(), ICAL_VTODO_COMPONENT)) {
        tasks.push_back(readTask(todo));
    }
    return tasks;
}

std::string taskCalendarText(const std::vector<Task>& tasks, std::int64_t stamp) {
    const Component calendar = newCalendar();
    addTasks(calendar, tasks, stamp);
    return calendarText(calendar);
}

std::string calendarText(const std::vector<Event>& events, const std::vector<Task>& tasks, std::int64_t stamp,
                         const CalendarClock& clock) {
    const Component calendar = newCalendar();
    addEvents(calendar, events, stamp, clock);
    addTasks(calendar, tasks, stamp);
    return calendarText(calendar);
}

} // namespace tsr
