#include "support/wire.h"

#include <cstdio>

namespace tsr::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

std::string padded(std::size_t value, int width) {
    char text[32];
    std::snprintf(text, sizeof text, "%0*zu", width, value);
    return text;
}

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

} // namespace

Bytes wide(const std::string& text) {
    Bytes result;
    for (const char character : text) {
        result.push_back(static_cast<std::uint8_t>(character));
        result.push_back(0);
    }
    return result;
}

Bytes wireStrings(const std::vector<std::string>& strings) {
    Bytes result;
    for (const std::string& text : strings) result = std::move(result) + wide(text + '\0');
    return result;
}

Bytes responseFrame(std::uint32_t resultCode, const std::string& message, const Bytes& body) {
    const std::size_t total = 40 + 2 * message.size() + body.size();
    const std::string header = padded(total, 8) + "    " + padded(resultCode, 4) + padded(message.size(), 4);
    return wide(header) + wide(message) + body;
}

Bytes responseOf(const std::vector<std::string>& strings) {
    return responseFrame(0, "", wireStrings(strings));
}

Bytes requestOf(std::uint32_t code, const std::vector<std::string>& strings) {
    const Bytes body = wireStrings(strings);
    return wide(padded(24 + body.size(), 8) + padded(code, 4)) + body;
}

} // namespace tsr::test
