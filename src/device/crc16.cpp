#include "device/crc16.h"

#include <array>

namespace tsr {

namespace {

constexpr std::uint16_t polynomial = 0x1021;

// The first table has what becomes of a byte, each further one the same with one zero byte more behind it.
// With four of them four bytes are taken at once, which don't wait for one another.
using Table = std::array<std::uint16_t, 256>;
using Tables = std::array<Table, 4>;

constexpr Tables makeTables() {
    Tables tables{};
    for (unsigned index = 0; index < 256; ++index) {
        unsigned value = index << 8;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 0x8000) != 0 ? value << 1 ^ polynomial : value << 1;
        tables[0][index] = static_cast<std::uint16_t>(value);
    }
    for (std::size_t zeros = 1; zeros < tables.size(); ++zeros) {
        for (std::size_t index = 0; index < 256; ++index) {
            const unsigned before = tables[zeros - 1][index];
            tables[zeros][index] = static_cast<std::uint16_t>(tables[0][before >> 8] ^ before << 8);
        }
    }
    return tables;
}

constexpr Tables tables = makeTables();

} // namespace

std::uint16_t crc16(const std::uint8_t* data, std::size_t bytes) {
    std::uint16_t value = 0xFFFF;
    std::size_t index = 0;
    for (; bytes - index >= 4; index += 4) {
        const unsigned first = (value >> 8 ^ data[index]) & 0xFF;
        const unsigned second = (value ^ data[index + 1]) & 0xFF;
        value = static_cast<std::uint16_t>(tables[3][first] ^ tables[2][second] ^ tables[1][data[index + 2]]
                                           ^ tables[0][data[index + 3]]);
    }
    for (; index < bytes; ++index) {
        value = static_cast<std::uint16_t>(tables[0][(value >> 8 ^ data[index]) & 0xFF] ^ value << 8);
    }
    return value;
}

} // namespace tsr
