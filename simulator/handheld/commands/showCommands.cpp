#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "device/fourCharacterCode.h"
#include "handheld/ConfigurationDatabase.h"
#include "handheld/FreeTimeDatabase.h"
#include "handheld/HandheldError.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/DataOptions.h"
#include "handheld/commands/categoryName.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/handheldText.h"
#include "handheld/commands/mailList.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/forms/fieldText.h"
#include "handheld/freeTimeGrid.h"
#include "handheld/mailFolders.h"
#include "records/InfoBlock.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

std::size_t modifiedCount(const HandheldDatabase& database) {
    std::size_t count = 0;
    database.records().forEach([&](const HandheldRecord& record) { count += record.isModified() ? 1 : 0; });
    return count;
}

std::vector<std::string> attributeNames(const HandheldRecord& record) {
    const std::pair<std::uint8_t, const char*> names[] = {{HandheldRecord::deleted, "deleted"},
                                                          {HandheldRecord::archived, "archived"},
                                                          {HandheldRecord::dirty, "dirty"},
                                                          {HandheldRecord::busy, "busy"},
                                                          {HandheldRecord::secret, "secret"}};
    std::vector<std::string> set;
    for (const auto& [bit, name] : names) {
        if ((record.attributes & bit) != 0) set.emplace_back(name);
    }
    return set;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return text.empty() ? "-" : text;
}

std::string idText(std::uint32_t id) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%06X", static_cast<unsigned>(id));
    return text;
}

Json summary(const HandheldDatabase& database) {
    const DatabaseHeader& header = database.header();
    return {{"name", fromHandheldText(header.name)},
            {"type", fromHandheldText(fourCharacters(header.type))},
            {"creator", fromHandheldText(fourCharacters(header.creator))},
            {"version", header.version},
            {"records", database.records().size()},
            {"modified", modifiedCount(database)}};
}

void listDatabases(std::ostream& out, const Handheld& handheld, bool json) {
    if (json) {
        Json list = Json::array();
        for (const auto& [name, database] : handheld.databases) list.push_back(summary(database));
        out << list.dump(2) << "\n";
        return;
    }
    out << std::left << std::setw(33) << "database"
        << "type  creator  records  modified\n";
    for (const auto& [name, database] : handheld.databases) {
        out << std::left << std::setw(33) << name << fourCharacters(database.header().type) << "  "
            << fourCharacters(database.header().creator) << std::right << std::setw(12)
            << database.records().size() << std::setw(10) << modifiedCount(database) << "\n";
    }
}

void dump(std::ostream& out, const std::vector<std::uint8_t>& data) {
    constexpr std::size_t bytesInLine = 16;
    for (std::size_t at = 0; at < data.size(); at += bytesInLine) {
        const std::size_t end = std::min(at + bytesInLine, data.size());
        std::string hex;
        std::string text;
        for (std::size_t i = at; i < end; ++i) {
            hex += hexText({data[i]}) + " ";
            text += data[i] >= 0x20 && data[i] < 0x7F ? static_cast<char>(data[i]) : '.';
        }
        char place[16];
        std::snprintf(place, sizeof place, "    %04X  ", static_cast<unsigned>(at));
        out << place << std::left << std::setw(3 * bytesInLine + 1) << hex << text << "\n";
    }
}

// Empty for a record without fields: of another database, without data, or damaged.
FieldValues fieldsOf(const HandheldDatabase& database, const HandheldRecord& record) {
    const RecordForm* form = recordForm(database.name());
    if (!form || record.data.empty()) return {};
    try {
        return form->read(record.data);
    } catch (const HandheldError&) {
        return {};
    }
}

// Further lines of a text stand below its first.
std::string indented(const std::string& text) {
    std::string lines;
    for (const char c : shownHandheldText(text)) {
        lines += c;
        if (c == '\n') lines += std::string(18, ' ');
    }
    return lines;
}

// The identity of the Notes item that an answer to this mail tells the server; empty for none.
std::string answeredUnid(const HandheldDatabase& database, const FieldValues& values) {
    return database.name() == mailDatabase ? parseInfoBlock(fieldValue(values, "body"), {}, {}).unid : "";
}

void showFields(std::ostream& out, const HandheldDatabase& database, const FieldValues& values) {
    for (const std::string& name : recordForm(database.name())->fields()) {
        const auto value = values.find(name);
        if (value == values.end()) continue;
        out << "    " << std::left << std::setw(14) << name << indented(value->second) << "\n";
    }
    const std::string unid = answeredUnid(database, values);
    if (!unid.empty()) out << "    information   an answer goes to the Notes item " << unid << "\n";
}

Json recordJson(const HandheldDatabase& database, const HandheldRecord& record) {
    Json json = {{"id", record.id},
                 {"attributes", attributeNames(record)},
                 {"category", record.category},
                 {"size", record.data.size()},
                 {"data", hexText(withoutPassword(database, record))}};
    const FieldValues fields = fieldsOf(database, record);
    for (const auto& [name, value] : fields) json["fields"][name] = fromHandheldText(value);
    if (const std::string unid = answeredUnid(database, fields); !unid.empty()) json["answersTo"] = unid;
    return json;
}

void showJson(std::ostream& out, const HandheldDatabase& database,
              const std::vector<HandheldRecord>& records) {
    Json json = summary(database);
    if (database.appInfo()) json["appInfo"] = hexText(*database.appInfo());
    Json list = Json::array();
    for (const HandheldRecord& record : records) list.push_back(recordJson(database, record));
    json["records"] = std::move(list);
    out << json.dump(2) << "\n";
}

