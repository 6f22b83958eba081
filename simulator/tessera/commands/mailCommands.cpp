#include <algorithm>
#include <ctime>
#include <memory>
#include <ostream>

#include <nlohmann/json.hpp>

#include "interchange/mailAddresses.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/MailSettings.h"
#include "tessera/commands/Table.h"
#include "tessera/commands/documentChoice.h"
#include "tessera/commands/mailTexts.h"
#include "tessera/commands/readings.h"
#include "tessera/commands/shown.h"
#include "tessera/mailDocument.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

struct MailCommandOptions {
    std::string user;
    std::string id;
    std::string folder;
    MailSettings settings;
};

// The store with the mail of the user that a command is about.
struct MailPlace {
    MailPlace(const TesseraCommandLine& line, const MailCommandOptions& options)
        : store(line.openStore()), user(namedUser(store, options.user)),
          databaseId(store.mailDatabase(user.id).id) {}

    Document chosen(const std::string& id) {
        return chosenDocument(store, databaseId, mailKind, id, "mail", user.name);
    }

    Store store;
    User user;
    std::int64_t databaseId;
};

// A message without them is from or to the user himself.
void fillIn(Mail& mail, const User& user) {
    if (mail.folder == inboxFolder) {
        if (mail.to.empty()) mail.to = {user.name};
    } else if (mail.from.empty()) {
        mail.from = user.name;
    }
}

void addMail(const TesseraCommandLine& line, const MailCommandOptions& options) {
    MailPlace place(line, options);
    Mail mail;
    mail.folder = options.folder.empty() ? inboxFolder : parsedFolder(options.folder);
    mail.date = std::time(nullptr);
    mail.unread = options.settings.unread().value_or(mail.folder == inboxFolder);
    options.settings.apply(line, mail, place.user.zone);
    fillIn(mail, place.user);
    Properties properties;
    setMail(properties, mail);
    const Document document = place.store.addDocument(place.databaseId, mailKind, properties);
    line.out << "added mail " << shortId(document) << "\n";
}

void editMail(const TesseraCommandLine& line, const MailCommandOptions& options) {
    MailPlace place(line, options);
    SqliteTransaction transaction = place.store.transaction();
    Document document = place.chosen(options.id);
    if (options.settings.unread()) {
        markUnread(place.store, place.user.id, document.unid, *options.settings.unread());
        document = place.chosen(document.unid);
    }
    if (options.settings.changesContent() || !options.folder.empty()) {
        Mail mail = toMail(document.properties);
        if (!options.folder.empty()) mail.folder = parsedFolder(options.folder);
        options.settings.apply(line, mail, place.user.zone);
        setMail(document.properties, mail);
        place.store.changeDocument(place.databaseId, document.unid, document.properties);
    }
    transaction.commit();
    line.out << "changed mail " << shortId(document) << "\n";
}

void deleteMail(const TesseraCommandLine& line, const MailCommandOptions& options) {
    MailPlace place(line, options);
    const Document document = place.chosen(options.id);
    place.store.deleteDocument(place.databaseId, document.unid);
    line.out << "deleted mail " << shortId(document) << "\n";
}

Json toJson(const Document& document, const Mail& mail, const User& user) {
    Json json = {{"id", document.unid}, {"sequence", document.sequence}};
    json.update(mailJson(mail, momentText(mail.date, user.zone)));
    return json;
}

// Folder by folder.
std::vector<Document> listedMail(MailPlace& place, const std::string& folder) {
    std::vector<Document> listed;
    for (const char* name : {inboxFolder, draftsFolder, sentFolder}) {
        if (!folder.empty() && folder != name) continue;
        for (Document& document : mailIn(place.store, place.user.id, name))
            listed.push_back(std::move(document));
    }
    return listed;
}

void listMail(const TesseraCommandLine& line, const MailCommandOptions& options) {
    const std::string folder = options.folder.empty() ? "" : parsedFolder(options.folder);
    MailPlace place(line, options);
    Table table({"ID", "FOLDER", "NEW", "FROM OR TO", "DATE", "SUBJECT"});
    Json list = Json::array();
    for (const Document& document : listedMail(place, folder)) {
        const Mail mail = toMail(document.properties);
        list.push_back(toJson(document, mail, place.user));
        table.add({shortId(document), mail.folder, mail.unread ? "*" : "",
                   mail.folder == inboxFolder ? mail.from : joinedAddresses(mail.to, ", "),
                   momentText(mail.date, place.user.zone), mail.subject});
    }
    if (line.json) {
        line.out << list.dump(2) << "\n";
    } else {
        line.out << table;
    }
}

