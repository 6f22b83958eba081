#include "platform/systemError.h"

#include <cerrno>
#include <cstring>

namespace tsr::platform {

std::uint32_t lastError() { return static_cast<std::uint32_t>(errno); }

void setLastError(std::uint32_t code) { errno = static_cast<int>(code); }

std::string systemErrorText(std::uint32_t code) {
    const int number = static_cast<int>(code);
    // The name is null for a number that the system doesn't know; strerror would make up a text.
    if (strerrordesc_np(number) == nullptr) return {};
    return strerrordesc_np(number);
}

} // namespace tsr::platform
