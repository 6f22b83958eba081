#include "tessera/commands/runTessera.h"

#include <algorithm>
#include <ostream>

#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/ContactForm.h"
#include "tessera/commands/MemoForm.h"
#include "tessera/commands/TaskForm.h"

namespace tsr {

namespace {

constexpr int failed = 1;
constexpr int wrongArguments = 2;

const char* const programDescription = R"(A Tessera Server in one file.

The file keeps users with their calendars, contacts, journals, tasks and mail; 'serve' answers handhelds from it, and the other
commands look into it and change it, also while it is being served. Begin with
  tessera office.db user add "Pat Lee" --zone Europe/Berlin --password-file secret.txt
  tessera office.db add meeting --user "Pat Lee" --start "2026-11-23 10:00" --minutes 60 --subject Lunch
  tessera office.db serve --port 8000)";

const char* const footer = R"('tessera FILE COMMAND --help' tells more about each command.)";

// One line, whatever the message had.
int complain(std::ostream& err, std::string message, int status) {
    std::replace(message.begin(), message.end(), '\n', ' ');
    err << "tessera: " << message << "\n";
    return status;
}

void addGroup(CLI::App& app, const std::string& name, const std::string& purpose) {
    app.add_subcommand(name, purpose)->require_subcommand(1);
}

void addCommands(TesseraCommandLine& line, const DocumentForms& forms) {
    addServeCommand(line);
    addGroup(line.app, "user", "Adds, edits, deletes and lists users");
    addGroup(line.app, "list", "Lists users, or what is theirs");
    addGroup(line.app, "show", "Shows one user, meeting, contact, memo, task or mail, or a calendar");
    addGroup(line.app, "add", "Adds a meeting, a contact, a memo, a task or a mail");
    addGroup(line.app, "edit", "Changes a meeting, a contact, a memo, a task or a mail");
    addGroup(line.app, "delete", "Deletes a meeting, a contact, a memo, a task or a mail");
    addUserCommands(line);
    addMeetingCommands(line);
    addCalendarCommand(line);
    addMailCommands(line);
    for (DocumentForm* form : forms) addDocumentCommands(line, *form);
    addTesseraFileCommands(line, forms);
}

int parse(TesseraCommandLine& line, std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end()); // the parser takes them from the back
    try {
        line.app.parse(arguments);
        return 0;
    } catch (const CLI::Success& help) {
        line.app.exit(help, line.out, line.err);
        line.action = nullptr;
        return 0;
    } catch (const CLI::ParseError& error) {
        return complain(line.err, error.what(), wrongArguments);
    }
}

} // namespace

int runTessera(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
               std::ostream& err) {
    CLI::App app(programDescription, "tessera");
    app.footer(footer);
    app.require_subcommand(1);
    TesseraCommandLine line{app, in, out, err, {}, false, {}};
    app.add_option("FILE", line.file, "The file of the server")->required();
    ContactForm contacts;
    MemoForm memos;
    TaskForm tasks;
    const DocumentForms forms{&contacts, &memos, &tasks};
    addCommands(line, forms);
    try {
        if (const int status = parse(line, arguments); status != 0 || !line.action) return status;
        line.action();
        return 0;
    } catch (const ArgumentError& error) {
        return complain(err, error.what(), wrongArguments);
    } catch (const std::exception& error) {
        return complain(err, error.what(), failed);
    }
}

} // namespace tsr