void addFilled(Table& table, const char* name, const std::string& value) {
    if (!value.empty()) table.add({name, value});
}

void addNotice(Table& table, const Mail& mail) {
    addFilled(table, "Actions", joinedAddresses(mail.notice->actions, ", "));
    addFilled(table, "Room", mail.notice->room);
    table.add({"Minutes", std::to_string(mail.notice->minutes)});
}

void showMail(const TesseraCommandLine& line, const MailCommandOptions& options) {
    MailPlace place(line, options);
    const Document document = place.chosen(options.id);
    const Mail mail = toMail(document.properties);
    if (line.json) {
        line.out << toJson(document, mail, place.user).dump(2) << "\n";
        return;
    }
    Table table({"Id", document.unid});
    table.add({"Sequence", std::to_string(document.sequence)});
    table.add({"Folder", mail.folder});
    addFilled(table, "From", mail.from);
    addFilled(table, "Reply to", mail.replyTo);
    addFilled(table, "To", joinedAddresses(mail.to, ", "));
    addFilled(table, "Cc", joinedAddresses(mail.cc, ", "));
    addFilled(table, "Bcc", joinedAddresses(mail.bcc, ", "));
    addFilled(table, "Subject", mail.subject);
    table.add({"Date", momentText(mail.date, place.user.zone)});
    table.add({"Importance", importanceText(mail.importance)});
    table.add({"Unread", mail.unread ? "yes" : "no"});
    addFilled(table, "Answers", mail.answers);
    if (mail.returnReceipt) table.add({"Receipt", "wanted when it is read"});
    if (mail.deliveryReport) table.add({"Report", "wanted when it arrives"});
    if (mail.notice) addNotice(table, mail);
    line.out << table;
    for (const std::string& text : {mail.notice ? mail.notice->body : std::string(), mail.body}) {
        if (!text.empty()) line.out << "\n" << shownText(text) << "\n";
    }
}

using MailWork = void (*)(const TesseraCommandLine&, const MailCommandOptions&);

} // namespace

void addMailCommands(TesseraCommandLine& line) {
    const auto options = std::make_shared<MailCommandOptions>();
    const auto command = [&line, options](const char* group, const char* purpose,
                                          MailWork work) -> CLI::App& {
        CLI::App& added = line.command(*line.app.get_subcommand(group), "mail", purpose,
                                       [&line, options, work] { work(line, *options); });
        added.add_option("--user", options->user, "Whose mail; times are told in his zone")->required();
        return added;
    };
    const auto commandOfOne = [&](const char* group, const char* purpose, MailWork work) -> CLI::App& {
        CLI::App& added = command(group, purpose, work);
        added.add_option("ID", options->id, "The message: its identity or the first digits of it")
            ->required();
        return added;
    };
    const auto addFolder = [options](CLI::App& added, const char* meaning) {
        added.add_option("--folder", options->folder, meaning);
    };

    CLI::App& list = command("list", "Lists the mail of a user by folder", listMail);
    addFolder(list, "Inbox, Drafts or Sent alone");
    line.addJsonOption(list);
    line.addJsonOption(commandOfOne("show", "Shows one message with its text", showMail));

    CLI::App& add = command(
        "add", "Puts a message into a user's Inbox, as if it had arrived, or into another folder", addMail);
    add.footer(
        "  tessera office.db add mail --user \"Pat Lee\" --from \"Jo Brown\" --subject Lunch --body \"At "
        "noon?\"\n"
        "  tessera office.db add mail --user \"Pat Lee\" --folder Drafts --to \"Jo Brown\" --subject Plan\n"
        "  tessera office.db add mail --user \"Pat Lee\" --from \"Jo Brown\" --subject \"Invitation: Team\" "
        "\\\n"
        "      --date \"2026-11-24 10:00\" --minutes 60 --room \"Room 1\" --action Accept --action Decline "
        "\\\n"
        "      --notice-body \"Please come to the team meeting.\"");
    addFolder(add, "Inbox, Drafts or Sent");
    options->settings.addTo(add)->required();

    CLI::App& edit = commandOfOne("edit", "Changes what is named and leaves the rest", editMail);
    edit.footer(
        "  tessera office.db edit mail --user \"Pat Lee\" 94515958 --read\n"
        "  tessera office.db edit mail --user \"Pat Lee\" 94515958 --body \"At one?\" --importance high");
    addFolder(edit, "The folder that it is moved to");
    options->settings.addTo(edit);

    commandOfOne("delete", "Deletes a message", deleteMail);
}

} // namespace tsr
