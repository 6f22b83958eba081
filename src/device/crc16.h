#pragma once

#include <cstddef>
#include <cstdint>

namespace tsr {

// The CRC by which the conduit recognises a record's contents: polynomial 0x1021, most significant bit first,
// initial value 0xFFFF, nothing reflected and no final exclusive or (CRC-16/CCITT-FALSE; "123456789" gives
// 0x29B1). The CRC of no bytes is 0xFFFF.
std::uint16_t crc16(const std::uint8_t* data, std::size_t bytes);

} // namespace tsr
