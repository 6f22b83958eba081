#include "handheld/commands/recordFiles.h"

#include <nlohmann/json.hpp>

#include "foundation/lines.h"
#include "handheld/CategoryTable.h"
#include "handheld/HandheldError.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/datebookEvents.h"
#include "handheld/commands/handheldText.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/forms/fieldText.h"
#include "interchange/iCalendar.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

constexpr int noPriority = 99;  // of a task
constexpr int lastPriority = 5; // of the handheld
constexpr int lowestOfATask = 3;

// A record as the user sees it; texts are UTF-8.
struct ShownRecord {
    std::uint32_t id = 0;
    std::string category; // empty for none
    bool secret = false;
    FieldValues fields;
};

const RecordForm& portableForm(const HandheldDatabase& database) {
    const RecordForm* form = recordForm(database.name());
    if (!form) throw UsageError(database.name() + " has no fields");
    return *form;
}

std::vector<ShownRecord> shownRecords(HandheldDatabase& database) {
    const RecordForm& form = portableForm(database);
    std::vector<ShownRecord> shown;
    database.records().forEach([&](const HandheldRecord& record) {
        if (record.isGone()) return;
        ShownRecord entry;
        entry.id = record.id;
        if (record.category != 0)
            entry.category = fromHandheldText(CategoryTable(database).name(record.category));
        entry.secret = (record.attributes & HandheldRecord::secret) != 0;
        for (const auto& [name, value] : form.read(record.data)) entry.fields[name] = fromHandheldText(value);
        shown.push_back(std::move(entry));
    });
    return shown;
}

std::vector<std::uint8_t> dataOf(const HandheldDatabase& database, const FieldValues& fields) {
    const RecordForm& form = portableForm(database);
    form.checkNames(fields);
    FieldValues values;
    for (const auto& [name, value] : fields) setField(values, name, toHandheldText(value));
    std::vector<std::uint8_t> data = form.write(values);
    if (data.size() > HandheldRecord::maxBytes) throw UsageError("a record takes at most 65,535 bytes");
    return data;
}

void addRecord(HandheldDatabase& database, const ShownRecord& record) {
    const std::vector<std::uint8_t> data = dataOf(database, record.fields);
    const std::uint8_t category = record.category.empty()
                                    ? std::uint8_t{0}
                                    : CategoryTable(database).findOrAdd(toHandheldText(record.category));
    if (database.addRecord(data, category, record.secret ? HandheldRecord::secret : 0) == 0)
        throw HandheldError("the database is full");
}

struct TextField {
    const char* name;
    std::string Contact::*text;
};

constexpr TextField textFields[] = {
    {"lastName", &Contact::lastName}, {"firstName", &Contact::firstName}, {"company", &Contact::company},
    {"address", &Contact::address},   {"city", &Contact::city},           {"state", &Contact::state},
    {"zip", &Contact::zip},           {"country", &Contact::country},     {"title", &Contact::title},
    {"note", &Contact::note},
};
constexpr const char* customNames[] = {"custom1", "custom2", "custom3", "custom4"};

ShownRecord toRecord(const Contact& contact) {
    ShownRecord record;
    for (const auto& [name, text] : textFields) record.fields[name] = contact.*text;
    for (std::size_t i = 0; i < contact.customs.size(); ++i)
        record.fields[customNames[i]] = contact.customs[i];
    for (std::size_t i = 0; i < phoneKinds; ++i)
        record.fields[phoneKindName(static_cast<PhoneKind>(i))] = joinLines(contact.phones[i]);
    if (contact.displayed) record.fields["display"] = phoneKindName(*contact.displayed);
    if (!contact.categories.empty()) record.category = contact.categories.front();
    return record;
}

Contact toContact(const ShownRecord& record) {
    Contact contact;
    for (const auto& [name, text] : textFields) contact.*text = fieldValue(record.fields, name);
    for (std::size_t i = 0; i < contact.customs.size(); ++i)
        contact.customs[i] = fieldValue(record.fields, customNames[i]);
    for (std::size_t i = 0; i < phoneKinds; ++i)
        contact.phones[i] = splitLines(fieldValue(record.fields, phoneKindName(static_cast<PhoneKind>(i))));
    contact.displayed = phoneKindOf(fieldValue(record.fields, "display"));
    if (!record.category.empty()) contact.categories = {record.category};
    return contact;
}

std::string dateText(std::chrono::year_month_day date) {
    const auto padded = [](unsigned number) { return (number < 10 ? "-0" : "-") + std::to_string(number); };
    return std::to_string(static_cast<int>(date.year())) + padded(static_cast<unsigned>(date.month()))
         + padded(static_cast<unsigned>(date.day()));
}

