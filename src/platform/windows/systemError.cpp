#include "platform/systemError.h"

#include <memory>

#include <windows.h>

namespace tsr::platform {

namespace {

constexpr DWORD usersLanguage = 0x400;

} // namespace

std::uint32_t lastError() { return GetLastError(); }

void setLastError(std::uint32_t code) { SetLastError(code); }

// The line end that the system puts behind its texts stays.
std::string systemErrorText(std::uint32_t code) {
    constexpr DWORD flags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    char* buffer = nullptr;
    const DWORD length =
        FormatMessageA(flags, nullptr, code, usersLanguage, reinterpret_cast<char*>(&buffer), 0, nullptr);
    const std::unique_ptr<char, decltype(&LocalFree)> owner(buffer, LocalFree);
    return length == 0 ? std::string() : std::string(buffer, length);
}

} // namespace tsr::platform
