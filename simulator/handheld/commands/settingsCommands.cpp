#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <istream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "handheld/ConfigurationDatabase.h"
#include "handheld/HandheldError.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/MailOptions.h"
#include "handheld/commands/clockText.h"
#include "handheld/commands/handheldText.h"
#include "handheld/knownDatabases.h"
#include "handheld/settingsFile.h"
#include "handheld/standardDatabases.h"
#include "terminal/HiddenTyping.h"

namespace tsr {

namespace {

// By the numbers of NextReplication.
constexpr std::array<const char*, 7> typeNames = {"must-choose", "none", "normal", "reset",
                                                  "clear",       "fast", "slow"};

// What the user gave; an empty optional leaves a value as it is.
struct DeviceOptions {
    std::optional<std::string> osVersion;
    std::optional<std::string> clock;
    std::optional<std::string> userName;

    void addTo(CLI::App& command) {
        command.add_option("--os-version", osVersion,
                           "Version of Palm OS, as 4.1; below 4.0, less fits into one fixup record");
        command.add_option(
            "--clock", clock,
            "The handheld's clock: 2002-02-06T12:34:56, 2002-02-06, seconds since 1970, or host for "
            "one that runs with this machine's");
        command.add_option("--user-name", userName, "Name of the handheld's owner");
    }

    void apply(Handheld& handheld) const {
        if (osVersion) handheld.systemVersion = parsedVersion();
        if (clock) handheld.clock = parseClock(*clock);
        if (userName) handheld.userName = *userName;
    }

private:
    VersionNumber parsedVersion() const {
        try {
            return parseVersion(*osVersion);
        } catch (const HandheldError& error) {
            throw UsageError(error.what());
        }
    }
};

struct PasswordOptions {
    std::optional<std::string> file;
    std::optional<std::string> variable;
    bool ask = false;

    void addTo(CLI::App& command) {
        auto* fromFile = command.add_option("--password-file", file,
                                            "Take the Notes password from the first line of a file");
        auto* fromVariable =
            command.add_option("--password-env", variable, "Take it from this environment variable");
        auto* asked = command.add_flag("--ask-password", ask, "Ask for it");
        fromFile->excludes(fromVariable)->excludes(asked);
        fromVariable->excludes(asked);
    }

    bool isGiven() const { return file || variable || ask; }

    std::optional<std::string> password(std::istream& in, std::ostream& err) const {
        if (file) return readLine(*file);
        if (variable) return readVariable(*variable);
        if (ask) return prompt(in, err);
        return std::nullopt;
    }

private:
    static std::string readLine(const std::string& path) {
        std::ifstream stream(path);
        std::string line;
        if (!std::getline(stream, line)) throw HandheldError(path + ": no password can be read from it");
        if (line.ends_with('\r')) line.pop_back();
        return line;
    }

    static std::string readVariable(const std::string& name) {
        const char* value = std::getenv(name.c_str());
        if (!value) throw HandheldError("the environment has no variable " + name);
        return value;
    }

    static std::string prompt(std::istream& in, std::ostream& err) {
        err << "Notes password: " << std::flush;
        const HiddenTyping hidden;
        std::string line;
        const bool read = static_cast<bool>(std::getline(in, line));
        err << "\n";
        if (!read) throw HandheldError("no password was given");
        return line;
    }
};

struct ConfigureOptions {
    DeviceOptions device;
    PasswordOptions password;
    MailOptions mail;
    std::optional<std::string> address;
    std::optional<std::string> port;
    std::optional<std::string> notesName;
    std::vector<std::string> applications;
    std::optional<std::string> type;
    std::optional<std::string> conflict;
    std::optional<std::uint16_t> daysBefore;
    std::optional<std::uint16_t> daysAfter;

    bool changesApplications() const { return type || conflict || daysBefore || daysAfter; }

    bool changesSomething() const {
        return changesApplications() || mail.isGiven() || password.isGiven() || address || port || notesName
            || device.osVersion || device.clock || device.userName;
    }

