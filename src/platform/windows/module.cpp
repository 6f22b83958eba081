#include "platform/module.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

#include <windows.h>

namespace tsr::platform {

namespace {

constexpr std::size_t pathBytes = 1024;
constexpr std::size_t versionBytes = 256; // only the fixed part at the start is wanted

std::string joined(const VS_FIXEDFILEINFO& information) {
    const DWORD parts[] = {information.dwFileVersionMS >> 16, information.dwFileVersionMS & 0xFFFF,
                           information.dwFileVersionLS >> 16, information.dwFileVersionLS & 0xFFFF};
    std::string text;
    for (const DWORD part : parts) text.append(text.empty() ? "" : ".").append(std::to_string(part));
    return text;
}

} // namespace

std::string moduleDirectory(const std::string& moduleName) {
    const HMODULE module = GetModuleHandleA(moduleName.c_str());
    if (module == nullptr) return {};
    char path[pathBytes];
    const DWORD length = GetModuleFileNameA(module, path, static_cast<DWORD>(std::size(path)));
    if (length == 0) return {};
    const std::string whole(path, length);
    return whole.substr(0, whole.rfind('\\') + 1); // npos + 1 is 0: no separator, no directory
}

// The name goes to the system as it is, which looks for the file in its own order.
std::string fileVersion(const std::string& fileName) {
    alignas(DWORD) std::uint8_t block[versionBytes] = {};
    if (!GetFileVersionInfoA(fileName.c_str(), 0, sizeof block, block)) return {};
    void* found = nullptr;
    UINT bytes = 0;
    if (!VerQueryValueA(block, "\\", &found, &bytes) || bytes < sizeof(VS_FIXEDFILEINFO)) return {};
    return joined(*static_cast<const VS_FIXEDFILEINFO*>(found));
}

} // namespace tsr::platform
