#pragma once

#include "platform/socketLibrary.h"
#include "server/ISocketAddress.h"

namespace tsr {

// An open socket of the system, closed with this object.
class SocketImpl {
public:
    SocketImpl(const SocketImpl&) = delete;
    SocketImpl& operator=(const SocketImpl&) = delete;

    void bind(const ISocketAddress& address); // raises WrongAddressType, SocketError

protected:
    SocketImpl(int family, int type, int protocol); // raises SocketError
    ~SocketImpl();

    platform::SocketHandle handle() const { return handle_; }

    // The system's structure for `address`, which is 16 bytes. Raises WrongAddressType for one that isn't an
    // IpSocketAddress.
    static const void* nativeAddress(const ISocketAddress& address);

    // Raises a SocketError with the last error, and so directly after the call that failed.
    [[noreturn]] static void raiseLastError(const char* functionName);

private:
    platform::SocketHandle handle_;
};

} // namespace tsr