void showTable(std::ostream& out, const HandheldDatabase& database,
               const std::vector<HandheldRecord>& records, bool hexadecimal) {
    out << "id        category  bytes  attributes\n";
    for (const HandheldRecord& record : records) {
        out << idText(record.id) << std::right << std::setw(10) << unsigned{record.category} << std::setw(7)
            << record.data.size() << "  " << joined(attributeNames(record)) << "\n";
        const FieldValues fields = fieldsOf(database, record);
        if (hexadecimal || fields.empty())
            dump(out, withoutPassword(database, record));
        else
            showFields(out, database, fields);
    }
}

Json weekJson(const FreeWeek& week) {
    Json spans = Json::array();
    for (const auto& [begin, end] : freeSpans(week)) {
        spans.push_back({{"start", slotText(week, begin)}, {"end", slotText(week, end)}});
    }
    return {{"start", dateText(week.start)}, {"spans", std::move(spans)}};
}

void showFreeTimeJson(std::ostream& out, const std::vector<Colleague>& colleagues) {
    Json list = Json::array();
    for (const Colleague& colleague : colleagues) {
        Json weeks = Json::array();
        for (const FreeWeek& week : colleague.weeks) weeks.push_back(weekJson(week));
        list.push_back(
            {{"id", colleague.id}, {"name", fromHandheldText(colleague.name)}, {"weeks", std::move(weeks)}});
    }
    out << list.dump(2) << "\n";
}

void showFreeTime(const CommandLine& line, Handheld& handheld, bool ascii) {
    const std::vector<Colleague> colleagues = FreeTimeDatabase(handheld).colleagues();
    if (line.json) {
        showFreeTimeJson(line.out, colleagues);
        return;
    }
    for (Colleague colleague : colleagues) {
        colleague.name = fromHandheldText(colleague.name);
        drawFreeTime(line.out, colleague, ascii);
        line.out << "\n";
    }
}

struct ShowOptions {
    std::string database;
    std::vector<std::string> records; // ids; empty for all
    bool ascii = false;
    bool modified = false;
    bool hexadecimal = false;
};

std::vector<HandheldRecord> chosenRecords(const HandheldDatabase& database, const ShowOptions& options) {
    if (options.records.empty()) return database.records().all();
    std::vector<HandheldRecord> records;
    for (const std::string& id : options.records) {
        const HandheldRecord* const record = database.records().find(parseRecordId(id));
        if (record == nullptr) throw HandheldError("no such record: " + id);
        records.push_back(*record);
    }
    return records;
}

void show(const CommandLine& line, const ShowOptions& options) {
    HandheldFolder folder = HandheldFolder::open(line.folder);
    if (options.database == freeTimeName) {
        if (!options.records.empty()) throw UsageError("freetime shows all colleagues");
        showFreeTime(line, folder.handheld(), options.ascii);
        return;
    }
    const HandheldDatabase& database = findDatabase(folder.handheld(), options.database);
    std::vector<HandheldRecord> records = chosenRecords(database, options);
    if (options.modified)
        std::erase_if(records, [](const HandheldRecord& record) { return !record.isModified(); });
    if (line.json)
        showJson(line.out, database, records);
    else
        showTable(line.out, database, records, options.hexadecimal);
}

struct ListOptions {
    std::optional<std::string> name;
    std::optional<std::string> folder;
};

void list(const CommandLine& line, const ListOptions& options) {
    HandheldFolder folder = HandheldFolder::open(line.folder);
    if (!options.name && !options.folder) {
        listDatabases(line.out, folder.handheld(), line.json);
        return;
    }
    HandheldDatabase& database = findDatabase(folder.handheld(), options.name.value_or(mailDatabase));
    if (database.name() != mailDatabase)
        throw UsageError("mail has a list; handheld show shows the records of others");
    std::optional<std::uint8_t> category;
    if (options.folder) category = parseCategory(database, *options.folder);
    listMail(line.out, database, category, line.json);
}

} // namespace

void addListCommand(CommandLine& line) {
    CLI::App& command = line.addCommand("list", "List the databases, or the mail of all folders or of one",
                                        "mail --folder Inbox");
    line.addJsonOption(command);
    auto options = std::make_shared<ListOptions>();
    command.add_option("NAME", options->name, "mail for messages, otherwise databases are listed");
    command.add_option("--folder", options->folder,
                       "Inbox, Outbox, Deleted, Filed, Draft, or the number of a category");
    command.callback([&line, options] { line.action = [&line, options] { list(line, *options); }; });
}

void addShowCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "show", "Show the records of a database, or the free time of the colleagues as a grid of half hours",
        "memo --modified");
    line.addJsonOption(command);
    auto options = std::make_shared<ShowOptions>();
    command
        .add_option("NAME", options->database,
                    "A database, an application (address, datebook, mail, memo, todo), or freetime")
        ->required();
    command.add_option("ID", options->records, "These records, otherwise all");
    command.add_flag("--modified", options->modified, "Only records that the next HotSync sees as changed");
    command.add_flag("--hex", options->hexadecimal, "Show the bytes of records, not their fields");
    command.add_flag("--ascii", options->ascii, "Draw free time with # < > . instead of blocks");
    command.callback([&line, options] { line.action = [&line, options] { show(line, *options); }; });
}

} // namespace tsr
