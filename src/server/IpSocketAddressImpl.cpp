#include "server/IpSocketAddressImpl.h"

#include <algorithm>
#include <cstring>

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

constexpr std::uint32_t notAnAddress = 0xFFFFFFFF;

std::uint32_t resolve(const WinsockLibrary& library, const std::string& host) {
    const platform::HostEntry* entry = library.gethostbyname(host.c_str());
    if (entry == nullptr || entry->addresses[0] == nullptr || entry->addressBytes < 0)
        throw GeneralError(Message::HostNotResolved) << Tag("n") << host;
    std::uint32_t address = 0;
    const auto bytes = static_cast<std::size_t>(entry->addressBytes);
    std::memcpy(&address, entry->addresses[0], std::min(bytes, sizeof address));
    return address;
}

std::uint32_t addressOf(const WinsockLibrary& library, const std::string& host) {
    if (host.empty()) return library.htonl(0); // any address
    const std::uint32_t address = library.inet_addr(host.c_str());
    // 255.255.255.255 looks like a failure, and so is looked up by name.
    return address == notAnAddress ? resolve(library, host) : address;
}

} // namespace

IpSocketAddressImpl::IpSocketAddressImpl(const std::string& host, std::uint16_t port,
                                         const WinsockLibrary& library) {
    address_.family = platform::internetFamily;
    address_.address = addressOf(library, host);
    address_.port = library.htons(port);
}

} // namespace tsr
