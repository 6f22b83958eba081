#include "RawClient.h"

#include <cerrno>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace tsr::test {

namespace {

constexpr std::size_t responseHeaderBytes = 40;

void check(bool good, const char* what) {
    if (!good) throw std::runtime_error(std::string(what) + " failed");
}

std::string narrow(const std::vector<std::uint8_t>& data, std::size_t offset, std::size_t units) {
    std::string text;
    for (std::size_t i = 0; i < units; ++i) text += static_cast<char>(data.at(offset + 2 * i));
    return text;
}

std::string padded(std::size_t value, std::size_t digits) {
    const std::string text = std::to_string(value);
    return std::string(digits - text.size(), '0') + text;
}

} // namespace

RawClient::RawClient(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const int on = 1;
    const timeval limit{60, 0}; // a server that stays silent fails the test in place of hanging it
    ::setsockopt(socket_.number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    ::setsockopt(socket_.number(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    check(::connect(socket_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0,
          "connect");
}

void RawClient::send(const std::vector<std::uint8_t>& data) {
    for (std::size_t sent = 0; sent < data.size();) {
        const auto count = ::send(socket_.number(), data.data() + sent, data.size() - sent, MSG_NOSIGNAL);
        check(count > 0, "send");
        sent += static_cast<std::size_t>(count);
    }
}

void RawClient::sendByteByByte(const std::vector<std::uint8_t>& data) {
    for (const std::uint8_t byte : data) send({byte});
}

bool RawClient::offer(const std::vector<std::uint8_t>& data) {
    return ::send(socket_.number(), data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT) > 0;
}

void RawClient::finishSending() { ::shutdown(socket_.number(), SHUT_WR); }

void RawClient::reset() {
    const linger none{1, 0};
    ::setsockopt(socket_.number(), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    socket_ = Descriptor();
}

std::vector<std::uint8_t> RawClient::receive() {
    std::vector<std::uint8_t> response = receiveBytes(responseHeaderBytes);
    if (response.empty()) return response;
    const auto rest = receiveBytes(std::stoul(narrow(response, 0, 8)) - responseHeaderBytes);
    response.insert(response.end(), rest.begin(), rest.end());
    return response;
}

bool RawClient::isClosed() {
    std::uint8_t byte = 0;
    const auto count = ::recv(socket_.number(), &byte, 1, 0);
    return count == 0 || (count < 0 && errno == ECONNRESET);
}

std::vector<std::uint8_t> RawClient::ask(const std::vector<std::uint8_t>& request) {
    send(request);
    return receive();
}

std::vector<std::uint8_t> RawClient::receiveBytes(std::size_t count) {
    std::vector<std::uint8_t> data(count);
    for (std::size_t received = 0; received < count;) {
        const auto now = ::recv(socket_.number(), data.data() + received, count - received, 0);
        if (now == 0 || (now < 0 && errno == ECONNRESET)) return {};
        check(now > 0, "recv");
        received += static_cast<std::size_t>(now);
    }
    return data;
}

std::vector<std::uint8_t> requestFrame(std::uint32_t code, const std::vector<std::string>& strings) {
    std::string body;
    for (const std::string& text : strings) body.append(text).push_back('\0');
    return wide(padded(24 + 2 * body.size(), 8) + padded(code, 4) + body);
}

std::vector<std::uint8_t> wide(const std::string& text) {
    std::vector<std::uint8_t> data;
    for (const char character : text) {
        data.push_back(static_cast<std::uint8_t>(character));
        data.push_back(0);
    }
    return data;
}

std::string resultOf(const std::vector<std::uint8_t>& response) {
    return response.empty() ? "closed" : narrow(response, 24, 4);
}

std::string bodyOf(const std::vector<std::uint8_t>& response) {
    const std::size_t start = responseHeaderBytes + 2 * std::stoul(narrow(response, 32, 4));
    std::string text = narrow(response, start, (response.size() - start) / 2);
    for (char& character : text) {
        if (character == '\0') character = '/';
    }
    return text;
}

} // namespace tsr::test
