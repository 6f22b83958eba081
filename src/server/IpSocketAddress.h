#pragma once

#include <cstdint>
#include <string>

#include "foundation/CountedPtr.h"
#include "server/ISocketAddress.h"
#include "server/ISocketAddressImpl.h"

namespace tsr {

// An IPv4 address and a port.
class IpSocketAddress : public ISocketAddress {
public:
    // `host` is a dotted address, a name, or empty for any address. A name is looked up here and now: raises
    // HostNotResolved.
    IpSocketAddress(const std::string& host, std::uint16_t port);

    virtual const ISocketAddressImpl& impl() const { return *impl_; }

private:
    CountedPtr<ISocketAddressImpl> impl_;
};

} // namespace tsr
