#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace tsr::test {

// How many histories a test lives through: `wanted`, or as many as the variable TSR_HISTORIES says where
// these are fewer, for a conduit that is slow itself or slow to reach.
inline std::uint32_t historyCount(std::uint32_t wanted) {
    const char* const most = std::getenv("TSR_HISTORIES");
    if (most == nullptr) return wanted;
    return std::min(wanted, static_cast<std::uint32_t>(std::strtoul(most, nullptr, 10)));
}

} // namespace tsr::test
