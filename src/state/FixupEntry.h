#pragma once

#include <cstddef>
#include <cstdint>

namespace tsr {

// A hole of three bytes in a sequence number block, which the device fills with the UID that a pending record
// gets.
struct FixupEntry {
    std::uint32_t pendingUid = 0; // in the sync database
    std::uint32_t blockSuid = 0;
    std::size_t offset = 0; // bytes from the start of the block
};

} // namespace tsr
