#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>

#include "platform/clock.h"
#include "tessera/TcpServer.h"
#include "tessera/TesseraError.h"
#include "tessera/commands/StopSignals.h"
#include "tessera/commands/TesseraCommandLine.h"
#include "tessera/commands/readings.h"

namespace tsr {

namespace {

struct ServeOptions {
    std::string address = "127.0.0.1";
    std::uint16_t port = 8000;
    std::string portFile;
    std::string clock;
    std::size_t maxConnections = TcpServer::defaultMaxConnections;
    FaultOrders faults;
};

std::int64_t systemClock() {
    std::int64_t seconds = 0;
    if (!platform::readClock(seconds)) throw TesseraError("the system cannot tell the time");
    return seconds;
}

TesseraService::Clock chosenClock(const std::string& text) {
    if (text.empty()) return systemClock;
    const std::int64_t moment = parseMoment(text, ZoneRule());
    return [moment] { return moment; };
}

// Whoever waits for the file finds it whole.
void writePortFile(const std::string& file, std::uint16_t port) {
    const std::string unfinished = file + ".new";
    std::ofstream out(unfinished);
    out << port << "\n";
    out.close();
    if (!out) throw TesseraError("cannot write the port file '" + file + "'");
    std::filesystem::rename(unfinished, file);
}

void serve(const TesseraCommandLine& line, const ServeOptions& options) {
    const TesseraService::Clock clock = chosenClock(options.clock);
    Store store = line.makeStore();
    TesseraService service(store, clock);
    service.orderFaults(options.faults);
    const StopSignals signals;
    TcpServer server(service, options.address, options.port, options.maxConnections);
    server.start();
    if (!options.portFile.empty()) writePortFile(options.portFile, server.port());
    line.out << "listening on " << server.address() << std::endl;
    signals.wait();
    server.stop();
    line.out << "stopped" << std::endl;
}

void addFaultOption(CLI::App& command, const std::string& name, std::set<std::uint64_t>& numbers,
                    const std::string& description) {
    command.add_option(name, numbers, description)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1'000'000'000}))
        ->group("Faults");
}

} // namespace

void addServeCommand(TesseraCommandLine& line) {
    const auto options = std::make_shared<ServeOptions>();
    CLI::App& command =
        line.command(line.app, "serve", "Answers handhelds until it is interrupted or told to terminate",
                     [&line, options] { serve(line, *options); });
    command.footer("Passwords cross the network as they are: serve other machines only over a network that\n"
                   "you trust. For a port of your own and a clock that stands still:\n"
                   "  tessera office.db serve --port 0 --port-file port.txt --clock \"2026-11-23 08:00\"");
    command
        .add_option("--address", options->address,
                    "The address to listen on; 0.0.0.0 is every one that this machine has")
        ->capture_default_str();
    command.add_option("--port", options->port, "The port to listen on; 0 takes a free one")
        ->capture_default_str();
    command.add_option("--port-file", options->portFile,
                       "Write the port to this file when the server is ready");
    command.add_option("--clock", options->clock,
                       "Let it be this time all the while, such as \"2026-11-23 10:00\" in UTC");
    command.add_option("--max-connections", options->maxConnections, "Further clients wait until one leaves")
        ->check(CLI::Range(1, 10000))
        ->capture_default_str();
    addFaultOption(command, "--refuse-item", options->faults.refusedItems,
                   "Refuse the item that is the Nth to be sent; it may be several: 1,3");
    addFaultOption(command, "--fail-request", options->faults.failedRequests,
                   "Answer the Nth request with an error");
    addFaultOption(command, "--lose-answer", options->faults.lostAnswers,
                   "Carry out the Nth request and close the connection without an answer");
    command
        .add_option("--refuse-mail", options->faults.refusedSubjects,
                    "Refuse outgoing mail with this subject")
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group("Faults");
}

} // namespace tsr
