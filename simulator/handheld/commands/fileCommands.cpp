#include <ctime>
#include <memory>
#include <optional>

#include "handheld/HandheldError.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/DataOptions.h"
#include "handheld/commands/categoryName.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/mailMessages.h"
#include "handheld/commands/recordFields.h"
#include "handheld/commands/recordFiles.h"
#include "handheld/mailFolders.h"
#include "handheld/pdbFile.h"
#include "interchange/InterchangeError.h"
#include "interchange/mailbox.h"
#include "interchange/messageFile.h"

namespace tsr {

namespace {

struct FileOptions {
    std::vector<std::string> files;
    std::string database;
    bool replace = false;
    bool vCard3 = false;
    std::optional<std::string> folder; // of mail
    std::optional<std::string> record; // id, of mail
};

struct PreferenceOptions {
    std::string creator;
    std::uint16_t id = 0;
    std::uint16_t version = 1;
    bool unsaved = false;
    bool remove = false;
    DataOptions content;
};

HandheldDatabase readPdb(const std::string& file) {
    try {
        return parsePdb(readFile(file));
    } catch (const HandheldError& error) {
        throw HandheldError(file + ": " + error.what());
    }
}

void importDatabase(Handheld& handheld, const std::string& file, bool replace) {
    HandheldDatabase database = readPdb(file);
    const std::string name = database.name();
    if (handheld.find(name) && !replace) {
        throw HandheldError("the handheld has a database " + name
                            + " already: --replace puts the new one in its place");
    }
    database.markUnsaved(); // to its file, but not yet to ours
    handheld.databases.insert_or_assign(name, std::move(database));
}

// What is read gives the reasons why parts of it could not be held.
using Refused = std::vector<std::string>;
using ImportText = Refused (*)(Handheld&, const std::string& text);

template <void (*importText)(Handheld&, const std::string&)>
Refused importWhole(Handheld& handheld, const std::string& text) {
    importText(handheld, text);
    return {};
}

Refused importCalendar(Handheld& handheld, const std::string& text) {
    importTasks(handheld, text);
    return importEvents(handheld, text);
}

Refused importMessages(Handheld& handheld, const std::vector<MailMessage>& messages,
                       const FileOptions& options) {
    HandheldDatabase& database = findDatabase(handheld, mailDatabase);
    return importMail(handheld, messages, parseCategory(database, options.folder.value_or("0")));
}

bool isMessage(const std::string& file) { return file.ends_with(".eml"); }
bool isMailbox(const std::string& file) { return file.ends_with(".mbox"); }

// Null for a database.
ImportText importOfRecords(const std::string& file) {
    if (file.ends_with(".vcf")) return importWhole<importContacts>;
    if (file.ends_with(".ics")) return importCalendar;
    if (file.ends_with(".json")) return importWhole<importRecords>;
    return nullptr;
}

Refused importFile(Handheld& handheld, const std::string& file, const FileOptions& options) {
    const ImportText importText = importOfRecords(file);
    if (!importText && !isMessage(file) && !isMailbox(file)) {
        importDatabase(handheld, file, options.replace);
        return {};
    }
    const std::vector<std::uint8_t> bytes = readFile(file);
    const std::string text(bytes.begin(), bytes.end());
    try {
        if (isMessage(file)) return importMessages(handheld, {readMessage(text)}, options);
        if (isMailbox(file)) return importMessages(handheld, readMailbox(text), options);
        return importText(handheld, text);
    } catch (const std::runtime_error& error) {
        throw HandheldError(file + ": " + error.what());
    }
}

std::string exportedMail(HandheldDatabase& database, const FileOptions& options) {
    std::optional<std::uint8_t> folder;
    if (options.folder) folder = parseCategory(database, *options.folder);
    std::vector<MailMessage> messages = options.record
                                          ? std::vector{toMailMessage(liveRecord(database, *options.record))}
                                          : mailOf(database, folder);
    if (isMailbox(options.files.front())) return mailboxText(messages);
    if (messages.size() != 1) throw UsageError("an .eml file holds one message: name it with --record");
    return messageText(messages.front());
}

std::vector<std::uint8_t> exportedBytes(Handheld& handheld, const FileOptions& options) {
    const std::string& file = options.files.front();
    HandheldDatabase& database = findDatabase(handheld, options.database);
    const std::int64_t stamp = handheld.clock.value_or(static_cast<std::uint32_t>(std::time(nullptr)));
    std::string text;
    if (file.ends_with(".vcf") && database.name() == contactDatabase) {
        text = exportedContacts(database, options.vCard3 ? VCardVersion::V3 : VCardVersion::V4);
    } else if (file.ends_with(".ics") && database.name() == taskDatabase) {
        text = exportedTasks(database, stamp);
    } else if (file.ends_with(".ics") && database.name() == eventDatabase) {
        text = exportedEvents(database, stamp);
    } else if ((isMessage(file) || isMailbox(file)) && database.name() == mailDatabase) {
        text = exportedMail(database, options);
    } else if (file.ends_with(".json")) {
        text = exportedRecords(database);
    } else {
        return toPdb(database);
    }
    return {text.begin(), text.end()};
}

void applyPreference(Handheld& handheld, const PreferenceOptions& options) {
    if (options.remove == options.content.isGiven()) throw UsageError("give either content or --delete");
    const PreferenceKey key{fourCharacterCode(options.creator), options.id, !options.unsaved};
    if (!options.remove)
        handheld.preferences[key] = {options.version, options.content.data()};
    else if (handheld.preferences.erase(key) == 0)
        throw HandheldError("there is no such preference");
}

// A reason names what somebody else has written, in UTF-8; characters in it that act on a terminal show as
// '?'.
std::string shownReason(const std::string& reason) {
    std::string shown;
    for (std::size_t i = 0; i < reason.size(); ++i) {
        const auto byte = static_cast<unsigned char>(reason[i]);
        const auto next = static_cast<unsigned char>(i + 1 < reason.size() ? reason[i + 1] : 0);
        const bool isLongControl = byte == 0xC2 && next >= 0x80 && next < 0xA0; // U+0080 to U+009F
        if (isLongControl) ++i;
        shown += isLongControl || byte < 0x20 || byte == 0x7F ? '?' : reason[i];
    }
    return shown;
}

void addImportCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "import",
        "Put the databases of .pdb files on the handheld; add the contacts of "
        ".vcf files, the events and tasks of .ics files, the messages of .eml and .mbox files, and "
        "the records of .json files",
        "backup/MemoDB.pdb --replace");
    auto options = std::make_shared<FileOptions>();
    command.add_option("FILE", options->files, "The files; their names tell what they are")->required();
    command.add_flag("--replace", options->replace, "Replace databases that are there already");
    command.add_option("--folder", options->folder, "The folder of messages (Inbox)");
    command.callback([&line, options] {
        line.action = [&line, options] {
            line.change([&](HandheldFolder& folder) {
                for (const std::string& file : options->files) {
                    for (const std::string& reason : importFile(folder.handheld(), file, *options))
                        line.err << "handheld: not imported: " << shownReason(reason) << "\n";
                }
            });
        };
    });
}

void addExportCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "export",
        "Write a database to a .pdb file, for a device or another handheld, or its records to a .json file, "
        "addresses to a .vcf file, events or to-dos to an .ics file, messages to an .mbox or .eml file",
        "memo MemoDB.pdb");
    auto options = std::make_shared<FileOptions>();
    command.add_option("NAME", options->database, "A database or an application")->required();
    command.add_option("FILE", options->files, "The file; one that is there is replaced")
        ->required()
        ->expected(1);
    command.add_flag("--vcard3", options->vCard3, "Version 3.0 of vCards, not 4.0");
    command.add_option("--folder", options->folder, "Messages of this folder only");
    command.add_option("--record", options->record, "This message only");
    command.callback([&line, options] {
        line.action = [&line, options] {
            HandheldFolder folder = HandheldFolder::open(line.folder);
            replaceFile(options->files.front(), exportedBytes(folder.handheld(), *options));
        };
    });
}

} // namespace

void addFileCommands(CommandLine& line) {
    addImportCommand(line);
    addExportCommand(line);
}

void addPreferenceCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "preference", "Set or delete a preference of an application, such as number 1 of mail, its filter",
        "mail 3 --text \"Regards, Pat\"");
    auto options = std::make_shared<PreferenceOptions>();
    command.add_option("CREATOR", options->creator, "Creator of the application, four characters: mail")
        ->required()
        ->check(
            [](const std::string& text) { return text.size() == 4 ? "" : "a creator has four characters"; });
    command.add_option("ID", options->id, "Number of the preference")->required();
    options->content.addTo(command);
    command.add_option("--version", options->version, "Its version (1)");
    command.add_flag("--unsaved", options->unsaved, "One of the preferences that are not backed up");
    command.add_flag("--delete", options->remove, "Delete it");
    command.callback([&line, options] {
        line.action = [&line, options] {
            line.change([&](HandheldFolder& folder) { applyPreference(folder.handheld(), *options); });
        };
    });
}

} // namespace tsr
