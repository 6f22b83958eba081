#include "platform/debugSwitch.h"

#include <cstdlib>
#include <string>

namespace tsr::platform {

// There is no key to hold: TSR_DEBUG_LOG, set to anything but empty or "0", asks for the log.
bool debugLogSelected() {
    const char* value = std::getenv("TSR_DEBUG_LOG");
    return value != nullptr && *value != '\0' && std::string(value) != "0";
}

} // namespace tsr::platform