    bool concerns(const KnownApplication& application) const {
        return applications.empty()
            || std::find(applications.begin(), applications.end(), application.name) != applications.end();
    }
};

std::vector<std::string> applicationNames() {
    std::vector<std::string> names;
    for (const KnownApplication& application : knownApplications) names.emplace_back(application.name);
    return names;
}

void addConnectionOptions(CLI::App& command, ConfigureOptions& options) {
    command.add_option("--address", options.address, "Host name or address of the Tessera Server");
    command.add_option("--port", options.port, "Its TCP port")->check(CLI::Range(1, 65535));
    command.add_option("--notes-name", options.notesName,
                       "User name in Notes; empty lets the server find it");
    options.password.addTo(command);
}

void addApplicationOptions(CLI::App& command, ConfigureOptions& options) {
    command
        .add_option(
            "--app", options.applications,
            "Applications that the next options are for, otherwise all: address, datebook, mail, memo, todo")
        ->delimiter(',')
        ->check(CLI::IsMember(applicationNames()));
    command
        .add_option(
            "--type", options.type,
            "Next replication: must-choose, none, normal, reset (forget sequence numbers), clear (delete the "
            "data, then replicate), fast, or slow (compare all records)")
        ->check(CLI::IsMember(std::vector<std::string>(typeNames.begin(), typeNames.end())));
    command
        .add_option("--conflict", options.conflict,
                    "Who wins when both sides changed: C the handheld, S Notes")
        ->check(CLI::IsMember({"C", "S"}));
    command.add_option("--days-before", options.daysBefore, "Start of the window, in days before today");
    command.add_option("--days-after", options.daysAfter, "End of the window, in days after today");
}

void applyConnection(const ConfigureOptions& options, ConfigurationDatabase& configuration,
                     CommandLine& line) {
    ConnectionChoice connection = configuration.connection();
    if (options.address) connection.serverAddress = *options.address;
    if (options.port) connection.serverPort = *options.port;
    if (options.notesName) connection.userName = toHandheldText(*options.notesName);
    if (const auto password = options.password.password(line.in, line.err))
        connection.password = toHandheldText(*password);
    configuration.setConnection(connection);
}

void applyChoice(const ConfigureOptions& options, ApplicationChoice& choice) {
    if (options.type) {
        const auto name = std::find(typeNames.begin(), typeNames.end(), *options.type);
        choice.type = static_cast<NextReplication>(name - typeNames.begin());
    }
    if (options.conflict) choice.conflictRule = options.conflict->front();
    choice.daysBefore = options.daysBefore.value_or(choice.daysBefore);
    choice.daysAfter = options.daysAfter.value_or(choice.daysAfter);
}

void applyChoices(const ConfigureOptions& options, ConfigurationDatabase& configuration) {
    for (const KnownApplication& application : knownApplications) {
        if (!options.concerns(application)) continue;
        ApplicationChoice choice = configuration.applications().at(application.configurationCategory);
        applyChoice(options, choice);
        configuration.setApplication(application.configurationCategory, choice);
    }
}

const char* typeName(const ApplicationChoice& choice) {
    return typeNames[static_cast<std::size_t>(choice.type)];
}

std::string clockValue(const Handheld& handheld) {
    return handheld.clock ? std::to_string(*handheld.clock) : std::string("host");
}

void printJson(std::ostream& out, const Handheld& handheld, const ConfigurationDatabase& configuration) {
    const ConnectionChoice& connection = configuration.connection();
    nlohmann::ordered_json json;
    json["osVersion"] = versionText(handheld.systemVersion);
    json["clock"] = clockValue(handheld);
    json["userName"] = handheld.userName;
    json["address"] = fromHandheldText(connection.serverAddress);
    json["port"] = fromHandheldText(connection.serverPort);
    json["notesName"] = fromHandheldText(connection.userName);
    json["hasPassword"] = !connection.password.empty();
    for (const KnownApplication& application : knownApplications) {
        const ApplicationChoice& choice = configuration.applications().at(application.configurationCategory);
        json["applications"][application.name] = {{"type", typeName(choice)},
                                                  {"conflict", std::string(1, choice.conflictRule)},
                                                  {"daysBefore", choice.daysBefore},
                                                  {"daysAfter", choice.daysAfter}};
    }
    json["mail"] = mailChoiceJson(handheld);
    out << json.dump(2) << "\n";
}

void printTable(std::ostream& out, const Handheld& handheld, const ConfigurationDatabase& configuration) {
    const ConnectionChoice& connection = configuration.connection();
    out << "Palm OS      " << versionText(handheld.systemVersion) << "\n"
        << "clock        " << clockValue(handheld) << "\n"
        << "owner        " << handheld.userName << "\n"
        << "server       " << connection.serverAddress << ":" << connection.serverPort << "\n"
        << "Notes name   " << fromHandheldText(connection.userName) << "\n"
        << "password     " << (connection.password.empty() ? "none" : "set") << "\n";
    printMailChoice(out, handheld);
    out << "\napplication  next type    conflict  window\n";
    for (const KnownApplication& application : knownApplications) {
        const ApplicationChoice& choice = configuration.applications().at(application.configurationCategory);
        out << std::left << std::setw(13) << application.name << std::setw(13) << typeName(choice)
            << std::setw(10) << choice.conflictRule << "-" << choice.daysBefore << " to +" << choice.daysAfter
            << " days\n";
    }
}

void configure(CommandLine& line, const ConfigureOptions& options) {
    HandheldFolder folder = HandheldFolder::open(line.folder);
    options.device.apply(folder.handheld());
    options.mail.apply(folder.handheld());
    ConfigurationDatabase configuration(folder.handheld());
    applyConnection(options, configuration, line);
    if (options.changesApplications()) applyChoices(options, configuration);
    if (options.changesSomething())
        folder.save();
    else if (line.json)
        printJson(line.out, folder.handheld(), configuration);
    else
        printTable(line.out, folder.handheld(), configuration);
}

} // namespace

void addInitCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "init",
        "Make a new handheld, or make one of the .pdb files of a backup that lie in the folder already",
        "--user-name \"Pat Lee\" --os-version 4.1 --clock host");
    auto options = std::make_shared<DeviceOptions>();
    options->addTo(command);
    command.callback([&line, options] {
        line.action = [&line, options] {
            Handheld handheld;
            handheld.clock.reset();
            options->apply(handheld);
            HandheldFolder::create(line.folder, std::move(handheld), addStandardDatabases);
        };
    });
}

void addConfigureCommand(CommandLine& line) {
    CLI::App& command = line.addCommand(
        "configure", "Choose server, user and kinds of replication; without options, show what is chosen",
        "--app memo,todo --type slow --conflict S");
    line.addJsonOption(command);
    auto options = std::make_shared<ConfigureOptions>();
    addConnectionOptions(command, *options);
    addApplicationOptions(command, *options);
    options->mail.addTo(command);
    options->device.addTo(command);
    command.callback([&line, options] { line.action = [&line, options] { configure(line, *options); }; });
}

} // namespace tsr
