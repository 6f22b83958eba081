#include "handheld/fileName.h"

#include <charconv>
#include <cstdio>

#include "handheld/HandheldError.h"

namespace tsr {

namespace {

bool staysAt(const std::string& name, std::size_t index) {
    const char c = name[index];
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    const bool inside = index > 0 && index + 1 < name.size();
    return letter || (c >= '0' && c <= '9') || c == '_' || (inside && (c == '.' || c == ' '));
}

std::string escaped(char c) {
    char text[4];
    std::snprintf(text, sizeof text, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    return text;
}

} // namespace

std::string toFileName(const std::string& name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i)
        text += staysAt(name, i) ? std::string(1, name[i]) : escaped(name[i]);
    return text;
}

std::string fromFileName(const std::string& fileName) {
    std::string text;
    for (std::size_t i = 0; i < fileName.size(); ++i) {
        if (fileName[i] != '%') {
            text += fileName[i];
            continue;
        }
        unsigned value = 0;
        const char* digits = fileName.data() + i + 1;
        const bool complete = i + 2 < fileName.size();
        if (!complete || std::from_chars(digits, digits + 2, value, 16).ptr != digits + 2) {
            throw HandheldError("\"%\" without two hexadecimal digits in the name " + fileName);
        }
        text += static_cast<char>(value);
        i += 2;
    }
    return text;
}

} // namespace tsr
