#include <memory>
#include <optional>
#include <ostream>

#include "handheld/FreeTimeDatabase.h"
#include "handheld/HandheldError.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/DataOptions.h"
#include "handheld/commands/databaseName.h"

namespace tsr {

namespace {

struct RecordOptions {
    std::string database;
    std::vector<std::string> targets; // ids of records, or names of colleagues
    DataOptions content;
    std::optional<std::uint8_t> category;
    std::optional<std::uint16_t> searchLength;
    bool secret = false;

    bool isFreeTime() const { return database == freeTimeName; }
};

using Options = std::shared_ptr<RecordOptions>;

void addCategoryOption(CLI::App& command, RecordOptions& options) {
    command.add_option("--category", options.category, "Category, 0 to 15")
        ->check(CLI::Range(0, HandheldRecord::categories - 1));
}

void addColleagues(Handheld& handheld, const RecordOptions& options) {
    if (options.content.isGiven() || options.category || options.secret) {
        throw UsageError("freetime takes names of colleagues, and no content");
    }
    if (options.targets.empty() && !options.searchLength) throw UsageError("give the names of colleagues");
    FreeTimeDatabase::create(handheld);
    FreeTimeDatabase freeTime(handheld);
    if (options.searchLength) freeTime.setSearchLength(*options.searchLength);
    for (const std::string& name : options.targets) freeTime.add(name);
}

void addRecord(CommandLine& line, Handheld& handheld, const RecordOptions& options) {
    if (!options.targets.empty() || options.searchLength)
        throw UsageError("only freetime takes names and a length");
    const std::uint32_t id = findDatabase(handheld, options.database)
                                 .addRecord(options.content.data(), options.category.value_or(0),
                                            options.secret ? HandheldRecord::secret : 0);
    if (id == 0) throw HandheldError("the database is full");
    line.out << id << "\n";
}

void changeRecord(Handheld& handheld, const RecordOptions& options) {
    if (!options.content.isGiven() && !options.category) throw UsageError("give new content or a category");
    HandheldDatabase& database = findDatabase(handheld, options.database);
    const std::uint32_t id = parseRecordId(options.targets.front());
    bool found = true;
    if (options.content.isGiven()) found = database.editRecord(id, options.content.data());
    if (options.category) found = database.moveRecord(id, *options.category);
    if (!found) throw HandheldError("no such record: " + options.targets.front());
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
    for (const std::string& name : options.targets) freeTime.remove(name);
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
    CLI::App& command = line.addCommand("add",
                                        "Add a record and print its id; add freetime NAME... puts "
                                        "colleagues on the list of the free-time search",
                                        "memo --text \"Buy milk\" --category 2");
    const Options options = addDatabaseOption(command);
    command.add_option("PERSON", options->targets, "With freetime: the colleagues, as the server knows them");
    command.add_option("--search-length", options->searchLength,
                       "With freetime: the length of the search that the server is told (14 at first)");
    options->content.addTo(command);
    addCategoryOption(command, *options);
    command.add_flag("--secret", options->secret, "Mark the record as private");
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
    CLI::App& command = line.addCommand("edit", "Change the content or the category of a record",
                                        "memo 0x000001 --category 1");
    const Options options = addDatabaseOption(command);
    command.add_option("ID", options->targets, "The record")->required()->expected(1);
    options->content.addTo(command);
    addCategoryOption(command, *options);
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
