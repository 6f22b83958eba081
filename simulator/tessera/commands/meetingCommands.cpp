#include <algorithm>
#include <memory>
#include <ostream>

#include <nlohmann/json.hpp>

#include "tessera/Meeting.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/Table.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/documentChoice.h"
#include "tessera/commands/meetingJson.h"
#include "tessera/commands/meetingSettings.h"
#include "tessera/commands/readings.h"
#include "tessera/commands/repeatTexts.h"
#include "tessera/commands/shown.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint32_t minutesPerHour = 60;
constexpr std::uint32_t unsaid = UINT32_MAX;

struct MeetingOptions {
    std::string user;
    std::string id;
    MeetingSettings settings;
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

void addMeeting(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    Meeting meeting;
    meeting.minutes = unsaid;
    options.settings.apply(meeting, user.zone);
    if (meeting.minutes == unsaid) meeting.minutes = meeting.allDay ? minutesPerDay : minutesPerHour;
    const Document document =
        store.addDocument(store.mailDatabase(user.id).id, meetingKind, toProperties(meeting));
    line.out << "added meeting " << shortId(document) << "\n";
}

void editMeeting(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    SqliteTransaction transaction = store.transaction();
    Entry entry = chosenEntry(store, user, options.id);
    options.settings.apply(entry.meeting, user.zone);
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
    Json json = {{"id", entry.document.unid}, {"sequence", entry.document.sequence}};
    json.update(meetingJson(entry.meeting, momentText(entry.meeting.start, user.zone)));
    return json;
}

std::string repeatsText(const Meeting& meeting) {
    return meeting.pattern ? ruleText(meeting.pattern->rule) : "";
}

void listMeetings(const TesseraCommandLine& line, const MeetingOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.user);
    Table table({"ID", "START", "MINUTES", "REPEATS", "SUBJECT"});
    Json list = Json::array();
    for (const Entry& entry : entries(store, user)) {
        list.push_back(toJson(entry, user));
        table.add({shortId(entry.document), startText(entry.meeting, user),
                   std::to_string(entry.meeting.minutes), repeatsText(entry.meeting), entry.meeting.subject});
    }
    if (line.json) {
        line.out << list.dump(2) << "\n";
    } else {
        line.out << table;
    }
}

std::string exceptionText(const Meeting& meeting, const EventException& exception) {
    const bool allDay = exception.allDay.value_or(meeting.allDay);
    const std::string when =
        allDay ? dateText(exception.start, asItStands) : momentText(exception.start, asItStands);
    const std::string minutes = std::to_string(exception.minutes.value_or(meeting.minutes));
    return dateText(exception.patternDate) + ": " + when + ", " + minutes + " minutes, "
         + exception.subject.value_or(meeting.subject);
}

void addPattern(Table& table, const Meeting& meeting) {
    table.add({"Repeats", repeatsText(meeting)});
    for (const auto day : meeting.pattern->deletions) table.add({"Not on", dateText(day)});
    for (const EventException& exception : meeting.pattern->exceptions)
        table.add({"Changed", exceptionText(meeting, exception)});
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
    table.add({"Private", entry.meeting.isPrivate ? "yes" : "no"});
    if (entry.meeting.alarm) table.add({"Alarm", std::to_string(*entry.meeting.alarm) + " minutes before"});
    if (entry.meeting.pattern) addPattern(table, entry.meeting);
    line.out << table;
    if (!entry.meeting.note.empty()) line.out << "\n" << shownText(entry.meeting.note) << "\n";
}

void addUserOption(CLI::App& command, MeetingOptions& options) {
    command.add_option("--user", options.user, "Whose calendar; times are told in his zone")->required();
}

void addIdOption(CLI::App& command, MeetingOptions& options) {
    command.add_option("ID", options.id, "The meeting: its identity or the first digits of it")->required();
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
        "  tessera office.db add meeting --user \"Pat Lee\" --start 2026-12-24 --all-day --subject Closed\n"
        "  tessera office.db add meeting --user \"Pat Lee\" --start \"2026-11-23 10:00\" --subject Team \\\n"
        "      --repeat weekly --every 2 --on mon,wed --until 2027-06-30 --alarm 15");
    addUserOption(add, *options);
    options->settings.addTo(add)->required();

    CLI::App& edit =
        line.command(*line.app.get_subcommand("edit"), "meeting", "Changes what is named and leaves the rest",
                     [&line, options] { editMeeting(line, *options); });
    edit.footer(
        "  tessera office.db edit meeting --user \"Pat Lee\" 94515958 --start \"2026-11-23 11:00\"\n"
        "  tessera office.db edit meeting --user \"Pat Lee\" 94515958 --instance 2026-11-30 --cancel\n"
        "  tessera office.db edit meeting --user \"Pat Lee\" 94515958 --instance 2026-12-07 \\\n"
        "      --start \"2026-12-08 14:00\"");
    addUserOption(edit, *options);
    addIdOption(edit, *options);
    options->settings.addTo(edit);
    options->settings.addInstanceTo(edit);

    CLI::App& remove = line.command(*line.app.get_subcommand("delete"), "meeting", "Deletes a meeting",
                                    [&line, options] { deleteMeeting(line, *options); });
    addUserOption(remove, *options);
    addIdOption(remove, *options);
}

} // namespace tsr
