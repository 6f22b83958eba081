#include "server/wireText.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/vectorClones.h"

namespace tsr {

namespace {

constexpr std::size_t marksForOne = 49; // a constant of the format

constexpr std::size_t shortText = 64;  // units; what is longer is worth the wider vectors
constexpr std::size_t longBlock = 256; // units of a long text that are searched for a zero at once
constexpr std::size_t firstCapacity = 4096;

// A unit as this machine loads its two bytes, whichever byte comes first in memory.
using Unit = std::uint16_t;
constexpr bool lowByteFirst = std::endian::native == std::endian::little;
constexpr Unit highHalf = lowByteFirst ? 0xFF00 : 0x00FF;

inline Unit unitAt(const std::uint8_t* wide, std::size_t index) {
    Unit unit = 0;
    std::memcpy(&unit, wide + unitBytes * index, sizeof unit);
    return unit;
}

inline char lowByte(Unit unit) { return static_cast<char>(lowByteFirst ? unit & 0xFF : unit >> 8); }

// True when one of the four units of `word` is zero: only then does the subtraction borrow into a top bit
// that was not set.
inline bool hasZeroUnit(std::uint64_t word) {
    return ((word - 0x0001000100010001) & ~word & 0x8000800080008000) != 0;
}

std::size_t stepsToZero(const std::uint8_t* wide, std::size_t units) {
    std::size_t position = 0;
    for (std::uint64_t word = 0; units - position >= 4; position += 4) {
        std::memcpy(&word, wide + unitBytes * position, sizeof word);
        if (hasZeroUnit(word)) break;
    }
    while (position < units && unitAt(wide, position) != 0) ++position;
    return position;
}

// The loops of the next functions have no branches, so that the compiler makes vector code of them.

// False when a unit has no narrow form: then `text` is of no use.
inline bool narrowUnits(const std::uint8_t* wide, std::size_t units, char* text) {
    Unit all = 0;
    for (std::size_t i = 0; i < units; ++i) {
        const Unit unit = unitAt(wide, i);
        all = static_cast<Unit>(all | unit);
        text[i] = lowByte(unit);
    }
    return (all & highHalf) == 0;
}

TSR_VECTOR_CLONES bool narrowManyUnits(const std::uint8_t* wide, std::size_t units, char* text) {
    return narrowUnits(wide, units, text);
}

TSR_VECTOR_CLONES bool longBlockHasZero(const std::uint8_t* wide) {
    Unit zeros = 0;
    for (std::size_t i = 0; i < longBlock; ++i)
        zeros = static_cast<Unit>(zeros | (unitAt(wide, i) == 0 ? 1 : 0));
    return zeros != 0;
}

inline void widenBytes(const char* text, std::size_t length, std::uint8_t* wide) {
    for (std::size_t i = 0; i < length; ++i) {
        wide[unitBytes * i] = static_cast<std::uint8_t>(text[i]);
        wide[unitBytes * i + 1] = 0;
    }
}

TSR_VECTOR_CLONES void widenManyBytes(const char* text, std::size_t length, std::uint8_t* wide) {
    widenBytes(text, length, wide);
}

std::size_t unitsBeforeZero(const std::uint8_t* wide, std::size_t units) {
    std::size_t position = stepsToZero(wide, std::min(units, shortText));
    if (position < shortText) return position;
    while (units - position >= longBlock && !longBlockHasZero(wide + unitBytes * position))
        position += longBlock;
    return position + stepsToZero(wide + unitBytes * position, units - position);
}

std::string narrowWithMarks(const std::uint8_t* wide, std::size_t units) {
    std::string text;
    for (std::size_t i = 0; i < units; ++i) {
        const Unit unit = unitAt(wide, i);
        if ((unit & highHalf) == 0) {
            text += lowByte(unit);
        } else {
            text.append(marksForOne, '?');
        }
    }
    return text;
}

} // namespace

std::uint8_t* extend(WireBytes& bytes, std::size_t count) {
    const std::size_t start = bytes.size();
    if (start + count > bytes.capacity()) {
        // By hand: for an allocator of our own the vector would move byte after byte.
        WireBytes larger;
        larger.reserve(std::max({start + count, 2 * bytes.capacity(), firstCapacity}));
        larger.resize(start);
        std::copy(bytes.begin(), bytes.end(), larger.begin());
        bytes.swap(larger);
    }
    bytes.resize(start + count);
    return bytes.data() + start;
}

void appendWide(WireBytes& bytes, const char* text, std::size_t length) {
    std::uint8_t* wide = extend(bytes, unitBytes * length);
    (length <= shortText ? widenBytes : widenManyBytes)(text, length, wide);
}

std::string narrowText(const std::uint8_t* wide, std::size_t units) {
    std::string text(units, '\0');
    const bool isNarrow = (units <= shortText ? narrowUnits : narrowManyUnits)(wide, units, text.data());
    return isNarrow ? text : narrowWithMarks(wide, units);
}

std::size_t narrowUntilZero(const std::uint8_t* wide, std::size_t units, std::string& text) {
    const std::size_t before = unitsBeforeZero(wide, units);
    text = narrowText(wide, before);
    return before;
}

} // namespace tsr
