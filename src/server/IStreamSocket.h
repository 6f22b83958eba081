#pragma once

#include <cstdint>

#include "server/ISocket.h"

namespace tsr {

// A connection that carries bytes in order, both ways. All operations block.
class IStreamSocket : public ISocket {
public:
    virtual void connect(const ISocketAddress& address) = 0;

    // Returns the count of bytes received, 0 when the peer has closed the connection.
    virtual std::uint32_t read(std::uint8_t* buffer, std::uint32_t length) = 0;

    // Returns the count of bytes sent.
    virtual std::uint32_t write(const std::uint8_t* buffer, std::uint32_t length) = 0;

    // Reads until `length` bytes are there. Raises ConnectionClosed where the peer closes before that.
    void readExact(std::uint8_t* buffer, std::uint32_t length);

protected:
    ~IStreamSocket() = default;
};

} // namespace tsr
