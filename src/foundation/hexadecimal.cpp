#include "foundation/hexadecimal.h"

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

constexpr std::size_t wordDigits = 8;
constexpr char digits[] = "0123456789abcdef";

} // namespace

std::uint32_t hexDigit(char character) {
    if (character >= '0' && character <= '9') return static_cast<std::uint32_t>(character - '0');
    if (character >= 'A' && character <= 'F') return static_cast<std::uint32_t>(character - 'A' + 10);
    if (character >= 'a' && character <= 'f') return static_cast<std::uint32_t>(character - 'a' + 10);
    throw GeneralError(Message::InvalidHexDigit) << Tag("c") << character;
}

std::size_t parseHexWord(const std::string& text, std::size_t position, std::uint32_t& word) {
    word = 0;
    // c_str() has the terminator that stops a text that is too short.
    const char* character = text.c_str() + position;
    for (std::size_t i = 0; i < wordDigits; ++i) word = word << 4 | hexDigit(character[i]);
    return position + wordDigits;
}

std::string toHexWord(std::uint32_t value) {
    std::string text(wordDigits, '0');
    for (std::size_t i = 0; i < wordDigits; ++i) text[i] = digits[value >> (28 - 4 * i) & 0xF];
    return text;
}

void hexToBinary(const std::string& text, std::vector<std::uint8_t>& bytes) {
    if (text.size() % 2 != 0) throw GeneralError(Message::OddHexLength) << Tag("len") << text.size();
    std::vector<std::uint8_t> decoded;
    decoded.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const std::uint32_t high = hexDigit(text[i]);
        decoded.push_back(static_cast<std::uint8_t>(high << 4 | hexDigit(text[i + 1])));
    }
    bytes.swap(decoded);
}

std::string binaryToHex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

} // namespace tsr
