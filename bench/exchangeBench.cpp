#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "bench/ratios.h"
#include "server/ServerConnection.h"

namespace tsr {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int repetitions = 9;

bool receiveAll(int socket, Bytes& bytes) {
    std::size_t received = 0;
    while (received < bytes.size()) {
        const ssize_t count = ::recv(socket, bytes.data() + received, bytes.size() - received, 0);
        if (count <= 0) return false;
        received += static_cast<std::size_t>(count);
    }
    return true;
}

Bytes wideText(const std::string& text) {
    Bytes bytes;
    for (const char character : text) {
        bytes.push_back(static_cast<std::uint8_t>(character));
        bytes.push_back(0);
    }
    return bytes;
}

std::string padded(std::size_t value) {
    const std::string digits = std::to_string(value);
    return std::string(8 - digits.size(), '0') + digits;
}

// One string of `characters` in each body, there and back.
Bytes requestHeader(std::size_t bodyBytes) { return wideText(padded(bodyBytes + 24) + "0355"); }
Bytes responseHeader(std::size_t bodyBytes) { return wideText(padded(bodyBytes + 40) + "    00000000"); }
Bytes bodyOf(std::size_t characters) { return wideText(std::string(characters, 'x') + '\0'); }

// Answers each request of a known size with a response of the same body. It acknowledges at once, as the
// simulated server does: header and body come in two writes, and the second waits for the first to be
// acknowledged.
class Echo {
public:
    explicit Echo(std::size_t characters) : listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t bytes = sizeof address;
        ::bind(listener_, reinterpret_cast<sockaddr*>(&address), bytes);
        ::listen(listener_, 1);
        ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &bytes);
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this, characters] { serve(characters); });
    }
    Echo(const Echo&) = delete;
    Echo& operator=(const Echo&) = delete;
    ~Echo() {
        thread_.join(); // ends as the client hangs up
        ::close(listener_);
    }

    std::uint16_t port() const { return port_; }

private:
    void serve(std::size_t characters) {
        const int socket = ::accept(listener_, nullptr, nullptr);
        const Bytes body = bodyOf(characters);
        Bytes answer = responseHeader(body.size());
        answer.insert(answer.end(), body.begin(), body.end());
        Bytes header(24);
        Bytes rest(body.size());
        while (acknowledgeAtOnce(socket) && receiveAll(socket, header) && acknowledgeAtOnce(socket)
               && receiveAll(socket, rest))
            ::send(socket, answer.data(), answer.size(), MSG_NOSIGNAL);
        ::close(socket);
    }

    static bool acknowledgeAtOnce(int socket) {
        const int on = 1;
        return ::setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on) == 0;
    }

    int listener_;
    std::uint16_t port_ = 0;
    std::thread thread_;
};

void exchange(benchmark::State& state) {
    const auto characters = static_cast<std::size_t>(state.range(0));
    const Echo echo(characters);
    const std::string text(characters, 'x');
    ServerConnection connection;
    ServerAccount account;
    account.serverAddress = "127.0.0.1";
    account.serverPort = std::to_string(echo.port());
    connection.connect(account);
    for (auto _ : state) {
        ClientRequest request;
        request.setCode(355);
        request.addString(text);
        benchmark::DoNotOptimize(connection.exchange(request)->readString());
    }
}
BENCHMARK(exchange)->Arg(31)->Arg(1023)->Arg(32767)->UseRealTime()->Repetitions(repetitions);

// The same bytes in the same two writes, with no frame made or read.
void bareSendAndReceive(benchmark::State& state) {
    const auto characters = static_cast<std::size_t>(state.range(0));
    const Echo echo(characters);
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(echo.port());
    if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        state.SkipWithError("no connection");
    const Bytes body = bodyOf(characters);
    const Bytes header = requestHeader(body.size());
    Bytes answerHeader(40);
    Bytes answerBody(body.size());
    for (auto _ : state) {
        ::send(socket, header.data(), header.size(), MSG_NOSIGNAL);
        ::send(socket, body.data(), body.size(), MSG_NOSIGNAL);
        receiveAll(socket, answerHeader);
        receiveAll(socket, answerBody);
        benchmark::DoNotOptimize(answerBody.data());
    }
    ::close(socket);
}
BENCHMARK(bareSendAndReceive)->Arg(31)->Arg(1023)->Arg(32767)->UseRealTime()->Repetitions(repetitions);

const bool compared = bench::compare("exchange/31", "bareSendAndReceive/31", 1.1)
                   && bench::compare("exchange/1023", "bareSendAndReceive/1023", 1.1)
                   && bench::compare("exchange/32767", "bareSendAndReceive/32767", 1.1);

} // namespace
} // namespace tsr
