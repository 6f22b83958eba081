#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>

namespace tsr {

class HandheldFolder;

// An argument that parses but cannot be meant; ends the program as a wrong argument does.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What the commands share: where they work and speak, and what the chosen one will do once all arguments are
// known.
struct CommandLine {
    CLI::App& app;
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    std::string folder;
    bool json = false;
    std::function<void()> action;

    // A command; its options are added by the caller. `example` is an example of its arguments, for the help.
    CLI::App& addCommand(const std::string& name, const std::string& description, const std::string& example);
    void addJsonOption(CLI::App& command);

    // Opens the folder, does `work` on it and saves it, unless `work` raises something.
    void change(const std::function<void(HandheldFolder&)>& work) const;
};

void addInitCommand(CommandLine& line);
void addConfigureCommand(CommandLine& line);
void addListCommand(CommandLine& line);
void addShowCommand(CommandLine& line);
void addCalendarCommand(CommandLine& line);
void addRecordCommands(CommandLine& line); // add, edit, delete, archive
void addReplyCommand(CommandLine& line);
void addCategoryCommand(CommandLine& line);
void addPreferenceCommand(CommandLine& line);
void addFileCommands(CommandLine& line); // import, export

} // namespace tsr
