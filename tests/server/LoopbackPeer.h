#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace tsr::test {

// The other end of a connection on this machine, by the system's calls alone.
class LoopbackPeer {
public:
    LoopbackPeer() : listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address = loopback();
        socklen_t bytes = sizeof address;
        auto* native = reinterpret_cast<sockaddr*>(&address);
        if (::bind(listener_, native, bytes) != 0 || ::listen(listener_, 1) != 0
            || ::getsockname(listener_, native, &bytes) != 0)
            throw std::runtime_error("no loopback");
        port_ = ntohs(address.sin_port);
    }
    LoopbackPeer(const LoopbackPeer&) = delete;
    LoopbackPeer& operator=(const LoopbackPeer&) = delete;
    ~LoopbackPeer() {
        hangUp();
        stopListening();
    }

    std::uint16_t port() const { return port_; }

    void accept() { connection_ = ::accept(listener_, nullptr, nullptr); }

    // What comes until `length` bytes are there or the connection ends.
    std::vector<std::uint8_t> receive(std::size_t length) {
        std::vector<std::uint8_t> bytes(length);
        const ssize_t count = ::recv(connection_, bytes.data(), length, MSG_WAITALL);
        bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
        return bytes;
    }

    void send(const std::vector<std::uint8_t>& bytes) {
        ::send(connection_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }

    void hangUp() { closeIfOpen(connection_); }
    void stopListening() { closeIfOpen(listener_); }

private:
    static sockaddr_in loopback() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }

    static void closeIfOpen(int& descriptor) {
        if (descriptor >= 0) ::close(descriptor);
        descriptor = -1;
    }

    int listener_;
    int connection_ = -1;
    std::uint16_t port_ = 0;
};

} // namespace tsr::test
