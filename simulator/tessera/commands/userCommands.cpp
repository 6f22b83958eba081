#include <memory>
#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "tessera/commands/Table.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/passwordInput.h"
#include "tessera/commands/userTexts.h"
#include "tessera/passwords.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;

struct UserOptions {
    std::string name;
    std::optional<std::string> newName;
    std::optional<std::string> zone;
    std::optional<std::string> hours;
    std::optional<std::string> days;
    bool isDefault = false;
    bool password = false;
    std::string passwordFile;
};

void apply(const UserOptions& options, User& user) {
    if (options.newName) user.name = *options.newName;
    if (options.zone) setZone(user, *options.zone);
    if (options.hours) setHours(user.hours, *options.hours);
    if (options.days) setDays(user.hours, *options.days);
}

std::string newPasswordHash(const TesseraCommandLine& line, const UserOptions& options) {
    const std::string prompt = "Password for " + options.name + ": ";
    return hashPassword(readPassword(options.passwordFile, prompt, line.in, line.err),
                        PasswordCost::Interactive);
}

void addUser(const TesseraCommandLine& line, const UserOptions& options) {
    User user;
    user.name = options.name;
    user.zoneName = user.zone.text();
    apply(options, user);
    checkUser(user);
    const std::string hash = newPasswordHash(line, options);

    Store store = line.makeStore();
    SqliteTransaction transaction = store.transaction();
    store.addUser(user, hash);
    if (options.isDefault) store.setDefaultUser(namedUser(store, user.name).id);
    transaction.commit();
    line.out << "added user " << user.name << "\n";
}

void editUser(const TesseraCommandLine& line, const UserOptions& options) {
    Store store = line.openStore();
    User user = namedUser(store, options.name);
    apply(options, user);
    const bool newPassword = options.password || !options.passwordFile.empty();
    const std::string hash = newPassword ? newPasswordHash(line, options) : std::string();

    SqliteTransaction transaction = store.transaction();
    store.changeUser(user);
    if (newPassword) store.changePassword(user.id, hash);
    if (options.isDefault) store.setDefaultUser(user.id);
    transaction.commit();
    line.out << "changed user " << user.name << "\n";
}

void deleteUser(const TesseraCommandLine& line, const UserOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.name);
    store.deleteUser(user.id);
    line.out << "deleted user " << user.name << "\n";
}

Json toJson(const User& user, bool isDefault) {
    return {{"name", user.name},
            {"zone", user.zoneName},
            {"rule", user.zone.text()},
            {"hours", hoursText(user.hours)},
            {"days", daysText(user.hours)},
            {"default", isDefault}};
}

bool isDefaultUser(Store& store, const User& user) {
    const std::optional<User> chosen = store.defaultUser();
    return chosen && chosen->id == user.id;
}

void listUsers(const TesseraCommandLine& line) {
    Store store = line.openStore();
    Table table({"NAME", "ZONE", "HOURS", "DAYS", "DEFAULT"});
    Json list = Json::array();
    for (const User& user : store.users()) {
        const bool isDefault = isDefaultUser(store, user);
        list.push_back(toJson(user, isDefault));
        table.add(
            {user.name, user.zoneName, hoursText(user.hours), daysText(user.hours), isDefault ? "yes" : ""});
    }
    if (line.json) {
        line.out << list.dump(2) << "\n";
    } else {
        line.out << table;
    }
}

void showUser(const TesseraCommandLine& line, const UserOptions& options) {
    Store store = line.openStore();
    const User user = namedUser(store, options.name);
    const bool isDefault = isDefaultUser(store, user);
    const UserDatabase mail = store.mailDatabase(user.id);
    if (line.json) {
        Json json = toJson(user, isDefault);
        json["mailDatabase"] = mail.dbid;
        line.out << json.dump(2) << "\n";
        return;
    }
    Table table({"Name", user.name});
    table.add({"Zone", user.zoneName});
    table.add({"Rule", user.zone.text()});
    table.add({"Hours", hoursText(user.hours)});
    table.add({"Days", daysText(user.hours)});
    table.add({"Default", isDefault ? "yes" : "no"});
    table.add({"Mail database", mail.dbid});
    line.out << table;
}

void addSettingOptions(CLI::App& command, UserOptions& options) {
    command.add_option("--zone", options.zone,
                       "Time zone: Europe/Berlin, or a rule such as CET-1CEST,M3.5.0,M10.5.0/3");
    command.add_option("--hours", options.hours, "Working hours in that zone, such as 09:00-17:00");
    command.add_option("--days", options.days, "Working days, such as mon-fri or mon,wed");
    command.add_flag("--default", options.isDefault,
                     "Name this user to handhelds that do not know their user's name");
    command.add_option("--password-file", options.passwordFile, "A file whose first line is the password");
}

void addNameOption(CLI::App& command, UserOptions& options) {
    command.add_option("NAME", options.name, "The name of the user")->required();
}

} // namespace

void addUserCommands(TesseraCommandLine& line) {
    const auto options = std::make_shared<UserOptions>();
    CLI::App& user = *line.app.get_subcommand("user");

    CLI::App& add = line.command(user, "add", "Adds a user with an empty calendar",
                                 [&line, options] { addUser(line, *options); });
    add.footer("Without --password-file the password comes from the environment variable\n"
               "TESSERA_PASSWORD, or else it is asked for.\n"
               "  tessera office.db user add \"Pat Lee\" --zone Europe/Berlin --days mon-thu");
    addNameOption(add, *options);
    addSettingOptions(add, *options);

    CLI::App& edit = line.command(user, "edit", "Changes what is named and leaves the rest",
                                  [&line, options] { editUser(line, *options); });
    edit.footer("  tessera office.db user edit \"Pat Lee\" --hours 08:00-16:00 --password");
    addNameOption(edit, *options);
    edit.add_option("--name", options->newName, "A new name");
    addSettingOptions(edit, *options);
    edit.add_flag("--password", options->password, "A new password, from TESSERA_PASSWORD or else asked for");

    addNameOption(line.command(user, "delete", "Deletes a user with all that is his",
                               [&line, options] { deleteUser(line, *options); }),
                  *options);
    line.addJsonOption(line.command(user, "list", "Lists all users", [&line] { listUsers(line); }));

    CLI::App& list = *line.app.get_subcommand("list");
    line.addJsonOption(line.command(list, "users", "Lists all users", [&line] { listUsers(line); }));
    CLI::App& show = *line.app.get_subcommand("show");
    CLI::App& showOne =
        line.command(show, "user", "Shows one user", [&line, options] { showUser(line, *options); });
    addNameOption(showOne, *options);
    line.addJsonOption(showOne);
}

} // namespace tsr
