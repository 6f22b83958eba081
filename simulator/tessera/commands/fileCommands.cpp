#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>

#include <nlohmann/json.hpp>

#include "interchange/InterchangeError.h"
#include "interchange/iCalendar.h"
#include "interchange/mailbox.h"
#include "interchange/messageFile.h"
#include "interchange/vCard.h"
#include "tessera/Meeting.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/DocumentForm.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/documentChoice.h"
#include "tessera/commands/inputText.h"
#include "tessera/commands/mailFiles.h"
#include "tessera/commands/mailTexts.h"
#include "tessera/commands/meetingJson.h"
#include "tessera/commands/readings.h"
#include "tessera/commands/shown.h"
#include "tessera/commands/userTexts.h"
#include "tessera/contactDocument.h"
#include "tessera/mailDocument.h"
#include "tessera/mailMessage.h"
#include "tessera/meetingEvent.h"
#include "tessera/taskDocument.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

// Everything is in JSON; the others hold the contacts, the meetings and tasks, or the mail of one user.
enum class FileFormat { Everything, VCard3, VCard4, ICalendar, Message, Mailbox };

struct FileOptions {
    std::string name; // of the file
    std::string user;
    std::string format;
    std::string folder; // of mail
    std::string id;     // of one message
};

FileFormat formatOf(const FileOptions& options) {
    if (options.format == "json") return FileFormat::Everything;
    if (options.format == "vcard3") return FileFormat::VCard3;
    if (options.format == "vcard" || (options.format.empty() && options.name.ends_with(".vcf")))
        return FileFormat::VCard4;
    if (options.format == "icalendar" || (options.format.empty() && options.name.ends_with(".ics")))
        return FileFormat::ICalendar;
    if (options.format == "eml" || (options.format.empty() && options.name.ends_with(".eml")))
        return FileFormat::Message;
    if (options.format == "mbox" || (options.format.empty() && options.name.ends_with(".mbox")))
        return FileFormat::Mailbox;
    return FileFormat::Everything;
}

// No password has this for its hash.
constexpr char noPassword[] = "";

Json meetingsJson(Store& store, const User& user) {
    Json meetings = Json::array();
    for (const Document& document : store.documents(store.mailDatabase(user.id).id, meetingKind)) {
        const std::optional<Meeting> meeting = toMeeting(document);
        if (!meeting) continue;
        meetings.push_back(meetingJson(*meeting, exactText(meeting->start)));
    }
    return meetings;
}

Json messagesJson(Store& store, const User& user) {
    Json list = Json::array();
    for (const Document& document : store.documents(store.mailDatabase(user.id).id, mailKind)) {
        const Mail mail = toMail(document.properties);
        list.push_back(mailJson(mail, exactText(mail.date)));
    }
    return list;
}

Json documentsJson(Store& store, const User& user, const DocumentForm& form) {
    Json list = Json::array();
    const DocumentForm::Words& words = form.words();
    for (const Document& document :
         store.documents(store.database(user.id, words.databaseKind).id, words.documentKind)) {
        list.push_back(form.toJson(document));
    }
    return list;
}

Json storeJson(Store& store, const DocumentForms& forms) {
    Json users = Json::array();
    for (const User& user : store.users()) {
        Json json = {{"name", user.name},
                     {"zone", user.zoneName},
                     {"hours", hoursText(user.hours)},
                     {"days", daysText(user.hours)},
                     {"meetings", meetingsJson(store, user)},
                     {"mail", messagesJson(store, user)}};
        for (const DocumentForm* form : forms) json[form->words().plural] = documentsJson(store, user, *form);
        users.push_back(std::move(json));
    }
    return {{"users", users}};
}

void write(const TesseraCommandLine& line, const std::string& output, const std::string& text) {
    if (output.empty()) {
        line.out << text;
        return;
    }
    std::ofstream file(output, std::ios::binary);
    file << text;
    file.close();
    if (!file) throw TesseraError("cannot write '" + output + "'");
}

std::vector<Document> documentsOf(Store& store, const std::string& userName, const char* databaseKind,
                                  const char* documentKind) {
    const User user = namedUser(store, userName);
    return store.documents(store.database(user.id, databaseKind).id, documentKind);
}

std::string vCards(Store& store, const std::string& user, VCardVersion version) {
    std::vector<Contact> contacts;
    for (const Document& document : documentsOf(store, user, contactsKind, contactKind))
        contacts.push_back(toContact(document.properties));
    return vCardText(contacts, version);
}

std::vector<Task> tasksOf(Store& store, const std::string& user) {
    std::vector<Task> tasks;
    for (const Document& document : documentsOf(store, user, mailDatabaseKind, taskKind)) {
        tasks.push_back(toTask(document.properties));
        tasks.back().uid = document.unid;
    }
    return tasks;
}

std::vector<Event> eventsOf(Store& store, const User& user) {
    std::vector<Event> events;
    for (const Document& document : documentsOf(store, user.name, mailDatabaseKind, meetingKind)) {
        const auto meeting = toMeeting(document);
        if (!meeting) continue;
        events.push_back(toEvent(*meeting, user.zone));
        events.back().uid = document.unid;
    }
    return events;
}

