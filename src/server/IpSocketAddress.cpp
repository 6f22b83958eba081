#include "server/IpSocketAddress.h"

#include "server/IpSocketAddressImpl.h"

namespace tsr {

IpSocketAddress::IpSocketAddress(const std::string& host, std::uint16_t port)
    : impl_(makeCounted<IpSocketAddressImpl>(host, port)) {}

} // namespace tsr
