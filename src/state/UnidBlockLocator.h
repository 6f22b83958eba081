#pragma once

#include <compare>
#include <cstdint>

namespace tsr {

// Where an item stands in the sync database: the key of its UNID block and the index there. A block that
// isn't on the device yet has a key of 0 or below, which counts as a large number here.
struct UnidBlockLocator {
    std::uint32_t unidBlockSuid = 0;
    std::uint32_t unidIndex = 0;

    auto operator<=>(const UnidBlockLocator&) const = default;
};

} // namespace tsr