std::string calendarOf(Store& store, const std::string& userName) {
    const User user = namedUser(store, userName);
    return calendarText(eventsOf(store, user), tasksOf(store, userName), std::time(nullptr),
                        clockOf(user.zone));
}

std::string folderOf(const FileOptions& options) {
    return options.folder.empty() ? std::string() : parsedFolder(options.folder);
}

std::string messageOf(Store& store, const FileOptions& options) {
    const User user = namedUser(store, options.user);
    if (options.id.empty()) throw ArgumentError("an .eml file holds one message: name it with --mail");
    return messageText(toMailMessage(
        chosenDocument(store, store.mailDatabase(user.id).id, mailKind, options.id, "mail", user.name)));
}

std::string mailboxOf(Store& store, const FileOptions& options) {
    return mailboxText(mailOf(store, namedUser(store, options.user), folderOf(options)));
}

void exportFile(const TesseraCommandLine& line, const FileOptions& options, const DocumentForms& forms) {
    Store store = line.openStore();
    const FileFormat format = formatOf(options);
    if (format != FileFormat::Everything && options.user.empty())
        throw ArgumentError("--user tells whose these are to be");
    switch (format) {
    case FileFormat::Everything: write(line, options.name, storeJson(store, forms).dump(2) + "\n"); break;
    case FileFormat::VCard3: write(line, options.name, vCards(store, options.user, VCardVersion::V3)); break;
    case FileFormat::VCard4: write(line, options.name, vCards(store, options.user, VCardVersion::V4)); break;
    case FileFormat::ICalendar: write(line, options.name, calendarOf(store, options.user)); break;
    case FileFormat::Message: write(line, options.name, messageOf(store, options)); break;
    case FileFormat::Mailbox: write(line, options.name, mailboxOf(store, options)); break;
    }
}

Json parsedJson(const std::string& text, const std::string& input) {
    Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded()) throw TesseraError("'" + input + "' is not JSON");
    return json;
}

User userToImport(Store& store, const Json& json) {
    User user;
    user.name = json.at("name").get<std::string>();
    if (const std::optional<User> known = store.findUser(user.name)) return *known;
    setZone(user, json.value("zone", user.zone.text()));
    if (json.contains("hours")) setHours(user.hours, json.at("hours").get<std::string>());
    if (json.contains("days")) setDays(user.hours, json.at("days").get<std::string>());
    store.addUser(user, noPassword);
    return *store.findUser(user.name);
}

void importMeeting(Store& store, const User& user, const Meeting& meeting) {
    store.addDocument(store.mailDatabase(user.id).id, meetingKind, toProperties(meeting));
}

void addMail(Store& store, const User& user, const Mail& mail) {
    Properties properties;
    setMail(properties, mail);
    store.addDocument(store.mailDatabase(user.id).id, mailKind, properties);
}

void importJson(Store& store, const Json& json, const DocumentForms& forms) {
    for (const Json& userJson : json.at("users")) {
        const User user = userToImport(store, userJson);
        for (const Json& meeting : userJson.value("meetings", Json::array()))
            importMeeting(store, user, meetingFromJson(meeting, user.zone));
        for (const Json& mail : userJson.value("mail", Json::array()))
            addMail(store, user, mailFromJson(mail));
        for (const DocumentForm* form : forms) {
            const DocumentForm::Words& words = form->words();
            for (const Json& document : userJson.value(words.plural, Json::array())) {
                store.addDocument(store.database(user.id, words.databaseKind).id, words.documentKind,
                                  form->fromJson(document));
            }
        }
    }
}

void importContacts(Store& store, const std::string& userName, const std::string& text) {
    const std::int64_t databaseId = store.database(namedUser(store, userName).id, contactsKind).id;
    for (const Contact& contact : readVCards(text)) {
        Properties properties;
        setContact(properties, contact);
        store.addDocument(databaseId, contactKind, properties);
    }
}

void importTasks(Store& store, const std::string& userName, const std::string& text) {
    const std::int64_t databaseId = store.mailDatabase(namedUser(store, userName).id).id;
    for (const Task& task : readTasks(text)) {
        Properties properties;
        setTask(properties, task);
        store.addDocument(databaseId, taskKind, properties);
    }
}

// Gives the reasons why meetings could not be held.
std::vector<std::string> importMeetings(Store& store, const std::string& userName, const std::string& text) {
    const User user = namedUser(store, userName);
    const EventFile file = readEvents(text, clockOf(user.zone));
    std::vector<std::string> refused = file.refused;
    for (const Event& event : file.events) {
        try {
            importMeeting(store, user, toMeeting(event, user.zone));
        } catch (const TesseraError& error) {
            refused.push_back("'" + event.subject + "': " + error.what());
        }
    }
    return refused;
}

