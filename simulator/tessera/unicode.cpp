#include "tessera/unicode.h"

#include <algorithm>
#include <cstdint>

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

constexpr char32_t lastCodePoint = 0x10FFFF;

[[noreturn]] void raiseNotUtf8() { throw TesseraError("the text is not valid UTF-8"); }

bool isSurrogate(char32_t point) { return point >= 0xD800 && point <= 0xDFFF; }

// How many bytes follow the first byte of a character.
int followers(std::uint8_t first) {
    if (first < 0x80) return 0;
    if (first >= 0xC2 && first < 0xE0) return 1;
    if (first >= 0xE0 && first < 0xF0) return 2;
    if (first >= 0xF0 && first < 0xF5) return 3;
    raiseNotUtf8();
}

// The character that starts at `position`, which moves behind it.
char32_t takeCodePoint(const std::string& utf8, std::size_t& position) {
    static constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000}; // by the number of followers
    static constexpr std::uint8_t payload[] = {0x7F, 0x1F, 0x0F, 0x07};
    const auto first = static_cast<std::uint8_t>(utf8[position++]);
    const int count = followers(first);
    char32_t point = first & payload[count];
    for (int i = 0; i < count; ++i) {
        if (position == utf8.size()) raiseNotUtf8();
        const auto next = static_cast<std::uint8_t>(utf8[position++]);
        if ((next & 0xC0) != 0x80) raiseNotUtf8();
        point = point << 6 | (next & 0x3Fu);
    }
    if (point < smallest[count] || point > lastCodePoint || isSurrogate(point)) raiseNotUtf8();
    return point;
}

void appendUtf8(std::string& utf8, char32_t point) {
    const auto append = [&utf8](char32_t byte) {
        utf8 += static_cast<char>(static_cast<std::uint8_t>(byte));
    };
    if (point < 0x80) {
        append(point);
    } else if (point < 0x800) {
        append(0xC0 | point >> 6);
        append(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        append(0xE0 | point >> 12);
        append(0x80 | (point >> 6 & 0x3F));
        append(0x80 | (point & 0x3F));
    } else {
        append(0xF0 | point >> 18);
        append(0x80 | (point >> 12 & 0x3F));
        append(0x80 | (point >> 6 & 0x3F));
        append(0x80 | (point & 0x3F));
    }
}

} // namespace

std::u16string toUtf16(const std::string& utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    for (std::size_t position = 0; position < utf8.size();) {
        const char32_t point = takeCodePoint(utf8, position);
        if (point < 0x10000) {
            units += static_cast<char16_t>(point);
        } else {
            units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    return units;
}

std::string toUtf8(const std::u16string& units) {
    std::string utf8;
    utf8.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t point = units[i];
        if (isSurrogate(point)) {
            const bool paired = point < 0xDC00 && i + 1 < units.size() && (units[i + 1] & 0xFC00) == 0xDC00;
            if (!paired) throw TesseraError("the text has an unpaired surrogate");
            point = 0x10000 + ((point & 0x3FF) << 10) + (units[++i] & 0x3FFu);
        }
        appendUtf8(utf8, point);
    }
    return utf8;
}

bool isPlainText(const std::string& text) {
    try {
        const std::u16string units = toUtf16(text);
        return std::none_of(units.begin(), units.end(), [](char16_t unit) {
            return (unit < 0x20 && unit != u'\n' && unit != u'\t') || unit == 0x7F;
        });
    } catch (const TesseraError&) {
        return false;
    }
}

std::string toLowerCase(const std::string& utf8) {
    std::u16string units = toUtf16(utf8);
    for (char16_t& unit : units) {
        const bool isPlain = unit >= u'A' && unit <= u'Z';
        const bool hasAccent = unit >= 0xC0 && unit <= 0xDE && unit != 0xD7; // the multiplication sign
        if (isPlain || hasAccent) unit = static_cast<char16_t>(unit + 0x20);
    }
    return toUtf8(units);
}

} // namespace tsr
