#pragma once

#include <cstdint>
#include <string>

#include "platform/socketLibrary.h"
#include "server/ISocketAddressImpl.h"
#include "server/WinsockLibrary.h"

namespace tsr {

class IpSocketAddressImpl final : public ISocketAddressImpl {
public:
    static constexpr int bytes = sizeof(platform::Ipv4SocketAddress);

    // Resolves `host` with the functions of `library`, by default the one of the process. An empty host is
    // the any-address. Raises HostNotResolved.
    IpSocketAddressImpl(const std::string& host, std::uint16_t port,
                        const WinsockLibrary& library = WinsockLibrary::instance());

    const void* nativeAddress() const override { return &address_; }

private:
    platform::Ipv4SocketAddress address_;
};

} // namespace tsr
