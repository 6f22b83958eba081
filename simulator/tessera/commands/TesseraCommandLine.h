#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include <CLI/CLI.hpp>

#include "tessera/Store.h"

namespace tsr {

// What the commands share: where they work and speak, and what the chosen one does once all arguments are
// known.
struct TesseraCommandLine {
    CLI::App& app;
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    std::string file;
    bool json = false;
    std::function<void()> action;

    // A command of `parent`, which is the program or one of its groups, that runs `work`; options may be
    // added to it.
    CLI::App& command(CLI::App& parent, const std::string& name, const std::string& description,
                      std::function<void()> work);

    void addJsonOption(CLI::App& command);

    Store openStore() const; // raises TesseraError when there is no file
    Store makeStore() const; // the same, but makes one
};

void addServeCommand(TesseraCommandLine& line);
void addUserCommands(TesseraCommandLine& line);
void addMeetingCommands(TesseraCommandLine& line);
void addCalendarCommand(TesseraCommandLine& line);
void addMailCommands(TesseraCommandLine& line);

// The user of that name; raises TesseraError when there is none.
User namedUser(Store& store, const std::string& name);

} // namespace tsr
