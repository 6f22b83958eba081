#include "handheld/commands/CommandLine.h"

#include "handheld/HandheldFolder.h"

namespace tsr {

namespace {

// Puts the folder into the usage line, where it stands before the command.
class UsageFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* command, std::string) const override {
        return CLI::Formatter::make_usage(command, "handheld FOLDER " + command->get_name());
    }
};

} // namespace

CLI::App& CommandLine::addCommand(const std::string& name, const std::string& description,
                                  const std::string& example) {
    CLI::App* command = app.add_subcommand(name, description);
    command->formatter(std::make_shared<UsageFormatter>());
    command->footer("Example: handheld palm " + name + (example.empty() ? "" : " ") + example);
    return *command;
}

void CommandLine::addJsonOption(CLI::App& command) {
    command.add_flag("--json", json, "Print JSON for programs instead of a table");
}

void CommandLine::change(const std::function<void(HandheldFolder&)>& work) const {
    HandheldFolder opened = HandheldFolder::open(folder);
    work(opened);
    opened.save();
}

} // namespace tsr
