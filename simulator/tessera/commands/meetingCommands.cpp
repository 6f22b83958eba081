#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "tessera/Meeting.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/Table.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/documentChoice.h"
#include "tessera/commands/optionalFlag.h"
#include "tessera/commands/readings.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint32_t minutesPerDay = 1440;
constexpr std::uint32_t maxMinutes = 366 * minutesPerDay;

struct MeetingOptions {
    std::string user;
    std::string id;
    std::optional<std::string> start;
    std::optional<std::uint32_t> minutes;
    std::optional<std::string> subject;
    std::optional<bool> allDay;
};

// A meeting with the document that holds it.
struct Entry {
    Document document;
    Meeting meeting;
};

std::vector<Entry> entries(Store& store, const User& user) {
    std::vector<Entry> entries;
    for (const Document& document : store.documents(store.mailDatabase(user.id).id, meetingKind)) {
        if (const auto meeting = toMeeting(document)) entries.push_back({document, *meeting});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.meeting.start < b.meeting.start; });
    return entries;
}

// The meeting whose identity begins with `id`.
Entry chosenEntry(Store& store, const User& user, const std::string& id) {
    const Document document =
        chosenDocument(store, store.mailDatabase(user.id).id, meetingKind, id, "meeting", user.name);
    const auto meeting = toMeeting(document);
    if (!meeting) throw TesseraError("document " + shortId(document) + " has no time");
    return {document, *meeting};
}

void apply(const MeetingOptions& options, const User& user, Meeting& meeting) {
    if (options.start) meeting.start = parseMoment(*options.start, user.zone);
    if (options.subject) meeting.subject = *options.subject;
    if (options.allDay) meeting.allDay = *options.allDay;
    if (options.minutes) meeting.minutes = *options.minutes;
}

void addMeeting(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    Meeting meeting;
    if (options.allDay.value_or(false)) meeting.minutes = minutesPerDay;
    apply(options, user, meeting);
    const Document document =
        store.addDocument(store.mailDatabase(user.id).id, meetingKind, toProperties(meeting));
    line.out << "added meeting " << shortId(document) << "\n";
}

void editMeeting(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    SqliteTransaction transaction = store.transaction();
    Entry entry = chosenEntry(store, user, options.id);
    apply(options, user, entry.meeting);
    setMeeting(entry.document.properties, entry.meeting);
    store.changeDocument(store.mailDatabase(user.id).id, entry.document.unid, entry.document.properties);
    transaction.commit();
    line.out << "changed meeting " << shortId(entry.document) << "\n";
}

void deleteMeeting(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    const Entry entry = chosenEntry(store, user, options.id);
    store.deleteDocument(store.mailDatabase(user.id).id, entry.document.unid);
    line.out << "deleted meeting " << shortId(entry.document) << "\n";
}

std::string startText(const Meeting& meeting, const User& user) {
    return meeting.allDay ? dateText(meeting.start, user.zone) : momentText(meeting.start, user.zone);
}

Json toJson(const Entry& entry, const User& user) {
    return {{"id", entry.document.unid},        {"sequence", entry.document.sequence},
            {"subject", entry.meeting.subject}, {"start", momentText(entry.meeting.start, user.zone)},
            {"minutes", entry.meeting.minutes}, {"allDay", entry.meeting.allDay}};
}

void listMeetings(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    Table table({"ID", "START", "MINUTES", "SUBJECT"});
    Json list = Json::array();
    for (const Entry& entry : entries(store, user)) {
        list.push_back(toJson(entry, user));
        table.add({shortId(entry.document), startText(entry.meeting, user),
                   std::to_string(entry.meeting.minutes), entry.meeting.subject});
    }
    if (line.json) {
        line.out << list.dump(2) << "\n";
    } else {
        line.out << table;
    }
}

void showMeeting(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    const Entry entry = chosenEntry(store, user, options.id);
    if (line.json) {
        line.out << toJson(entry, user).dump(2) << "\n";
        return;
    }
    Table table({"Id", entry.document.unid});
    table.add({"Sequence", std::to_string(entry.document.sequence)});
    table.add({"Subject", entry.meeting.subject});
    table.add({"Start", startText(entry.meeting, user)});
    table.add({"Minutes", std::to_string(entry.meeting.minutes)});
    table.add({"All day", entry.meeting.allDay ? "yes" : "no"});
    line.out << table;
}

void addUserOption(CLI::App& command, MeetingOptions& options) {
    command.add_option("--user", options.user, "Whose calendar; times are told in his zone")->required();
}

void addIdOption(CLI::App& command, MeetingOptions& options) {
    command.add_option("ID", options.id, "The meeting: its identity or the first digits of it")->required();
}

CLI::Option* addSettingOptions(CLI::App& command, MeetingOptions& options) {
    CLI::Option* start =
        command.add_option("--start", options.start, "When it starts, such as \"2026-11-23 10:00\"");
    command.add_option("--minutes", options.minutes, "How long it lasts; 60, or a whole day")
        ->check(CLI::Range(std::uint32_t{0}, maxMinutes));
    command.add_option("--subject", options.subject, "What it is about");
    addOptionalFlag(command, "--all-day,!--timed", options.allDay, "Whether it takes whole days");
    return start;
}

} // namespace

void addMeetingCommands(TesseraCommandLine& line) {
    const auto options = std::make_shared<MeetingOptions>();

    CLI::App& list = line.command(*line.app.get_subcommand("list"), "meetings",
                                  "Lists the meetings of a user by their start",
                                  [&line, options] { listMeetings(line, *options); });
    addUserOption(list, *options);
    line.addJsonOption(list);

    CLI::App& show = line.command(*line.app.get_subcommand("show"), "meeting", "Shows one meeting",
                                  [&line, options] { showMeeting(line, *options); });
    addUserOption(show, *options);
    addIdOption(show, *options);
    line.addJsonOption(show);

    CLI::App& add = line.command(*line.app.get_subcommand("add"), "meeting", "Adds a meeting to a calendar",
                                 [&line, options] { addMeeting(line, *options); });
    add.footer(
        "  tessera office.db add meeting --user \"Pat Lee\" --start \"2026-11-23 10:00\" --subject Lunch\n"
        "  tessera office.db add meeting --user \"Pat Lee\" --start 2026-12-24 --all-day --subject Closed");
    addUserOption(add, *options);
    addSettingOptions(add, *options)->required();

    CLI::App& edit =
        line.command(*line.app.get_subcommand("edit"), "meeting", "Changes what is named and leaves the rest",
                     [&line, options] { editMeeting(line, *options); });
    edit.footer("  tessera office.db edit meeting --user \"Pat Lee\" 94515958 --start \"2026-11-23 11:00\"");
    addUserOption(edit, *options);
    addIdOption(edit, *options);
    addSettingOptions(edit, *options);

    CLI::App& remove = line.command(*line.app.get_subcommand("delete"), "meeting", "Deletes a meeting",
                                    [&line, options] { deleteMeeting(line, *options); });
    addUserOption(remove, *options);
    addIdOption(remove, *options);
}

} // namespace tsr
