#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tessera/Descriptor.h"
#include "tessera/TesseraSession.h"

namespace tsr {

// One client at the front. It is driven by what its socket is ready for and never waits: a frame is collected
// piece by piece, answered, and the next one is read when the answer is out.
class TcpConnection {
public:
    TcpConnection(Descriptor socket, TesseraService& service); // the socket doesn't block

    int socket() const { return socket_.number(); }
    short wantedEvents() const; // for poll
    bool isOver() const { return phase_ == Phase::Over; }

    // Does what `events` allow. A failure of the socket, and everything that is thrown, ends the connection.
    void advance(short events);

private:
    enum class Phase {
        Header,
        Body,
        Answer,
        LastAnswer, // out of step: nothing can be read behind a header that breaks the rules
        Drain,      // the last answer is out; closing with bytes unread would take it from the client again
        Over
    };

    void receive();
    void drain();
    void takeBytes(std::size_t count);
    void finishHeader();
    void finishBody();
    void startFrame();
    void send(std::vector<std::uint8_t> frame, Phase phase);
    void continueSending();
    long receiveInto(std::uint8_t* buffer, std::size_t size);

    Descriptor socket_;
    TesseraSession session_;
    Phase phase_ = Phase::Header;
    std::vector<std::uint8_t> input_; // of the header or the body, `received_` bytes of it filled
    std::size_t received_ = 0;
    std::size_t wanted_ = requestHeaderBytes; // whole length of the part that is being read
    RequestHeader header_;
    std::vector<std::uint8_t> output_;
    std::size_t sent_ = 0;
    std::size_t drained_ = 0;
};

} // namespace tsr
