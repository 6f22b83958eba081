#pragma once

namespace tsr {

// Where a socket connects to or is bound.
class ISocketAddress {
public:
    virtual ~ISocketAddress() = default;
};

} // namespace tsr
