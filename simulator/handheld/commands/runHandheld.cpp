#include "handheld/commands/runHandheld.h"

#include <algorithm>
#include <ostream>

#include "handheld/commands/CommandLine.h"
#include "handheld/forms/RecordForm.h"

namespace tsr {

namespace {

constexpr int failed = 1;
constexpr int wrongArguments = 2;

const char* const description =
    R"(Looks into a simulated handheld and edits it, in the place of the user's fingers.

A handheld is a folder: a .pdb file for each database, preferences/, and handheld.json. Begin with
  handheld palm init --user-name "Pat Lee"
  handheld palm configure --address localhost --port 8000 --notes-name "Pat Lee" --password-file secret.txt
  handheld palm configure --type normal
  handheld palm add memo text="Buy milk"
and then replicate it with hotsync.)";

void addCommands(CommandLine& line) {
    addInitCommand(line);
    addConfigureCommand(line);
    addListCommand(line);
    addShowCommand(line);
    addCalendarCommand(line);
    addRecordCommands(line);
    addReplyCommand(line);
    addCategoryCommand(line);
    addPreferenceCommand(line);
    addFileCommands(line);
}

// A message of the parser may have several lines.
int complain(std::ostream& err, std::string message, int status) {
    std::replace(message.begin(), message.end(), '\n', ' ');
    err << "handheld: " << message << "\n";
    return status;
}

int parse(CommandLine& line, std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end()); // the parser takes them from the back
    try {
        line.app.parse(arguments);
        return 0;
    } catch (const CLI::Success& help) {
        line.app.exit(help, line.out, line.err);
        return 0;
    } catch (const CLI::ParseError& error) {
        return complain(line.err, error.what(), wrongArguments);
    }
}

} // namespace

int runHandheld(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
                std::ostream& err) {
    CLI::App app(description, "handheld");
    CommandLine line{app, in, out, err, {}, false, {}};
    app.add_option("FOLDER", line.folder, "The folder of the handheld")->required();
    app.require_subcommand(1);
    addCommands(line);
    try {
        if (const int status = parse(line, arguments); status != 0 || !line.action) return status;
        line.action();
        return 0;
    } catch (const UsageError& error) {
        return complain(err, error.what(), wrongArguments);
    } catch (const FieldError& error) {
        return complain(err, error.what(), wrongArguments);
    } catch (const std::exception& error) {
        return complain(err, error.what(), failed);
    }
}

} // namespace tsr
