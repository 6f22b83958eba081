#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>

#include <nlohmann/json.hpp>

#include "tessera/Meeting.h"
#include "tessera/Memo.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/readings.h"
#include "tessera/commands/userTexts.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

// No password has this for its hash.
constexpr char noPassword[] = "";

Json meetingsJson(Store& store, const User& user) {
    Json meetings = Json::array();
    for (const Document& document : store.documents(store.mailDatabase(user.id).id, meetingKind)) {
        const std::optional<Meeting> meeting = toMeeting(document);
        if (!meeting) continue;
        meetings.push_back({{"subject", meeting->subject},
                            {"start", exactText(meeting->start)},
                            {"minutes", meeting->minutes},
                            {"allDay", meeting->allDay}});
    }
    return meetings;
}

Json memosJson(Store& store, const User& user) {
    Json memos = Json::array();
    for (const Document& document : store.documents(store.database(user.id, journalKind).id, memoKind)) {
        const Memo memo = toMemo(document);
        memos.push_back({{"subject", memo.subject}, {"body", memo.body}, {"categories", memo.categories}});
    }
    return memos;
}

Json storeJson(Store& store) {
    Json users = Json::array();
    for (const User& user : store.users()) {
        users.push_back({{"name", user.name},
                         {"zone", user.zoneName},
                         {"hours", hoursText(user.hours)},
                         {"days", daysText(user.hours)},
                         {"meetings", meetingsJson(store, user)},
                         {"memos", memosJson(store, user)}});
    }
    return {{"users", users}};
}

void exportStore(const TesseraCommandLine& line, const std::string& output) {
    Store store = line.openStore();
    const std::string text = storeJson(store).dump(2) + "\n";
    if (output.empty()) {
        line.out << text;
        return;
    }
    std::ofstream file(output);
    file << text;
    file.close();
    if (!file) throw TesseraError("cannot write '" + output + "'");
}

Json readJson(const TesseraCommandLine& line, const std::string& input) {
    std::ifstream file;
    if (input != "-") {
        file.open(input);
        if (!file) throw TesseraError("cannot read '" + input + "'");
    }
    Json json = Json::parse(input == "-" ? line.in : file, nullptr, false);
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

std::uint32_t minutesOf(const Json& json) {
    const auto minutes = json.at("minutes").get<std::int64_t>();
    if (minutes < 0 || minutes > UINT32_MAX) throw TesseraError("a meeting cannot last that many minutes");
    return static_cast<std::uint32_t>(minutes);
}

void importMeeting(Store& store, const User& user, const Json& json) {
    const Meeting meeting{json.value("subject", ""),
                          parseMoment(json.at("start").get<std::string>(), user.zone), minutesOf(json),
                          json.value("allDay", false)};
    store.addDocument(store.mailDatabase(user.id).id, meetingKind, toProperties(meeting));
}

void importMemo(Store& store, const User& user, const Json& json) {
    const Memo memo{json.value("subject", ""), json.value("body", ""),
                    json.value("categories", std::vector<std::string>())};
    store.addDocument(store.database(user.id, journalKind).id, memoKind, toProperties(memo));
}

void importInto(Store& store, const Json& json) {
    for (const Json& userJson : json.at("users")) {
        const User user = userToImport(store, userJson);
        for (const Json& meeting : userJson.value("meetings", Json::array()))
            importMeeting(store, user, meeting);
        for (const Json& memo : userJson.value("memos", Json::array())) importMemo(store, user, memo);
    }
}

void importAll(Store& store, const Json& json, const std::string& input) {
    SqliteTransaction transaction = store.transaction();
    try {
        importInto(store, json);
    } catch (const Json::exception& error) {
        throw TesseraError("'" + input + "' cannot be imported: " + error.what());
    } catch (const ArgumentError& error) {
        throw TesseraError("'" + input + "' cannot be imported: " + error.what());
    }
    transaction.commit();
}

void importFile(const TesseraCommandLine& line, const std::string& input) {
    const Json json = readJson(line, input);
    const bool isNew = !std::filesystem::exists(line.file);
    try {
        Store store = line.makeStore();
        importAll(store, json, input);
    } catch (...) {
        if (isNew) std::filesystem::remove(line.file);
        throw;
    }
    line.out << "imported " << input << "\n";
}

} // namespace

void addTesseraFileCommands(TesseraCommandLine& line) {
    const auto name = std::make_shared<std::string>();
    CLI::App& import =
        line.command(line.app, "import", "Adds what stands in a file that 'export' has written",
                     [&line, name] { importFile(line, *name); });
    import.footer(
        "A user who is there already keeps his settings and gets the meetings and memos besides\n"
        "those that he has. A new one cannot log in until 'user edit --password' has given him a password.");
    import.add_option("INPUT", *name, "The file to read; - is the standard input")->required();

    CLI::App& exported =
        line.command(line.app, "export", "Writes all users and what is theirs as JSON, without passwords",
                     [&line, name] { exportStore(line, *name); });
    exported.footer("  tessera office.db export --output office.json");
    exported.add_option("--output", *name, "The file to write; without it they are printed");
}

} // namespace tsr
