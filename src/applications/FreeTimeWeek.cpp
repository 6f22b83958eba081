#include "applications/FreeTimeWeek.h"

#include "foundation/deviceDate.h"

namespace tsr {

void FreeTimeWeek::writeTo(PalmRecordBuffer& buffer, std::uint32_t userId) const {
    buffer.appendDword(userId);
    buffer.appendWord(packDate(start));
    for (std::size_t first = 0; first < slotCount; first += 8) {
        unsigned byte = 0;
        for (std::size_t slot = first; slot < first + 8; ++slot) byte = byte << 1 | (slots[slot] ? 1U : 0U);
        buffer.appendByte(static_cast<std::uint8_t>(byte));
    }
}

} // namespace tsr
