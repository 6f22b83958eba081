#include "handheld/commands/handheldText.h"

#include "handheld/commands/CommandLine.h"

namespace tsr {

namespace {

std::string shown(std::string text, const std::string& allowed) {
    for (char& c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool acts = byte < 0x20 || (byte >= 0x7F && byte < 0xA0);
        if (acts && allowed.find(c) == std::string::npos) c = '?';
    }
    return fromHandheldText(text);
}

} // namespace

// The 128 characters above ASCII have two bytes in UTF-8, 110000xx 10xxxxxx.
std::string toHandheldText(const std::string& utf8) {
    std::string text;
    for (std::size_t at = 0; at < utf8.size(); ++at) {
        const auto lead = static_cast<unsigned char>(utf8[at]);
        if (lead < 0x80) {
            text += utf8[at];
            continue;
        }
        const auto next = static_cast<unsigned char>(at + 1 < utf8.size() ? utf8[at + 1] : 0);
        if ((lead != 0xC2 && lead != 0xC3) || (next & 0xC0) != 0x80) {
            throw UsageError("the handheld has no such character as in: " + utf8);
        }
        text += static_cast<char>(lead << 6 | (next & 0x3F));
        ++at;
    }
    return text;
}

std::string fromHandheldText(const std::string& text) {
    std::string utf8;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            utf8 += character;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

std::string shownHandheldText(const std::string& text) { return shown(text, "\n\t"); }

std::string shownHandheldLine(const std::string& text) { return shown(text, ""); }

std::string hexText(const std::vector<std::uint8_t>& data) {
    const char* const digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : data) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

} // namespace tsr
