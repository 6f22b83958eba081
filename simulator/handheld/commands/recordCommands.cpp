#include <memory>
#include <optional>
#include <ostream>

#include "handheld/FreeTimeDatabase.h"
#include "handheld/HandheldError.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/DataOptions.h"
#include "handheld/commands/categoryName.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/handheldText.h"
#include "handheld/commands/recordFields.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/mailFolders.h"

namespace tsr {

namespace {

struct RecordOptions {
    std::string database;
    std::string record;               // id, to be edited
    std::vector<std::string> targets; // ids of records or names of colleagues, to be taken away
    std::vector<std::string> fields;  // "name=value"
    DataOptions content;
    std::optional<std::string> category; // its number, or a name of the table
    std::optional<std::uint16_t> searchLength;
    std::optional<bool> secret;

    bool isFreeTime() const { return database == freeTimeName; }
};

using Options = std::shared_ptr<RecordOptions>;

const char* const fieldHelp = "The content as NAME=VALUE, or with freetime the names of colleagues. memo: "
                              "text. todo: description, due, priority, "
                              "completed, note. address: lastName, firstName, company, work, home, fax, "
                              "other, email, main, pager, mobile, display, "
                              "address, city, state, zip, country, title, custom1 to custom4, note. "
                              "datebook: description, date, start, end, alarm "
                              "(15m, 2h, 1d), repeat (daily, weekly, monthlyByDay, monthlyByDate, yearly), "
                              "every, until, on, except, note. mail: "
                              "subject, from, to, cc, bcc, replyTo, sentTo, body, date, time, priority "
                              "(high, normal, low), read, signature, "
                              "confirmRead, confirmDelivery, bits";

void addCategoryOption(CLI::App& command, RecordOptions& options) {
    command.add_option(
        "--category", options.category,
        "Category, 0 to 15 or its name; of mail the folder: Inbox, Outbox, Deleted, Filed, Draft");
}

CLI::Option* addSecretFlag(CLI::App& command, RecordOptions& options) {
    return command.add_flag_callback(
        "--secret", [&options] { options.secret = true; }, "Mark the record as private");
}

const RecordForm& formOf(const HandheldDatabase& database) {
    const RecordForm* form = recordForm(database.name());
    if (!form) throw UsageError(database.name() + " has no fields: use --text, --hex or --file");
    return *form;
}

std::vector<std::uint8_t> newContent(const HandheldDatabase& database, const RecordOptions& options) {
    if (options.fields.empty()) return options.content.data();
    if (options.content.isGiven()) throw UsageError("give either fields or --text, --hex or --file");
    const RecordForm& form = formOf(database);
    FieldValues values;
    setFields(form, options.fields, values);
    return formedRecord(form, values);
}

// Fields that are not given keep their values.
std::vector<std::uint8_t> changedContent(const HandheldDatabase& database, const HandheldRecord& record,
                                         const RecordOptions& options) {
    if (options.fields.empty() || options.content.isGiven()) return newContent(database, options);
    const RecordForm& form = formOf(database);
    FieldValues values = form.read(record.data);
    setFields(form, options.fields, values);
    return formedRecord(form, values);
}

void addColleagues(Handheld& handheld, const RecordOptions& options) {
    if (options.content.isGiven() || options.category || options.secret) {
        throw UsageError("freetime takes names of colleagues, and no content");
    }
    if (options.fields.empty() && !options.searchLength) throw UsageError("give the names of colleagues");
    FreeTimeDatabase::create(handheld);
    FreeTimeDatabase freeTime(handheld);
    if (options.searchLength) freeTime.setSearchLength(*options.searchLength);
    for (const std::string& name : options.fields) freeTime.add(toHandheldText(name));
}

void addRecord(CommandLine& line, Handheld& handheld, const RecordOptions& options) {
    if (options.searchLength) throw UsageError("only freetime takes a length");
    HandheldDatabase& database = findDatabase(handheld, options.database);
    const std::uint8_t usual = database.name() == mailDatabase ? mailOutbox : 0; // what is written is sent
    const std::uint8_t category = options.category ? parseCategory(database, *options.category) : usual;
    const std::uint32_t id = database.addRecord(newContent(database, options), category,
                                                options.secret.value_or(false) ? HandheldRecord::secret : 0);
    if (id == 0) throw HandheldError("the database is full");
    line.out << id << "\n";
}

void changeRecord(Handheld& handheld, const RecordOptions& options) {
    const bool changesContent = options.content.isGiven() || !options.fields.empty();
    if (!changesContent && !options.category && !options.secret) {
        throw UsageError("give new content, a category, --secret or --no-secret");
    }
    HandheldDatabase& database = findDatabase(handheld, options.database);
    const HandheldRecord& record = liveRecord(database, options.record);
    const std::uint32_t id = record.id;
    if (changesContent) database.editRecord(id, changedContent(database, record, options));
    if (options.category) database.moveRecord(id, parseCategory(database, *options.category));
    if (options.secret) database.markSecret(id, *options.secret);
}

// `take` is deleteRecord or archiveRecord.
void takeRecords(Handheld& handheld, const RecordOptions& options,
                 bool (HandheldDatabase::*take)(std::uint32_t)) {
    HandheldDatabase& database = findDatabase(handheld, options.database);
    for (const std::string& target : options.targets) {
        if (!(database.*take)(parseRecordId(target))) throw HandheldError("no such record: " + target);
    }
}

void deleteTargets(Handheld& handheld, const RecordOptions& options) {
    if (!options.isFreeTime()) {
        takeRecords(handheld, options, &HandheldDatabase::deleteRecord);
        return;
    }
    FreeTimeDatabase freeTime(handheld);
    for (const std::string& name : options.targets) freeTime.remove(toHandheldText(name));
}

Options addDatabaseOption(CLI::App& command) {
    auto options = std::make_shared<RecordOptions>();
    command
        .add_option("NAME", options->database,
                    "A database or an application: address, datebook, mail, memo, todo")
        ->required();
    return options;
}

void addAddCommand(CommandLine& line) {
    CLI::App& command =
        line.addCommand("add",
                        "Add a record and print its id; add freetime NAME... puts "
                        "colleagues on the list of the free-time search",
                        "todo description=\"Call Kim\" due=2002-02-08 priority=2 --category 1");
    const Options options = addDatabaseOption(command);
    command.add_option("FIELD", options->fields, fieldHelp);
    command.add_option("--search-length", options->searchLength,
                       "With freetime: the length of the search that the server is told (14 at first)");
    options->content.addTo(command);
    addCategoryOption(command, *options);
    addSecretFlag(command, *options);
    command.callback([&line, options] {
        line.action = [&line, options] {
            line.change([&](HandheldFolder& folder) {
                if (options->isFreeTime())
                    addColleagues(folder.handheld(), *options);
                else
                    addRecord(line, folder.handheld(), *options);
            });
        };
    });
}

void addEditCommand(CommandLine& line) {
    CLI::App& command = line.addCommand("edit", "Change the content, the category or the privacy of a record",
                                        "todo 0x000001 completed=yes");
    const Options options = addDatabaseOption(command);
    command.add_option("ID", options->record, "The record")->required();
    command.add_option("FIELD", options->fields, "NAME=VALUE as with add; NAME= takes a field away");
    options->content.addTo(command);
    addCategoryOption(command, *options);
    CLI::Option* secret = addSecretFlag(command, *options);
    command
        .add_flag_callback(
            "--no-secret", [options] { options->secret = false; }, "Take that mark away")
        ->excludes(secret);
    command.callback([&line, options] {
        line.action = [&line, options] {
            line.change([&](HandheldFolder& folder) { changeRecord(folder.handheld(), *options); });
        };
    });
}

void addDeleteCommand(CommandLine& line) {
    CLI::App& command = line.addCommand("delete",
                                        "Delete records; the next HotSync sees them as deleted. "
                                        "delete freetime NAME... takes colleagues off",
                                        "memo 0x000001 0x000002");
    const Options options = addDatabaseOption(command);
    command.add_option("ID", options->targets, "The records, or with freetime the colleagues")->required();
    command.callback([&line, options] {
        line.action = [&line, options] {
            line.change([&](HandheldFolder& folder) { deleteTargets(folder.handheld(), *options); });
        };
    });
}

void addArchiveCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "archive", "Delete records with an archive copy on the desktop: the next HotSync takes them",
        "todo 0x000001");
    const Options options = addDatabaseOption(command);
    command.add_option("ID", options->targets, "The records")->required();
    command.callback([&line, options] {
        line.action = [&line, options] {
            line.change([&](HandheldFolder& folder) {
                takeRecords(folder.handheld(), *options, &HandheldDatabase::archiveRecord);
            });
        };
    });
}

} // namespace

void addRecordCommands(CommandLine& line) {
    addAddCommand(line);
    addEditCommand(line);
    addDeleteCommand(line);
    addArchiveCommand(line);
}

} // namespace tsr
