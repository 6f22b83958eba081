#pragma once

#include <cstdint>
#include <string>

#include "platform/socketLibrary.h"
#include "server/ISocketAddressImpl.h"

namespace tsr {

class IpSocketAddressImpl final : public ISocketAddressImpl {
public:
    static constexpr int bytes = sizeof(platform::Ipv4SocketAddress);

    IpSocketAddressImpl(const std::string& host, std::uint16_t port);

    const void* nativeAddress() const override { return &address_; }

private:
    platform::Ipv4SocketAddress address_;
};

} // namespace tsr
