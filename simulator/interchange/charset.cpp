#include "interchange/charset.h"

#include <algorithm>
#include <optional>

#include "interchange/gmimeObjects.h"

namespace tsr {

namespace {

std::optional<std::string> converted(const std::string& bytes, const std::string& charset) {
    gsize read = 0;
    gsize written = 0;
    const GText text(g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8", charset.c_str(),
                               &read, &written, nullptr));
    if (!text || read != bytes.size()) return std::nullopt;
    return std::string(text.get(), written);
}

bool isUtf8(const std::string& bytes) {
    return g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr) != 0;
}

std::string decoded(const std::string& bytes, const std::string& charset) {
    if (!charset.empty()) {
        const auto text = converted(bytes, charset);
        if (text && isUtf8(*text)) return *text;
    }
    if (isUtf8(bytes)) return bytes;
    if (const auto text = converted(bytes, "WINDOWS-1252")) return *text;
    return converted(bytes, "ISO-8859-1").value_or(std::string());
}

} // namespace

std::string toUtf8(const std::string& bytes, const std::string& charset) {
    std::string text = bytes;
    // A character of UTF-16 and its kin has zeros of its own.
    if (charset.empty()) std::erase(text, '\0');
    text = decoded(text, charset);
    std::erase(text, '\0');
    return text;
}

} // namespace tsr
