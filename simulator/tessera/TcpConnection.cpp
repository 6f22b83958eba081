#include "tessera/TcpConnection.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

namespace tsr {

namespace {

// At most this much is read of one client before the others have their turn, so that a header that lies costs
// little memory and a fast client little time.
constexpr std::size_t pieceBytes = 64 << 10;

// What a client that is out of step may still send before it is cut off.
constexpr std::size_t maxDrainedBytes = 16 << 20;

void setOption(int socket, int name) {
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, name, &on, sizeof on); // only speed depends on it
}

bool isToBeTriedAgain() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

} // namespace

TcpConnection::TcpConnection(Descriptor socket, TesseraService& service)
    : socket_(std::move(socket)), session_(service) {
    setOption(socket_.number(), TCP_NODELAY);
}

short TcpConnection::wantedEvents() const {
    return phase_ == Phase::Answer || phase_ == Phase::LastAnswer ? POLLOUT : POLLIN;
}

void TcpConnection::advance(short events) {
    try {
        if ((events & (POLLIN | POLLHUP | POLLERR)) != 0 && wantedEvents() == POLLIN) {
            phase_ == Phase::Drain ? drain() : receive();
        } else if ((events & (POLLOUT | POLLHUP | POLLERR)) != 0) {
            continueSending();
        }
    } catch (...) { // no memory for the frame: the others go on
        phase_ = Phase::Over;
    }
}

void TcpConnection::receive() {
    const std::size_t size = std::min(wanted_ - received_, pieceBytes);
    if (input_.size() < received_ + size) input_.resize(received_ + size);
    const long count = receiveInto(input_.data() + received_, size);
    if (count > 0) takeBytes(static_cast<std::size_t>(count));
}

void TcpConnection::drain() {
    std::array<std::uint8_t, 4096> rubbish;
    const long count = receiveInto(rubbish.data(), rubbish.size());
    if (count > 0) drained_ += static_cast<std::size_t>(count);
    if (drained_ > maxDrainedBytes) phase_ = Phase::Over;
}

void TcpConnection::takeBytes(std::size_t count) {
    received_ += count;
    if (received_ < wanted_) return;
    phase_ == Phase::Header ? finishHeader() : finishBody();
}

void TcpConnection::finishHeader() {
    try {
        header_ =
            parseRequestHeader(std::span(input_).first<requestHeaderBytes>(), session_.maxRequestBytes());
    } catch (const RequestRefused& refusal) {
        send(toFrame({0, refusal.result(), refusal.what(), {}}), Phase::LastAnswer);
        return;
    }
    input_.clear();
    received_ = 0;
    wanted_ = header_.bodyBytes;
    phase_ = Phase::Body;
    if (wanted_ == 0) finishBody();
}

void TcpConnection::finishBody() {
    send(session_.handleFrame(header_, std::span(input_).first(received_)), Phase::Answer);
}

void TcpConnection::startFrame() {
    input_ = {};
    output_ = {};
    received_ = 0;
    wanted_ = requestHeaderBytes;
    phase_ = Phase::Header;
}

void TcpConnection::send(std::vector<std::uint8_t> frame, Phase phase) {
    output_ = std::move(frame);
    sent_ = 0;
    phase_ = phase;
    continueSending();
}

void TcpConnection::continueSending() {
    const long count = ::send(socket(), output_.data() + sent_, output_.size() - sent_, MSG_NOSIGNAL);
    if (count < 0) {
        if (!isToBeTriedAgain()) phase_ = Phase::Over;
        return;
    }
    sent_ += static_cast<std::size_t>(count);
    if (sent_ < output_.size()) return;
    if (phase_ == Phase::Answer) {
        startFrame();
    } else {
        ::shutdown(socket(), SHUT_WR);
        phase_ = Phase::Drain;
    }
}

// The bytes that came, or none: then the client has gone or there is nothing yet. The client writes a request
// in two pieces and its system holds the second back until the first is acknowledged, hence the quick
// acknowledgement, which has to be asked for each time.
long TcpConnection::receiveInto(std::uint8_t* buffer, std::size_t size) {
    setOption(socket(), TCP_QUICKACK);
    const long count = ::recv(socket(), buffer, size, 0);
    if (count == 0 || (count < 0 && !isToBeTriedAgain())) phase_ = Phase::Over;
    return count;
}

} // namespace tsr
