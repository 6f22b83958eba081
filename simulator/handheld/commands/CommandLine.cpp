#include "handheld/commands/CommandLine.h"

#include "handheld/HandheldFolder.h"

namespace tsr {

CLI::App& CommandLine::addCommand(const std::string& name, const std::string& description, bool withJson) {
    CLI::App* command = app.add_subcommand(name, description);
    if (withJson) command->add_flag("--json", json, "Print JSON for programs instead of a table");
    return *command;
}

void CommandLine::change(const std::function<void(HandheldFolder&)>& work) const {
    HandheldFolder opened = HandheldFolder::open(folder);
    work(opened);
    opened.save();
}

} // namespace tsr
