#include "tessera/taskDocument.h"

#include "foundation/epochs.h"
#include "tessera/TesseraError.h"
#include "tessera/categories.h"
#include "tessera/hexadecimalText.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

using std::chrono::sys_days;

constexpr char subjectName[] = "0037001F";
constexpr char noteName[] = "00170041";
constexpr char priorityName[] = "00260003";
constexpr char dueName[] = "41050040";
constexpr char completedName[] = "410F0002";
constexpr char privateName[] = "00040002";
constexpr char recursName[] = "Recurs";

constexpr int noPriority = 99;
constexpr std::int64_t secondsPerDay = 86400;

std::optional<std::chrono::year_month_day> dueDate(const Properties& properties) {
    const auto seconds = parseNumber(firstValue(properties, dueName));
    if (!seconds || *seconds == 0) return std::nullopt;
    return sys_days(std::chrono::days((firstNotesSecond + *seconds) / secondsPerDay));
}

std::string dueText(std::chrono::year_month_day date) {
    const std::int64_t moment = sys_days(date).time_since_epoch().count() * secondsPerDay;
    if (!date.ok() || moment <= firstNotesSecond || moment > lastNotesSecond)
        throw TesseraError("a task must be due after 1993-01-01 and before 2129-02-08");
    return std::to_string(moment - firstNotesSecond);
}

int priorityOf(const Properties& properties) {
    const auto priority = parseNumber(firstValue(properties, priorityName));
    return priority && *priority >= 1 && *priority <= 3 ? static_cast<int>(*priority) : noPriority;
}

void takeOver(Properties& properties, const Properties& sent, const std::string& name) {
    const auto found = sent.find(name);
    if (found == sent.end()) {
        properties.erase(name);
    } else {
        properties[name] = found->second;
    }
}

} // namespace

Task toTask(const Properties& properties) {
    Task task;
    task.subject = firstValue(properties, subjectName);
    task.note = fromHexadecimalText(firstValue(properties, noteName));
    task.due = dueDate(properties);
    task.priority = priorityOf(properties);
    task.completed = firstValue(properties, completedName) == "1";
    task.isPrivate = firstValue(properties, privateName) != "0";
    task.repeats = firstValue(properties, recursName);
    task.categories = categoriesOf(properties);
    return task;
}

void setTask(Properties& properties, const Task& task) {
    properties[subjectName] = {task.subject};
    properties[noteName] = {toHexadecimalText(task.note)};
    properties[priorityName] = {std::to_string(task.priority)};
    properties.erase(dueName);
    if (task.due) properties[dueName] = {dueText(*task.due)};
    properties[completedName] = {task.completed ? "1" : "0"};
    properties[privateName] = {task.isPrivate ? "1" : "0"};
    properties.erase(recursName);
    if (!task.repeats.empty()) properties[recursName] = {task.repeats};
    setCategories(properties, task.categories);
}

Properties adoptTask(const Properties& kept, const Properties& sent) {
    Properties properties = kept;
    for (const char* const name : {subjectName, priorityName, dueName, completedName})
        takeOver(properties, sent, name);
    properties[noteName] = {toHexadecimalText(firstValue(sent, noteName))};
    properties[privateName] = {sent.contains(privateName) ? firstValue(sent, privateName) : "0"};
    adoptCategories(properties, sent);
    return properties;
}

} // namespace tsr
