#include "server/ClientRequest.h"

#include <cstring>

#include "foundation/numbers.h"

namespace tsr {

namespace {

constexpr std::size_t lengthUnits = 8;
constexpr std::size_t codeUnits = 4;
constexpr std::size_t headerBytes = (lengthUnits + codeUnits) * unitBytes;

std::string padded(std::uint32_t value, std::size_t width) {
    const std::string digits = toDecimal(value);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

} // namespace

void ClientRequest::addString(const std::string& text) {
    // The terminator of the C string becomes that of the wire.
    appendWide(body_, text.c_str(), std::strlen(text.c_str()) + 1);
}

void ClientRequest::addStrings(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) addString(text);
}

void ClientRequest::addStrings(const StringRun& texts) { // of a large database many megabytes
    body_.reserve(body_.size() + unitBytes * texts.bytes().size());
    appendWide(body_, texts.bytes().data(), texts.bytes().size());
}

void ClientRequest::send(IStreamSocket& socket) const {
    const WireBytes start = header();
    socket.write(start.data(), static_cast<std::uint32_t>(start.size()));
    socket.write(body_.data(), static_cast<std::uint32_t>(body_.size()));
}

WireBytes ClientRequest::header() const {
    const auto totalBytes = static_cast<std::uint32_t>(body_.size() + headerBytes);
    const std::string text = padded(totalBytes, lengthUnits) + padded(code_, codeUnits);
    WireBytes bytes;
    bytes.reserve(headerBytes);
    appendWide(bytes, text.data(), lengthUnits + codeUnits); // a wider number pushes the code out
    return bytes;
}

} // namespace tsr
