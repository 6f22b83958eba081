#pragma once

#include <cstdint>

namespace tsr {

// One device record of a Notes item, as it was at the last exchange.
struct SyncRecord {
    std::int32_t uid = 0;  // in the application database; below 0: the negated UID of its pending record
    std::uint32_t crc = 0; // of its bytes, 16 bits
    std::uint32_t tag = 0; // which record of the item it is, 16 bits; 0 for the primary one
    bool deleted = false;  // the device reports it as deleted

    bool operator==(const SyncRecord&) const = default;
};

} // namespace tsr
