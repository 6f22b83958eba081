#include "tessera/commands/TaskForm.h"

#include <algorithm>

#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/flags.h"
#include "tessera/commands/readings.h"
#include "tessera/taskDocument.h"

namespace tsr {

namespace {

constexpr const char* priorities[] = {"none", "high", "medium", "low"};
constexpr int noPriority = 99;

std::string priorityText(int priority) { return priorities[priority >= 1 && priority <= 3 ? priority : 0]; }

int parsedPriority(const std::string& text) {
    const auto* const found = std::find(std::begin(priorities), std::end(priorities), text);
    if (found == std::end(priorities))
        throw ArgumentError("'" + text + "' is not a priority: high, medium, low or none");
    const auto priority = static_cast<int>(found - std::begin(priorities));
    return priority == 0 ? noPriority : priority;
}

std::string dueText(const Task& task) { return task.due ? dateText(*task.due) : ""; }

std::optional<std::chrono::year_month_day> parsedDue(const std::string& text) {
    if (text.empty()) return std::nullopt;
    return parseDate(text);
}

const char* yes(bool flag) { return flag ? "yes" : ""; }

} // namespace

const DocumentForm::Words& TaskForm::words() const {
    static constexpr Words words{
        .databaseKind = mailDatabaseKind,
        .documentKind = taskKind,
        .noun = "task",
        .plural = "tasks",
        .place = "list of tasks",
        .addExample =
            "  tessera office.db add task --user \"Pat Lee\" --subject \"Call Kim\" --due 2026-11-30 \\\n"
            "      --priority high --category Business",
        .editExample = "  tessera office.db edit task --user \"Pat Lee\" 94515958 --completed",
    };
    return words;
}

std::vector<std::string> TaskForm::row(const Document& document) const {
    const Task task = toTask(document.properties);
    return {yes(task.completed), priorityText(task.priority), dueText(task), task.subject,
            joinedCategories(task.categories)};
}

std::vector<std::pair<std::string, std::string>> TaskForm::details(const Document& document) const {
    const Task task = toTask(document.properties);
    return {{"Subject", task.subject},
            {"Due", dueText(task)},
            {"Priority", priorityText(task.priority)},
            {"Completed", yes(task.completed)},
            {"Private", yes(task.isPrivate)},
            {"Repeats", task.repeats},
            {"Categories", joinedCategories(task.categories)}};
}

std::string TaskForm::text(const Document& document) const { return toTask(document.properties).note; }

CLI::Option* TaskForm::addSettings(CLI::App& command) {
    CLI::Option* subject = command.add_option("--subject", subject_, "What is to be done");
    command.add_option("--note", note_, "A text of any length");
    command.add_option("--due", due_, "The day, such as 2026-11-30; empty for none");
    command.add_option("--priority", priority_, "high, medium, low or none");
    addFlag(command, "--completed,!--open", completed_, "Whether it is done");
    addFlag(command, "--private,!--public", isPrivate_, "Whether it is kept from others");
    command.add_option(
        "--repeats", repeats_,
        "A rule such as FREQ=WEEKLY by which it comes again; a handheld can't hold such a task");
    categories_.addTo(command);
    return subject;
}

void TaskForm::apply(const TesseraCommandLine&, Document& document) const {
    Task task = document.properties.empty() ? Task() : toTask(document.properties);
    if (subject_) task.subject = *subject_;
    if (note_) task.note = *note_;
    if (due_) task.due = parsedDue(*due_);
    if (priority_) task.priority = parsedPriority(*priority_);
    if (completed_) task.completed = *completed_;
    if (isPrivate_) task.isPrivate = *isPrivate_;
    if (repeats_) task.repeats = *repeats_;
    categories_.apply(task.categories);
    setTask(document.properties, task);
}

DocumentForm::Json TaskForm::toJson(const Document& document) const {
    const Task task = toTask(document.properties);
    Json json = {{"subject", task.subject}, {"note", task.note}};
    if (task.due) json["due"] = dueText(task);
    json["priority"] = priorityText(task.priority);
    json["completed"] = task.completed;
    json["private"] = task.isPrivate;
    if (!task.repeats.empty()) json["repeats"] = task.repeats;
    json["categories"] = task.categories;
    return json;
}

Properties TaskForm::fromJson(const Json& json) const {
    Task task;
    task.subject = json.value("subject", "");
    task.note = json.value("note", "");
    task.due = parsedDue(json.value("due", ""));
    task.priority = parsedPriority(json.value("priority", "medium"));
    task.completed = json.value("completed", false);
    task.isPrivate = json.value("private", false);
    task.repeats = json.value("repeats", "");
    task.categories = json.value("categories", std::vector<std::string>());
    Properties properties;
    setTask(properties, task);
    return properties;
}

} // namespace tsr
