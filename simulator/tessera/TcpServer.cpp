#include "tessera/TcpServer.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

using AddressList = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

[[noreturn]] void raiseCannotListen(const std::string& address, std::uint16_t port,
                                    const std::string& reason) {
    throw TesseraError("cannot listen on " + address + " port " + std::to_string(port) + ": " + reason);
}

AddressList resolve(const std::string& address, std::uint16_t port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const int failed = ::getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (failed != 0) raiseCannotListen(address, port, ::gai_strerror(failed));
    return {found, &::freeaddrinfo};
}

Descriptor listenOn(const std::string& address, std::uint16_t port) {
    const AddressList list = resolve(address, port);
    Descriptor listener(
        ::socket(list->ai_family, list->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, list->ai_protocol));
    const int on = 1;
    if (!listener.isOpen() || ::setsockopt(listener.number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0
        || ::bind(listener.number(), list->ai_addr, list->ai_addrlen) != 0
        || ::listen(listener.number(), SOMAXCONN) != 0) {
        raiseCannotListen(address, port, std::strerror(errno));
    }
    return listener;
}

// Host and port as text.
std::pair<std::string, std::string> nameOf(int socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> port{};
    if (::getsockname(socket, any, &size) != 0
        || ::getnameinfo(any, size, host.data(), host.size(), port.data(), port.size(),
                         NI_NUMERICHOST | NI_NUMERICSERV)
               != 0) {
        throw TesseraError("cannot tell the address that the server listens on");
    }
    return {host.data(), port.data()};
}

} // namespace

TcpServer::TcpServer(TesseraService& service, const std::string& address, std::uint16_t port,
                     std::size_t maxConnections)
    : service_(service), maxConnections_(maxConnections), listener_(listenOn(address, port)),
      wakeUp_(::eventfd(0, EFD_CLOEXEC)) {
    if (!wakeUp_.isOpen()) raiseCannotListen(address, port, std::strerror(errno));
}

TcpServer::~TcpServer() { stop(); }

std::string TcpServer::address() const {
    const auto [host, port] = nameOf(listener_.number());
    const bool hasColons = host.find(':') != std::string::npos;
    return (hasColons ? "[" + host + "]" : host) + ":" + port;
}

std::uint16_t TcpServer::port() const {
    return static_cast<std::uint16_t>(std::stoul(nameOf(listener_.number()).second));
}

void TcpServer::start() {
    thread_ = std::thread([this] { serve(); });
}

void TcpServer::stop() {
    if (!thread_.joinable()) return;
    ::eventfd_write(wakeUp_.number(), 1);
    thread_.join();
    connections_.clear();
}

void TcpServer::serve() {
    for (;;) {
        std::vector<pollfd> polls = polled();
        if (::poll(polls.data(), polls.size(), -1) < 0) continue; // interrupted
        if (polls[0].revents != 0) return;
        auto poll = polls.begin() + 2;
        for (TcpConnection& connection : connections_) {
            if (poll->revents != 0) connection.advance(poll->revents);
            ++poll;
        }
        dropFinished();
        if (polls[1].revents != 0) acceptClient();
    }
}

// The wake-up call, the listener, then the connections in their order. A negative descriptor is not looked
// at.
std::vector<pollfd> TcpServer::polled() const {
    const bool accepts = connections_.size() < maxConnections_ && !acceptFailed_;
    std::vector<pollfd> polls{{wakeUp_.number(), POLLIN, 0}, {accepts ? listener_.number() : -1, POLLIN, 0}};
    for (const TcpConnection& connection : connections_) {
        polls.push_back({connection.socket(), connection.wantedEvents(), 0});
    }
    return polls;
}

void TcpServer::acceptClient() {
    Descriptor socket(::accept4(listener_.number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket.isOpen()) {
        // Out of descriptors: the next client that leaves gives one back. Everything else has passed by
        // itself.
        acceptFailed_ = (errno == EMFILE || errno == ENFILE) && !connections_.empty();
        return;
    }
    const int on = 1;
    ::setsockopt(socket.number(), SOL_SOCKET, SO_KEEPALIVE, &on,
                 sizeof on); // so that dead peers leave some day
    connections_.emplace_back(std::move(socket), service_);
}

void TcpServer::dropFinished() {
    if (connections_.remove_if([](const TcpConnection& connection) { return connection.isOver(); }) > 0) {
        acceptFailed_ = false;
    }
}

} // namespace tsr
