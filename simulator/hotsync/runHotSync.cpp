#include "hotsync/runHotSync.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include <CLI/CLI.hpp>

#include "handheld/Handheld.h"
#include "handheld/logControl.h"
#include "handheld/syncControl.h"
#include "hotsync/ConduitLibrary.h"
#include "hotsync/HotSyncApplication.h"
#include "hotsync/ProgressLine.h"
#include "hotsync/SessionOutcome.h"

namespace tsr {

namespace {

constexpr int failed = 1;
constexpr int badArguments = 2;

constexpr char description[] = "A HotSync manager for the command line: opens a simulated handheld, loads "
                               "the conduit, and calls it once for each "
                               "application that is due. An application is due when the handheld has its "
                               "database, or when --application names it.";

constexpr char footer[] = R"(Examples:
  hotsync my-palm                       everything that is due
  hotsync my-palm --application memo    Memo Pad alone, also when it has no database yet
  hotsync my-palm --slow                compare all records, not only the flagged ones
  hotsync my-palm --pull-cable 40       lose the handheld at its 40th call
  hotsync my-palm --fail-call 7:0x4003  answer its 7th call with "not found"

Server, user and replication types are set on the handheld: handheld my-palm configure --help.
Exit codes: 0 every application finished, 1 one didn't, 2 bad arguments.)";

struct Options {
    std::string folder;
    std::string conduit;
    std::vector<std::string> applications;
    bool slow = false;
    bool json = false;
    std::uint64_t pullCable = 0;          // 0 for never
    std::vector<std::string> failedCalls; // each as parseFailedCall takes it
};

// The conduit's callback has no argument of its own.
ProgressLine* progress = nullptr;

void showProgress(const char* text) {
    if (progress != nullptr) progress->show(text);
}

// A call's number and the code that it is to fail with: "7:0x4003", "7:16387".
std::optional<std::pair<std::uint64_t, std::int32_t>> parseFailedCall(const std::string& text) {
    std::uint64_t number = 0;
    std::int32_t code = 0;
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos || !CLI::detail::lexical_cast(text.substr(0, colon), number)
        || !CLI::detail::lexical_cast(text.substr(colon + 1), code))
        return {};
    return std::pair(number, code);
}

void define(CLI::App& app, Options& options) {
    app.footer(footer);
    app.allow_windows_style_options(false); // a path may begin with a slash there too
    app.add_option("handheld", options.folder, "Folder of the simulated handheld")->required();
    app.add_option("-a,--application", options.applications,
                   "Synchronise this application; may be given again")
        ->allow_extra_args(false) // the next word is the handheld, not another application
        ->check([](const std::string& name) {
            if (findHotSyncApplication(name) != nullptr) return std::string();
            std::string known;
            for (const HotSyncApplication& each : hotSyncApplications()) known += " " + each.name;
            return "no application is named '" + name + "'; there are:" + known;
        });
    app.add_option("--conduit", options.conduit, "The conduit, if it isn't the one beside this program");
    app.add_flag("--slow", options.slow, "Ask for a slow sync");
    app.add_flag("--json", options.json, "Print JSON for programs, without progress");
    app.add_option("--pull-cable", options.pullCable, "Lose the handheld at this call, counted from 1");
    app.add_option("--fail-call", options.failedCalls,
                   "Let this call of the handheld fail with this code; may be given again")
        ->type_name("N:CODE")
        ->allow_extra_args(false)
        ->check([](const std::string& text) {
            return parseFailedCall(text) ? std::string() : "'" + text + "' is no call and its code";
        });
}

bool hasDatabase(const HotSyncApplication& application) {
    const auto& databases = handheldAttached()->databases;
    return std::any_of(databases.begin(), databases.end(), [&application](const auto& named) {
        return named.second.header().creator == application.creator
            && named.second.header().type == application.type;
    });
}

std::vector<HotSyncApplication> dueApplications(const Options& options) {
    std::vector<HotSyncApplication> due;
    for (const HotSyncApplication& each : hotSyncApplications()) {
        const bool named =
            std::count(options.applications.begin(), options.applications.end(), each.name) != 0;
        if (options.applications.empty() ? hasDatabase(each) : named) due.push_back(each);
    }
    return due;
}

SessionOutcome synchronise(const ConduitLibrary& conduit, const HotSyncApplication& application, bool slow) {
    SyncProperties properties{};
    properties.syncType = slow ? SyncProperties::slow : 0;
    properties.creator = application.creator;
    hotSyncLogClear();
    const Handheld before = *handheldAttached();
    SessionOutcome outcome;
    outcome.title = application.title;
    outcome.result = conduit.openConduit()(showProgress, &properties);
    for (std::uint64_t index = 0; index < hotSyncLogCount(); ++index) {
        outcome.entries.push_back(LogEntry{hotSyncLogText(index), hotSyncLogActivity(index)});
    }
    outcome.traffic = trafficOf(application, before, *handheldAttached());
    return outcome;
}

// Prints one session after the other, for people or as the elements of a JSON list.
class Report {
public:
    Report(std::ostream& out, bool json) : out_(out), json_(json) {
        if (json_) out_ << '[';
    }

    void add(const SessionOutcome& outcome) {
        if (json_) {
            out_ << (first_ ? "\n" : ",\n") << outcome.json();
        } else {
            outcome.print(out_);
        }
        first_ = false;
    }

    void finish() {
        if (json_) {
            out_ << "\n]\n";
        } else if (first_) {
            out_ << "No application is due on this handheld.\n";
        }
    }

private:
    std::ostream& out_;
    bool json_;
    bool first_ = true;
};

// The handheld, attached for the length of a HotSync.
class OpenHandheld {
public:
    explicit OpenHandheld(const std::string& folder) {
        if (handheldOpenFolder(folder.c_str()) != 0) throw std::runtime_error(handheldError());
    }
    OpenHandheld(const OpenHandheld&) = delete;
    OpenHandheld& operator=(const OpenHandheld&) = delete;
    ~OpenHandheld() { handheldDetach(); }

    void save() {
        if (handheldEndSession() != 0) throw std::runtime_error(handheldError());
    }
};

void orderFaults(const Options& options) {
    if (options.pullCable != 0) handheldPullCable(options.pullCable);
    for (const std::string& text : options.failedCalls) {
        const auto [number, code] = parseFailedCall(text).value();
        handheldFailCall(number, code);
    }
}

bool hotSync(const Options& options, std::ostream& out, bool terminal) {
    const ConduitLibrary conduit(options.conduit);
    OpenHandheld handheld(options.folder);
    orderFaults(options);
    const std::vector<HotSyncApplication> due = dueApplications(options);
    Report report(out, options.json);
    ProgressLine line(out, terminal);
    progress = options.json ? nullptr : &line;
    bool good = true;
    for (const HotSyncApplication& application : due) {
        const SessionOutcome outcome = synchronise(conduit, application, options.slow);
        line.clear();
        report.add(outcome);
        good = good && outcome.isGood();
    }
    progress = nullptr;
    report.finish();
    handheld.save();
    return good;
}

} // namespace

int runHotSync(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
               bool terminal) {
    Options options;
    CLI::App app(description, "hotsync");
    define(app, options);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error, out, err); // it asked for help
        err << "hotsync: " << error.what() << "; hotsync --help tells more\n";
        return badArguments;
    }
    try {
        return hotSync(options, out, terminal) ? 0 : failed;
    } catch (const std::exception& error) {
        err << "hotsync: " << error.what() << '\n';
        return failed;
    }
}

} // namespace tsr
