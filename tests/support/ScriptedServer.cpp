#include "support/ScriptedServer.h"

#include <stdexcept>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tsr::test {

namespace {

// A client sends header and body on their own, and the second waits for the first to be acknowledged.
void acknowledgeAtOnce(int socket) {
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
}

bool receive(int socket, std::string& bytes, std::size_t count) {
    bytes.resize(count);
    for (std::size_t done = 0; done < count;) {
        acknowledgeAtOnce(socket);
        const ssize_t got = recv(socket, bytes.data() + done, count - done, 0);
        if (got <= 0) return false;
        done += static_cast<std::size_t>(got);
    }
    return true;
}

std::string narrow(const std::string& wide) {
    std::string text;
    for (std::size_t unit = 0; unit + 1 < wide.size(); unit += 2) text += wide[unit];
    return text;
}

std::string wide(const std::string& text) {
    std::string result;
    for (const char c : text) result += {c, '\0'};
    return result;
}

std::string padded(std::size_t value, std::size_t digits) {
    const std::string text = std::to_string(value);
    return std::string(digits - text.size(), '0') + text;
}

std::vector<std::string> splitAtNuls(const std::string& body) {
    std::vector<std::string> strings;
    for (std::size_t start = 0; start < body.size();) {
        const std::size_t nul = body.find('\0', start);
        strings.push_back(body.substr(start, nul - start));
        start = nul + 1;
    }
    return strings;
}

std::string frameOf(const WireAnswer& answer) {
    std::string body;
    for (const std::string& text : answer.strings) body += wide(text) + std::string(2, '\0');
    const std::size_t total = 40 + 2 * answer.message.size() + body.size();
    return wide(padded(total, 8) + "0000" + padded(answer.result, 4) + padded(answer.message.size(), 4)
                + answer.message)
         + body;
}

} // namespace

ScriptedServer::ScriptedServer(Handler handler) : handler_(std::move(handler)) {
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (listener_ < 0 || bind(listener_, reinterpret_cast<sockaddr*>(&address), length) != 0
        || listen(listener_, 8) != 0
        || getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

ScriptedServer::~ScriptedServer() {
    shutdown(listener_, SHUT_RDWR); // wakes accept
    {
        const std::lock_guard lock(mutex_);
        if (client_ >= 0) shutdown(client_, SHUT_RDWR);
    }
    thread_.join();
    close(listener_);
}

WireAnswer ScriptedServer::usualAnswer(const WireRequest& request) {
    switch (request.code) {
    case 3: return {.strings = {"P", "", "Max Muster"}};
    case 7: return {.strings = {std::string(88, '0')}};
    case 200: return {.strings = {""}};
    default: return {};
    }
}

std::vector<WireRequest> ScriptedServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

std::vector<std::uint32_t> ScriptedServer::codes() const {
    std::vector<std::uint32_t> result;
    for (const WireRequest& request : requests()) result.push_back(request.code);
    return result;
}

void ScriptedServer::serve() {
    for (;;) {
        const int client = accept(listener_, nullptr, nullptr);
        if (client < 0) return;
        {
            const std::lock_guard lock(mutex_);
            client_ = client;
        }
        serveClient(client);
        const std::lock_guard lock(mutex_);
        client_ = -1;
        close(client);
    }
}

void ScriptedServer::serveClient(int client) {
    std::string header;
    while (receive(client, header, 24)) {
        const std::string digits = narrow(header);
        std::string body;
        if (!receive(client, body, std::stoul(digits.substr(0, 8)) - 24)) return;
        const WireRequest request{static_cast<std::uint32_t>(std::stoul(digits.substr(8))),
                                  splitAtNuls(narrow(body))};
        {
            const std::lock_guard lock(mutex_);
            requests_.push_back(request);
        }
        const WireAnswer answer = handler_(request);
        if (answer.hangUp) return;
        const std::string frame = frameOf(answer);
        if (send(client, frame.data(), frame.size(), MSG_NOSIGNAL) < 0) return;
    }
}

} // namespace tsr::test
