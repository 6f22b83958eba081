#include "server/SocketImpl.h"

#include "foundation/GeneralError.h"
#include "foundation/SocketError.h"
#include "server/IpSocketAddress.h"
#include "server/IpSocketAddressImpl.h"
#include "server/WinsockLibrary.h"

namespace tsr {

void SocketImpl::bind(const ISocketAddress& address) {
    if (WinsockLibrary::instance().bind(handle_, nativeAddress(address), IpSocketAddressImpl::bytes) == -1)
        raiseLastError("bind");
}

SocketImpl::SocketImpl(int family, int type, int protocol)
    : handle_(WinsockLibrary::instance().socket(family, type, protocol)) {
    if (handle_ == platform::noSocket) raiseLastError("socket");
}

SocketImpl::~SocketImpl() {
    if (handle_ != platform::noSocket) WinsockLibrary::instance().closesocket(handle_);
}

const void* SocketImpl::nativeAddress(const ISocketAddress& address) {
    const auto* ipAddress = dynamic_cast<const IpSocketAddress*>(&address);
    if (ipAddress == nullptr) throw GeneralError(Message::WrongAddressType);
    return ipAddress->impl().nativeAddress();
}

void SocketImpl::raiseLastError(const char* functionName) {
    const int code = WinsockLibrary::instance().WSAGetLastError();
    throw SocketError(static_cast<std::uint32_t>(code), functionName);
}

} // namespace tsr
