#include "replication/WireTap.h"

#include <array>
#include <stdexcept>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tsr::test {

namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void setOption(int socket, int option) {
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, option, &on, sizeof on);
}

} // namespace

WireTap::WireTap() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = loopback(0);
    socklen_t bytes = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, general, bytes) != 0 || listen(listener_, 8) != 0
        || getsockname(listener_, general, &bytes) != 0)
        throw std::runtime_error("no port can be had");
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

WireTap::~WireTap() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
}

std::string WireTap::take() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return connections_ == 0; });
    return std::move(passed_);
}

void WireTap::serve() {
    for (int client = -1; (client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
        {
            const std::lock_guard lock(mutex_);
            connections_ = 1;
        }
        relay(client);
        close(client);
        const std::lock_guard lock(mutex_);
        connections_ = 0;
        idle_.notify_all();
    }
}

// Until one of both sides closes: the other one then has nothing more to say.
void WireTap::relay(int client) {
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(server_);
    bool open = connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    setOption(server, TCP_NODELAY);
    setOption(client, TCP_NODELAY);
    std::array<char, 65536> buffer;
    char direction = 0;
    while (open) {
        setOption(client, TCP_QUICKACK); // as the server does, or each request takes 40 ms
        pollfd both[] = {{client, POLLIN, 0}, {server, POLLIN, 0}};
        poll(both, 2, -1);
        const bool fromClient = both[0].revents != 0;
        const ssize_t count = recv(fromClient ? client : server, buffer.data(), buffer.size(), 0);
        if (count <= 0) break;
        const auto size = static_cast<std::size_t>(count);
        open = ::send(fromClient ? server : client, buffer.data(), size, MSG_NOSIGNAL) == count;
        const std::lock_guard lock(mutex_);
        const char now = fromClient ? '>' : '<';
        if (direction != now) passed_ += now;
        direction = now;
        passed_.append(buffer.data(), size);
    }
    close(server);
}

} // namespace tsr::test
