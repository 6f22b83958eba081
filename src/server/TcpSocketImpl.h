#pragma once

#include <cstdint>

#include "server/SocketImpl.h"

namespace tsr {

class TcpSocketImpl final : public SocketImpl {
public:
    TcpSocketImpl();

    void connect(const ISocketAddress& address);
    std::uint32_t read(std::uint8_t* buffer, std::uint32_t length);
    std::uint32_t write(const std::uint8_t* buffer, std::uint32_t length);
};

} // namespace tsr
