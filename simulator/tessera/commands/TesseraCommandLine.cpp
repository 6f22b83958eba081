#include "tessera/commands/TesseraCommandLine.h"

#include <filesystem>
#include <utility>

#include "tessera/TesseraError.h"

namespace tsr {

CLI::App& TesseraCommandLine::command(CLI::App& parent, const std::string& name,
                                      const std::string& description, std::function<void()> work) {
    CLI::App* added = parent.add_subcommand(name, description);
    added->callback([this, work = std::move(work)] { action = work; });
    return *added;
}

void TesseraCommandLine::addJsonOption(CLI::App& command) {
    command.add_flag("--json", json, "Print JSON for programs in the place of a table");
}

Store TesseraCommandLine::openStore() const {
    if (!std::filesystem::exists(file)) {
        throw TesseraError("there is no store '" + file + "'; 'user add' and 'serve' make one");
    }
    return Store(file);
}

Store TesseraCommandLine::makeStore() const { return Store(file); }

User namedUser(Store& store, const std::string& name) {
    const std::optional<User> user = store.findUser(name);
    if (!user) throw TesseraError("there is no user '" + name + "'");
    return *user;
}

} // namespace tsr
