#pragma once

#include <cstdint>

namespace tsr {

// Signed arithmetic that wraps. Values from the server and the device are added and scaled before anything
// can tell that they make no sense.

constexpr std::int64_t wrappingSum(std::int64_t left, std::int64_t right) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) + static_cast<std::uint64_t>(right));
}

constexpr std::int64_t wrappingDifference(std::int64_t left, std::int64_t right) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) - static_cast<std::uint64_t>(right));
}

constexpr std::int64_t wrappingProduct(std::int64_t left, std::int64_t right) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(left) * static_cast<std::uint64_t>(right));
}

constexpr std::int32_t wrappingProduct32(std::int32_t left, std::int32_t right) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(left) * static_cast<std::uint32_t>(right));
}

// The distance from 0, also for the value that has no positive counterpart.
constexpr std::uint64_t magnitude(std::int64_t value) {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

} // namespace tsr
