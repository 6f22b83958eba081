#include "foundation/numbers.h"

#include <limits>

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

bool isBlank(char16_t character) { return character == u' ' || (character >= u'\t' && character <= u'\r'); }

bool isDigit(char16_t character) { return character >= u'0' && character <= u'9'; }

} // namespace

std::uint32_t parseUnsigned(const std::string& text) {
    if (text.empty()) throw GeneralError(Message::NotUnsigned) << Tag("s") << text;
    std::uint32_t value = 0;
    for (const char character : text) {
        if (character < '0' || character > '9') throw GeneralError(Message::NotUnsigned) << Tag("s") << text;
        value = value * 10 + static_cast<std::uint32_t>(character - '0');
    }
    return value;
}

std::uint32_t parseWideUnsigned(const char16_t* characters, std::size_t count) {
    std::size_t position = 0;
    while (position < count && isBlank(characters[position])) ++position;
    const bool negative = position < count && characters[position] == u'-';
    if (negative || (position < count && characters[position] == u'+')) ++position;

    const std::size_t firstDigit = position;
    std::uint64_t value = 0;
    for (; position < count && isDigit(characters[position]); ++position) {
        value = value * 10 + static_cast<std::uint64_t>(characters[position] - u'0');
        if (value > std::numeric_limits<std::uint32_t>::max()) throw GeneralError(Message::WideNotUnsigned);
    }
    if (position == firstDigit) throw GeneralError(Message::WideNotUnsigned);
    const auto magnitude = static_cast<std::uint32_t>(value);
    return negative ? 0 - magnitude : magnitude;
}

std::string toDecimal(std::uint32_t value) { return std::to_string(value); }

} // namespace tsr
