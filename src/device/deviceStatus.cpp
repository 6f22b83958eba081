#include "device/deviceStatus.h"

#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"
#include "platform/syncManager.h"

namespace tsr {

std::string osVersionText() {
    std::uint16_t minor = 0;
    const std::uint16_t major = SyncGetHHOSVersion(&minor);
    if (major == 0) return "?.?";
    return std::to_string(major) + "." + std::to_string(minor);
}

std::string apiVersionText() {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    if (SyncGetAPIVersion(&major, &minor) != 0) {
        // Deliberate: the code that is told is that of a repeat, and can be 0.
        throw PalmSyncApiError(static_cast<std::uint32_t>(SyncGetAPIVersion(&major, &minor)),
                               "SyncGetAPIVersion");
    }
    return std::to_string(major) + "." + std::to_string(minor);
}

std::uint32_t deviceClock() {
    std::uint32_t time = 0;
    if (const std::int32_t result = SyncReadSysDateTime(&time); result != 0) {
        throw PalmSyncApiError(static_cast<std::uint32_t>(result), "SyncReadSysDateTime");
    }
    if (time == 0 || time == 0xFFFFFFFF) throw GeneralError(Message::InvalidDeviceTime) << Tag('t') << time;
    return time;
}

} // namespace tsr
