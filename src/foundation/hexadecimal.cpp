#include "foundation/hexadecimal.h"

#include <algorithm>
#include <array>

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

constexpr std::size_t wordDigits = 8;
constexpr char digits[] = "0123456789abcdef";
constexpr char upperDigits[] = "0123456789ABCDEF";
constexpr std::uint8_t noDigit = 0xFF;

// The value of each character as a digit.
constexpr std::array<std::uint8_t, 256> valuesOfCharacters() {
    std::array<std::uint8_t, 256> result{};
    result.fill(noDigit);
    for (std::uint8_t value = 0; value < 16; ++value) {
        result[static_cast<std::uint8_t>(digits[value])] = value;
        result[static_cast<std::uint8_t>(upperDigits[value])] = value;
    }
    return result;
}
constexpr std::array<std::uint8_t, 256> values = valuesOfCharacters();

} // namespace

std::uint32_t hexDigit(char character) {
    const std::uint8_t value = values[static_cast<std::uint8_t>(character)];
    if (value == noDigit) throw GeneralError(Message::InvalidHexDigit) << Tag("c") << character;
    return value;
}

std::string toHex(std::uint32_t value, std::size_t width) {
    const std::string word = toHexWord(value);
    const std::string text = word.substr(std::min(word.find_first_not_of('0'), wordDigits - 1));
    return std::string(width - std::min(width, text.size()), ' ') + text;
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
    std::vector<std::uint8_t> decoded(text.size() / 2);
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        const std::uint32_t high = hexDigit(text[2 * i]);
        decoded[i] = static_cast<std::uint8_t>(high << 4 | hexDigit(text[2 * i + 1]));
    }
    bytes.swap(decoded);
}

std::string binaryToHex(const std::vector<std::uint8_t>& bytes) {
    std::string text(bytes.size() * 2, '0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text[2 * i] = digits[bytes[i] >> 4];
        text[2 * i + 1] = digits[bytes[i] & 0xF];
    }
    return text;
}

} // namespace tsr
