#include "server/wireText.h"

#include <algorithm>

namespace tsr {

namespace {

constexpr std::size_t marksForOne = 49; // a constant of the format
constexpr std::size_t blockUnits = 64;  // what a loop without an early exit looks at at once

// The loops below have no branches, so that the compiler makes vector code of them.

bool hasZeroUnit(const std::uint8_t* wide, std::size_t units) {
    std::uint8_t found = 0;
    for (std::size_t i = 0; i < units; ++i) {
        const auto both = static_cast<std::uint8_t>(wide[unitBytes * i] | wide[unitBytes * i + 1]);
        found = static_cast<std::uint8_t>(found | (both == 0 ? 1 : 0));
    }
    return found != 0;
}

bool isNarrow(const std::uint8_t* wide, std::size_t units) {
    std::uint8_t high = 0;
    for (std::size_t i = 0; i < units; ++i) high = static_cast<std::uint8_t>(high | wide[unitBytes * i + 1]);
    return high == 0;
}

void narrowUnits(const std::uint8_t* wide, std::size_t units, char* text) {
    for (std::size_t i = 0; i < units; ++i) text[i] = static_cast<char>(wide[unitBytes * i]);
}

std::string narrowWithMarks(const std::uint8_t* wide, std::size_t units) {
    std::string text;
    for (std::size_t i = 0; i < units; ++i) {
        if (wide[unitBytes * i + 1] == 0) {
            text += static_cast<char>(wide[unitBytes * i]);
        } else {
            text.append(marksForOne, '?');
        }
    }
    return text;
}

} // namespace

void appendWide(WireBytes& bytes, const char* text, std::size_t length) {
    const std::size_t start = bytes.size();
    bytes.resize(start + unitBytes * length);
    std::uint8_t* wide = bytes.data() + start;
    for (std::size_t i = 0; i < length; ++i) {
        wide[unitBytes * i] = static_cast<std::uint8_t>(text[i]);
        wide[unitBytes * i + 1] = 0;
    }
}

std::string narrowText(const std::uint8_t* wide, std::size_t units) {
    if (!isNarrow(wide, units)) return narrowWithMarks(wide, units);
    std::string text(units, '\0');
    narrowUnits(wide, units, text.data());
    return text;
}

std::size_t unitsBeforeZero(const std::uint8_t* wide, std::size_t units) {
    std::size_t position = 0;
    while (position < units) {
        const std::size_t block = std::min(blockUnits, units - position);
        if (hasZeroUnit(wide + unitBytes * position, block)) break;
        position += block;
    }
    while (position < units && (wide[unitBytes * position] | wide[unitBytes * position + 1]) != 0) ++position;
    return position;
}

} // namespace tsr
