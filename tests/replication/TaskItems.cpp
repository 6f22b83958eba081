#include "replication/TaskItems.h"

#include "foundation/lines.h"
#include "handheld/forms/ToDoForm.h"
#include "handheld/forms/fieldText.h"
#include "replication/deviceText.h"
#include "tessera/UserDatabase.h"
#include "tessera/hexadecimalText.h"
#include "tessera/taskDocument.h"

namespace tsr::test {

namespace {

std::string lineOf(const Task& task) {
    const std::string priority =
        task.priority >= 1 && task.priority <= 3 ? std::to_string(task.priority) : "-";
    std::string line = (task.completed ? "[x] " : "[ ] ") + priority + ' ' + task.subject + " | "
                     + normalizeLineEnds(task.note);
    if (task.due) {
        char text[32];
        std::snprintf(text, sizeof text, ", due %d-%02u-%02u", int{task.due->year()},
                      unsigned{task.due->month()}, unsigned{task.due->day()});
        line += text;
    }
    return line + (task.isPrivate ? ", private" : "");
}

// Two digits that are a month or a day in any case.
std::string twoDigits(std::uint32_t number) { return (number < 10 ? "0" : "") + std::to_string(number); }

// The handheld's dates end with 2031, and Notes has none before 1993.
std::string randomDate(RandomWords& random) {
    return std::to_string(1994 + random.below(38)) + '-' + twoDigits(1 + random.below(12)) + '-'
         + twoDigits(1 + random.below(28));
}

std::chrono::year_month_day parseDate(const std::string& text) {
    return std::chrono::year_month_day(std::chrono::year(std::stoi(text)),
                                       std::chrono::month(static_cast<unsigned>(std::stoi(text.substr(5)))),
                                       std::chrono::day(static_cast<unsigned>(std::stoi(text.substr(8)))));
}

} // namespace

const char* TaskItems::databaseKind() const { return mailDatabaseKind; }
const char* TaskItems::documentKind() const { return taskKind; }

std::string TaskItems::line(const HandheldRecord& record) const {
    const FieldValues values = ToDoForm().read(record.data);
    Task task;
    task.subject = fromDeviceText(fieldValue(values, "description"));
    task.note = fromDeviceText(fieldValue(values, "note"));
    if (values.contains("due")) task.due = parseDate(values.at("due"));
    task.priority = std::stoi(values.at("priority"));
    task.completed = values.contains("completed");
    task.isPrivate = (record.attributes & HandheldRecord::secret) != 0;
    return lineOf(task);
}

Strings TaskItems::lines(const Properties& document) const { return {lineOf(toTask(document))}; }

HandheldRecord TaskItems::randomRecord(RandomWords& random) const {
    const bool noteHasSerial = random.flag();
    FieldValues values;
    values["description"] = toDeviceText(random.word() + (noteHasSerial ? "" : random.serial()));
    if (noteHasSerial || random.flag()) values["note"] = toDeviceText(random.linesOfText());
    if (random.flag()) values["due"] = randomDate(random);
    values["priority"] = std::to_string(1 + random.below(5));
    if (random.flag()) values["completed"] = "yes";
    HandheldRecord record;
    record.data = ToDoForm().write(values);
    if (random.flag()) record.attributes = HandheldRecord::secret;
    return record;
}

HandheldRecord TaskItems::edited(RandomWords& random, const HandheldRecord&) const {
    return randomRecord(random);
}

void TaskItems::rewrite(RandomWords& random, Properties& document) const {
    Task task;
    task.subject = random.word();
    task.note = (random.flag() ? "One\r\n" : "") + random.linesOfText();
    if (random.flag()) task.due = parseDate(randomDate(random));
    task.priority = random.flag() ? 99 : static_cast<int>(random.below(7));
    task.completed = random.flag();
    task.isPrivate = random.flag();
    task.categories = random.categories();
    setTask(document, task);
}

void TaskItems::touch(RandomWords& random, Properties& document) const {
    document["00170041"] = {toHexadecimalText(random.linesOfText())};
    if (random.flag()) document["00040002"] = {random.flag() ? "1" : "0"};
}

} // namespace tsr::test