ShownRecord toRecord(const Task& task) {
    if (!task.repeats.empty()) throw UsageError("'" + task.subject + "' repeats, which no to-do does");
    const bool hasPriority = task.priority >= 1 && task.priority <= lowestOfATask;
    ShownRecord record;
    record.fields["description"] = task.subject;
    record.fields["note"] = task.note;
    if (task.due) record.fields["due"] = dateText(*task.due);
    record.fields["priority"] = std::to_string(hasPriority ? task.priority : lastPriority);
    if (task.completed) record.fields["completed"] = "yes";
    record.secret = task.isPrivate;
    if (!task.categories.empty()) record.category = task.categories.front();
    return record;
}

Task toTask(const ShownRecord& record) {
    Task task;
    task.subject = fieldValue(record.fields, "description");
    task.note = fieldValue(record.fields, "note");
    if (const std::string due = fieldValue(record.fields, "due"); !due.empty()) {
        using namespace std::chrono;
        task.due = year_month_day(year(std::stoi(due.substr(0, 4))),
                                  month(static_cast<unsigned>(std::stoi(due.substr(5, 2)))),
                                  day(static_cast<unsigned>(std::stoi(due.substr(8, 2)))));
    }
    const int priority = std::stoi(fieldValue(record.fields, "priority"));
    task.priority = priority <= lowestOfATask ? priority : noPriority;
    task.completed = fieldValue(record.fields, "completed") == "yes";
    task.isPrivate = record.secret;
    if (!record.category.empty()) task.categories = {record.category};
    task.uid = "todo-" + std::to_string(record.id);
    return task;
}

ShownRecord toRecord(const Json& json) {
    ShownRecord record;
    record.category = json.value("category", "");
    record.secret = json.value("secret", false);
    record.fields = json.at("fields").get<FieldValues>();
    return record;
}

} // namespace

void importContacts(Handheld& handheld, const std::string& vCards) {
    HandheldDatabase& database = findDatabase(handheld, contactDatabase);
    for (const Contact& contact : readVCards(vCards)) {
        try {
            addRecord(database, toRecord(contact));
        } catch (const FieldError& error) {
            throw FieldError(contact.name() + ": " + error.what());
        }
    }
}

std::string exportedContacts(HandheldDatabase& database, VCardVersion version) {
    std::vector<Contact> contacts;
    for (const ShownRecord& record : shownRecords(database)) contacts.push_back(toContact(record));
    return vCardText(contacts, version);
}

void importTasks(Handheld& handheld, const std::string& calendar) {
    HandheldDatabase& database = findDatabase(handheld, taskDatabase);
    for (const Task& task : readTasks(calendar)) addRecord(database, toRecord(task));
}

std::string exportedTasks(HandheldDatabase& database, std::int64_t stamp) {
    std::vector<Task> tasks;
    for (const ShownRecord& record : shownRecords(database)) tasks.push_back(toTask(record));
    return taskCalendarText(tasks, stamp);
}

std::vector<std::string> importEvents(Handheld& handheld, const std::string& calendar) {
    EventFile file = readEvents(calendar, CalendarClock());
    for (const Event& event : file.events) {
        HandheldDatabase& database = findDatabase(handheld, eventDatabase);
        const auto refuse = [&](const std::exception& error) {
            file.refused.push_back("'" + event.subject + "': " + error.what());
        };
        try {
            const std::vector<DatebookFields> records = toDatebook(event);
            for (const DatebookFields& each : records) dataOf(database, each.fields); // all of them, or none
            for (const DatebookFields& each : records) addRecord(database, {0, "", each.secret, each.fields});
        } catch (const UsageError& error) {
            refuse(error);
        } catch (const FieldError& error) {
            refuse(error);
        }
    }
    return file.refused;
}

std::vector<Event> eventsOf(HandheldDatabase& database) {
    std::vector<Event> events;
    for (const ShownRecord& record : shownRecords(database)) {
        try {
            events.push_back(toEvent({record.fields, record.secret}));
        } catch (const std::runtime_error&) {
            continue; // a date or a time that is none
        }
        events.back().uid = "event-" + std::to_string(record.id);
    }
    return events;
}

std::string exportedEvents(HandheldDatabase& database, std::int64_t stamp) {
    return calendarText(eventsOf(database), {}, stamp, CalendarClock());
}

void importRecords(Handheld& handheld, const std::string& json) {
    const Json parsed = Json::parse(json, nullptr, false);
    if (parsed.is_discarded()) throw HandheldError("this is not JSON");
    try {
        HandheldDatabase& database = findDatabase(handheld, parsed.at("database").get<std::string>());
        for (const Json& record : parsed.at("records")) addRecord(database, toRecord(record));
    } catch (const Json::exception& error) {
        throw HandheldError(error.what());
    }
}

std::string exportedRecords(HandheldDatabase& database) {
    Json records = Json::array();
    for (const ShownRecord& record : shownRecords(database)) {
        records.push_back(
            {{"category", record.category}, {"secret", record.secret}, {"fields", record.fields}});
    }
    return Json({{"database", database.name()}, {"records", std::move(records)}}).dump(2) + "\n";
}

} // namespace tsr
