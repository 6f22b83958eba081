#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tessera/Descriptor.h"

namespace tsr::test {

// A client without manners: sends whatever bytes a test wants over a loopback connection.
class RawClient {
public:
    explicit RawClient(std::uint16_t port);

    void send(const std::vector<std::uint8_t>& data);
    void sendByteByByte(const std::vector<std::uint8_t>& data);
    bool offer(const std::vector<std::uint8_t>& data); // false when the socket takes none of it now
    void finishSending();                              // the other direction stays open
    void reset();                                      // ends the connection without a goodbye

    // A whole response, or nothing when the server has closed the connection.
    std::vector<std::uint8_t> receive();
    bool isClosed(); // waits for the server to close

    std::vector<std::uint8_t> ask(const std::vector<std::uint8_t>& request);

private:
    std::vector<std::uint8_t> receiveBytes(std::size_t count);

    Descriptor socket_;
};

// A request's frame, its strings in ASCII.
std::vector<std::uint8_t> requestFrame(std::uint32_t code, const std::vector<std::string>& strings);

// The frame of text as it stands, 16 bits a character.
std::vector<std::uint8_t> wide(const std::string& text);

std::string resultOf(const std::vector<std::uint8_t>& response); // four digits
std::string bodyOf(const std::vector<std::uint8_t>& response);   // strings end with '/'

} // namespace tsr::test
