#pragma once

namespace tsr {

// A unit of work for the device.
class PalmProxyWork {
public:
    virtual ~PalmProxyWork() = default;
    virtual void run() = 0;
};

} // namespace tsr
