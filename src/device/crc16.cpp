#include "device/crc16.h"

#include <array>

namespace tsr {

namespace {

constexpr std::uint16_t polynomial = 0x1021;

constexpr std::array<std::uint16_t, 256> makeTable() {
    std::array<std::uint16_t, 256> table{};
    for (unsigned index = 0; index < table.size(); ++index) {
        unsigned value = index << 8;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 0x8000) != 0 ? value << 1 ^ polynomial : value << 1;
        table[index] = static_cast<std::uint16_t>(value);
    }
    return table;
}

constexpr std::array<std::uint16_t, 256> table = makeTable();

} // namespace

std::uint16_t crc16(const std::uint8_t* data, std::size_t bytes) {
    std::uint16_t value = 0xFFFF;
    for (std::size_t index = 0; index < bytes; ++index) {
        value = static_cast<std::uint16_t>(table[(value >> 8 ^ data[index]) & 0xFF] ^ value << 8);
    }
    return value;
}

} // namespace tsr
