#pragma once

#include "server/ISocketAddress.h"

namespace tsr {

// Sockets are owned by a CountedPtr that was built with their own class, which knows the right destructor.
class ISocket {
public:
    virtual void bind(const ISocketAddress& address) = 0;

protected:
    ~ISocket() = default;
};

} // namespace tsr
