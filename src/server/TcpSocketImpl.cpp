#include "server/TcpSocketImpl.h"

#include <algorithm>
#include <limits>

#include "server/IpSocketAddressImpl.h"
#include "server/WinsockLibrary.h"

namespace tsr {

namespace {

// The system's calls count in ints; a body is far below that.
int asCount(std::uint32_t length) {
    constexpr std::uint32_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(length, most));
}

} // namespace

TcpSocketImpl::TcpSocketImpl() : SocketImpl(platform::internetFamily, platform::streamType, 0) {}

void TcpSocketImpl::connect(const ISocketAddress& address) {
    const void* native = nativeAddress(address);
    if (WinsockLibrary::instance().connect(handle(), native, IpSocketAddressImpl::bytes) == -1)
        raiseLastError("connect");
}

std::uint32_t TcpSocketImpl::read(std::uint8_t* buffer, std::uint32_t length) {
    char* bytes = reinterpret_cast<char*>(buffer);
    const int count = WinsockLibrary::instance().recv(handle(), bytes, asCount(length), 0);
    if (count < 0) raiseLastError("recv");
    return static_cast<std::uint32_t>(count);
}

std::uint32_t TcpSocketImpl::write(const std::uint8_t* buffer, std::uint32_t length) {
    const char* bytes = reinterpret_cast<const char*>(buffer);
    const int count = WinsockLibrary::instance().send(handle(), bytes, asCount(length), 0);
    if (count < 0) raiseLastError("send");
    return static_cast<std::uint32_t>(count);
}

} // namespace tsr
