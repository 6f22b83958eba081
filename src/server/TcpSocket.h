#pragma once

#include <cstdint>

#include "foundation/CountedPtr.h"
#include "server/IStreamSocket.h"

namespace tsr {

class TcpSocketImpl;

// A TCP connection over IPv4. The system's socket is there from the start and goes with this object.
class TcpSocket final : public IStreamSocket {
public:
    TcpSocket(); // raises SocketError, and what the first use of the socket library raises

    // All raise a SocketError for a failed call; bind and connect raise WrongAddressType for an address that
    // isn't an IpSocketAddress.
    void bind(const ISocketAddress& address) override;
    void connect(const ISocketAddress& address) override;
    std::uint32_t read(std::uint8_t* buffer, std::uint32_t length) override;
    std::uint32_t write(const std::uint8_t* buffer, std::uint32_t length) override;

private:
    CountedPtr<TcpSocketImpl> impl_;
};

} // namespace tsr
