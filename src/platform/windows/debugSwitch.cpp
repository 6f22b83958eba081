#include "platform/debugSwitch.h"

#include <windows.h>

namespace tsr::platform {

// The Control key, held down while the HotSync reaches the application.
bool debugLogSelected() {
    constexpr unsigned down = 0x8000;
    return (static_cast<unsigned short>(GetAsyncKeyState(VK_CONTROL)) & down) != 0;
}

} // namespace tsr::platform
