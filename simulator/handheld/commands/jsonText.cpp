#include "handheld/commands/jsonText.h"

#include <nlohmann/json.hpp>

namespace tsr {

namespace {

bool isUtf8(const std::string& text) {
    try {
        static_cast<void>(nlohmann::json(text).dump());
        return true;
    } catch (const nlohmann::json::exception&) {
        return false;
    }
}

} // namespace

std::string jsonText(const std::string& text) {
    if (isUtf8(text)) return text;
    std::string wide;
    for (unsigned char c : text) {
        if (c < 0x80) {
            wide += static_cast<char>(c);
        } else {
            wide += static_cast<char>(0xC0 | c >> 6);
            wide += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return wide;
}

std::string hexText(const std::vector<unsigned char>& data) {
    const char* const digits = "0123456789abcdef";
    std::string text;
    for (unsigned char byte : data) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

} // namespace tsr
