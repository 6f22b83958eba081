#pragma once

namespace tsr {

// The half of an address that knows the system's form of it.
class ISocketAddressImpl {
public:
    virtual const void* nativeAddress() const = 0; // the system's structure, 16 bytes

protected:
    ~ISocketAddressImpl() = default;
};

} // namespace tsr