std::vector<std::string> importMessages(Store& store, const FileOptions& options,
                                        const std::vector<MailMessage>& messages) {
    const std::string folder = folderOf(options);
    return importMail(store, namedUser(store, options.user), messages, folder.empty() ? inboxFolder : folder);
}

std::vector<std::string> importText(Store& store, const FileOptions& options, const std::string& text,
                                    const DocumentForms& forms) {
    switch (formatOf(options)) {
    case FileFormat::Everything: importJson(store, parsedJson(text, options.name), forms); break;
    case FileFormat::VCard3:
    case FileFormat::VCard4: importContacts(store, options.user, text); break;
    case FileFormat::ICalendar:
        importTasks(store, options.user, text);
        return importMeetings(store, options.user, text);
    case FileFormat::Message: return importMessages(store, options, {readMessage(text)});
    case FileFormat::Mailbox: return importMessages(store, options, readMailbox(text));
    }
    return {};
}

std::vector<std::string> importAll(Store& store, const FileOptions& options, const std::string& text,
                                   const DocumentForms& forms) {
    const auto raise = [&options](const std::exception& error) {
        throw TesseraError("'" + options.name + "' cannot be imported: " + error.what());
    };
    SqliteTransaction transaction = store.transaction();
    std::vector<std::string> refused;
    try {
        refused = importText(store, options, text, forms);
    } catch (const Json::exception& error) {
        raise(error);
    } catch (const ArgumentError& error) {
        raise(error);
    } catch (const InterchangeError& error) {
        raise(error);
    }
    transaction.commit();
    return refused;
}

void importFile(const TesseraCommandLine& line, const FileOptions& options, const DocumentForms& forms) {
    if (formatOf(options) != FileFormat::Everything && options.user.empty())
        throw ArgumentError("--user tells whose these become");
    const std::string text = inputText(line, options.name);
    const bool isNew = !std::filesystem::exists(line.file);
    try {
        Store store = line.makeStore();
        for (const std::string& reason : importAll(store, options, text, forms))
            line.err << "tessera: not imported: " << shownLine(reason) << "\n";
    } catch (...) {
        if (isNew) std::filesystem::remove(line.file);
        throw;
    }
    line.out << "imported " << options.name << "\n";
}

CLI::Option* addFormatOption(CLI::App& command, FileOptions& options) {
    return command
        .add_option(
            "--format", options.format,
            "json, vcard (4.0), vcard3 (3.0), icalendar, eml or mbox; otherwise .vcf, .ics, .eml and .mbox "
            "at the end of the name tell it, and everything else is JSON")
        ->check(CLI::IsMember({"json", "vcard", "vcard3", "icalendar", "eml", "mbox"}));
}

} // namespace

void addTesseraFileCommands(TesseraCommandLine& line, const DocumentForms& forms) {
    const auto options = std::make_shared<FileOptions>();
    CLI::App& import = line.command(line.app, "import",
                                    "Adds what stands in a file: that 'export' has written, or of contacts, "
                                    "meetings, tasks or mail",
                                    [&line, &forms, options] { importFile(line, *options, forms); });
    import.footer(
        "  tessera office.db import office.json\n"
        "  tessera office.db import --user \"Pat Lee\" friends.vcf\n"
        "  tessera office.db import --user \"Pat Lee\" calendar.ics\n"
        "  tessera office.db import --user \"Pat Lee\" --folder Sent old.mbox\n"
        "Of JSON, a user who is there already keeps his settings and gets what stands there besides\n"
        "what he has. A meeting that a handheld can't hold is passed over and named. A new one cannot log in "
        "until 'user edit --password' has given him a password.");
    import.add_option("INPUT", options->name, "The file to read; - is the standard input")->required();
    import.add_option("--user", options->user, "Whose contacts, meetings, tasks or mail they become");
    import.add_option("--folder", options->folder, "The folder of mail: Inbox, Drafts or Sent (Inbox)");
    addFormatOption(import, *options);

    CLI::App& exported = line.command(
        line.app, "export",
        "Writes all users and what is theirs as JSON, without passwords, or somebody's contacts, "
        "or meetings and tasks, or mail",
        [&line, &forms, options] { exportFile(line, *options, forms); });
    exported.footer("  tessera office.db export --output office.json\n"
                    "  tessera office.db export --user \"Pat Lee\" --output friends.vcf\n"
                    "  tessera office.db export --user \"Pat Lee\" --output calendar.ics\n"
                    "  tessera office.db export --user \"Pat Lee\" --folder Inbox --output mail.mbox\n"
                    "  tessera office.db export --user \"Pat Lee\" --mail 94515958 --output lunch.eml");
    exported.add_option("--output", options->name, "The file to write; without it they are printed");
    exported.add_option("--user", options->user, "Whose contacts, meetings and tasks, or mail");
    exported.add_option("--folder", options->folder, "Mail of this folder only");
    exported.add_option("--mail", options->id,
                        "The message of an .eml file: its identity or the first digits of it");
    addFormatOption(exported, *options);
}

} // namespace tsr
