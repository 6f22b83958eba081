#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tsr::test {

struct WireRequest {
    std::uint32_t code;
    std::vector<std::string> strings;

    bool operator==(const WireRequest&) const = default;
};

struct WireAnswer {
    std::uint32_t result = 0;
    std::string message{};
    std::vector<std::string> strings{};
    bool hangUp = false; // close the connection in place of an answer
};

// A server on a free port of this machine that takes one connection after the other, writes requests down,
// and answers them as a test says. Requests without an answer of their own get a good one: a user name, the
// time zone UTC, or nothing. It ends with this object.
class ScriptedServer {
public:
    using Handler = std::function<WireAnswer(const WireRequest&)>;

    explicit ScriptedServer(Handler handler = usualAnswer);
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;
    ~ScriptedServer();

    static WireAnswer usualAnswer(const WireRequest& request);

    std::uint16_t port() const { return port_; }
    std::vector<WireRequest> requests() const;
    std::vector<std::uint32_t> codes() const; // of the requests so far

private:
    void serve();
    void serveClient(int client);

    Handler handler_;
    int listener_ = -1;
    std::uint16_t port_ = 0;
    mutable std::mutex mutex_;
    std::vector<WireRequest> requests_;
    int client_ = -1;
    std::thread thread_;
};

} // namespace tsr::test
