#include "platform/posix/zoneFile.h"

#include <fstream>

namespace tsr::platform {

namespace {

constexpr std::size_t maxBytes = 1 << 16; // the largest zones take some 4 KiB

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content(maxBytes, '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(file.gcount()));
    return content;
}

} // namespace

std::optional<std::string> zoneFileRule(const std::string& path) {
    const std::string content = contentOf(path);
    if (!content.starts_with("TZif") || !content.ends_with('\n')) return {};
    const std::size_t end = content.size() - 1;
    const std::size_t start = content.rfind('\n', end - 1);
    if (start == std::string::npos) return {};
    return content.substr(start + 1, end - start - 1);
}

} // namespace tsr::platform
